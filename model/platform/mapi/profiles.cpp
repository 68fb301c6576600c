#include "platform/mapi/profiles.h"

#include "platform/mapi/sessionstate.h"
#include "platform/os/sharedir.h"
#include "platform/registry/registry.h"
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/location.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>

namespace mapi {

using namespace registry;

namespace {

const QString kUser = QStringLiteral("User");
const QString kStore = QStringLiteral("Store");
const QString kDefault = QStringLiteral("DefaultProfile");
const QString kServer = QStringLiteral("Server");
const QString kPort = QStringLiteral("Port");
const QString kDatabase = QStringLiteral("Database");
const QString kLogin = QStringLiteral("Login");

/// An open key, closed when it goes.
class Key {
public:
    Key(Registry &reg, const QString &path, bool create) : m_reg(reg)
    {
        const long rc = create ? reg.RegCreateKeyEx(HKEY_CURRENT_USER, path, &m_key)
                               : reg.RegOpenKeyEx(HKEY_CURRENT_USER, path, &m_key);
        m_open = rc == ERROR_SUCCESS;
    }
    ~Key()
    {
        if (m_open)
            m_reg.RegCloseKey(m_key);
    }
    Key(const Key &) = delete;
    Key &operator=(const Key &) = delete;

    bool isOpen() const { return m_open; }

    /// A REG_SZ value; empty when there is none.
    QString text(const QString &name) const
    {
        uint32_t size = 0;
        if (m_reg.RegQueryValueEx(m_key, name, nullptr, nullptr, &size) != ERROR_SUCCESS)
            return QString();
        QByteArray data;
        if (m_reg.RegQueryValueEx(m_key, name, nullptr, &data, &size) != ERROR_SUCCESS)
            return QString();
        QString value = QString::fromUtf8(data.left(size));
        while (value.endsWith(QChar(u'\0')))
            value.chop(1);
        return value;
    }

    bool setText(const QString &name, const QString &value)
    {
        return m_reg.RegSetValueEx(m_key, name, REG_SZ, value.toUtf8()) == ERROR_SUCCESS;
    }

    QStringList subKeys() const
    {
        QStringList names;
        QString name;
        for (uint32_t i = 0; m_reg.RegEnumKeyEx(m_key, i, &name) == ERROR_SUCCESS; ++i)
            names << name;
        return names;
    }

private:
    Registry &m_reg;
    HKEY m_key = 0;
    bool m_open = false;
};

QString profileKey(const QString &name)
{
    return profilesKey() + QLatin1Char('\\') + name;
}

} // namespace

QString profilesKey()
{
    return QStringLiteral(
        "Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows Messaging Subsystem\\Profiles");
}

QString demoProfileName()
{
    return QStringLiteral("Demo");
}

ui::ProfileChoice profileChoice()
{
    ui::ProfileChoice choice;
    const Key key(Registry::system(), profilesKey(), false);
    if (key.isOpen()) {
        choice.profiles = key.subKeys();
        choice.defaultProfile = key.text(kDefault);
    }
    if (choice.profiles.isEmpty()) {
        choice.offerDemo = true;
        choice.demoProfile = demoProfileName();
    }
    return choice;
}

Profile readProfile(const QString &name)
{
    const Key key(Registry::system(), profileKey(name), false);
    if (name.isEmpty() || name.contains(QLatin1Char('\\')) || !key.isOpen())
        throw notFound(QStringLiteral("There is no profile named \"%1\".").arg(name));
    const QString server = key.text(kServer);
    const QString store = server.isEmpty() ? key.text(kStore)
                                           : store::Location::server(server, key.text(kPort).toInt(),
                                                                     key.text(kDatabase), key.text(kLogin))
                                                 .text();
    return Profile{name, key.text(kUser), store};
}

void writeProfile(const Profile &profile)
{
    Registry &reg = Registry::system();
    Key key(reg, profileKey(profile.name), true);
    const store::Location location = store::Location::parse(profile.store);
    // A profile names one kind of store: the other kind's values are emptied.
    const bool named = !profile.name.isEmpty() && !profile.name.contains(QLatin1Char('\\'));
    const bool recorded =
        named && key.isOpen() && key.setText(kUser, profile.user) &&
        key.setText(kStore, location.onServer() ? QString() : profile.store) &&
        key.setText(kServer, location.onServer() ? location.host : QString()) &&
        key.setText(kPort, location.onServer() ? QString::number(location.port) : QString()) &&
        key.setText(kDatabase, location.database) && key.setText(kLogin, location.user);
    if (!recorded)
        throw com::ComError(com::err::CallFailed, kCdoSource,
                            QStringLiteral("The profile \"%1\" could not be recorded.").arg(profile.name));
    Key profiles(reg, profilesKey(), true);
    if (profiles.isOpen())
        profiles.setText(kDefault, profile.name);
}

void deleteProfile(const QString &name)
{
    if (name.isEmpty() || name.contains(QLatin1Char('\\')) ||
        Registry::system().RegDeleteKey(HKEY_CURRENT_USER, profileKey(name)) != ERROR_SUCCESS)
        throw com::ComError(com::err::CallFailed, kCdoSource,
                            QStringLiteral("The profile \"%1\" could not be removed.").arg(name));
}

void makeDemoProfile(const QString &name)
{
    const QString dir =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/sorrelin");
    if (!QDir().mkpath(dir))
        throw com::ComError(
            com::err::PathNotFound, kCdoSource,
            QStringLiteral("The folder %1 could not be made.").arg(QDir::toNativeSeparators(dir)));
    const QString storePath = dir + QLatin1Char('/') + name + QStringLiteral(".db");
    {
        // Two programs started at once by a new user make the store once:
        // the second waits for the first and then finds it made.
        QLockFile lock(storePath + QStringLiteral(".lock"));
        lock.setStaleLockTime(60000);
        if (!lock.tryLock(60000))
            throw com::ComError(com::err::Busy, kCdoSource,
                                QStringLiteral("The demo store %1 is being made by another program.")
                                    .arg(QDir::toNativeSeparators(storePath)));
        if (!QFileInfo::exists(storePath))
            store::loadFixture(os::shareDir() + QStringLiteral("/demo.json"), storePath);
    }
    const QString user = store::Database::open(storePath)->meta(QStringLiteral("user"));
    writeProfile(Profile{name, user, storePath});
}

} // namespace mapi
