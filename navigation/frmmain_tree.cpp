// Building the folder tree: both trees from one walk of the store.
#include "app/frmmain.h"
#include "app/hourglass.h"
#include "app/program.h"
#include "navigation/frmfolder.h"
#include "navigation/nodekinds.h"
#include "navigation/pendingedit.h"
#include "navigation/treewalk.h"
#include "platform/controls/sstree.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "platform/os/memory.h"
#include "platform/store/folderlevels.h"

#include <QAction>

using controls::SSTree;

QString frmMain::currentUser() const
{
    try {
        return m_program.gobjSession->CurrentUser();
    } catch (const com::ComError &) {
        return QString();
    }
}

QString frmMain::StripCurrentUser(const QString &fullPath) const
{
    return navigation::stripCurrentUser(fullPath, currentUser());
}

void frmMain::RefreshFolders()
{
    if (!navigation::settlePendingEdit(*this))
        return;
    app::Program &p = m_program;
    StatBar(QStringLiteral("Refreshing folder tree"), true);
    SetHourglass(true);
    if (!folderForm)
        folderForm = new frmFolder(prompter(), this); // made hidden by the first refresh, kept until the end

    // The old snapshot goes before the store is read again.
    for (SSTree *tree : {treOutl, folderForm->treOutl})
        tree->clearNodes();
    os::releaseFreedMemory(); // the new snapshot comes in other sizes than the old one went
    storeRead();
    const navigation::TreeTable table = navigation::buildTree(*p.gobjSession, *p.gobjEvents, true);
    // Both trees show the one table; the folder dialog's, without the
    // agents, is made when the dialog first needs it.
    treOutl->setNodes(table.nodes);
    folderForm->treOutl->setNodesWhenNeeded(table.nodes, table.folderNodes);
    treOutl_NodeClick(treOutl->selectedItem());
    setCommandEnabled(app::Command::FileExport, true);
    setCommandEnabled(app::Command::FileInstalledAgents, true);
    SetHourglass(false);
    StatBar(table.tooDeep ? store::folderLevelsText() : QStringLiteral("Ready"));
}

void frmMain::mnuViewRefresh_Click()
{
    if (!navigation::settlePendingEdit(*this))
        return;
    RefreshFolders();
    if (action(app::Command::ViewPreview)->isChecked())
        treOutl_NodeClick(treOutl->selectedItem());
}
