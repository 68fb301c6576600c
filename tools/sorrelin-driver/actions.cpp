// The commands that act as a user would: each runs from the event loop, so
// that a modal form it opens doesn't stop the driver.
#include "app/frmmain.h"
#include "platform/com/escapes.h"
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
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

namespace driver {

bool Driver::failed(const QString &error)
{
    fail(error);
    return true;
}

bool Driver::acted(std::function<void()> action, bool menuAnswers)
{
    act(std::move(action), menuAnswers);
    return true;
}

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

} // namespace

bool Driver::userAction(const QString &command, const QString &rest)
{
    if (command == QLatin1String("start")) {
        if (m_started && !m_ended)
            return failed(QStringLiteral("the program is running"));
        m_started = true;
        m_ended = false;
        m_program.reset();
        m_program = std::make_unique<app::Program>(m_prompter);
        return acted([this] {
            if (!app::Main(*m_program)) {
                m_program->gfrmMain.clear();
                m_ended = true;
            }
        });
    }
    if (command == QLatin1String("quit")) {
        QWidget *main = mainForm();
        if (!main)
            return failed(QStringLiteral("the program is not running"));
        if (unreachable(main))
            return true;
        // The window may stay open, as when a pending edit can't be saved.
        return acted([this, main] { m_ended = main->close(); });
    }
    if (command == QLatin1String("click") || command == QLatin1String("rclick")) {
        auto *main = qobject_cast<frmMain *>(mainForm());
        QTreeWidgetItem *node = main ? FormReader::findNode(main->treOutl, rest.trimmed()) : nullptr;
        if (!node)
            return failed(QStringLiteral("no node %1").arg(rest.trimmed()));
        if (unreachable(main->treOutl))
            return true;
        if (command == QLatin1String("rclick"))
            return acted(
                [main, node] {
                    activate(main);
                    rightClick(main->treOutl, node);
                },
                true);
        return acted([main, node] {
            activate(main);
            main->treOutl->clickNode(node);
        });
    }
    if (command == QLatin1String("select")) {
        const QStringList w = words(rest, 2);
        QWidget *f = form(w.value(0));
        auto *tree = f ? f->findChild<controls::SSTree *>(QStringLiteral("treOutl")) : nullptr;
        if (!tree)
            return failed(QStringLiteral("no tree in %1").arg(w.value(0)));
        if (unreachable(tree))
            return true;
        QList<QTreeWidgetItem *> nodes;
        for (const QString &path : w.value(1).split(QLatin1Char('|'))) {
            QTreeWidgetItem *node = FormReader::findNode(tree, path.trimmed());
            if (!node)
                return failed(QStringLiteral("no node %1").arg(path.trimmed()));
            nodes << node;
        }
        return acted([tree, nodes] {
            activate(tree);
            for (int i = 0; i < nodes.size(); ++i)
                tree->clickNode(nodes.at(i), i > 0);
        });
    }
    if (command == QLatin1String("menu")) {
        const QString name = rest.trimmed();
        if (QMenu *open = openMenu()) {
            QAction *entry = nullptr;
            for (QAction *a : open->actions())
                if (a->objectName() == name)
                    entry = a;
            if (!entry)
                return failed(QStringLiteral("%1 is not in the open menu").arg(name));
            return acted([open, entry] { chooseOpenMenuEntry(open, entry); });
        }
        QWidget *main = mainForm();
        auto *entry = main ? main->findChild<QAction *>(name) : nullptr;
        for (QWidget *w : QApplication::topLevelWidgets())
            if (!entry && w->isVisible())
                entry = w->findChild<QAction *>(name);
        QWidget *window = entry ? windowOf(entry) : nullptr;
        if (!window)
            return failed(QStringLiteral("no menu %1").arg(name));
        if (unreachable(window))
            return true;
        return acted([window, entry] { chooseMenuEntry(window, entry); });
    }
    if (command == QLatin1String("toolbar")) {
        auto *main = qobject_cast<frmMain *>(mainForm());
        const QString key = rest.trimmed();
        auto *button = main ? main->findChild<QAction *>(QStringLiteral("tbToolBar.") + key) : nullptr;
        auto *bar = main ? main->findChild<QToolBar *>(QStringLiteral("tbToolBar")) : nullptr;
        if (!button || !bar)
            return failed(QStringLiteral("no toolbar button %1").arg(key));
        if (unreachable(main))
            return true;
        if (!bar->isVisible())
            return failed(QStringLiteral("the toolbar is hidden"));
        if (!button->isEnabled() || !button->isVisible())
            return failed(QStringLiteral("%1 is disabled or hidden").arg(key));
        return acted([main, bar, button] {
            activate(main);
            if (auto *b = qobject_cast<QToolButton *>(bar->widgetForAction(button)))
                b->click();
            else
                button->trigger();
        });
    }
    if (command == QLatin1String("tab")) {
        const QStringList w = words(rest, 3);
        auto *tabs = qobject_cast<QTabWidget *>(FormReader::findControl(form(w.value(0)), w.value(1)));
        if (!tabs)
            return failed(QStringLiteral("no tab control %1").arg(w.value(1)));
        if (unreachable(tabs))
            return true;
        const int index = w.value(2).toInt();
        return acted([tabs, index] {
            activate(tabs);
            tabs->setCurrentIndex(index);
        });
    }
    if (command == QLatin1String("press")) {
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
            return failed(QStringLiteral("no control %1 in %2").arg(control, w.value(0)));
        if (unreachable(widget ? widget : f))
            return true;
        std::function<void()> press;
        if (step != 0) {
            if (auto *spin = qobject_cast<QAbstractSpinBox *>(o))
                press = [spin, step] { spin->stepBy(step); };
            else
                press = [o, step] { QMetaObject::invokeMethod(o, step > 0 ? "stepUp" : "stepDown"); };
        } else if (auto *button = qobject_cast<QAbstractButton *>(o)) {
            press = [button] { button->click(); };
        } else if (auto *a = qobject_cast<QAction *>(o)) {
            press = [a] { a->trigger(); };
        }
        if (press)
            return acted([f, press] {
                activate(f);
                press();
            });
        return failed(QStringLiteral("%1 can't be pressed").arg(control));
    }
    if (command == QLatin1String("key")) {
        const QStringList w = words(rest, 3);
        auto *widget = qobject_cast<QWidget *>(FormReader::findControl(form(w.value(0)), w.value(1)));
        if (!widget)
            return failed(QStringLiteral("no control %1 in %2").arg(w.value(1), w.value(0)));
        const KeyStroke key = parseKey(w.value(2).trimmed());
        if (key.key == 0)
            return failed(QStringLiteral("unknown key %1").arg(w.value(2)));
        if (unreachable(widget))
            return true;
        return acted([widget, key] {
            activate(widget);
            widget->setFocus(Qt::OtherFocusReason);
            if (key.text.isEmpty())
                QTest::keyClick(widget, static_cast<Qt::Key>(key.key), key.modifiers);
            else
                QTest::sendKeyEvent(QTest::Click, widget, static_cast<Qt::Key>(key.key), key.text,
                                    key.modifiers);
        });
    }
    if (command == QLatin1String("type")) {
        const QStringList w = words(rest, 3);
        QObject *o = FormReader::findControl(form(w.value(0)), w.value(1));
        const QString text = com::unescapeLine(w.value(2));
        if (auto *control = qobject_cast<QWidget *>(o); control && unreachable(control))
            return true;
        if (auto *pane = qobject_cast<QPlainTextEdit *>(o)) {
            if (pane->isReadOnly())
                return failed(QStringLiteral("%1 is locked").arg(w.value(1)));
            return acted([pane, text] {
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
                return failed(QStringLiteral("%1 is locked").arg(w.value(1)));
            return acted([edit, text] {
                activate(edit);
                edit->setFocus(Qt::OtherFocusReason);
                edit->setText(text);
            });
        }
        if (auto *spin = qobject_cast<QSpinBox *>(o))
            return acted([spin, text] {
                activate(spin);
                spin->setValue(text.toInt());
            });
        // A folder list walks to the folder typed.
        if (o && o->metaObject()->indexOfProperty("Path") >= 0)
            return acted([o, text] { o->setProperty("Path", text); });
        return failed(QStringLiteral("no text control %1 in %2").arg(w.value(1), w.value(0)));
    }
    if (command == QLatin1String("choose")) {
        const QStringList w = words(rest, 3);
        QObject *control = FormReader::findControl(form(w.value(0)), w.value(1));
        if (!control)
            return failed(QStringLiteral("no control %1 in %2").arg(w.value(1), w.value(0)));
        QString error;
        std::function<void()> pick = chooseEntry(control, w.value(2).trimmed(), error);
        return pick ? acted(std::move(pick)) : failed(error);
    }
    if (command == QLatin1String("grid") || command == QLatin1String("dblclick")) {
        const QStringList w = words(rest, 3);
        QWidget *f = form(w.value(0));
        if (command == QLatin1String("grid")) {
            QTableWidget *grid = nullptr;
            for (auto *g : f ? f->findChildren<QTableWidget *>() : QList<QTableWidget *>())
                if (g->isVisible() || !grid)
                    grid = g;
            if (!grid)
                return failed(QStringLiteral("no grid in %1").arg(w.value(0)));
            const int row = w.value(1).toInt();
            if (auto *ssGrid = qobject_cast<controls::SSDBGrid *>(grid))
                return acted([ssGrid, row] { ssGrid->setRow(row); });
            return acted([grid, row] {
                grid->setCurrentCell(row, 0);
                grid->selectRow(row);
            });
        }
        QObject *control = FormReader::findControl(f, w.value(1));
        if (auto *tree = qobject_cast<controls::SSTree *>(control))
            return acted([tree] { Q_EMIT tree->DblClick(); });
        if (auto *ssGrid = qobject_cast<controls::SSDBGrid *>(control))
            return acted([ssGrid] { Q_EMIT ssGrid->DblClick(); });
        auto *grid = qobject_cast<QTableWidget *>(control);
        if (!grid)
            return failed(QStringLiteral("no grid or tree %1 in %2").arg(w.value(1), w.value(0)));
        return acted([grid] { Q_EMIT grid->cellDoubleClicked(qMax(grid->currentRow(), 0), 0); });
    }
    if (command == QLatin1String("resize")) {
        const QStringList w = words(rest, 3);
        QWidget *f = form(w.value(0));
        if (!f)
            return failed(QStringLiteral("no form %1").arg(w.value(0)));
        // Outer size in twips, as a drag of the border sets it.
        const QSize frame = f->frameGeometry().size() - f->size();
        const QSize size(w.value(1).toInt() / 15 - frame.width(), w.value(2).toInt() / 15 - frame.height());
        return acted([f, size] { f->resize(size); });
    }
    if (command == QLatin1String("close")) {
        // The open menu closes as Esc closes it.
        if (QMenu *open = openMenu(); open && rest.trimmed() == QLatin1String("popup"))
            return acted([open] { QTest::keyClick(open, Qt::Key_Escape); });
        QWidget *f = form(rest.trimmed());
        if (!f)
            return failed(QStringLiteral("no form %1").arg(rest.trimmed()));
        if (unreachable(f))
            return true;
        return acted([f] { f->close(); });
    }
    return false;
}

} // namespace driver
