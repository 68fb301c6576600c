#include "navigation/frmfolder.h"

#include "app/images.h"
#include "platform/controls/sstree.h"
#include "platform/ui/prompter.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

frmFolder::frmFolder(ui::Prompter &prompter, QWidget *owner)
    : QDialog(owner, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint), m_prompter(prompter)
{
    setObjectName(QStringLiteral("frmFolder"));
    setWindowTitle(QStringLiteral("Select Folder"));
    // 6696 by 4656 twips.
    setFixedSize(446, 310);

    treOutl = new controls::SSTree(this);
    treOutl->setObjectName(QStringLiteral("treOutl"));
    treOutl->setImageList(app::images::treeImageList());
    treOutl->setGeometry(0, 0, 446, 281);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setGeometry(140, 284, 77, 25);
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setGeometry(228, 284, 77, 25);

    lblEntryID = new QLabel(QStringLiteral("EntryID"), this);
    lblEntryID->setObjectName(QStringLiteral("lblEntryID"));
    lblEntryID->hide();
    lblStoreID = new QLabel(QStringLiteral("StoreID"), this);
    lblStoreID->setObjectName(QStringLiteral("lblStoreID"));
    lblStoreID->hide();

    connect(cmdOK, &QPushButton::clicked, this, &frmFolder::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmFolder::cmdCancel_Click);
}

void frmFolder::cmdOK_Click()
{
    QTreeWidgetItem *node = treOutl->selectedItem();
    if (!node)
        return; // an empty tree: OK does nothing
    if (controls::SSTree::key(node) == QLatin1String("root")) {
        lblEntryID->clear();
        lblStoreID->clear();
        return;
    }
    if (controls::SSTree::image(node) == 18) {
        m_prompter.msgBox(QStringLiteral("You do not have permissions in this folder."), ui::Buttons::OK,
                          ui::Icon::Information, 1, QString());
        return;
    }
    lblEntryID->setText(controls::SSTree::key(node));
    lblStoreID->setText(controls::SSTree::tag(node));
    hide();
}

void frmFolder::cmdCancel_Click()
{
    lblEntryID->clear();
    lblStoreID->clear();
    hide();
}

void frmFolder::keyPressEvent(QKeyEvent *event)
{
    // Nothing is pasted here; Escape is the Cancel button.
    if (event->key() == Qt::Key_V && (event->modifiers() & Qt::ControlModifier))
        return;
    if (event->key() == Qt::Key_Escape) {
        cmdCancel_Click();
        return;
    }
    QDialog::keyPressEvent(event);
}

void frmFolder::closeEvent(QCloseEvent *event)
{
    // The title bar's close hides the dialog like Cancel.
    event->ignore();
    cmdCancel_Click();
}
