#include "tests/support/pgserver.h"

#include "platform/store/location.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSqlDatabase>

#include <arpa/inet.h>
#include <csignal>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace testsupport {

namespace {

const QString kBin = QStringLiteral("/usr/lib/postgresql/15/bin/");
constexpr uid_t kNobody = 65534;

/// A loopback port that nothing listens on just now.
int freePort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    int port = 0;
    if (fd >= 0 && ::bind(fd, reinterpret_cast<sockaddr *>(&address), size) == 0 &&
        ::getsockname(fd, reinterpret_cast<sockaddr *>(&address), &size) == 0)
        port = ntohs(address.sin_port);
    if (fd >= 0)
        ::close(fd);
    return port;
}

} // namespace

PgServer::PgServer()
{
    if (!QFileInfo(kBin + QStringLiteral("initdb")).isExecutable()) {
        m_unavailable =
            QStringLiteral("no PostgreSQL server programs in %1 (Debian package postgresql)").arg(kBin);
        return;
    }
    if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QPSQL"))) {
        m_unavailable = QStringLiteral("no PostgreSQL driver for Qt (Debian package libqt6sql6-psql)");
        return;
    }
    if (!m_dir.isValid() ||
        (::geteuid() == 0 && ::chown(QFile::encodeName(m_dir.path()).constData(), kNobody, kNobody) != 0)) {
        m_failure = QStringLiteral("the server's folder could not be made");
        return;
    }
    const QString data = m_dir.filePath(QStringLiteral("data"));
    if (!run(QStringLiteral("initdb"),
             {QStringLiteral("-D"), data, QStringLiteral("-U"), QStringLiteral("sorrelin"),
              QStringLiteral("-A"), QStringLiteral("trust"), QStringLiteral("-E"), QStringLiteral("UTF8"),
              // A server whose own order isn't the bytes' order, as most are.
              QStringLiteral("--locale=C.UTF-8"), QStringLiteral("--locale-provider=icu"),
              QStringLiteral("--icu-locale=en-US"), QStringLiteral("--no-sync")}))
        return;
    // Another test may take the port between the probe and the start.
    for (int attempt = 0; attempt < 5 && !m_started; ++attempt) {
        m_port = freePort();
        m_failure.clear();
        m_started = start(data);
    }
}

bool PgServer::start(const QString &data)
{
    // The server is this program's child and gets a signal when the program
    // ends, however it ends: a crashed test leaves no server behind.
    m_postgres.setProcessChannelMode(QProcess::MergedChannels);
    m_postgres.setStandardOutputFile(m_dir.filePath(QStringLiteral("log")), QIODevice::Append);
    m_postgres.setWorkingDirectory(m_dir.path());
    m_postgres.start(QStringLiteral("setpriv"),
                     asServerUser() + QStringList{QStringLiteral("--pdeathsig=TERM"),
                                                  kBin + QStringLiteral("postgres"), QStringLiteral("-D"),
                                                  data, QStringLiteral("-p"), QString::number(m_port),
                                                  QStringLiteral("-k"), m_dir.path(), QStringLiteral("-c"),
                                                  QStringLiteral("listen_addresses=127.0.0.1"),
                                                  QStringLiteral("-c"), QStringLiteral("fsync=off")});
    m_postgres.waitForStarted();
    for (int wait = 0; wait < 300 && m_postgres.state() == QProcess::Running; ++wait) {
        if (run(QStringLiteral("pg_isready"),
                {QStringLiteral("-q"), QStringLiteral("-h"), QStringLiteral("127.0.0.1"),
                 QStringLiteral("-p"), QString::number(m_port)})) {
            m_failure.clear();
            return true;
        }
        m_postgres.waitForFinished(100);
    }
    m_postgres.kill();
    m_postgres.waitForFinished();
    QFile log(m_dir.filePath(QStringLiteral("log")));
    log.open(QIODevice::ReadOnly);
    m_failure = QStringLiteral("the server did not start: ") + QString::fromLocal8Bit(log.readAll());
    return false;
}

PgServer::~PgServer()
{
    if (m_started) {
        // A fast shutdown: the server ends its sessions and stops.
        ::kill(static_cast<pid_t>(m_postgres.processId()), SIGINT);
        if (!m_postgres.waitForFinished(30000))
            m_postgres.kill();
        m_postgres.waitForFinished();
    }
}

QStringList PgServer::asServerUser()
{
    if (::geteuid() != 0)
        return {};
    return {QStringLiteral("--reuid=%1").arg(kNobody), QStringLiteral("--regid=%1").arg(kNobody),
            QStringLiteral("--clear-groups")};
}

bool PgServer::run(const QString &program, const QStringList &arguments)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.setWorkingDirectory(m_dir.path());
    p.start(QStringLiteral("setpriv"), asServerUser() + QStringList{kBin + program} + arguments);
    if (p.waitForFinished(120000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0)
        return true;
    QFile log(m_dir.filePath(QStringLiteral("log")));
    log.open(QIODevice::ReadOnly);
    m_failure = QStringLiteral("%1 failed: %2 %3")
                    .arg(program, QString::fromLocal8Bit(p.readAll()), QString::fromLocal8Bit(log.readAll()));
    return false;
}

QString PgServer::createDatabase(const QString &name)
{
    if (!run(QStringLiteral("createdb"),
             {QStringLiteral("-h"), QStringLiteral("127.0.0.1"), QStringLiteral("-p"),
              QString::number(m_port), QStringLiteral("-U"), QStringLiteral("sorrelin"), name}))
        return QString();
    return location(name);
}

QString PgServer::location(const QString &database, const QString &user) const
{
    return store::Location::server(QStringLiteral("127.0.0.1"), m_port, database, user).text();
}

} // namespace testsupport
