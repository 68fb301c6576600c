#include "tests/support/testenv.h"

#include "platform/os/userfolders.h"

#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

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
    return sourceDir() + u"/tests/fixtures/"_s + name;
}

bool makeForeignDatabase(const QString &path)
{
    const QString name = u"foreign-database"_s;
    bool made = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, name);
        db.setDatabaseName(path);
        made = db.open() && QSqlQuery(db).exec(u"CREATE TABLE recipes(name TEXT)"_s);
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return made;
}

} // namespace testsupport
