#include "platform/mapi/profiles.h"

#include "platform/com/comerror.h"
#include "platform/registry/registry.h"
#include "platform/store/fixture.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

namespace mapi {

using namespace registry;

namespace {

QString readString(Registry &reg, HKEY key, const QString &name)
{
    QByteArray data;
    uint32_t size = 0;
    if (reg.RegQueryValueEx(key, name, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return QString();
    if (reg.RegQueryValueEx(key, name, nullptr, &data, &size) != ERROR_SUCCESS)
        return QString();
    return QString::fromUtf8(data);
}

void writeString(Registry &reg, HKEY key, const QString &name, const QString &value)
{
    reg.RegSetValueEx(key, name, REG_SZ, value.toUtf8());
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

ProfileChoice profileChoice()
{
    Registry &reg = Registry::system();
    ProfileChoice choice;
    HKEY key = 0;
    if (reg.RegOpenKeyEx(HKEY_CURRENT_USER, profilesKey(), &key) == ERROR_SUCCESS) {
        QString name;
        for (uint32_t i = 0; reg.RegEnumKeyEx(key, i, &name) == ERROR_SUCCESS; ++i)
            choice.dialog.profiles << name;
        choice.dialog.defaultProfile = readString(reg, key, QStringLiteral("DefaultProfile"));
        reg.RegCloseKey(key);
    }
    if (choice.dialog.profiles.isEmpty()) {
        choice.dialog.offerDemo = true;
        choice.dialog.demoProfile = demoProfileName();
    }
    return choice;
}

Profile readProfile(const QString &name)
{
    Registry &reg = Registry::system();
    HKEY key = 0;
    if (name.isEmpty() || name.contains(QLatin1Char('\\')) ||
        reg.RegOpenKeyEx(HKEY_CURRENT_USER, profilesKey() + QLatin1Char('\\') + name, &key) != ERROR_SUCCESS)
        throw com::ComError(com::err::NotFound, QStringLiteral("Collaboration Data Objects"),
                            QStringLiteral("[Collaboration Data Objects - [MAPI_E_NOT_FOUND(8004010F)]] "
                                           "There is no profile named \"%1\".")
                                .arg(name));
    Profile p;
    p.name = name;
    p.user = readString(reg, key, QStringLiteral("User"));
    p.store = readString(reg, key, QStringLiteral("Store"));
    reg.RegCloseKey(key);
    return p;
}

void writeProfile(const Profile &profile)
{
    Registry &reg = Registry::system();
    HKEY key = 0;
    if (reg.RegCreateKeyEx(HKEY_CURRENT_USER, profilesKey() + QLatin1Char('\\') + profile.name, &key) !=
        ERROR_SUCCESS)
        throw com::ComError(com::err::CallFailed, QStringLiteral("Collaboration Data Objects"),
                            QStringLiteral("The profile \"%1\" could not be recorded.").arg(profile.name));
    writeString(reg, key, QStringLiteral("User"), profile.user);
    writeString(reg, key, QStringLiteral("Store"), profile.store);
    reg.RegCloseKey(key);
    if (reg.RegOpenKeyEx(HKEY_CURRENT_USER, profilesKey(), &key) == ERROR_SUCCESS) {
        writeString(reg, key, QStringLiteral("DefaultProfile"), profile.name);
        reg.RegCloseKey(key);
    }
}

void makeDemoProfile(const QString &name)
{
    const QString dir =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/sorrelin");
    QDir().mkpath(dir);
    const QString storePath = dir + QLatin1Char('/') + name + QStringLiteral(".db");
    const QString fixture = QStringLiteral(SORRELIN_SHARE_DIR "/demo.json");
    if (!QFileInfo::exists(storePath))
        store::loadFixture(fixture, storePath);
    QFile file(fixture);
    QString user = QStringLiteral("Alice Admin");
    if (file.open(QIODevice::ReadOnly)) {
        const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
        user = root.value(QStringLiteral("user")).toString(user);
    }
    writeProfile(Profile{name, user, storePath});
}

} // namespace mapi
