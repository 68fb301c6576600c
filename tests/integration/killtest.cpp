// Kills the program at random moments while it installs, deletes and
// changes agents, and checks after each kill that the store is whole, holds
// no half agent, and keeps each change of an agent with its history row:
//     killtest [--kills N] [--seed S]
// It prints its figures and fails when any kill broke the store.
#include "agentlines.h"
#include "driverprocess.h"
#include "platform/com/comerror.h"
#include "platform/store/database.h"
#include "storecheck.h"
#include "tests/support/testenv.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTextStream>
#include <QThread>

using namespace Qt::StringLiterals;

using testsupport::DriverProcess;

namespace {

/// The writes of one command take a few milliseconds; kills fall in this window.
constexpr quint32 kKillWindowUs = 12000;

const QString kFolders =
    u"\\Mailbox - Tess Tester\\Empty | \\Mailbox - Tess Tester\\Parent\\Child | \\Mailbox - Tess Tester\\Inbox"_s;

/// Changes without their history row, and history rows without their change.
const std::pair<const char *, const char *> kHistoryQueries[] = {
    {"changes without their history rows", "SELECT c.agent FROM agent_changes c WHERE c.change_no <>"
                                           " (SELECT count(*) FROM agent_history h WHERE h.agent = c.agent)"},
    {"history row without its change",
     "SELECT h.agent FROM agent_history h LEFT JOIN agent_changes c ON c.agent = h.agent"
     " WHERE c.agent IS NULL OR h.change_no > c.change_no"},
};

QStringList historyFaults(const QString &path)
{
    QStringList faults;
    try {
        const auto db = store::Database::open(path, store::Database::Access::ReadOnly);
        for (const auto &[what, sql] : kHistoryQueries) {
            QSqlQuery q = db->run(QString::fromLatin1(sql));
            while (q.next())
                faults << QString::fromLatin1(what) + u": "_s + q.value(0).toString();
        }
    } catch (const com::ComError &e) {
        faults << e.description();
    }
    return faults;
}

QStringList remove(const QString &agent)
{
    QStringList lines = testsupport::removeLines(agent);
    lines.insert(2, u"answer OK"_s);
    return lines;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    int kills = 12;
    quint32 seed = QRandomGenerator::global()->generate();
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args.at(i) == "--kills"_L1)
            kills = args.at(i + 1).toInt();
        else if (args.at(i) == "--seed"_L1)
            seed = args.at(i + 1).toUInt();
    }
    QTextStream out(stdout);
    out << "seed " << seed << Qt::endl;
    QRandomGenerator random(seed);
    const testsupport::TestHome home;
    const QString driverHome = home.file(u"driver"_s);

    QString store;
    QSet<QString> known;
    {
        DriverProcess first(driverHome);
        store =
            first.send(u"fixture "_s + testsupport::fixture(u"agents.json"_s)).value(u"store"_s).toString();
        first.finish();
        known = testsupport::StoreCheck::of(store).halfAgents;
    }
    int broken = 0;
    int half = 0;
    int failedStarts = 0;
    int unkept = 0;
    for (int round = 1; round <= kills; ++round) {
        DriverProcess driver(driverHome);
        driver.send(u"answer Test"_s);
        if (!driver.ok(u"start"_s)) {
            ++failedStarts;
            out << "round " << round << ": the program did not start on the store" << Qt::endl;
            continue;
        }
        // The agents of the tree now, for a deletion or a rename.
        QStringList agents;
        for (const auto node : driver.send(u"state"_s).value(u"tree"_s).toArray())
            if (node.toObject().value(u"image"_s).toInt() >= 19)
                agents << node.toObject().value(u"path"_s).toString();
        const int what = agents.isEmpty() ? 0 : static_cast<int>(random.bounded(3));
        const QString agent = agents.isEmpty() ? QString() : agents.at(random.bounded(agents.size()));
        const QStringList lines = what == 0   ? testsupport::installLines(u"Killed %1"_s.arg(round), kFolders)
                                  : what == 1 ? remove(agent)
                                              : testsupport::renameLines(agent, u"Renamed %1"_s.arg(round));
        // Everything up to the command that writes runs to its end; the kill
        // comes while that command runs, or just after.
        for (const QString &line : lines.mid(0, lines.size() - 1)) {
            const QJsonObject answer = driver.send(line);
            if (!answer.value(u"ok"_s).toBool())
                out << "round " << round << ": " << line << ": " << answer.value(u"error"_s).toString()
                    << Qt::endl;
        }
        driver.post({lines.last()});
        QThread::usleep(random.bounded(kKillWindowUs));
        driver.kill();

        const testsupport::StoreCheck check = testsupport::StoreCheck::of(store);
        if (check.integrity != "ok"_L1) {
            ++broken;
            out << "round " << round << ": integrity " << check.integrity << Qt::endl;
        }
        // Each half agent is counted in the round that made it; the fixture's
        // own orphans are expected until the program deletes them.
        for (const QString &h : check.halfAgents - known) {
            ++half;
            out << "round " << round << ": " << h << Qt::endl;
        }
        known = check.halfAgents;
        for (const QString &fault : historyFaults(store)) {
            ++unkept;
            out << "round " << round << ": " << fault << Qt::endl;
        }
    }
    out << kills << " kills, " << broken << " broken stores, " << half << " half agents, " << failedStarts
        << " failed starts, " << unkept << " changes and history rows apart" << Qt::endl;
    return broken == 0 && half == 0 && failedStarts == 0 && unkept == 0 ? 0 : 1;
}
