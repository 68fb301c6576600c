// Building the folder tree: both trees in one pass, the agents of the main
// tree in a second.
#include "app/frmmain.h"
#include "app/hourglass.h"
#include "app/program.h"
#include "navigation/folderclass.h"
#include "navigation/frmfolder.h"
#include "navigation/nodekinds.h"
#include "navigation/treewalk.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"

#include <QAction>

using controls::SSTree;

namespace {

/// Adds a node to a tree; a key that already stands in the tree is not
/// added again, and the walk goes on.
SSTree::Node *addNode(SSTree *tree, const QString &parentKey, const QString &key, const QString &text,
                      int image, const QString &tag)
{
    try {
        SSTree::Node *node = tree->add(parentKey, key, text, image);
        SSTree::setTag(node, tag);
        return node;
    } catch (const com::ComError &) {
        return nullptr;
    }
}

} // namespace

QString frmMain::StripCurrentUser(const QString &fullPath) const
{
    QString user;
    try {
        user = m_program.gobjSession->CurrentUser();
    } catch (const com::ComError &) {
    }
    return navigation::stripCurrentUser(fullPath, user);
}

void frmMain::addFolderNode(const QString &parentKey, const mapi::Folder &folder)
{
    const int image = navigation::classifyFolder(folder, *m_program.gobjEvents);
    for (SSTree *tree : {treOutl, folderForm->treOutl})
        if (SSTree::Node *node =
                addNode(tree, parentKey, folder.ID(), folder.Name(), image, folder.StoreID()))
            node->setExpanded(true);
}

void frmMain::EnumerateFolders(const mapi::Folder &folder)
{
    mapi::FolderList folders = folder.Folders();
    if (folders.Count() == 0)
        return;
    for (const mapi::Folder &child : folders) {
        addFolderNode(folder.ID(), child);
        EnumerateFolders(child);
    }
}

void frmMain::RefreshFolders()
{
    com::ResumeNext routine;
    app::Program &p = m_program;
    StatBar(QStringLiteral("Refreshing folder tree"), true);
    SetHourglass(true);
    if (!folderForm)
        folderForm = new frmFolder(prompter(), this); // made hidden by the first refresh, kept until the end
    const QList<SSTree *> trees = {treOutl, folderForm->treOutl};

    for (SSTree *tree : trees) {
        tree->setRedraw(false);
        tree->clearNodes();
    }
    const QString user = routine.value<QString>([&] { return p.gobjSession->CurrentUser(); });
    for (SSTree *tree : trees)
        if (SSTree::Node *root = addNode(tree, QString(), QStringLiteral("root"), navigation::rootText(user),
                                         navigation::kImageRoot, QString()))
            root->setExpanded(true);

    const auto stores = routine.value<QVector<mapi::InfoStore>>([&] { return p.gobjSession->InfoStores(); });
    for (const mapi::InfoStore &store : stores) {
        routine.step([&] {
            if (store.ProviderName() != navigation::kExchangeProvider)
                return;
            const mapi::Folder root = store.RootFolder();
            for (SSTree *tree : trees)
                addNode(tree, QStringLiteral("root"), store.Name(), store.Name(), navigation::kImageStore,
                        root.StoreID());
            for (const mapi::Folder &folder : root.Folders()) {
                addFolderNode(store.Name(), folder);
                routine.step([&] { EnumerateFolders(folder); });
            }
        });
    }

    // Agents, in the main tree only, below the folders that hold them. The
    // nodes added here come after `count` and are not visited again.
    const int count = treOutl->count();
    for (int i = 1; i <= count; ++i) {
        SSTree::Node *folderNode = treOutl->nodeAt(i);
        if (SSTree::image(folderNode) != navigation::kImageFolderWithAgents)
            continue;
        routine.step([&] {
            mapi::MessageList hidden =
                p.gobjSession->GetFolder(SSTree::key(folderNode), SSTree::tag(folderNode)).HiddenMessages();
            hidden.Filter().setType(mapi::kBindingClass);
            for (const mapi::Message &message : hidden) {
                const int image =
                    navigation::classifyHandlerField(message.Fields(mapi::PR_HANDLER).Value().toByteArray());
                addNode(treOutl, SSTree::key(folderNode), message.ID(), message.Subject(), image,
                        message.StoreID());
            }
        });
    }

    for (SSTree *tree : trees) {
        tree->setRedraw(true);
        if (tree->count() > 0) {
            SSTree::Node *root = tree->nodeAt(1);
            tree->select(root);
            root->setExpanded(true);
        }
    }
    treOutl_NodeClick(treOutl->selectedItem());
    setEnabled(QStringLiteral("mnuFileExport"), true);
    setEnabled(QStringLiteral("mnuFileInstalledAgents"), true);
    SetHourglass(false);
    StatBar(QStringLiteral("Ready"));
}

void frmMain::mnuViewRefresh_Click()
{
    RefreshFolders();
    if (action(QStringLiteral("mnuViewPreview"))->isChecked())
        treOutl_NodeClick(treOutl->selectedItem());
}
