// The commands that act as a user would: each runs from the event loop, so
// that a modal form it opens doesn't stop the driver.
#include "app/frmmain.h"
#include "platform/com/escapes.h"
#include "platform/controls/folderlists.h"
#include "platform/controls/ssdbgrid.h"
#include "platform/controls/sstree.h"
#include "tools/sorrelin-driver/choose.h"
#include "tools/sorrelin-driver/driver.h"
#include "tools/sorrelin-driver/formreader.h"
#include "tools/sorrelin-driver/keys.h"
#include "tools/sorrelin-driver/reach.h"
#include "tools/sorrelin-driver/words.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QStyle>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

namespace driver {

bool Driver::unreachable(const QWidget *widget)
{
    if (openMenu()) {
        fail(QStringLiteral("a menu is open"));
        return true;
    }
    if (const QString modal = modalInFront(widget); !modal.isEmpty()) {
        fail(QStringLiteral("%1 is behind the modal form %2").arg(widget->window()->objectName(), modal));
        return true;
    }
    if (!widget->isVisible()) {
        fail(QStringLiteral("%1 is hidden").arg(widget->objectName()));
        return true;
    }
    if (!widget->isEnabled()) {
        fail(QStringLiteral("%1 is disabled").arg(widget->objectName()));
        return true;
    }
    return false;
}

namespace {

/// The window whose menu bar or toolbar holds `a`.
QWidget *windowOf(const QAction *a)
{
    for (QObject *o = a->parent(); o; o = o->parent())
        if (auto *w = qobject_cast<QWidget *>(o))
            return w->window();
    return nullptr;
}

/// A right-button click on a node where it is drawn.
void rightClick(controls::SSTree *tree, QTreeWidgetItem *node)
{
    tree->scrollToItem(node);
    const QPoint at = tree->visualItemRect(node).center();
    QTest::mousePress(tree->viewport(), Qt::RightButton, {}, at);
    QTest::mouseRelease(tree->viewport(), Qt::RightButton, {}, at);
}

/// Where a click on a button lands: on its face, or on the box or circle
/// of a check box or option button, whose text may not fill the control.
QPoint buttonPoint(const QAbstractButton *button)
{
    if (qobject_cast<const QCheckBox *>(button) || qobject_cast<const QRadioButton *>(button)) {
        const int indicator = button->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, button);
        const int x = indicator / 2 + 1;
        return QPoint(button->isRightToLeft() ? button->width() - x : x, button->height() / 2);
    }
    return button->rect().center();
}

/// A double click of the left button at `at` in `area`, as the window
/// system sends it: press, release, double click, release.
void doubleClick(QWidget *area, QPoint at)
{
    QTest::mousePress(area, Qt::LeftButton, {}, at);
    QTest::mouseRelease(area, Qt::LeftButton, {}, at);
    QTest::mouseDClick(area, Qt::LeftButton, {}, at);
    QTest::mouseRelease(area, Qt::LeftButton, {}, at);
}

/// The point of a grid that a double click on `row` hits: the middle of its
/// first shown cell; below the last row for -1, or null where the rows
/// leave no room.
QPoint gridPoint(const QTableWidget *grid, int row)
{
    int column = 0;
    while (column < grid->columnCount() && grid->isColumnHidden(column))
        ++column;
    if (row >= 0)
        return grid->visualRect(grid->model()->index(row, column)).center();
    const int last = grid->rowCount() - 1;
    const int below = last < 0 ? 0 : grid->visualRect(grid->model()->index(last, column)).bottom() + 1;
    if (below + 2 >= grid->viewport()->height())
        return QPoint();
    return QPoint(qMax(grid->columnViewportPosition(column), 0) + 5,
                  (below + grid->viewport()->height()) / 2);
}

} // namespace

void Driver::start(const QString &)
{
    if (m_started && !m_ended)
        return fail(QStringLiteral("the program is running"));
    m_started = true;
    m_ended = false;
    m_program.reset();
    m_program = std::make_unique<app::Program>(m_prompter);
    act([this] {
        if (!app::Main(*m_program)) {
            m_program->gfrmMain.clear();
            m_ended = true;
        }
    });
}

void Driver::quit(const QString &)
{
    QWidget *main = mainForm();
    if (!main)
        return fail(QStringLiteral("the program is not running"));
    if (unreachable(main))
        return;
    // The window may stay open, as when a pending edit can't be saved.
    act([this, main] { m_ended = main->close(); });
}

void Driver::click(const QString &rest)
{
    clickTreeNode(rest.trimmed(), false);
}

void Driver::rclick(const QString &rest)
{
    clickTreeNode(rest.trimmed(), true);
}

void Driver::clickTreeNode(const QString &path, bool right)
{
    auto *main = qobject_cast<frmMain *>(mainForm());
    QTreeWidgetItem *node = main ? FormReader::findNode(main->treOutl, path) : nullptr;
    if (!node)
        return fail(QStringLiteral("no node %1").arg(path));
    if (unreachable(main->treOutl))
        return;
    // A right click opens the context menu, which takes the queued answers.
    act(
        [main, node, right] {
            activate(main);
            if (right)
                rightClick(main->treOutl, node);
            else
                main->treOutl->clickNode(node);
        },
        right);
}

void Driver::select(const QString &rest)
{
    const QStringList w = words(rest, 2);
    QWidget *f = form(w.value(0));
    auto *tree = f ? f->findChild<controls::SSTree *>(QStringLiteral("treOutl")) : nullptr;
    if (!tree)
        return fail(QStringLiteral("no tree in %1").arg(w.value(0)));
    if (unreachable(tree))
        return;
    QList<QTreeWidgetItem *> nodes;
    for (const QString &path : w.value(1).split(QLatin1Char('|'))) {
        QTreeWidgetItem *node = FormReader::findNode(tree, path.trimmed());
        if (!node)
            return fail(QStringLiteral("no node %1").arg(path.trimmed()));
        nodes << node;
    }
    act([tree, nodes] {
        activate(tree);
        for (int i = 0; i < nodes.size(); ++i)
            tree->clickNode(nodes.at(i), i > 0);
    });
}

void Driver::menu(const QString &rest)
{
    const QString name = rest.trimmed();
    if (QMenu *open = openMenu()) {
        QAction *entry = nullptr;
        for (QAction *a : open->actions())
            if (a->objectName() == name)
                entry = a;
        if (!entry)
            return fail(QStringLiteral("%1 is not in the open menu").arg(name));
        return act([open, entry] { chooseOpenMenuEntry(open, entry); });
    }
    QWidget *main = mainForm();
    auto *entry = main ? main->findChild<QAction *>(name) : nullptr;
    for (QWidget *w : QApplication::topLevelWidgets())
        if (!entry && w->isVisible())
            entry = w->findChild<QAction *>(name);
    QWidget *window = entry ? windowOf(entry) : nullptr;
    if (!window)
        return fail(QStringLiteral("no menu %1").arg(name));
    if (unreachable(window))
        return;
    act([window, entry] { chooseMenuEntry(window, entry); });
}

void Driver::toolbar(const QString &rest)
{
    auto *main = qobject_cast<frmMain *>(mainForm());
    const QString key = rest.trimmed();
    auto *button = main ? main->findChild<QAction *>(QStringLiteral("tbToolBar.") + key) : nullptr;
    auto *bar = main ? main->findChild<QToolBar *>(QStringLiteral("tbToolBar")) : nullptr;
    if (!button || !bar)
        return fail(QStringLiteral("no toolbar button %1").arg(key));
    if (unreachable(main))
        return;
    if (!bar->isVisible())
        return fail(QStringLiteral("the toolbar is hidden"));
    if (!button->isEnabled() || !button->isVisible())
        return fail(QStringLiteral("%1 is disabled or hidden").arg(key));
    act([main, bar, button] {
        activate(main);
        if (auto *b = qobject_cast<QToolButton *>(bar->widgetForAction(button)))
            b->click();
        else
            button->trigger();
    });
}

void Driver::tab(const QString &rest)
{
    const QStringList w = words(rest, 3);
    auto *tabs = qobject_cast<QTabWidget *>(FormReader::findControl(form(w.value(0)), w.value(1)));
    if (!tabs)
        return fail(QStringLiteral("no tab control %1").arg(w.value(1)));
    if (unreachable(tabs))
        return;
    const int index = w.value(2).toInt();
    act([tabs, index] {
        activate(tabs);
        tabs->setCurrentIndex(index);
    });
}

void Driver::press(const QString &rest)
{
    const QStringList w = words(rest, 2);
    QString control = w.value(1).trimmed();
    int step = 0;
    if (control.endsWith(QLatin1String(".Up")) || control.endsWith(QLatin1String(".Down"))) {
        step = control.endsWith(QLatin1String(".Up")) ? 1 : -1;
        control = control.left(control.lastIndexOf(QLatin1Char('.')));
    }
    QWidget *f = form(w.value(0));
    QObject *o = FormReader::findControl(f, control);
    auto *widget = qobject_cast<QWidget *>(o);
    if (!o)
        return fail(QStringLiteral("no control %1 in %2").arg(control, w.value(0)));
    if (unreachable(widget ? widget : f))
        return;
    std::function<void()> press;
    if (step != 0) {
        if (auto *spin = qobject_cast<QAbstractSpinBox *>(o))
            press = [spin, step] { spin->stepBy(step); };
        else
            press = [o, step] { QMetaObject::invokeMethod(o, step > 0 ? "stepUp" : "stepDown"); };
    } else if (auto *button = qobject_cast<QAbstractButton *>(o)) {
        // The mouse's press gives the button the focus, as the window
        // system does, before its release clicks it.
        press = [button] { QTest::mouseClick(button, Qt::LeftButton, {}, buttonPoint(button)); };
    } else if (auto *a = qobject_cast<QAction *>(o)) {
        press = [a] { a->trigger(); };
    }
    if (!press)
        return fail(QStringLiteral("%1 can't be pressed").arg(control));
    act([f, press] {
        activate(f);
        press();
    });
}

void Driver::key(const QString &rest)
{
    const QStringList w = words(rest, 3);
    auto *widget = qobject_cast<QWidget *>(FormReader::findControl(form(w.value(0)), w.value(1)));
    if (!widget)
        return fail(QStringLiteral("no control %1 in %2").arg(w.value(1), w.value(0)));
    const KeyStroke key = parseKey(w.value(2).trimmed());
    if (key.key == 0)
        return fail(QStringLiteral("unknown key %1").arg(w.value(2)));
    if (unreachable(widget))
        return;
    act([widget, key] {
        activate(widget);
        widget->setFocus(Qt::OtherFocusReason);
        if (key.text.isEmpty())
            QTest::keyClick(widget, static_cast<Qt::Key>(key.key), key.modifiers);
        else
            QTest::sendKeyEvent(QTest::Click, widget, static_cast<Qt::Key>(key.key), key.text, key.modifiers);
    });
}

void Driver::type(const QString &rest)
{
    const QStringList w = words(rest, 3);
    QObject *o = FormReader::findControl(form(w.value(0)), w.value(1));
    const QString text = com::unescapeLine(w.value(2));
    if (auto *control = qobject_cast<QWidget *>(o); control && unreachable(control))
        return;
    if (auto *pane = qobject_cast<QPlainTextEdit *>(o)) {
        if (pane->isReadOnly())
            return fail(QStringLiteral("%1 is locked").arg(w.value(1)));
        return act([pane, text] {
            activate(pane);
            pane->setFocus(Qt::OtherFocusReason);
            QString t = text;
            t.replace(QLatin1String("\r\n"), QLatin1String("\n"));
            t.replace(QLatin1Char('\r'), QLatin1Char('\n'));
            pane->selectAll();
            pane->insertPlainText(t);
        });
    }
    if (auto *edit = qobject_cast<QLineEdit *>(o)) {
        if (edit->isReadOnly())
            return fail(QStringLiteral("%1 is locked").arg(w.value(1)));
        return act([edit, text] {
            activate(edit);
            edit->setFocus(Qt::OtherFocusReason);
            edit->setText(text);
        });
    }
    if (auto *spin = qobject_cast<QSpinBox *>(o))
        return act([spin, text] {
            activate(spin);
            spin->setValue(text.toInt());
        });
    // A folder list walks to the folder typed.
    if (auto *folders = qobject_cast<controls::DirListBox *>(o))
        return act([folders, text] { folders->setPath(text); });
    fail(QStringLiteral("no text control %1 in %2").arg(w.value(1), w.value(0)));
}

void Driver::choose(const QString &rest)
{
    const QStringList w = words(rest, 3);
    QObject *control = FormReader::findControl(form(w.value(0)), w.value(1));
    if (!control)
        return fail(QStringLiteral("no control %1 in %2").arg(w.value(1), w.value(0)));
    QString error;
    std::function<void()> pick = chooseEntry(control, w.value(2).trimmed(), error);
    if (!pick)
        return fail(error);
    act(std::move(pick));
}

void Driver::grid(const QString &rest)
{
    const QStringList w = words(rest, 3);
    QWidget *f = form(w.value(0));
    QTableWidget *grid = nullptr;
    for (auto *g : f ? f->findChildren<QTableWidget *>() : QList<QTableWidget *>())
        if (g->isVisible() || !grid)
            grid = g;
    if (!grid)
        return fail(QStringLiteral("no grid in %1").arg(w.value(0)));
    const int row = w.value(1).toInt();
    if (auto *ssGrid = qobject_cast<controls::SSDBGrid *>(grid))
        return act([ssGrid, row] { ssGrid->setRow(row); });
    act([grid, row] {
        grid->setCurrentCell(row, 0);
        grid->selectRow(row);
    });
}

void Driver::dblclick(const QString &rest)
{
    const QStringList w = words(rest, 3);
    QObject *control = FormReader::findControl(form(w.value(0)), w.value(1));
    if (auto *tree = qobject_cast<controls::SSTree *>(control))
        return act([tree] { Q_EMIT tree->DblClick(); });
    auto *grid = qobject_cast<QTableWidget *>(control);
    if (!grid)
        return fail(QStringLiteral("no grid or tree %1 in %2").arg(w.value(1), w.value(0)));
    if (unreachable(grid))
        return;
    // On the current row, or below the last row when there is none or
    // "below" is asked for.
    const bool below = w.value(2).trimmed() == QLatin1String("below");
    const QPoint at = gridPoint(grid, below ? -1 : grid->currentRow());
    if (at.isNull())
        return fail(QStringLiteral("%1 has no room below its last row").arg(w.value(1)));
    act([grid, at] {
        activate(grid);
        doubleClick(grid->viewport(), at);
    });
}

void Driver::resize(const QString &rest)
{
    const QStringList w = words(rest, 3);
    QWidget *f = form(w.value(0));
    if (!f)
        return fail(QStringLiteral("no form %1").arg(w.value(0)));
    // Outer size in twips, as a drag of the border sets it.
    const QSize frame = f->frameGeometry().size() - f->size();
    const QSize size(w.value(1).toInt() / 15 - frame.width(), w.value(2).toInt() / 15 - frame.height());
    act([f, size] { f->resize(size); });
}

void Driver::maximize(const QString &rest)
{
    QWidget *f = form(rest.trimmed());
    if (!f)
        return fail(QStringLiteral("no form %1").arg(rest.trimmed()));
    if (unreachable(f))
        return;
    // As the title bar's maximize button: the window system sets the state.
    act([f] { f->setWindowState((f->windowState() & ~Qt::WindowMinimized) | Qt::WindowMaximized); });
}

void Driver::close(const QString &rest)
{
    // The open menu closes as Esc closes it.
    if (QMenu *open = openMenu(); open && rest.trimmed() == QLatin1String("popup"))
        return act([open] { QTest::keyClick(open, Qt::Key_Escape); });
    QWidget *f = form(rest.trimmed());
    if (!f)
        return fail(QStringLiteral("no form %1").arg(rest.trimmed()));
    if (unreachable(f))
        return;
    act([f] { f->close(); });
}

} // namespace driver
