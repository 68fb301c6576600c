#include "tools/sorrelin-driver/formreader.h"

#include "app/commandaction.h"
#include "catalogue/reportwindow.h"
#include "platform/controls/folderlists.h"
#include "platform/controls/ssdbgrid.h"
#include "platform/controls/sstree.h"
#include "platform/outlook/mailwindow.h"
#include "platform/ui/cancelbutton.h"
#include "scripts/scriptpane.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextEdit>

namespace driver {

namespace {

bool isFormName(const QString &name)
{
    return name.startsWith(QLatin1String("frm")) || name.startsWith(QLatin1String("ol")) ||
           name == QLatin1String("helpViewer");
}

bool isControlName(const QString &name)
{
    return !name.isEmpty() && !name.startsWith(QLatin1String("qt_")) && !name.endsWith(QLatin1String("Menu"));
}

/// Visible as the user would see it: the control and every parent shown.
bool shown(const QWidget *w)
{
    return w->isVisibleTo(w->window()) || w->isVisible();
}

QJsonValue checkValue(const QCheckBox *box)
{
    switch (box->checkState()) {
    case Qt::Checked:
        return 1;
    case Qt::PartiallyChecked:
        return 2;
    default:
        return 0;
    }
}

/// Lengths of a form as the program sets them: twips, 15 to a pixel.
void insertTwips(QJsonObject &o, std::initializer_list<std::pair<const char *, int>> lengths)
{
    for (const auto &[name, pixels] : lengths)
        o.insert(QString::fromLatin1(name), pixels * 15);
}

/// A control's place in twips: as the window set it where it still holds.
void insertGeometry(QJsonObject &c, const QWidget *w)
{
    const auto *report = qobject_cast<const catalogue::ReportWindow *>(w->window());
    const QRect set = report ? report->placedTwips(w) : QRect();
    if (!set.isNull() &&
        QRect(set.x() / 15, set.y() / 15, set.width() / 15, set.height() / 15) == w->geometry()) {
        c.insert(QStringLiteral("left"), set.x());
        c.insert(QStringLiteral("top"), set.y());
        c.insert(QStringLiteral("width"), set.width());
        c.insert(QStringLiteral("height"), set.height());
        return;
    }
    insertTwips(c, {{"left", w->x()}, {"top", w->y()}, {"width", w->width()}, {"height", w->height()}});
}

/// A grid as a script reads it: caption, columns, every row's cells as the
/// row strings gave them, the current and the selected rows, the fonts.
QJsonObject gridState(const controls::SSDBGrid &grid, QJsonObject c)
{
    QJsonArray columns;
    for (int col = 0; col < grid.columnCount(); ++col)
        columns.append(QJsonObject{{QStringLiteral("caption"), grid.columnCaption(col)},
                                   {QStringLiteral("width"), grid.columnWidthTwips(col)},
                                   {QStringLiteral("visible"), !grid.isColumnHidden(col)}});
    QJsonArray rows;
    for (int r = 0; r < grid.rowCount(); ++r)
        rows.append(QJsonArray::fromStringList(grid.rowCells(r)));
    QJsonArray selected;
    for (int r : grid.SelBookmarks())
        selected.append(r);
    c.insert(QStringLiteral("caption"), grid.caption());
    c.insert(QStringLiteral("columns"), columns);
    c.insert(QStringLiteral("rows"), rows);
    c.insert(QStringLiteral("row"), grid.Row());
    c.insert(QStringLiteral("selected"), selected);
    c.insert(QStringLiteral("font"), grid.fontSize());
    c.insert(QStringLiteral("headFont"), grid.headFontSize());
    return c;
}

QJsonObject describe(QObject *object)
{
    QJsonObject c;
    if (auto *a = qobject_cast<QAction *>(object)) {
        if (a->objectName().startsWith(QLatin1String("tbToolBar."))) {
            c.insert(QStringLiteral("enabled"), a->isEnabled());
            c.insert(QStringLiteral("visible"), a->isVisible());
            c.insert(QStringLiteral("pressed"), a->isChecked());
            c.insert(QStringLiteral("tooltip"), a->toolTip());
            const auto *button = qobject_cast<app::CommandAction *>(a);
            c.insert(QStringLiteral("image"), button ? button->imageKey() : QString());
        } else {
            const QString text = a->text();
            c.insert(QStringLiteral("caption"),
                     a->isSeparator() ? QStringLiteral("-") : text.section(QLatin1Char('\t'), 0, 0));
            if (text.contains(QLatin1Char('\t')))
                c.insert(QStringLiteral("shortcut"), text.section(QLatin1Char('\t'), 1));
            const auto *command = qobject_cast<app::CommandAction *>(a);
            const std::optional<bool> set = command ? command->commandEnabled() : std::nullopt;
            c.insert(QStringLiteral("enabled"), set && !a->isVisible() ? *set : a->isEnabled());
            c.insert(QStringLiteral("visible"), a->isVisible());
            c.insert(QStringLiteral("checked"), a->isChecked());
            if (!a->shortcut().isEmpty())
                c.insert(QStringLiteral("shortcut"), a->shortcut().toString());
        }
        return c;
    }
    auto *w = qobject_cast<QWidget *>(object);
    if (!w)
        return c;
    c.insert(QStringLiteral("enabled"), w->isEnabled());
    c.insert(QStringLiteral("visible"), shown(w));
    insertGeometry(c, w);
    if (auto *tree = qobject_cast<controls::SSTree *>(w)) {
        c.insert(QStringLiteral("nodes"), FormReader::nodes(tree));
    } else if (auto *box = qobject_cast<QCheckBox *>(w)) {
        c.insert(QStringLiteral("caption"), box->text());
        c.insert(QStringLiteral("value"), checkValue(box));
    } else if (auto *option = qobject_cast<QRadioButton *>(w)) {
        c.insert(QStringLiteral("caption"), option->text());
        c.insert(QStringLiteral("value"), option->isChecked());
    } else if (auto *button = qobject_cast<QPushButton *>(w)) {
        c.insert(QStringLiteral("caption"), button->text());
        c.insert(QStringLiteral("default"), button->isDefault());
        const auto *owner = dynamic_cast<const ui::CancelButton *>(button->window());
        c.insert(QStringLiteral("cancel"), owner && owner->cancelButton() == button);
    } else if (auto *label = qobject_cast<QLabel *>(w)) {
        c.insert(QStringLiteral("caption"), label->text());
    } else if (auto *group = qobject_cast<QGroupBox *>(w)) {
        c.insert(QStringLiteral("caption"), group->title());
    } else if (auto *edit = qobject_cast<QLineEdit *>(w)) {
        c.insert(QStringLiteral("text"), edit->text());
        c.insert(QStringLiteral("locked"), edit->isReadOnly());
        if (!edit->toolTip().isEmpty())
            c.insert(QStringLiteral("tooltip"), edit->toolTip());
    } else if (auto *plain = qobject_cast<QPlainTextEdit *>(w)) {
        // The pane and the mail's body give back the line ends they were set with.
        QString text = plain->toPlainText();
        if (const auto *pane = qobject_cast<scripts::ScriptPane *>(plain))
            text = pane->text();
        else if (const auto *mail = qobject_cast<outlook::MailWindow *>(plain->window()))
            text = mail->body();
        c.insert(QStringLiteral("text"), text);
        c.insert(QStringLiteral("locked"), plain->isReadOnly());
        c.insert(QStringLiteral("font"), plain->font().family());
        c.insert(QStringLiteral("size"), plain->font().pointSizeF());
        c.insert(QStringLiteral("bold"), plain->font().bold());
        c.insert(QStringLiteral("italic"), plain->font().italic());
    } else if (auto *rich = qobject_cast<QTextEdit *>(w)) {
        c.insert(QStringLiteral("text"), rich->toPlainText());
    } else if (auto *combo = qobject_cast<QComboBox *>(w)) {
        c.insert(QStringLiteral("text"), combo->currentText());
        QJsonArray items;
        for (int i = 0; i < combo->count(); ++i)
            items.append(combo->itemText(i));
        c.insert(QStringLiteral("items"), items);
    } else if (auto *list = qobject_cast<QListWidget *>(w)) {
        // A folder list's text is its folder.
        const auto *folders = qobject_cast<const controls::DirListBox *>(list);
        c.insert(QStringLiteral("text"), folders               ? folders->Path()
                                         : list->currentItem() ? list->currentItem()->text()
                                                               : QString());
        QJsonArray items;
        for (int i = 0; i < list->count(); ++i)
            items.append(list->item(i)->text());
        c.insert(QStringLiteral("items"), items);
    } else if (auto *spin = qobject_cast<QSpinBox *>(w)) {
        c.insert(QStringLiteral("value"), spin->value());
    } else if (auto *tabs = qobject_cast<QTabWidget *>(w)) {
        c.insert(QStringLiteral("tab"), tabs->currentIndex());
        QJsonArray captions;
        for (int i = 0; i < tabs->count(); ++i)
            captions.append(tabs->tabText(i));
        c.insert(QStringLiteral("tabs"), captions);
    } else if (auto *ssGrid = qobject_cast<controls::SSDBGrid *>(w)) {
        c = gridState(*ssGrid, c);
    } else if (auto *grid = qobject_cast<QTableWidget *>(w)) {
        QJsonArray rows;
        for (int r = 0; r < grid->rowCount(); ++r) {
            QJsonArray cells;
            for (int col = 0; col < grid->columnCount(); ++col)
                cells.append(grid->item(r, col) ? grid->item(r, col)->text() : QString());
            rows.append(cells);
        }
        c.insert(QStringLiteral("rows"), rows);
        c.insert(QStringLiteral("row"), grid->currentRow());
    }
    return c;
}

/// Every node below `parent` in the order the tree shows them, as a user
/// reads them, from the tree's nodes: no item is made for them.
void collectNodes(const controls::SSTree &tree, controls::SSTree::Id parent, const QString &parentPath,
                  QJsonArray &out)
{
    for (const controls::SSTree::Id node : tree.nodeChildren(parent)) {
        const QString text = tree.nodeText(node);
        const QString path =
            parent == controls::SSTree::kNone ? QString() : parentPath + QLatin1Char('\\') + text;
        QJsonObject n;
        n.insert(QStringLiteral("path"), path);
        n.insert(QStringLiteral("key"), tree.nodeKey(node));
        n.insert(QStringLiteral("tag"), tree.nodeTag(node));
        n.insert(QStringLiteral("text"), text);
        n.insert(QStringLiteral("image"), tree.nodeImage(node));
        n.insert(QStringLiteral("selected"), tree.nodeSelected(node));
        n.insert(QStringLiteral("expanded"), tree.nodeExpanded(node));
        out.append(n);
        collectNodes(tree, node, path, out);
    }
}

/// The first node, in the tree's order, whose path below its top node is
/// `path`; only branches on the way to it are read.
controls::SSTree::Id findPath(const controls::SSTree &tree, controls::SSTree::Id parent,
                              const QString &parentPath, const QString &path)
{
    for (const controls::SSTree::Id node : tree.nodeChildren(parent)) {
        const QString own = parent == controls::SSTree::kNone
                                ? QString()
                                : parentPath + QLatin1Char('\\') + tree.nodeText(node);
        if (own == path)
            return node;
        if (own.isEmpty() || (path.startsWith(own) && path.at(own.size()) == QLatin1Char('\\'))) {
            const controls::SSTree::Id found = findPath(tree, node, own, path);
            if (found != controls::SSTree::kNone)
                return found;
        }
    }
    return controls::SSTree::kNone;
}

} // namespace

QJsonArray FormReader::nodes(controls::SSTree *tree)
{
    QJsonArray out;
    collectNodes(*tree, controls::SSTree::kNone, QString(), out);
    return out;
}

QWidget *FormReader::findForm(const QString &name)
{
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->objectName() == name && w->isVisible())
            return w;
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->objectName() == name)
            return w;
    return nullptr;
}

QObject *FormReader::findControl(QWidget *form, const QString &name)
{
    if (!form)
        return nullptr;
    const QList<QObject *> all = form->findChildren<QObject *>(name);
    for (QObject *o : all)
        if (qobject_cast<QWidget *>(o) || qobject_cast<QAction *>(o))
            return o;
    return nullptr;
}

QTreeWidgetItem *FormReader::findNode(controls::SSTree *tree, const QString &path)
{
    if (!tree)
        return nullptr;
    if (path == QLatin1String("root"))
        return tree->node(QStringLiteral("root"));
    if (path.startsWith(QLatin1String("key:")))
        return tree->node(path.mid(4));
    return tree->item(findPath(*tree, controls::SSTree::kNone, QString(), path));
}

QJsonArray FormReader::clipped(QWidget *form)
{
    QJsonArray names;
    const QRect window = form->rect();
    for (QWidget *w : form->findChildren<QWidget *>()) {
        if (!isControlName(w->objectName()) || w->window() != form || !w->isVisibleTo(form))
            continue;
        // A label of one line narrower than its text shows the text cut.
        if (const auto *label = qobject_cast<QLabel *>(w); label && !label->wordWrap() &&
                                                           !label->text().isEmpty() &&
                                                           label->sizeHint().width() > label->width()) {
            names.append(w->objectName());
            continue;
        }
        // Whole only when no container above it, the window included, cuts
        // any of it off.
        const QRect own(w->mapTo(form, QPoint(0, 0)), w->size());
        for (QWidget *p = w->parentWidget(); p; p = p->parentWidget()) {
            const QRect room = p == form ? window : QRect(p->mapTo(form, QPoint(0, 0)), p->size());
            if (!room.contains(own)) {
                names.append(w->objectName());
                break;
            }
            if (p == form)
                break;
        }
    }
    return names;
}

QJsonObject FormReader::form(QWidget *form)
{
    QJsonObject f;
    f.insert(QStringLiteral("caption"), form->windowTitle());
    f.insert(QStringLiteral("visible"), form->isVisible());
    f.insert(QStringLiteral("modal"), form->isModal());
    f.insert(QStringLiteral("windowState"), form->isMinimized()   ? QStringLiteral("minimized")
                                            : form->isMaximized() ? QStringLiteral("maximized")
                                                                  : QStringLiteral("normal"));
    // The control that has the window's focus, or would have it again when
    // the window is active.
    QWidget *focus = form->focusWidget();
    while (focus && focus != form && !isControlName(focus->objectName()))
        focus = focus->parentWidget();
    f.insert(QStringLiteral("focus"), focus && focus != form ? focus->objectName() : QString());
    insertTwips(f, {{"width", form->frameGeometry().width()},
                    {"height", form->frameGeometry().height()},
                    {"scaleWidth", form->width()},
                    {"scaleHeight", form->height()}});
    QJsonObject controls;
    for (QObject *o : form->findChildren<QObject *>()) {
        const QString name = o->objectName();
        if (!isControlName(name))
            continue;
        if (!qobject_cast<QWidget *>(o) && !qobject_cast<QAction *>(o))
            continue;
        if (auto *w = qobject_cast<QWidget *>(o); w && w->window() != form)
            continue; // a control of another window parented here
        if (!controls.contains(name))
            controls.insert(name, describe(o));
    }
    f.insert(QStringLiteral("controls"), controls);
    f.insert(QStringLiteral("clipped"), clipped(form));
    return f;
}

QJsonObject FormReader::popup(QMenu *menu)
{
    QJsonObject entries;
    for (QAction *a : menu->actions())
        if (isControlName(a->objectName()))
            entries.insert(a->objectName(), describe(a));
    return QJsonObject{{QStringLiteral("caption"), menu->title()},
                       {QStringLiteral("visible"), menu->isVisible()},
                       {QStringLiteral("modal"), false},
                       {QStringLiteral("controls"), entries}};
}

QJsonObject FormReader::forms()
{
    QJsonObject all;
    for (QWidget *w : QApplication::topLevelWidgets()) {
        const QString name = w->objectName();
        if (!isFormName(name) || name == QLatin1String("frmSplash"))
            continue;
        if (name.startsWith(QLatin1String("ol")) && !w->isVisible())
            continue;
        all.insert(name, form(w));
    }
    if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget()))
        all.insert(QStringLiteral("popup"), popup(menu));
    return all;
}

} // namespace driver
