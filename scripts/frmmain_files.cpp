// Script files: a new agent from a file, and a copy of the pane to a file.
#include "agents/frmproperties.h"
#include "app/frmmain.h"
#include "app/program.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "scripts/filenames.h"
#include "scripts/filequestions.h"
#include "scripts/scriptmarker.h"
#include "scripts/scriptpane.h"

#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>

using scripts::showFileError;

void frmMain::mnuFileNew_Click()
{
    CommonDialog1.dialogTitle = QStringLiteral("Open Exchange Scripting Agent");
    scripts::setUpFileDialog(CommonDialog1,
                             QStringLiteral("Text Files (*.txt)|*.txt|VBScript Files"
                                            "(*.vbs)|*.vbs|All Files (*.*)|*.*"),
                             2, QStringLiteral("New Agent.vbs"), m_program.gstrLocationPath);
    if (!prompter().showOpen(CommonDialog1))
        return;
    com::withHandler(
        [&] {
            frmProperties form(*this);
            form.blnNew = true;
            form.chkActive->setChecked(true);
            form.cmdSchedule->setEnabled(false);
            form.txtAgentName->setText(QStringLiteral("New Agent"));
            form.exec();
        },
        [&](const com::ComError &e) { showFileError(prompter(), e); });
}

void frmMain::mnuFileSaveAs_Click()
{
    QTreeWidgetItem *node = treOutl->selectedItem();
    if (controls::SSTree::image(node) < navigation::kImageScriptAgent)
        return;
    if (scripts::refuseUnkeptCharacters(prompter(), txtPreview->text()))
        return;
    QString name = controls::SSTree::text(node);
    const std::optional<QString> chosen = scripts::askSaveFile(
        prompter(), CommonDialog1, scripts::kTextFilesFilter, 2,
        scripts::CleanFileName(name) + QStringLiteral(".vbs"),
        m_program.gstrLocationPath.isEmpty() ? app::appPath() : m_program.gstrLocationPath);
    if (!chosen)
        return;
    const QString fileName = *chosen;
    com::withHandler(
        [&] {
            QFile file(fileName);
            if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
                throw com::ComError(
                    com::err::PathNotFound, QStringLiteral("Sorrelin"),
                    QStringLiteral("Path not found: %1 (%2)").arg(fileName, file.errorString()));
            const QByteArray bytes = scripts::paneToScript(txtPreview->text()) + "\r\n";
            if (file.write(bytes) != bytes.size())
                throw com::ComError(com::err::FileAccess, QStringLiteral("Sorrelin"),
                                    QStringLiteral("Path/File access error: %1").arg(file.errorString()));
        },
        [&](const com::ComError &e) { showFileError(prompter(), e); });
}
