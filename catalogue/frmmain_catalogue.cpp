// The views over all agents: the installed-agents list and its export to a
// comma-separated file. Both walk the tree in the same way.
#include "app/frmmain.h"
#include "app/hourglass.h"
#include "app/program.h"
#include "catalogue/agentwalk.h"
#include "catalogue/frmscripts.h"
#include "catalogue/reportwindow.h"
#include "platform/com/routine.h"
#include "platform/mapi/session.h"
#include "scripts/filequestions.h"

#include <QFile>
#include <QPointer>

void frmMain::mnuFileInstalledAgents_Click()
{
    SetHourglass(true);
    StatBar(QStringLiteral("Retrieving installed agents"), true);
    const QPointer<catalogue::ReportWindow> form = catalogue::newFrmScripts(*this);
    com::withHandler(
        [&] {
            catalogue::walkAgents(
                *this, [&](const auto &agent) { form->SSDBGrid1->AddItem(catalogue::listRow(agent)); });
        },
        [&](const com::ComError &e) { scripts::showFileError(prompter(), e); });
    StatBar(QString());
    SetHourglass(false);
    form->setWindowTitle(QStringLiteral("Installed Agents - ") + m_program.gobjSession->CurrentUser());
    form->exec();
    delete form.data(); // unloaded: the next list starts empty
}

void frmMain::mnuFileExport_Click()
{
    if (prompter().msgBox(QStringLiteral("Export Agent List?"), ui::Buttons::YesNo, ui::Icon::Question, 1,
                          QString()) == ui::Answer::No) {
        StatBar(QString());
        return;
    }
    CommonDialog1.cancelError = true;
    CommonDialog1.flags = 4100;
    CommonDialog1.filter = QStringLiteral("Comma Separated Value File (*.csv)|*.csv");
    CommonDialog1.initDir = m_program.gstrLocationPath;
    CommonDialog1.filterIndex = 1;
    CommonDialog1.fileName = QStringLiteral("agents.csv");
    if (!prompter().showSave(CommonDialog1))
        return;
    const QString fileName = CommonDialog1.fileName;
    if (!scripts::confirmOverwrite(prompter(), fileName))
        return;
    QFile file(fileName);
    com::withHandler(
        [&] {
            SetHourglass(true);
            StatBar(QStringLiteral("Exporting agent list"), true);
            if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
                throw com::ComError(
                    com::err::PathNotFound, QStringLiteral("Sorrelin"),
                    QStringLiteral("Path not found: %1 (%2)").arg(fileName, file.errorString()));
            const auto write = [&file](const QString &line) {
                const QByteArray bytes = line.toLatin1();
                if (file.write(bytes) != bytes.size())
                    throw com::ComError(com::err::FileAccess, QStringLiteral("Sorrelin"),
                                        QStringLiteral("Path/File access error: %1").arg(file.errorString()));
            };
            write(catalogue::exportHeader());
            catalogue::walkAgents(*this, [&](const auto &agent) { write(catalogue::exportLine(agent)); });
        },
        [&](const com::ComError &e) { scripts::showFileError(prompter(), e); });
    file.close();
    StatBar(QString());
    SetHourglass(false);
}
