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

using namespace Qt::StringLiterals;

namespace {

const QString kValidity = u"This agent does not appear to contain a valid script. Continue?"_s;

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
    return text.replace(u'\r', "\\r"_L1).replace(u'\n', "\\n"_L1);
}

bool hasMarker(const QString &text)
{
    return text.toUpper().contains("<SCRIPT RUNAT=SERVER LANGUAGE="_L1);
}

QString agentPath(const QString &store, const QStringList &folders, const QString &name)
{
    return u'\\' + store + u'\\' + folders.join(u'\\') + u'\\' + name;
}

/// Every agent of a dump by its path in the tree, and the dump without them.
void splitAgents(const QJsonArray &folders, const QString &store, QStringList parents,
                 QHash<QString, QJsonObject> &agents, QJsonArray &rest)
{
    for (const QJsonValue &v : folders) {
        QJsonObject folder = v.toObject();
        QStringList path = parents;
        path << folder.value(u"name"_s).toString();
        for (const QJsonValue &a : folder.value(u"agents"_s).toArray())
            agents.insert(agentPath(store, path, a.toObject().value(u"name"_s).toString()), a.toObject());
        folder.remove(u"agents"_s);
        QJsonArray below;
        splitAgents(folder.value(u"folders"_s).toArray(), store, path, agents, below);
        folder.insert(u"folders"_s, below);
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
    for (const QJsonValue &v : dump.value(u"stores"_s).toArray()) {
        QJsonObject store = v.toObject();
        QJsonArray rest;
        splitAgents(store.value(u"folders"_s).toArray(), store.value(u"name"_s).toString(), {}, s.agents,
                    rest);
        store.insert(u"folders"_s, rest);
        stores.append(store);
    }
    s.rest.insert(u"stores"_s, stores);
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
        if (m_driver && !m_driver->finishWithZero())
            ++faults, out << "seed " << m_seed << ": the driver didn't end by itself\n";
        return faults;
    }

    int played() const { return m_played; }

private:
    bool begin()
    {
        m_driver = std::make_unique<testsupport::DriverProcess>(QStringList{m_driverPath});
        m_history.clear();
        m_copied = false;
        m_mode = pick(2) ? u"save"_s : u"prompt"_s;
        if (!m_driver->started())
            return false;
        // Settings as a user's second start finds them.
        const QString settings = u"reg HKCU\\Software\\Kelverd\\Sorrelin\\5.5\\General "_s;
        for (const QString &command : {u"fixture "_s + m_fixture, settings + u"SaveChangesMode "_s + m_mode,
                                       settings + u"RefreshOnStartup yes"_s, settings + u"ViewFolders yes"_s,
                                       settings + u"ViewPreview yes"_s, settings + u"ViewToolbar yes"_s,
                                       settings + u"ViewStatusBar yes"_s, u"start"_s})
            if (!sendOk(command))
                return false;
        m_prompts.clear();
        return look() && readStoreNow();
    }

    int pick(int n) { return static_cast<int>(std::uniform_int_distribution<int>(0, n - 1)(m_random)); }
    bool chance(int percent) { return pick(100) < percent; }
    QString yesNo(int yesPercent) { return chance(yesPercent) ? u"Yes"_s : u"No"_s; }

    void fault(const QString &what) { m_faults << what; }

    QJsonObject send(const QString &command)
    {
        m_history << command;
        const QJsonObject answer = m_driver->send(command);
        if (!answer.value(u"ok"_s).toBool())
            fault(u"\"%1\" failed: %2"_s.arg(command, answer.value(u"error"_s).toString()));
        return answer;
    }

    bool sendOk(const QString &command) { return send(command).value(u"ok"_s).toBool(); }

    /// Reads the state: the view, and the prompts since the last look.
    bool look()
    {
        const QJsonObject s = send(u"state"_s);
        if (!s.value(u"ok"_s).toBool())
            return false;
        m_state = s;
        for (const QJsonValue &p : s.value(u"prompts"_s).toArray()) {
            const QString text = p[u"text"_s].toString();
            m_prompts << p[u"kind"_s].toString() + u':' + text;
            if (p[u"icon"_s].toString() == "stop"_L1 || text.startsWith("Error#"_L1))
                m_errorBoxes << text;
        }
        View v;
        for (const QJsonValue &n : s.value(u"tree"_s).toArray()) {
            if (n[u"selected"_s].toBool())
                v.selected = static_cast<int>(v.tree.size());
            v.tree << Node{n[u"path"_s].toString(), n[u"key"_s].toString(), n[u"tag"_s].toString(),
                           n[u"text"_s].toString(), n[u"image"_s].toInt()};
        }
        const QJsonObject pane = control(u"frmMain"_s, u"txtPreview"_s);
        m_view = View{v.tree,
                      v.selected,
                      s[u"strEntryID"_s].toString(),
                      s[u"strStoreID"_s].toString(),
                      pane[u"text"_s].toString(),
                      pane[u"locked"_s].toBool(),
                      s[u"dirty"_s].toBool(),
                      s[u"forms"_s][u"frmMain"_s][u"focus"_s].toString()};
        return true;
    }

    QJsonObject control(const QString &form, const QString &name) const
    {
        return m_state[u"forms"_s][form][u"controls"_s][name].toObject();
    }

    bool readStoreNow()
    {
        const QJsonObject s = send(u"store"_s);
        if (!s.value(u"ok"_s).toBool())
            return false;
        m_store = readStore(s.value(u"store"_s).toObject());
        return true;
    }

    /// The prompts of a save (the menu's, or on leaving the pane) of the
    /// pane as it stands, with the answers queued; fills in what it writes.
    void save(Expect &e)
    {
        const View &v = m_view;
        e.dirtyAfter = false;
        if (m_mode == "discard"_L1 || !v.onAgent())
            return;
        if (!hasMarker(v.pane)) {
            const QString answer = yesNo(60);
            queue(answer);
            e.prompts << u"msgbox:"_s + kValidity;
            if (answer == "No"_L1) {
                e.dirtyAfter = v.dirty;
                return;
            }
        }
        if (!v.dirty)
            return;
        if (m_mode == "prompt"_L1) {
            const QString answer = yesNo(70);
            queue(answer);
            e.prompts << u"msgbox:Save '%1' in\r*"_s.arg(v.node()->text);
            if (answer == "No"_L1)
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
        if (m_view.focus == "txtPreview"_L1 && m_view.dirty)
            save(e);
    }

    void queue(const QString &answer) { send(u"answer "_s + answer); }

    QString agentKeyOrNode() const { return m_view.node() ? u"key:"_s + m_view.node()->key : QString(); }

    // The steps. Each sends its commands and says what it may lead to.

    void clickNode(Expect &e)
    {
        leaving(e);
        // Agents are few among the folders: every other click is on one.
        QList<const Node *> agents;
        for (const Node &n : m_view.tree)
            if (n.image >= 19)
                agents << &n;
        const Node &n = !agents.isEmpty() && pick(2)
                            ? *agents.at(pick(static_cast<int>(agents.size())))
                            : m_view.tree.at(pick(static_cast<int>(m_view.tree.size())));
        send(u"click key:"_s + n.key);
    }

    void edit(Expect &e)
    {
        QString text = m_view.pane;
        const int how = pick(10);
        if (how == 0)
            text = u"Sub Folder_OnMessageCreated\r\nEnd Sub\r\n"_s; // no marker
        else
            text += u"' edit %1\r\n"_s.arg(m_step);
        send(u"type frmMain txtPreview "_s + escaped(text));
        e.dirtyAfter = true;
    }

    void saveCommand(Expect &e)
    {
        save(e);
        const int how = pick(3);
        send(how == 0   ? u"menu mnuFileSave"_s
             : how == 1 ? u"toolbar Save"_s
                        : u"key frmMain txtPreview Ctrl+S"_s);
    }

    void leave(Expect &e)
    {
        leaving(e);
        if (pick(2) && m_view.node()) {
            send(u"click key:"_s + m_view.node()->key);
        } else {
            send(u"tab frmMain SSTab1 1"_s);
            send(u"tab frmMain SSTab1 0"_s);
        }
    }

    void installedAgents(Expect &e)
    {
        send(pick(2) ? u"menu mnuFileInstalledAgents"_s : u"toolbar Installed"_s);
        if (!look())
            return;
        const QJsonArray rows = control(u"frmScripts"_s, u"SSDBGrid1"_s).value(u"rows"_s).toArray();
        const int how = rows.isEmpty() ? 0 : pick(4);
        if (how == 0) {
            const int close = pick(3);
            send(close == 0   ? u"press frmScripts cmdClose"_s
                 : close == 1 ? u"close frmScripts"_s
                              : u"key frmScripts SSDBGrid1 Esc"_s);
            return;
        }
        const int row = pick(static_cast<int>(rows.size()));
        // Go To leaves the pane: an edit still pending after its save keeps
        // the pane, and Go To goes nowhere.
        const bool pending = m_view.focus == "txtPreview"_L1 && m_view.dirty;
        leaving(e);
        if (pending && e.dirtyAfter)
            e.paneKept = true;
        else
            e.gotoKey = rows.at(row).toArray().at(12).toString();
        send(u"grid frmScripts %1"_s.arg(row));
        send(how == 1 ? u"press frmScripts cmdGoTo"_s : u"dblclick frmScripts SSDBGrid1"_s);
    }

    void exportList(Expect &e)
    {
        const QString answer = yesNo(80);
        queue(answer);
        e.prompts << u"msgbox:Export Agent List?"_s;
        if (answer == "Yes"_L1) {
            queue(u"file:{home}/export-%1.csv"_s.arg(m_step));
            e.prompts << u"save:*"_s;
        }
        send(u"menu mnuFileExport"_s);
    }

    void deleteAgent(Expect &e)
    {
        const QString answer = yesNo(40);
        queue(answer);
        e.prompts << u"msgbox:Are you sure you want to delete '%1'?"_s.arg(m_view.node()->text);
        if (answer == "Yes"_L1)
            e.deletedAgent = m_view.node()->path;
        send(pick(2) ? u"menu mnuFileDelete"_s : u"toolbar Delete"_s);
    }

    void properties(Expect &e)
    {
        const QString name = m_view.node()->text;
        send(pick(2) ? u"menu mnuFileAgentProperties"_s : u"toolbar Agent Properties"_s);
        if (!look())
            return;
        if (pick(3) == 0) {
            send(u"press frmProperties cmdCancel"_s);
            return;
        }
        const QStringList boxes{u"chkScheduled"_s, u"chkNew"_s, u"chkUpdate"_s, u"chkDelete"_s};
        const QString toggled = boxes.at(1 + pick(3));
        send(u"press frmProperties "_s + toggled);
        bool any = false;
        for (const QString &box : boxes) {
            const bool ticked = control(u"frmProperties"_s, box).value(u"value"_s).toInt() == 1;
            any = any || (box == toggled ? !ticked : ticked);
        }
        if (!any) {
            const QString answer = yesNo(60);
            queue(answer);
            e.prompts << QStringLiteral(
                "msgbox:You have not selected any events to run for this agent. Continue?");
            if (answer == "No"_L1) {
                send(u"press frmProperties cmdOK"_s);
                send(u"press frmProperties cmdCancel"_s);
                return;
            }
        }
        queue(yesNo(70));
        e.prompts << u"msgbox:Apply changes to '%1'?"_s.arg(name);
        e.changedAgent = m_view.node()->path;
        send(u"press frmProperties cmdOK"_s);
    }

    void refresh(Expect &e)
    {
        // F5 in the tree leaves the pane; the menu's, with the pane focused,
        // saves a pending edit first and refreshes nothing while it stays.
        const bool pending = m_view.focus == "txtPreview"_L1 && m_view.dirty;
        const bool menu = pick(2);
        leaving(e);
        e.paneKept = menu && pending && e.dirtyAfter;
        send(menu ? u"menu mnuViewRefresh"_s : u"key frmMain treOutl F5"_s);
    }

    void paste(Expect &e)
    {
        if (!m_copied) {
            if (!m_view.onAgent())
                return clickNode(e);
            send(u"menu mnuEditSelectAll"_s);
            send(u"menu mnuEditCopy"_s);
            m_copied = true;
        }
        if (!m_view.locked && pick(3) == 0) {
            send(u"key frmMain txtPreview Ctrl+V"_s);
            e.dirtyAfter = true;
            return;
        }
        // The tree takes no pasted text.
        leaving(e);
        e.paneKept = true;
        send(u"key frmMain treOutl Ctrl+V"_s);
    }

    void options(Expect &)
    {
        send(u"menu mnuViewOptions"_s);
        const QStringList modes{u"save"_s, u"prompt"_s, u"discard"_s};
        const QString mode = modes.at(pick(3));
        send(u"press frmOptions opt"_s + mode.at(0).toUpper() + mode.mid(1));
        if (pick(4) == 0) {
            send(u"press frmOptions cmdCancel"_s);
            return;
        }
        send(u"press frmOptions cmdOK"_s);
        m_mode = mode;
    }

    void restart(Expect &e)
    {
        send(u"quit"_s);
        send(u"start"_s);
        e.prompts << u"profile:*"_s;
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
            same =
                want.endsWith(u'*') ? m_prompts.at(i).startsWith(want.chopped(1)) : m_prompts.at(i) == want;
        }
        if (!same)
            fault(u"the prompts were [%1], expected [%2]"_s.arg(m_prompts.join(u" | "_s),
                                                                e.prompts.join(u" | "_s)));
        for (const QString &box : m_errorBoxes)
            fault(u"an error box: %1"_s.arg(box));
        // The current ids name the selected node.
        if (const Node *n = v.node()) {
            const QString entry = n->key == "root"_L1 ? QString() : n->key;
            if (v.entryId != entry || (!n->tag.isEmpty() && v.storeId != n->tag))
                fault(u"the ids are \"%1\" / \"%2\", the selected node %3 is \"%4\" / \"%5\""_s.arg(
                    v.entryId, v.storeId, n->path.isEmpty() ? u"root"_s : n->path, entry, n->tag));
        }
        if (!e.gotoKey.isEmpty() && (!v.node() || v.node()->key != e.gotoKey))
            fault(
                u"Go To selected %1, not the agent of the row"_s.arg(v.node() ? v.node()->path : QString()));
        // A key the tree swallows leaves the pane as it was.
        if (e.paneKept && (v.pane != before.pane || v.dirty != e.dirtyAfter))
            fault(u"the pane changed: \"%1\" (dirty %2), it held \"%3\" (dirty %4)"_s.arg(
                escaped(v.pane), v.dirty ? u"yes"_s : u"no"_s, escaped(before.pane),
                e.dirtyAfter ? u"yes"_s : u"no"_s));
        checkStore(was, e);
        // A click or a Go To that loaded an agent shows its stored script.
        const bool loaded = !e.gotoKey.isEmpty() || m_stepCommands.join(u'\n').contains("click key:"_L1);
        if (loaded && v.onAgent() && !v.dirty) {
            const QJsonObject agent = m_store.agents.value(v.node()->path);
            if (!agent.isEmpty() && agent.value(u"script"_s).toString() != v.pane)
                fault(u"the pane doesn't show the stored script of %1"_s.arg(v.node()->path));
        }
    }

    void checkStore(const Store &was, const Expect &e)
    {
        if (m_store.rest != was.rest)
            fault(u"the store changed outside the agents"_s);
        QSet<QString> paths(was.agents.keyBegin(), was.agents.keyEnd());
        for (auto it = m_store.agents.cbegin(); it != m_store.agents.cend(); ++it) {
            paths.insert(it.key());
            if (!it->value(u"binding"_s).toBool() || !it->value(u"stateMessage"_s).toBool())
                fault(u"the agent %1 isn't whole"_s.arg(it.key()));
        }
        for (const QString &path : paths) {
            const QJsonObject old = was.agents.value(path);
            const QJsonObject now = m_store.agents.value(path);
            if (now.isEmpty() && path != e.deletedAgent) {
                fault(u"the agent %1 went"_s.arg(path));
                continue;
            }
            if (old.isEmpty()) {
                fault(u"an agent %1 came"_s.arg(path));
                continue;
            }
            if (now.isEmpty())
                continue;
            QStringList changed;
            for (const QString &k : old.keys() + now.keys())
                if (old.value(k) != now.value(k) && !changed.contains(k))
                    changed << k;
            changed.removeAll(u"modified"_s);
            changed.removeAll(u"modifiedBy"_s);
            if (path == e.savedAgent) {
                if (now.value(u"script"_s).toString() != e.savedText)
                    fault(u"the save of %1 didn't store what the pane showed"_s.arg(path));
                changed.removeAll(u"script"_s);
            }
            if (path == e.changedAgent)
                changed.removeIf([](const QString &k) { return k != "script"_L1; });
            if (!changed.isEmpty())
                fault(u"the agent %1 changed (%2)"_s.arg(path, changed.join(u", "_s)));
        }
        if (!e.deletedAgent.isEmpty() && m_store.agents.contains(e.deletedAgent))
            fault(u"the agent %1 wasn't deleted"_s.arg(e.deletedAgent));
    }

    void report(QTextStream &out)
    {
        out << "seed " << m_seed << ", step " << m_step << ": " << m_stepCommands.join(u" ; "_s) << "\n";
        for (const QString &f : m_faults)
            out << "    " << f << "\n";
        // The commands since the session started, the last 60 of them.
        QStringList commands;
        for (const QString &c : m_history)
            if (c != "state"_L1 && c != "store"_L1)
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
    std::unique_ptr<testsupport::DriverProcess> m_driver;
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
