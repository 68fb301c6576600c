// What a user can reach and how: the active window, modal forms in front
// of others, and menus opened before their entries are chosen.
#include "tools/sorrelin-driver/reach.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QWindow>

#include <stdexcept>

namespace driver {

namespace {

/// The menus from one of `entries` down to the one that holds `entry`,
/// outermost first; empty when none holds it.
QList<QMenu *> menuPath(const QList<QAction *> &entries, const QAction *entry)
{
    for (QAction *a : entries) {
        QMenu *menu = a->menu();
        if (!menu)
            continue;
        if (menu->actions().contains(const_cast<QAction *>(entry)))
            return {menu};
        if (QList<QMenu *> below = menuPath(menu->actions(), entry); !below.isEmpty()) {
            below.prepend(menu);
            return below;
        }
    }
    return {};
}

void closeMenus()
{
    while (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
}

[[noreturn]] void refuse(const QString &why)
{
    throw std::runtime_error(why.toStdString());
}

} // namespace

void activate(QWidget *widget)
{
    QWidget *window = widget->window();
    if (QApplication::activeWindow() == window && QGuiApplication::focusWindow() == window->windowHandle())
        return;
    window->activateWindow();
    // The window system answers through the event loop; a splash window
    // that was active, or a main window shown while another closed, would
    // otherwise keep the focus events of the next clicks from happening.
    QCoreApplication::processEvents();
    if (QApplication::activeWindow() != window)
        QApplication::setActiveWindow(window);
}

QString modalInFront(const QWidget *widget)
{
    const QWidget *modal = QApplication::activeModalWidget();
    if (!modal || !widget)
        return QString();
    // A window that stands beside the modal one (its transient) is not behind it.
    if (modal->windowHandle() && widget->window()->windowHandle() &&
        modal->windowHandle()->isAncestorOf(widget->window()->windowHandle(), QWindow::IncludeTransients))
        return QString();
    for (const QWidget *w = widget->window(); w;
         w = w->parentWidget() ? w->parentWidget()->window() : nullptr)
        if (w == modal)
            return QString();
    return modal->objectName();
}

QMenu *openMenu()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

QString entryRefusal(const QAction *entry)
{
    if (!entry->isVisible())
        return QStringLiteral("%1 is hidden").arg(entry->objectName());
    if (!entry->isEnabled() || entry->isSeparator())
        return QStringLiteral("%1 is disabled").arg(entry->objectName());
    return QString();
}

void chooseOpenMenuEntry(QMenu *menu, QAction *entry)
{
    if (!menu->actions().contains(entry))
        refuse(QStringLiteral("%1 is not in the open menu").arg(entry->objectName()));
    if (const QString why = entryRefusal(entry); !why.isEmpty())
        refuse(why);
    menu->setActiveAction(entry);
    QTest::keyClick(menu, Qt::Key_Return);
}

void chooseMenuEntry(QWidget *window, QAction *entry)
{
    auto *bar = window->findChild<QMenuBar *>();
    const QList<QMenu *> chain = bar ? menuPath(bar->actions(), entry) : QList<QMenu *>();
    if (chain.isEmpty())
        refuse(QStringLiteral("%1 is in no menu of %2").arg(entry->objectName(), window->objectName()));
    for (QMenu *m : chain)
        if (const QString why = entryRefusal(m->menuAction()); !why.isEmpty())
            refuse(why);
    activate(window);
    // Each menu takes the activation from the window system while it is
    // open, as on a desktop; the window keeps its focus.
    bar->setActiveAction(chain.first()->menuAction());
    QCoreApplication::processEvents();
    for (qsizetype i = 1; i < chain.size(); ++i) {
        chain.at(i - 1)->setActiveAction(chain.at(i)->menuAction());
        QTest::keyClick(chain.at(i - 1), Qt::Key_Right);
        QCoreApplication::processEvents();
    }
    // What the menus' opening handlers left decides; a refused entry leaves
    // the menus closed again, as the user found them.
    if (const QString why = entryRefusal(entry); !why.isEmpty()) {
        closeMenus();
        refuse(why);
    }
    chooseOpenMenuEntry(chain.last(), entry);
}

} // namespace driver
