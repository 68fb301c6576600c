#include "tests/support/testenv.h"

#include "platform/os/userfolders.h"

#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>

namespace testsupport {

TestHome::TestHome()
{
    QStandardPaths::setTestModeEnabled(true);
    os::redirectUserFolders(m_dir.path());
}

TestHome::~TestHome() = default;

QString sourceDir()
{
    const QByteArray env = qgetenv("SORRELIN_SOURCE_DIR");
    return env.isEmpty() ? QStringLiteral(SORRELIN_SHARE_DIR "/..") : QString::fromLocal8Bit(env);
}

QString fixture(const QString &name)
{
    return sourceDir() + QStringLiteral("/tests/fixtures/") + name;
}

bool makeForeignDatabase(const QString &path)
{
    const QString name = QStringLiteral("foreign-database");
    bool made = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        made = db.open() && QSqlQuery(db).exec(QStringLiteral("CREATE TABLE recipes(name TEXT)"));
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return made;
}

StoreWriteLock::StoreWriteLock(const QString &path) : m_connection(QStringLiteral("write-lock-") + path)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(path);
    QSqlQuery q(db);
    m_held = db.open() && q.exec(QStringLiteral("BEGIN IMMEDIATE")) &&
             q.exec(QStringLiteral("UPDATE meta SET value = value WHERE key = 'user'"));
}

StoreWriteLock::~StoreWriteLock()
{
    {
        QSqlDatabase db = QSqlDatabase::database(m_connection, false);
        QSqlQuery(db).exec(QStringLiteral("ROLLBACK"));
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connection);
}

} // namespace testsupport
