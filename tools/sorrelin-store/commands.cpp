#include "tools/sorrelin-store/commands.h"

#include "navigation/treewalk.h"
#include "platform/events/events.h"
#include "platform/mapi/profiles.h"
#include "platform/mapi/session.h"
#include "platform/os/applog.h"
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/folderlevels.h"
#include "platform/store/generate.h"
#include "platform/store/servicewrites.h"
#include "tools/sorrelin-store/arguments.h"
#include "tools/sorrelin-store/historycommands.h"
#include "tools/sorrelin-store/noprompts.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

namespace storetool {

namespace {

QByteArray readInput(const QString &path)
{
    QFile file;
    const bool ok = path == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly)
                                               : (file.setFileName(path), file.open(QIODevice::ReadOnly));
    if (!ok)
        throw com::ComError(com::err::FileNotFound, QStringLiteral("sorrelin-store"),
                            QStringLiteral("%1 could not be read: %2").arg(path, file.errorString()));
    return file.readAll();
}

QJsonArray readJsonArray(const QString &path)
{
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(readInput(path), &error);
    if (error.error != QJsonParseError::NoError || !doc.isArray())
        throw com::ComError(com::err::InvalidParameter, QStringLiteral("sorrelin-store"),
                            QStringLiteral("%1: expected a JSON list%2")
                                .arg(path, error.error != QJsonParseError::NoError
                                               ? QStringLiteral(" (") + error.errorString() + QLatin1Char(')')
                                               : QString()));
    return doc.array();
}

int load(const QStringList &a, Output io)
{
    need(a, 2);
    store::loadFixture(a.at(0), a.at(1));
    io.out << "Made " << a.at(1) << " from " << a.at(0) << Qt::endl;
    return 0;
}

int dump(const QStringList &a, Output io)
{
    need(a, 1);
    const std::unique_ptr<store::Database> db =
        store::Database::open(a.at(0), store::Database::Access::ReadOnly);
    io.out.flush();
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly))
        throw com::ComError(
            com::err::FileAccess, QStringLiteral("sorrelin-store"),
            QStringLiteral("The standard output could not be written: %1").arg(out.errorString()));
    store::dumpStore(*db, out);
    return 0;
}

int copy(const QStringList &a, Output io)
{
    need(a, 2);
    store::copyStore(*store::Database::open(a.at(0), store::Database::Access::ReadOnly), a.at(1));
    io.out << "Copied " << a.at(0) << " to " << a.at(1) << Qt::endl;
    return 0;
}

int profile(const QStringList &a, Output io)
{
    need(a, 3);
    store::Database::open(a.at(2), store::Database::Access::ReadOnly);
    mapi::writeProfile(mapi::Profile{a.at(0), a.at(1), a.at(2)});
    io.out << "Recorded the profile " << a.at(0) << " on " << store::Location::parse(a.at(2)).text()
           << Qt::endl;
    return 0;
}

int tree(const QStringList &a, Output io)
{
    need(a, 1);
    storetool::NoPrompts prompter;
    mapi::Session session(prompter);
    session.LogonStore(a.at(0), QString(), store::Database::Access::ReadOnly);
    events::Events events;
    events.SetSession(session.MAPIOBJECT());
    const navigation::TreeWalk walk = navigation::walkTree(session, events, true);
    for (const navigation::DisplayNode &n : navigation::displayOrder(walk.nodes))
        io.out << QString(n.node.depth * 2, QLatin1Char(' ')) << n.node.text << "  [image " << n.node.image
               << "]  " << n.node.key << '\n';
    io.out.flush();
    if (walk.tooDeep)
        io.err << "sorrelin-store tree: " << store::folderLevelsText() << Qt::endl;
    return 0;
}

int generate(const QStringList &a, Output io)
{
    if (a.isEmpty())
        throw Misuse{QStringLiteral("generate needs the store's file name")};
    store::GenerateOptions o;
    const std::map<QString, int *> options = {{QStringLiteral("--stores"), &o.stores},
                                              {QStringLiteral("--folders"), &o.folders},
                                              {QStringLiteral("--agents"), &o.agents},
                                              {QStringLiteral("--hidden"), &o.hidden},
                                              {QStringLiteral("--messages"), &o.messages}};
    for (int i = 1; i < a.size(); i += 2) {
        if (i + 1 >= a.size())
            throw Misuse{QStringLiteral("%1 needs a value").arg(a.at(i))};
        if (a.at(i) == QLatin1String("--shape")) {
            const std::map<QString, store::FolderShape> shapes = {
                {QStringLiteral("tree"), store::FolderShape::Tree},
                {QStringLiteral("deep"), store::FolderShape::Deep},
                {QStringLiteral("wide"), store::FolderShape::Wide}};
            const auto shape = shapes.find(a.at(i + 1));
            if (shape == shapes.end())
                throw Misuse{QStringLiteral("--shape is tree, deep or wide, not \"%1\"").arg(a.at(i + 1))};
            o.shape = shape->second;
            continue;
        }
        if (a.at(i) == QLatin1String("--seed")) {
            o.seed = static_cast<unsigned>(number(a.at(i + 1), a.at(i)));
            continue;
        }
        const auto it = options.find(a.at(i));
        if (it == options.end())
            throw Misuse{QStringLiteral("unknown option %1").arg(a.at(i))};
        *it->second = number(a.at(i + 1), a.at(i));
        if (*it->second < 0)
            throw Misuse{QStringLiteral("%1 can't be negative").arg(a.at(i))};
    }
    store::generateStore(o, a.at(0));
    io.out << "Made " << a.at(0) << ": " << o.stores << " stores, " << o.folders << " folders, " << o.agents
           << " agents, " << o.hidden << " hidden and " << o.messages << " ordinary messages" << Qt::endl;
    return 0;
}

template <class F> int withStore(const QString &path, F &&write)
{
    const std::unique_ptr<store::Database> db = store::Database::open(path);
    write(*db);
    return 0;
}

int setLog(const QStringList &a, Output)
{
    need(a, 3);
    const QByteArray log = readInput(a.at(2));
    return withStore(a.at(0), [&](store::Database &db) { store::setAgentLog(db, a.at(1), log); });
}

int addMap(const QStringList &a, Output)
{
    need(a, 3);
    const QJsonArray rows = readJsonArray(a.at(2));
    return withStore(a.at(0), [&](store::Database &db) { store::setMap(db, a.at(1), rows); });
}

int addInstance(const QStringList &a, Output)
{
    need(a, 5);
    const int rui = number(a.at(2), QStringLiteral("RUI"));
    const int row = number(a.at(4), QStringLiteral("ROW"));
    return withStore(a.at(0),
                     [&](store::Database &db) { store::setInstance(db, a.at(1), rui, a.at(3), row); });
}

int addVotes(const QStringList &a, Output)
{
    need(a, 3);
    const QJsonArray votes = readJsonArray(a.at(2));
    return withStore(a.at(0), [&](store::Database &db) { store::setVotes(db, a.at(1), votes); });
}

int log(const QStringList &a, Output io)
{
    if (a.size() > 1)
        throw Misuse{QStringLiteral("log takes at most the log file's name")};
    const os::ApplicationLog applicationLog(a.isEmpty() ? os::ApplicationLog::defaultPath() : a.at(0));
    for (const os::LogRecord &r : applicationLog.read())
        io.out << os::formatLogLine(r) << Qt::endl;
    return 0;
}

} // namespace

QString usage()
{
    return QStringLiteral(
               "Usage: sorrelin-store COMMAND ARGUMENTS\n"
               "  load FIXTURE.json STORE.db         make a store from a fixture\n"
               "  dump STORE.db                      print the store as a fixture\n"
               "  copy STORE.db NEW.db               copy a store, as dump shows it, to a new store\n"
               "  profile NAME USER STORE.db         record a mail profile for USER on a store (checked "
               "first)\n"
               "  tree STORE.db                      print the folders and agents as the tree shows them,\n"
               "                                     folders at most %1 levels deep\n"
               "  generate STORE.db [--stores N] [--folders N] [--agents N] [--hidden N] [--messages N] "
               "[--seed N]\n"
               "           [--shape tree|deep|wide]  make a large store for benchmarks: folders up to five "
               "levels\n"
               "                                     deep, each below the one before, or all side by side\n"
               "  set-log STORE.db AGENT LOGFILE|-   set an agent's log (AGENT: entry id or "
               "\\Store\\Folder\\Name)\n"
               "  add-map STORE.db MESSAGE MAP.json  put a map on a message (a list of rows)\n"
               "  add-instance STORE.db MESSAGE RUI STATUS ROW\n"
               "                                     make a message a process instance\n"
               "  add-votes STORE.db MESSAGE VOTES.json\n"
               "                                     set the votes on a message\n"
               "  history STORE.db [AGENT|FOLDER]    list the changes of the agents, or of one agent or the\n"
               "                                     agents of one folder, newest first\n"
               "  history --keep DAYS STORE.db       forget the changes older than DAYS days\n"
               "  show STORE.db CHANGE               print the agent's script as it was before the change\n"
               "  restore STORE.db CHANGE            put the agent back as it was before the change, as\n"
               "                                     a new change; a deleted agent comes back whole\n"
               "  log [FILE]                         print the application log\n"
               "  help                               this text\n"
               "A store may also be a database on a PostgreSQL server, named\n"
               "postgresql://USER@HOST:PORT/DATABASE; the password comes from ~/.pgpass or PGPASSWORD.\n")
        .arg(store::kMaxFolderLevels);
}

int run(const QStringList &arguments, Output io)
{
    const std::map<QString, std::function<int(const QStringList &, Output)>> commands = {
        {QStringLiteral("load"), load},
        {QStringLiteral("dump"), dump},
        {QStringLiteral("copy"), copy},
        {QStringLiteral("profile"), profile},
        {QStringLiteral("tree"), tree},
        {QStringLiteral("generate"), generate},
        {QStringLiteral("set-log"), setLog},
        {QStringLiteral("add-map"), addMap},
        {QStringLiteral("add-instance"), addInstance},
        {QStringLiteral("add-votes"), addVotes},
        {QStringLiteral("log"), log},
        {QStringLiteral("history"), history},
        {QStringLiteral("show"), show},
        {QStringLiteral("restore"), restore},
    };
    if (arguments.isEmpty() || arguments.first() == QLatin1String("help") ||
        arguments.first() == QLatin1String("--help")) {
        (arguments.isEmpty() ? io.err : io.out) << usage();
        return arguments.isEmpty() ? 2 : 0;
    }
    const auto it = commands.find(arguments.first());
    if (it == commands.end()) {
        io.err << "sorrelin-store: unknown command \"" << arguments.first() << "\"\n" << usage();
        return 2;
    }
    try {
        return it->second(arguments.mid(1), io);
    } catch (const Misuse &m) {
        io.err << "sorrelin-store " << arguments.first() << ": " << m.what << "\n" << usage();
        return 2;
    } catch (const com::ComError &e) {
        io.err << "sorrelin-store: " << e.description() << Qt::endl;
        return 1;
    }
}

} // namespace storetool
