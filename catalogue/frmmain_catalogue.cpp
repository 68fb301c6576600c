// The views over all agents: the installed-agents list and its export to a
// comma-separated file. Both walk the tree in the same way.
#include "app/frmmain.h"
#include "app/hourglass.h"
#include "app/program.h"
#include "catalogue/agentexport.h"
#include "catalogue/agentwalk.h"
#include "catalogue/frmscripts.h"
#include "catalogue/reportwindow.h"
#include "platform/com/routine.h"
#include "platform/mapi/session.h"
#include "scripts/filequestions.h"

#include <QPointer>

void frmMain::mnuFileInstalledAgents_Click()
{
    const QString status = QStringLiteral("Retrieving installed agents");
    SetHourglass(true);
    StatBar(status, true);
    const QPointer<catalogue::ReportWindow> form = catalogue::newFrmScripts(*this);
    com::withHandler(
        [&] {
            catalogue::walkAgents(*this, status, [&](const auto &agent) {
                form->SSDBGrid1->AddItem(catalogue::listRow(agent));
            });
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
    const std::optional<QString> fileName = scripts::askSaveFile(
        prompter(), CommonDialog1, QStringLiteral("Comma Separated Value File (*.csv)|*.csv"), 1,
        QStringLiteral("agents.csv"), m_program.gstrLocationPath);
    if (!fileName)
        return;
    com::withHandler(
        [&] {
            SetHourglass(true);
            const QString status = QStringLiteral("Exporting agent list");
            StatBar(status, true);
            catalogue::exportAgentList(*this, *fileName, status);
        },
        [&](const com::ComError &e) { scripts::showFileError(prompter(), e); });
    StatBar(QString());
    SetHourglass(false);
}
