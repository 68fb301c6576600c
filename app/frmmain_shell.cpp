// The main window's frame: status bar, layout, view toggles, toolbar and
// the keys the window sees before its controls.
#include "app/frmmain.h"

#include "app/positionform.h"
#include "app/program.h"
#include "platform/controls/sstree.h"
#include "platform/os/screen.h"
#include "platform/os/twips.h"
#include "platform/store/storewatch.h"
#include "scripts/scriptpane.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QLabel>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>

using os::kTwipsPerPixel;
using os::px;
using os::twips;

void frmMain::StatBar(const QString &strText, bool blnWait)
{
    QString text = strText.isEmpty() ? QStringLiteral("Ready") : strText;
    if (blnWait)
        text += QStringLiteral(", please wait...");
    m_panelText->setText(text);
    m_panelText->repaint();
}

void frmMain::storeBusy(bool waiting)
{
    // The wait stacks its own pointer on whatever the command has shown, and
    // gives the status text back when it is over.
    if (waiting) {
        m_textBeforeWait = statusText();
        QApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
        StatBar(QStringLiteral("Another program is writing to the store; waiting for it"), true);
    } else {
        QApplication::restoreOverrideCursor();
        m_panelText->setText(m_textBeforeWait);
        m_panelText->repaint();
    }
}

QString frmMain::statusText() const
{
    return m_panelText->text();
}

QString frmMain::storeNotice() const
{
    return m_panelNotice->text();
}

void frmMain::storeChanged()
{
    m_panelNotice->setText(QStringLiteral("The store has changed; press F5 to see the changes."));
    m_panelNotice->show();
}

void frmMain::storeRead()
{
    if (m_storeWatch)
        m_storeWatch->reset();
    m_panelNotice->clear();
    m_panelNotice->hide();
}

void frmMain::SSTab1_Click()
{
    StatBar(QString());
}

void frmMain::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    Form_Resize();
}

bool frmMain::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_adminPage && event->type() == QEvent::Resize) {
        Form_Resize();
        return false;
    }
    // Coming back to the window is a moment to look for other programs'
    // writes without waiting for the watch's next tick.
    if (watched == this && event->type() == QEvent::WindowActivate && m_storeWatch)
        m_storeWatch->check();
    // F11 and F12 in the tree belong to the tree's key-up, not to the menu;
    // Ctrl+V there is the tree's to swallow, so the Edit menu never pastes.
    if (watched == treOutl && event->type() == QEvent::ShortcutOverride) {
        const auto *keyEvent = static_cast<QKeyEvent *>(event);
        const int key = keyEvent->key();
        const bool paste = key == Qt::Key_V && (keyEvent->modifiers() & Qt::ControlModifier);
        if (key == Qt::Key_F11 || key == Qt::Key_F12 || paste) {
            event->accept();
            return true;
        }
    }
    // Key preview: while it is on, the window sees a key before the control
    // with the focus does.
    if (m_keyPreview && event->type() == QEvent::KeyPress && watched->isWidgetType()) {
        auto *w = static_cast<QWidget *>(watched);
        if (w->window() == this && w == QApplication::focusWidget()) {
            const auto *key = static_cast<QKeyEvent *>(event);
            if (Form_KeyDown(controls::vbKeyCode(key), controls::vbShift(key->modifiers())))
                return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::Form_Resize()
{
    if (isMinimized())
        return;
    if (isMaximized())
        PositionForm(this);
    // The window's smallest size: it snaps back when made smaller. A
    // maximized window can't be sized, and keeps the size it has.
    if (!isMaximized() && (width() < px(7440) || height() < px(5448))) {
        resize(width() < px(7440) ? px(7536) : width(), height() < px(5448) ? px(6060) : height());
        return; // the resize that follows lays the controls out
    }
    // The toolbar and status bar take their own room; the tab fills the rest.
    const bool tree = action(app::Command::ViewFolderTree)->isChecked();
    const bool pane = action(app::Command::ViewPreview)->isChecked();
    const int w = twips(m_adminPage->width());
    const int h = twips(m_adminPage->height());
    treOutl->setVisible(tree);
    txtPreview->setVisible(pane);
    if (tree && pane) {
        const int treeHeight = h / 2 - 120;
        treOutl->setGeometry(px(60), px(60), px(w - 120), px(treeHeight));
        const int top = 60 + treeHeight + 60;
        txtPreview->setGeometry(px(50), px(top), px(w - 110), px(h - top - 60));
    } else if (tree) {
        treOutl->setGeometry(px(60), px(60), px(w - 120), px(h - 120));
    } else if (pane) {
        txtPreview->setGeometry(px(50), px(60), px(w - 110), px(h - 120));
    }
}

void frmMain::PositionForm(QWidget *form)
{
    // A maximized or minimized window can't be moved: the move is passed
    // over, and the window keeps its state (a move would restore it).
    if (form->isMaximized() || form->isMinimized())
        return;
    const os::ScreenGeometry geometry = os::screenGeometry(form);
    if (geometry.screen.isEmpty())
        return;
    const QSize window = form->frameGeometry().size();
    const QPoint place =
        app::centredPosition(geometry.screen.size() * kTwipsPerPixel, window * kTwipsPerPixel,
                             os::taskbarRect(geometry), kTwipsPerPixel, kTwipsPerPixel);
    form->move(geometry.screen.topLeft() + place / kTwipsPerPixel);
}

void frmMain::toggleView(app::Command entryCommand, app::Command buttonCommand, QWidget *view,
                         app::Command otherEntry)
{
    QAction *entry = action(entryCommand);
    QAction *button = action(buttonCommand);
    if (entry->isChecked() && !action(otherEntry)->isChecked()) {
        // The last view can't go.
        button->setChecked(true);
        QApplication::beep();
        return;
    }
    if (entry->isChecked()) {
        entry->setChecked(false);
        view->hide();
    } else {
        entry->setChecked(true);
        view->show();
        if (view == treOutl)
            treOutl->setFocus();
        treOutl_NodeClick(treOutl->selectedItem());
    }
    button->setChecked(entry->isChecked());
    Form_Resize();
}

void frmMain::mnuViewFolderTree_Click()
{
    toggleView(app::Command::ViewFolderTree, app::Command::ToolViewFolder, treOutl,
               app::Command::ViewPreview);
}

void frmMain::mnuViewPreview_Click()
{
    toggleView(app::Command::ViewPreview, app::Command::ToolViewPreview, txtPreview,
               app::Command::ViewFolderTree);
}

void frmMain::mnuViewToolbar_Click()
{
    QAction *entry = action(app::Command::ViewToolbar);
    entry->setChecked(!tbToolBar->isVisible());
    tbToolBar->setVisible(entry->isChecked());
    Form_Resize();
}

void frmMain::mnuViewStatusBar_Click()
{
    QAction *entry = action(app::Command::ViewStatusBar);
    entry->setChecked(!statusBar()->isVisible());
    statusBar()->setVisible(entry->isChecked());
    Form_Resize();
}

void frmMain::mnuFileExit_Click()
{
    close();
}

void frmMain::closeEvent(QCloseEvent *event)
{
    // Closing leaves the pane: an edit still pending is saved as leaving the
    // pane saves it, before anything is taken down. A save that fails keeps
    // the window open, and the edit pending in the pane.
    if (!m_unloaded && blnDirty && !SaveScript()) {
        blnDirty = true;
        event->ignore();
        return;
    }
    Form_QueryUnload();
    event->accept();
}

bool frmMain::Form_KeyDown(int keyCode, int shift)
{
    if (!(shift & 2))
        return false;
    switch (keyCode) {
    case 86: // Ctrl+V: nothing is pasted outside the pane
        return true;
    case 78:
        if (action(app::Command::FileNew)->isEnabled())
            mnuFileNew_Click();
        return true;
    case 79:
        if (action(app::Command::FileOpen)->isEnabled())
            action(app::Command::FileOpen)->trigger();
        return true;
    case 83:
        if (action(app::Command::FileSave)->isEnabled())
            mnuFileSave_Click();
        return true;
    default:
        return false;
    }
}
