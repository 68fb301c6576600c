#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QTest>

namespace testsupport {

/// A throw-away PostgreSQL server for one test program: a cluster made with
/// Debian's initdb in a temporary folder, listening on a free loopback port,
/// logins trusted, stopped and removed when the object goes. The server
/// programs refuse to run as root, so a root test runs them as nobody.
class PgServer {
public:
    PgServer();
    ~PgServer();
    PgServer(const PgServer &) = delete;
    PgServer &operator=(const PgServer &) = delete;

    /// Why there is no server: empty when it runs. Only missing programs are
    /// a reason to skip; a server that fails to start is a failure.
    const QString &unavailable() const { return m_unavailable; }
    const QString &failure() const { return m_failure; }
    bool running() const { return m_unavailable.isEmpty() && m_failure.isEmpty(); }

    int port() const { return m_port; }

    /// Stops the server, as its administrator would, and starts it again on
    /// the same port: a program's sessions on it are gone meanwhile.
    void stop();
    bool restart();

    /// Makes an empty database and gives its store location.
    QString createDatabase(const QString &name);

    /// The location of a database on this server, made or not.
    QString location(const QString &database, const QString &user = QStringLiteral("sorrelin")) const;

private:
    bool run(const QString &program, const QStringList &arguments);
    bool start(const QString &data);
    /// What setpriv needs to run a server program as nobody when this is root.
    static QStringList asServerUser();

    QTemporaryDir m_dir{QStringLiteral("/tmp/sorrelin-pg-XXXXXX")};
    QProcess m_postgres;
    QString m_unavailable;
    QString m_failure;
    int m_port = 0;
    bool m_started = false;
};

} // namespace testsupport

/// In a test function: skips the test, saying why, when this system has no
/// PostgreSQL server programs; fails it when the server did not start.
#define SORRELIN_REQUIRE_PGSERVER(server)                                                                    \
    do {                                                                                                     \
        if (!(server).unavailable().isEmpty())                                                               \
            QSKIP(qPrintable(QStringLiteral("PostgreSQL tests skipped: ") + (server).unavailable()));        \
        QVERIFY2((server).running(), qPrintable((server).failure()));                                        \
    } while (false)
