// Mail: an agent's script as an attachment, and a request to the support
// desk. Both leave the sending to the user in the compose window.
#include "app/frmmain.h"
#include "app/program.h"
#include "app/version.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "platform/os/system.h"
#include "platform/outlook/application.h"
#include "platform/outlook/mailitem.h"
#include "scripts/filenames.h"
#include "scripts/scriptmarker.h"
#include "scripts/scriptpane.h"

#include <QFile>

// SORRELIN_SUPPORT_ADDRESS comes from the build (a CMake cache value).

void frmMain::mnuFileSend_Click()
{
    com::ResumeNext routine;
    QTreeWidgetItem *node = treOutl->selectedItem();
    if (routine.test([&] { return controls::SSTree::image(node) < navigation::kImageScriptAgent; }))
        return;
    QString name = controls::SSTree::text(node);
    const QString subject = scripts::CleanFileName(name);
    const QString path = os::GetTempPath() + subject + QStringLiteral(".txt");
    routine.step([&] { os::writeTempFile(path, scripts::paneToScript(txtPreview->text()) + "\r\n"); });
    std::unique_ptr<outlook::MailItem> item;
    routine.step([&] { item = m_program.gobjOutlook->CreateItem(0); });
    routine.step([&] { item->Subject = subject; });
    routine.step([&] { item->Attachments().Add(path, 1, 1, subject); });
    routine.step([&] { item->Display(true); });
    item.reset();
    QFile::remove(path);
}

void frmMain::mnuHelpTechSupport_Click()
{
    com::ResumeNext routine;
    std::unique_ptr<outlook::MailItem> item;
    routine.step([&] { item = m_program.gobjOutlook->CreateItem(0); });
    if (!item)
        return;
    item->Subject = QStringLiteral("Sorrelin Technical Support Request");
    item->To = QStringLiteral(SORRELIN_SUPPORT_ADDRESS);
    item->Body = QStringLiteral(
                     "Sorrelin Version %1.%2.%3\r\r=====================Problem Report======================")
                     .arg(app::kVersionMajor)
                     .arg(app::kVersionMinor)
                     .arg(app::kVersionRevision);
    routine.step([&] { item->Display(true); });
}
