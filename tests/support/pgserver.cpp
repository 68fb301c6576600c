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

using namespace Qt::StringLiterals;

namespace testsupport {

namespace {

const QString kBin = u"/usr/lib/postgresql/15/bin/"_s;
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
    if (!QFileInfo(kBin + u"initdb"_s).isExecutable()) {
        m_unavailable = u"no PostgreSQL server programs in %1 (Debian package postgresql)"_s.arg(kBin);
        return;
    }
    if (!QSqlDatabase::isDriverAvailable(u"QPSQL"_s)) {
        m_unavailable = u"no PostgreSQL driver for Qt (Debian package libqt6sql6-psql)"_s;
        return;
    }
    if (!m_dir.isValid() ||
        (::geteuid() == 0 && ::chown(QFile::encodeName(m_dir.path()).constData(), kNobody, kNobody) != 0)) {
        m_failure = u"the server's folder could not be made"_s;
        return;
    }
    const QString data = m_dir.filePath(u"data"_s);
    if (!run(u"initdb"_s,
             {u"-D"_s, data, u"-U"_s, u"sorrelin"_s, u"-A"_s, u"trust"_s, u"-E"_s, u"UTF8"_s,
              // A server whose own order isn't the bytes' order, as most are.
              u"--locale=C.UTF-8"_s, u"--locale-provider=icu"_s, u"--icu-locale=en-US"_s, u"--no-sync"_s}))
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
    m_postgres.setStandardOutputFile(m_dir.filePath(u"log"_s), QIODevice::Append);
    m_postgres.setWorkingDirectory(m_dir.path());
    m_postgres.start(u"setpriv"_s,
                     asServerUser() + QStringList{u"--pdeathsig=TERM"_s, kBin + u"postgres"_s, u"-D"_s, data,
                                                  u"-p"_s, QString::number(m_port), u"-k"_s, m_dir.path(),
                                                  u"-c"_s, u"listen_addresses=127.0.0.1"_s, u"-c"_s,
                                                  u"fsync=off"_s});
    m_postgres.waitForStarted();
    for (int wait = 0; wait < 300 && m_postgres.state() == QProcess::Running; ++wait) {
        if (run(u"pg_isready"_s, {u"-q"_s, u"-h"_s, u"127.0.0.1"_s, u"-p"_s, QString::number(m_port)})) {
            m_failure.clear();
            return true;
        }
        m_postgres.waitForFinished(100);
    }
    m_postgres.kill();
    m_postgres.waitForFinished();
    QFile log(m_dir.filePath(u"log"_s));
    log.open(QIODevice::ReadOnly);
    m_failure = u"the server did not start: "_s + QString::fromLocal8Bit(log.readAll());
    return false;
}

PgServer::~PgServer()
{
    stop();
}

void PgServer::stop()
{
    if (!m_started)
        return;
    // A fast shutdown: the server ends its sessions and stops.
    ::kill(static_cast<pid_t>(m_postgres.processId()), SIGINT);
    if (!m_postgres.waitForFinished(30000))
        m_postgres.kill();
    m_postgres.waitForFinished();
    m_started = false;
}

bool PgServer::restart()
{
    stop();
    m_started = start(m_dir.filePath(u"data"_s));
    return m_started;
}

QStringList PgServer::asServerUser()
{
    if (::geteuid() != 0)
        return {};
    return {u"--reuid=%1"_s.arg(kNobody), u"--regid=%1"_s.arg(kNobody), u"--clear-groups"_s};
}

bool PgServer::run(const QString &program, const QStringList &arguments)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.setWorkingDirectory(m_dir.path());
    p.start(u"setpriv"_s, asServerUser() + QStringList{kBin + program} + arguments);
    if (p.waitForFinished(120000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0)
        return true;
    QFile log(m_dir.filePath(u"log"_s));
    log.open(QIODevice::ReadOnly);
    m_failure = u"%1 failed: %2 %3"_s.arg(program, QString::fromLocal8Bit(p.readAll()),
                                          QString::fromLocal8Bit(log.readAll()));
    return false;
}

QString PgServer::createDatabase(const QString &name)
{
    if (!run(u"createdb"_s,
             {u"-h"_s, u"127.0.0.1"_s, u"-p"_s, QString::number(m_port), u"-U"_s, u"sorrelin"_s, name}))
        return QString();
    return location(name);
}

QString PgServer::location(const QString &database, const QString &user) const
{
    return store::Location::server(u"127.0.0.1"_s, m_port, database, user).text();
}

} // namespace testsupport
