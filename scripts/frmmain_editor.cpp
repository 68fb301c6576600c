// Open Script: the pane's text through an editor of the user's choice, out
// and back through one temporary file.
#include "app/frmmain.h"
#include "app/iswindowsnt.h"
#include "app/program.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "platform/os/system.h"
#include "scripts/editors.h"
#include "scripts/filenames.h"
#include "scripts/scriptmarker.h"
#include "scripts/scriptpane.h"

#include <QFile>
#include <QFileInfo>

void frmMain::mnuFileOpen_Click()
{
    QTreeWidgetItem *node = treOutl->selectedItem();
    if (controls::SSTree::image(node) < navigation::kImageScriptAgent)
        return;
    com::ResumeNext routine;
    const QString before = txtPreview->text();
    QString editor = m_program.gstrDefaultEditor;
    QString name = controls::SSTree::text(node);
    const QString fileName = os::GetTempPath() + scripts::CleanFileName(name) + QStringLiteral(".txt");
    routine.step([&] { os::writeTempFile(fileName, scripts::paneToScript(before)); });
    editor = scripts::editorForSize(editor, QFileInfo(fileName).size(), IsWindowsNT());
    const std::optional<QString> prefix =
        scripts::editorCommand(editor, m_program.gstrOtherPath, IsWindowsNT());
    if (prefix && prefix->isEmpty()) {
        prompter().msgBox(scripts::notAvailableText(editor), ui::Buttons::OK, ui::Icon::Stop, 1, QString());
        QFile::remove(fileName);
        return;
    }
    if (!prefix || prefix->trimmed().isEmpty()) {
        QFile::remove(fileName);
        return;
    }
    routine.step([&] { os::ExecCmd(*prefix + QLatin1Char('"') + fileName + QLatin1Char('"')); });
    QString after;
    routine.step([&] {
        QFile file(fileName);
        if (!file.open(QIODevice::ReadOnly))
            return;
        // A file given back as it was written is the same text.
        const QByteArray bytes = file.readAll();
        after = bytes == scripts::paneToScript(before) ? before : scripts::fileToPane(bytes);
    });
    if (!scripts::hasScriptMarker(after) &&
        prompter().msgBox(QStringLiteral("This script does not appear to be a valid script. Continue?"),
                          ui::Buttons::YesNo, ui::Icon::Question, 2, QString()) == ui::Answer::No) {
        QFile::remove(fileName);
        return;
    }
    // The same text again changes nothing: the pane isn't touched, so that no
    // edit seems to be pending.
    if (!after.isEmpty() && after != before) {
        txtPreview->setEditedText(after);
        blnDirty = true;
        mnuFileSave_Click();
    }
    QFile::remove(fileName);
}
