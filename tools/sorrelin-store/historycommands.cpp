#include "tools/sorrelin-store/historycommands.h"

#include "platform/store/database.h"
#include "platform/store/history.h"
#include "tools/sorrelin-store/arguments.h"

#include <QDateTime>
#include <QFile>
#include <QMap>

namespace storetool {

namespace {

/// The one who runs the command, as the history names them: the login of
/// a server store, else the system's user.
QString whoRuns(const store::Database &db)
{
    if (db.onServer())
        return store::Location::parse(db.path()).user;
    const QString user = qEnvironmentVariable("USER", qEnvironmentVariable("USERNAME"));
    return user.isEmpty() ? QStringLiteral("sorrelin-store") : user;
}

qint64 changeNumber(const QString &text)
{
    bool ok = false;
    const qint64 n = text.toLongLong(&ok);
    if (!ok || n <= 0)
        throw Misuse{QStringLiteral("CHANGE must be the number of a change, not \"%1\"").arg(text)};
    return n;
}

int keep(const QStringList &a, Output io)
{
    need(a, 3);
    const int days = number(a.at(1), QStringLiteral("--keep"));
    if (days < 0)
        throw Misuse{QStringLiteral("--keep can't be negative")};
    const std::unique_ptr<store::Database> db = store::Database::open(a.at(2));
    const QString cutoff =
        QDateTime::currentDateTime().addDays(-days).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    const int removed = store::pruneHistory(*db, cutoff);
    io.out << "Removed " << removed << " change(s) older than " << days << " day(s) from the history of "
           << a.at(2) << Qt::endl;
    return 0;
}

} // namespace

int history(const QStringList &a, Output io)
{
    if (!a.isEmpty() && a.first() == QLatin1String("--keep"))
        return keep(a, io);
    if (a.isEmpty() || a.size() > 2)
        throw Misuse{QStringLiteral("history takes the store and at most one agent or folder")};
    const std::unique_ptr<store::Database> db =
        store::Database::open(a.at(0), store::Database::Access::ReadOnly);
    const QList<store::Change> changes =
        store::changes(*db, a.size() == 2 ? store::agentsNamed(*db, a.at(1)) : QStringList());
    if (changes.isEmpty()) {
        io.out << "No change is kept." << Qt::endl;
        return 0;
    }
    QMap<QString, QString> paths;
    io.out << "Change\tWhen\tWho\tWhat\tAgent\tFolder\n";
    for (const store::Change &c : changes) {
        if (!paths.contains(c.folder)) {
            const QString path = store::folderPath(*db, c.folder);
            paths.insert(c.folder,
                         path.isEmpty() ? QStringLiteral("(a folder no longer in the store)") : path);
        }
        io.out << c.id << '\t' << c.at << '\t' << c.user << '\t' << c.what << '\t' << c.name << '\t'
               << paths.value(c.folder) << '\n';
    }
    io.out.flush();
    return 0;
}

int show(const QStringList &a, Output io)
{
    need(a, 2);
    const qint64 id = changeNumber(a.at(1));
    const std::unique_ptr<store::Database> db =
        store::Database::open(a.at(0), store::Database::Access::ReadOnly);
    const QByteArray script = store::scriptBefore(*db, id);
    io.out.flush();
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly) || out.write(script) != script.size())
        throw com::ComError(
            com::err::FileAccess, QStringLiteral("sorrelin-store"),
            QStringLiteral("The standard output could not be written: %1").arg(out.errorString()));
    return 0;
}

int restore(const QStringList &a, Output io)
{
    need(a, 2);
    const qint64 id = changeNumber(a.at(1));
    const std::unique_ptr<store::Database> db = store::Database::open(a.at(0));
    const qint64 made = store::restoreChange(*db, id, whoRuns(*db));
    const store::Change c = store::change(*db, made);
    io.out << "Restored \"" << c.name << "\" in " << store::folderPath(*db, c.folder)
           << " as it was before change " << id << ", as change " << made << Qt::endl;
    return 0;
}

} // namespace storetool
