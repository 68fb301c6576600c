#pragma once

#include <QString>

class QAction;
class QMenu;
class QWidget;

namespace driver {

/// What a user's click on a window does before it reaches a control: the
/// window system makes that window the active one, so that focus changes
/// inside it raise their events (a control losing the focus to the clicked
/// one runs its LostFocus handler).
void activate(QWidget *widget);

/// Why a user can't reach `widget`: the name of the modal form in front of
/// its window, or an empty text when nothing is in the way.
QString modalInFront(const QWidget *widget);

/// The context menu or menu that is open, or null.
QMenu *openMenu();

/// Chooses a menu entry as a user does: opens the menus that hold it, from
/// the menu bar of its window down (each menu's opening handler runs), and
/// picks the entry with the keyboard. An entry that is disabled or hidden
/// once its menu is open isn't chosen: the menus close again, and a
/// std::runtime_error says why.
void chooseMenuEntry(QWidget *window, QAction *entry);

/// Chooses an entry of the menu that is open; one that is not in it, or is
/// disabled or hidden, is refused with a std::runtime_error and the menu
/// stays open.
void chooseOpenMenuEntry(QMenu *menu, QAction *entry);

/// Why `entry` can't be chosen as it stands, or an empty text.
QString entryRefusal(const QAction *entry);

} // namespace driver
