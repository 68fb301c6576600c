#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QTreeWidgetItem>
#include <QWidget>

class QMenu;

namespace controls {
class SSTree;
}

namespace driver {

/// Describes the program's windows the way a script reads them: every
/// loaded form with its named controls, and the main tree's nodes.
class FormReader {
public:
    /// The loaded forms, by name; an open menu is the form "popup".
    static QJsonObject forms();
    /// One form and its controls.
    static QJsonObject form(QWidget *form);
    /// The open menu as a form, its entries as controls.
    static QJsonObject popup(QMenu *menu);
    /// The names of a form's visible controls that the window, or a
    /// container inside it, cuts off in part or whole.
    static QJsonArray clipped(QWidget *form);
    /// The nodes of a tree in display order.
    static QJsonArray nodes(controls::SSTree *tree);

    /// A loaded form by its name, or null.
    static QWidget *findForm(const QString &name);
    /// A named control of a form (widget or action), or null.
    static QObject *findControl(QWidget *form, const QString &name);
    /// A node of a tree by its path below the root ("\Store\Folder"),
    /// "root", or "key:KEY".
    static QTreeWidgetItem *findNode(controls::SSTree *tree, const QString &path);
};

} // namespace driver
