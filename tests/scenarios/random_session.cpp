// Plays seeded random sessions through sorrelin-driver on a fixture, as a
// user wanders: clicks on any node, edits, saves, leaving the pane, the
// installed agents with Go To, the export, deleting, agent properties,
// refreshing, pasting, the options, closing and starting again. After every
// step it checks what must always hold:
//   - the current ids name the selected node;
//   - the prompts are those the step leads to, and no error box came;
//   - a save changed only the saved agent's script, to what the pane held;
//   - the store changed nowhere else but where the step may change it;
//   - every agent is whole (binding, binding message and state message);
//   - a click on an agent shows its stored script; a key the tree swallows
//     leaves the pane as it was.
// A fault is reported with the seed, the step and the commands that led to
// it; the session then starts again on a fresh driver and the walk goes on.
//   random-session DRIVER FIXTURE [--seed N] [--steps M] [--seconds S]
#include "driverprocess.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QTextStream>

#include <random>

namespace {

const QString kValidity = QStringLiteral("This agent does not appear to contain a valid script. Continue?");

struct Node {
    QString path;
    QString key;
    QString tag;
    QString text;
    int image = 0;
};

/// What a user sees after a step, as `state` tells it.
struct View {
    QList<Node> tree;
    int selected = -1;
    QString entryId;
    QString storeId;
    QString pane;
    bool locked = true;
    bool dirty = false;
    QString focus;
    const Node *node() const { return selected >= 0 ? &tree.at(selected) : nullptr; }
    bool onAgent() const { return node() && node()->image >= 19; }
};

/// What a step may lead to.
struct Expect {
    QStringList prompts;   ///< "kind:text", a text ending in "*" matched as a beginning
    QString savedAgent;    ///< the agent whose script the step writes
    QString savedText;     ///< what it writes there
    QString changedAgent;  ///< an agent whose properties may change
    QString deletedAgent;  ///< an agent that goes
    bool paneKept = false; ///< the pane's text and blnDirty stay as they were
    bool dirtyAfter = false;
    QString gotoKey; ///< the node that Go To selects
};

/// A text on one line, its line breaks written as escapes.
QString escaped(QString text)
{
    return text.replace(QLatin1Char('\r'), QLatin1String("\\r"))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"));
}

bool hasMarker(const QString &text)
{
    return text.toUpper().contains(QLatin1String("<SCRIPT RUNAT=SERVER LANGUAGE="));
}

QString agentPath(const QString &store, const QStringList &folders, const QString &name)
{
    return QLatin1Char('\\') + store + QLatin1Char('\\') + folders.join(QLatin1Char('\\')) +
           QLatin1Char('\\') + name;
}

/// Every agent of a dump by its path in the tree, and the dump without them.
void splitAgents(const QJsonArray &folders, const QString &store, QStringList parents,
                 QHash<QString, QJsonObject> &agents, QJsonArray &rest)
{
    for (const QJsonValue &v : folders) {
        QJsonObject folder = v.toObject();
        QStringList path = parents;
        path << folder.value(QStringLiteral("name")).toString();
        for (const QJsonValue &a : folder.value(QStringLiteral("agents")).toArray())
            agents.insert(agentPath(store, path, a.toObject().value(QStringLiteral("name")).toString()),
                          a.toObject());
        folder.remove(QStringLiteral("agents"));
        QJsonArray below;
        splitAgents(folder.value(QStringLiteral("folders")).toArray(), store, path, agents, below);
        folder.insert(QStringLiteral("folders"), below);
        rest.append(folder);
    }
}

struct Store {
    QHash<QString, QJsonObject> agents;
    QJsonObject rest;
};

Store readStore(const QJsonObject &dump)
{
    Store s;
    s.rest = dump;
    QJsonArray stores;
    for (const QJsonValue &v : dump.value(QStringLiteral("stores")).toArray()) {
        QJsonObject store = v.toObject();
        QJsonArray rest;
        splitAgents(store.value(QStringLiteral("folders")).toArray(),
                    store.value(QStringLiteral("name")).toString(), {}, s.agents, rest);
        store.insert(QStringLiteral("folders"), rest);
        stores.append(store);
    }
    s.rest.insert(QStringLiteral("stores"), stores);
    return s;
}

class Session {
public:
    Session(QString driver, QString fixture, quint32 seed)
        : m_driverPath(std::move(driver)), m_fixture(std::move(fixture)), m_random(seed), m_seed(seed)
    {
    }

    /// Plays up to `steps` steps within `seconds`; the faults found.
    int play(int steps, int seconds, QTextStream &out)
    {
        QElapsedTimer clock;
        clock.start();
        int faults = 0;
        for (m_step = 1; m_step <= steps && clock.elapsed() < seconds * 1000LL; ++m_step) {
            if (!m_driver && !begin()) {
                out << "seed " << m_seed << ": the session didn't start\n";
                return faults + 1;
            }
            m_faults.clear();
            step();
            if (!m_faults.isEmpty()) {
                ++faults;
                report(out);
                m_driver->finish(); // a fresh session
                m_driver.reset();
            }
        }
        m_played = m_step - 1;
        if (m_driver && !m_driver->finish())
            ++faults, out << "seed " << m_seed << ": the driver didn't end by itself\n";
        return faults;
    }

    int played() const { return m_played; }

private:
    bool begin()
    {
        m_driver = std::make_unique<DriverProcess>();
        m_history.clear();
        m_copied = false;
        m_mode = pick(2) ? QStringLiteral("save") : QStringLiteral("prompt");
        if (!m_driver->start(m_driverPath))
            return false;
        // Settings as a user's second start finds them.
        const QString settings = QStringLiteral("reg HKCU\\Software\\Kelverd\\Sorrelin\\5.5\\General ");
        QStringList setup{QStringLiteral("fixture ") + m_fixture,
                          settings + QStringLiteral("SaveChangesMode ") + m_mode};
        for (const char *view :
             {"RefreshOnStartup", "ViewFolders", "ViewPreview", "ViewToolbar", "ViewStatusBar"})
            setup << settings + QString::fromLatin1(view) + QStringLiteral(" yes");
        setup << QStringLiteral("start");
        for (const QString &command : setup)
            if (!sendOk(command))
                return false;
        m_prompts.clear();
        return look() && readStoreNow();
    }

    int pick(int n) { return static_cast<int>(std::uniform_int_distribution<int>(0, n - 1)(m_random)); }
    bool chance(int percent) { return pick(100) < percent; }
    QString yesNo(int yesPercent)
    {
        return chance(yesPercent) ? QStringLiteral("Yes") : QStringLiteral("No");
    }

    void fault(const QString &what) { m_faults << what; }

    std::optional<QJsonObject> send(const QString &command)
    {
        m_history << command;
        std::optional<QJsonObject> answer = m_driver->send(command);
        if (!answer)
            fault(QStringLiteral("no answer to \"%1\"").arg(command));
        else if (!answer->value(QStringLiteral("ok")).toBool())
            fault(QStringLiteral("\"%1\" failed: %2")
                      .arg(command, answer->value(QStringLiteral("error")).toString()));
        return answer;
    }

    bool sendOk(const QString &command)
    {
        const std::optional<QJsonObject> answer = send(command);
        return answer && answer->value(QStringLiteral("ok")).toBool();
    }

    /// Reads the state: the view, and the prompts since the last look.
    bool look()
    {
        const std::optional<QJsonObject> s = send(QStringLiteral("state"));
        if (!s || !s->value(QStringLiteral("ok")).toBool())
            return false;
        m_state = *s;
        for (const QJsonValue &p : s->value(QStringLiteral("prompts")).toArray()) {
            const QJsonObject o = p.toObject();
            m_prompts << o.value(QStringLiteral("kind")).toString() + QLatin1Char(':') +
                             o.value(QStringLiteral("text")).toString();
            if (o.value(QStringLiteral("icon")).toString() == QLatin1String("stop") ||
                o.value(QStringLiteral("text")).toString().startsWith(QLatin1String("Error#")))
                m_errorBoxes << o.value(QStringLiteral("text")).toString();
        }
        View v;
        for (const QJsonValue &n : s->value(QStringLiteral("tree")).toArray()) {
            const QJsonObject o = n.toObject();
            if (o.value(QStringLiteral("selected")).toBool())
                v.selected = static_cast<int>(v.tree.size());
            v.tree << Node{
                o.value(QStringLiteral("path")).toString(), o.value(QStringLiteral("key")).toString(),
                o.value(QStringLiteral("tag")).toString(), o.value(QStringLiteral("text")).toString(),
                o.value(QStringLiteral("image")).toInt()};
        }
        v.entryId = s->value(QStringLiteral("strEntryID")).toString();
        v.storeId = s->value(QStringLiteral("strStoreID")).toString();
        v.dirty = s->value(QStringLiteral("dirty")).toBool();
        const QJsonObject main =
            s->value(QStringLiteral("forms")).toObject().value(QStringLiteral("frmMain")).toObject();
        const QJsonObject pane =
            main.value(QStringLiteral("controls")).toObject().value(QStringLiteral("txtPreview")).toObject();
        v.pane = pane.value(QStringLiteral("text")).toString();
        v.locked = pane.value(QStringLiteral("locked")).toBool();
        v.focus = main.value(QStringLiteral("focus")).toString();
        m_view = v;
        return true;
    }

    QJsonObject control(const QString &form, const QString &name) const
    {
        return m_state.value(QStringLiteral("forms"))
            .toObject()
            .value(form)
            .toObject()
            .value(QStringLiteral("controls"))
            .toObject()
            .value(name)
            .toObject();
    }

    bool readStoreNow()
    {
        const std::optional<QJsonObject> s = send(QStringLiteral("store"));
        if (!s || !s->value(QStringLiteral("ok")).toBool())
            return false;
        m_store = readStore(s->value(QStringLiteral("store")).toObject());
        return true;
    }

    /// The prompts of a save (the menu's, or on leaving the pane) of the
    /// pane as it stands, with the answers queued; fills in what it writes.
    void save(Expect &e)
    {
        const View &v = m_view;
        e.dirtyAfter = false;
        if (m_mode == QLatin1String("discard") || !v.onAgent())
            return;
        if (!hasMarker(v.pane)) {
            const QString answer = yesNo(60);
            queue(answer);
            e.prompts << QStringLiteral("msgbox:") + kValidity;
            if (answer == QLatin1String("No")) {
                e.dirtyAfter = v.dirty;
                return;
            }
        }
        if (!v.dirty)
            return;
        if (m_mode == QLatin1String("prompt")) {
            const QString answer = yesNo(70);
            queue(answer);
            e.prompts << QStringLiteral("msgbox:Save '%1' in\r*").arg(v.node()->text);
            if (answer == QLatin1String("No"))
                return;
        }
        e.savedAgent = v.node()->path;
        e.savedText = v.pane;
    }

    /// Leaving the pane for another control of the window saves a pending
    /// edit first.
    void leaving(Expect &e)
    {
        e.dirtyAfter = m_view.dirty;
        if (m_view.focus == QLatin1String("txtPreview") && m_view.dirty)
            save(e);
    }

    void queue(const QString &answer) { send(QStringLiteral("answer ") + answer); }

    QString agentKeyOrNode() const
    {
        return m_view.node() ? QStringLiteral("key:") + m_view.node()->key : QString();
    }

    // The steps. Each sends its commands and says what it may lead to.

    void clickNode(Expect &e)
    {
        leaving(e);
        // Agents are few among the folders: every other click is on one.
        QList<const Node *> agents;
        for (const Node &n : m_view.tree)
            if (n.image >= 19)
                agents << &n;
        const Node &n = !agents.isEmpty() && pick(2) ? *agents.at(pick(static_cast<int>(agents.size())))
                                                     : m_view.tree.at(pick(static_cast<int>(m_view.tree.size())));
        send(QStringLiteral("click key:") + n.key);
    }

    void edit(Expect &e)
    {
        QString text = m_view.pane;
        const int how = pick(10);
        if (how == 0)
            text = QStringLiteral("Sub Folder_OnMessageCreated\r\nEnd Sub\r\n"); // no marker
        else
            text += QStringLiteral("' edit %1\r\n").arg(m_step);
        send(QStringLiteral("type frmMain txtPreview ") + escaped(text));
        e.dirtyAfter = true;
    }

    void saveCommand(Expect &e)
    {
        save(e);
        const int how = pick(3);
        send(how == 0   ? QStringLiteral("menu mnuFileSave")
             : how == 1 ? QStringLiteral("toolbar Save")
                        : QStringLiteral("key frmMain txtPreview Ctrl+S"));
    }

    void leave(Expect &e)
    {
        leaving(e);
        if (pick(2) && m_view.node()) {
            send(QStringLiteral("click key:") + m_view.node()->key);
        } else {
            send(QStringLiteral("tab frmMain SSTab1 1"));
            send(QStringLiteral("tab frmMain SSTab1 0"));
        }
    }

    void installedAgents(Expect &e)
    {
        send(pick(2) ? QStringLiteral("menu mnuFileInstalledAgents") : QStringLiteral("toolbar Installed"));
        if (!look())
            return;
        const QJsonArray rows = control(QStringLiteral("frmScripts"), QStringLiteral("SSDBGrid1"))
                                    .value(QStringLiteral("rows"))
                                    .toArray();
        const int how = rows.isEmpty() ? 0 : pick(4);
        if (how == 0) {
            const int close = pick(3);
            send(close == 0   ? QStringLiteral("press frmScripts cmdClose")
                 : close == 1 ? QStringLiteral("close frmScripts")
                              : QStringLiteral("key frmScripts SSDBGrid1 Esc"));
            return;
        }
        const int row = pick(static_cast<int>(rows.size()));
        // Go To leaves the pane: an edit still pending after its save keeps
        // the pane, and Go To goes nowhere.
        const bool pending = m_view.focus == QLatin1String("txtPreview") && m_view.dirty;
        leaving(e);
        if (pending && e.dirtyAfter)
            e.paneKept = true;
        else
            e.gotoKey = rows.at(row).toArray().at(12).toString();
        send(QStringLiteral("grid frmScripts %1").arg(row));
        send(how == 1 ? QStringLiteral("press frmScripts cmdGoTo")
                      : QStringLiteral("dblclick frmScripts SSDBGrid1"));
    }

    void exportList(Expect &e)
    {
        const QString answer = yesNo(80);
        queue(answer);
        e.prompts << QStringLiteral("msgbox:Export Agent List?");
        if (answer == QLatin1String("Yes")) {
            queue(QStringLiteral("file:{home}/export-%1.csv").arg(m_step));
            e.prompts << QStringLiteral("save:*");
        }
        send(QStringLiteral("menu mnuFileExport"));
    }

    void deleteAgent(Expect &e)
    {
        const QString answer = yesNo(40);
        queue(answer);
        e.prompts << QStringLiteral("msgbox:Are you sure you want to delete '%1'?").arg(m_view.node()->text);
        if (answer == QLatin1String("Yes"))
            e.deletedAgent = m_view.node()->path;
        send(pick(2) ? QStringLiteral("menu mnuFileDelete") : QStringLiteral("toolbar Delete"));
    }

    void properties(Expect &e)
    {
        const QString name = m_view.node()->text;
        send(pick(2) ? QStringLiteral("menu mnuFileAgentProperties")
                     : QStringLiteral("toolbar Agent Properties"));
        if (!look())
            return;
        if (pick(3) == 0) {
            send(QStringLiteral("press frmProperties cmdCancel"));
            return;
        }
        const QStringList boxes{QStringLiteral("chkScheduled"), QStringLiteral("chkNew"),
                                QStringLiteral("chkUpdate"), QStringLiteral("chkDelete")};
        const QString toggled = boxes.at(1 + pick(3));
        send(QStringLiteral("press frmProperties ") + toggled);
        bool any = false;
        for (const QString &box : boxes) {
            const bool ticked =
                control(QStringLiteral("frmProperties"), box).value(QStringLiteral("value")).toInt() == 1;
            any = any || (box == toggled ? !ticked : ticked);
        }
        if (!any) {
            const QString answer = yesNo(60);
            queue(answer);
            e.prompts << QStringLiteral(
                "msgbox:You have not selected any events to run for this agent. Continue?");
            if (answer == QLatin1String("No")) {
                send(QStringLiteral("press frmProperties cmdOK"));
                send(QStringLiteral("press frmProperties cmdCancel"));
                return;
            }
        }
        queue(yesNo(70));
        e.prompts << QStringLiteral("msgbox:Apply changes to '%1'?").arg(name);
        e.changedAgent = m_view.node()->path;
        send(QStringLiteral("press frmProperties cmdOK"));
    }

    void refresh(Expect &e)
    {
        // F5 in the tree leaves the pane; the menu's, with the pane focused,
        // saves a pending edit first and refreshes nothing while it stays.
        const bool pending = m_view.focus == QLatin1String("txtPreview") && m_view.dirty;
        const bool menu = pick(2);
        leaving(e);
        e.paneKept = menu && pending && e.dirtyAfter;
        send(menu ? QStringLiteral("menu mnuViewRefresh") : QStringLiteral("key frmMain treOutl F5"));
    }

    void paste(Expect &e)
    {
        if (!m_copied) {
            if (!m_view.onAgent())
                return clickNode(e);
            send(QStringLiteral("menu mnuEditSelectAll"));
            send(QStringLiteral("menu mnuEditCopy"));
            m_copied = true;
        }
        if (!m_view.locked && pick(3) == 0) {
            send(QStringLiteral("key frmMain txtPreview Ctrl+V"));
            e.dirtyAfter = true;
            return;
        }
        // The tree takes no pasted text.
        leaving(e);
        e.paneKept = true;
        send(QStringLiteral("key frmMain treOutl Ctrl+V"));
    }

    void options(Expect &)
    {
        send(QStringLiteral("menu mnuViewOptions"));
        const QStringList modes{QStringLiteral("save"), QStringLiteral("prompt"), QStringLiteral("discard")};
        const QString mode = modes.at(pick(3));
        send(QStringLiteral("press frmOptions opt") + mode.at(0).toUpper() + mode.mid(1));
        if (pick(4) == 0) {
            send(QStringLiteral("press frmOptions cmdCancel"));
            return;
        }
        send(QStringLiteral("press frmOptions cmdOK"));
        m_mode = mode;
    }

    void restart(Expect &e)
    {
        send(QStringLiteral("quit"));
        send(QStringLiteral("start"));
        e.prompts << QStringLiteral("profile:*");
    }

    void step()
    {
        const View before = m_view;
        const Store was = m_store;
        Expect e;
        m_prompts.clear();
        m_errorBoxes.clear();
        const qsizetype commandsBefore = m_history.size();
        // With an edit pending, Go To and F5 come often; the other commands
        // of the whole program want the pane left first.
        const int kind = pick(100);
        const bool clean = !before.dirty;
        if (before.tree.isEmpty())
            restart(e);
        else if (kind < 22)
            clickNode(e);
        else if (kind < 38 && before.onAgent() && !before.locked)
            edit(e);
        else if (kind < 46 && before.onAgent())
            saveCommand(e);
        else if (kind < 52)
            leave(e);
        else if (!clean && kind < 70)
            installedAgents(e);
        else if (!clean && kind < 85)
            refresh(e);
        else if (!clean)
            leave(e);
        else if (kind < 62)
            installedAgents(e);
        else if (kind < 66)
            refresh(e);
        else if (kind < 71)
            exportList(e);
        else if (kind < 74 && before.onAgent())
            deleteAgent(e);
        else if (kind < 80 && before.onAgent())
            properties(e);
        else if (kind < 90)
            paste(e);
        else if (kind < 95)
            options(e);
        else
            restart(e);
        m_stepCommands = m_history.mid(commandsBefore);
        if (!m_faults.isEmpty() || !look() || !readStoreNow())
            return;
        check(before, was, e);
    }

    void check(const View &before, const Store &was, const Expect &e)
    {
        const View &v = m_view;
        // The prompts the step leads to, in their order.
        bool same = m_prompts.size() == e.prompts.size();
        for (qsizetype i = 0; same && i < e.prompts.size(); ++i) {
            const QString &want = e.prompts.at(i);
            same = want.endsWith(QLatin1Char('*')) ? m_prompts.at(i).startsWith(want.chopped(1))
                                                   : m_prompts.at(i) == want;
        }
        if (!same)
            fault(QStringLiteral("the prompts were [%1], expected [%2]")
                      .arg(m_prompts.join(QStringLiteral(" | ")), e.prompts.join(QStringLiteral(" | "))));
        for (const QString &box : m_errorBoxes)
            fault(QStringLiteral("an error box: %1").arg(box));
        // The current ids name the selected node.
        if (const Node *n = v.node()) {
            const QString entry = n->key == QLatin1String("root") ? QString() : n->key;
            if (v.entryId != entry || (!n->tag.isEmpty() && v.storeId != n->tag))
                fault(QStringLiteral("the ids are \"%1\" / \"%2\", the selected node %3 is \"%4\" / \"%5\"")
                          .arg(v.entryId, v.storeId, n->path.isEmpty() ? QStringLiteral("root") : n->path,
                               entry, n->tag));
        }
        if (!e.gotoKey.isEmpty() && (!v.node() || v.node()->key != e.gotoKey))
            fault(QStringLiteral("Go To selected %1, not the agent of the row")
                      .arg(v.node() ? v.node()->path : QString()));
        // A key the tree swallows leaves the pane as it was.
        if (e.paneKept && (v.pane != before.pane || v.dirty != e.dirtyAfter))
            fault(QStringLiteral("the pane changed: \"%1\" (dirty %2), it held \"%3\" (dirty %4)")
                      .arg(escaped(v.pane), v.dirty ? QStringLiteral("yes") : QStringLiteral("no"),
                           escaped(before.pane),
                           e.dirtyAfter ? QStringLiteral("yes") : QStringLiteral("no")));
        checkStore(was, e);
        // A click or a Go To that loaded an agent shows its stored script.
        const bool loaded = !e.gotoKey.isEmpty() ||
                            m_stepCommands.join(QLatin1Char('\n')).contains(QLatin1String("click key:"));
        if (loaded && v.onAgent() && !v.dirty) {
            const QJsonObject agent = m_store.agents.value(v.node()->path);
            if (!agent.isEmpty() && agent.value(QStringLiteral("script")).toString() != v.pane)
                fault(QStringLiteral("the pane doesn't show the stored script of %1").arg(v.node()->path));
        }
    }

    void checkStore(const Store &was, const Expect &e)
    {
        if (m_store.rest != was.rest)
            fault(QStringLiteral("the store changed outside the agents"));
        QSet<QString> paths(was.agents.keyBegin(), was.agents.keyEnd());
        for (auto it = m_store.agents.cbegin(); it != m_store.agents.cend(); ++it) {
            paths.insert(it.key());
            if (!it->value(QStringLiteral("binding")).toBool() ||
                !it->value(QStringLiteral("stateMessage")).toBool())
                fault(QStringLiteral("the agent %1 isn't whole").arg(it.key()));
        }
        for (const QString &path : paths) {
            const QJsonObject old = was.agents.value(path);
            const QJsonObject now = m_store.agents.value(path);
            if (now.isEmpty() && path != e.deletedAgent) {
                fault(QStringLiteral("the agent %1 went").arg(path));
                continue;
            }
            if (old.isEmpty()) {
                fault(QStringLiteral("an agent %1 came").arg(path));
                continue;
            }
            if (now.isEmpty())
                continue;
            QStringList changed;
            for (const QString &k : old.keys() + now.keys())
                if (old.value(k) != now.value(k) && !changed.contains(k))
                    changed << k;
            changed.removeAll(QStringLiteral("modified"));
            changed.removeAll(QStringLiteral("modifiedBy"));
            if (path == e.savedAgent) {
                if (now.value(QStringLiteral("script")).toString() != e.savedText)
                    fault(QStringLiteral("the save of %1 didn't store what the pane showed").arg(path));
                changed.removeAll(QStringLiteral("script"));
            }
            if (path == e.changedAgent)
                changed.removeIf([](const QString &k) { return k != QLatin1String("script"); });
            if (!changed.isEmpty())
                fault(QStringLiteral("the agent %1 changed (%2)")
                          .arg(path, changed.join(QStringLiteral(", "))));
        }
        if (!e.deletedAgent.isEmpty() && m_store.agents.contains(e.deletedAgent))
            fault(QStringLiteral("the agent %1 wasn't deleted").arg(e.deletedAgent));
    }

    void report(QTextStream &out)
    {
        out << "seed " << m_seed << ", step " << m_step << ": " << m_stepCommands.join(QStringLiteral(" ; "))
            << "\n";
        for (const QString &f : m_faults)
            out << "    " << f << "\n";
        // The commands since the session started, the last 60 of them.
        QStringList commands;
        for (const QString &c : m_history)
            if (c != QLatin1String("state") && c != QLatin1String("store"))
                commands << c;
        out << "  the session" << (commands.size() > 60 ? " (its last 60 commands)" : "") << ":\n";
        for (const QString &c : commands.mid(qMax<qsizetype>(0, commands.size() - 60)))
            out << "    > " << c << "\n";
        out.flush();
    }

    QString m_driverPath;
    QString m_fixture;
    std::mt19937 m_random;
    quint32 m_seed;
    std::unique_ptr<DriverProcess> m_driver;
    int m_step = 0;
    int m_played = 0;
    QString m_mode;
    bool m_copied = false;
    QStringList m_history;
    QStringList m_stepCommands;
    QStringList m_faults;
    QStringList m_prompts;
    QStringList m_errorBoxes;
    QJsonObject m_state;
    View m_view;
    Store m_store;
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 3) {
        QTextStream(stderr) << "usage: random-session DRIVER FIXTURE [--seed N] [--steps M] [--seconds S]\n";
        return 2;
    }
    const auto option = [&](const char *name, int otherwise) {
        const qsizetype at = args.indexOf(QString::fromLatin1(name));
        return at > 0 && at + 1 < args.size() ? args.at(at + 1).toInt() : otherwise;
    };
    const quint32 seed = static_cast<quint32>(option("--seed", 1));
    const int steps = option("--steps", 200);
    const int seconds = option("--seconds", 3600);
    QElapsedTimer clock;
    clock.start();
    Session session(args.at(1), args.at(2), seed);
    const int faults = session.play(steps, seconds, out);
    out << "seed " << seed << ": " << session.played() << " steps in " << clock.elapsed() / 1000.0 << " s, "
        << faults << " fault(s)\n";
    return faults ? 1 : 0;
}
