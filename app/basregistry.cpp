#include "app/basregistry.h"

#include <QtEndian>

namespace basRegistry {

using namespace registry;

long SetValueEx(Registry &reg, HKEY key, const QString &name, uint32_t type, const QVariant &value)
{
    switch (type) {
    case REG_SZ:
        // The text's own length: no NUL goes with it.
        return reg.RegSetValueEx(key, name, REG_SZ, value.toString().toUtf8());
    case REG_DWORD: {
        QByteArray bytes(4, '\0');
        qToLittleEndian<quint32>(static_cast<quint32>(value.toLongLong()), bytes.data());
        return reg.RegSetValueEx(key, name, REG_DWORD, bytes);
    }
    default:
        return 0;
    }
}

long QueryValueEx(Registry &reg, HKEY key, const QString &name, QVariant &value)
{
    value.clear();
    uint32_t type = 0;
    uint32_t size = 0;
    const long rc = reg.RegQueryValueEx(key, name, &type, nullptr, &size);
    if (rc != ERROR_SUCCESS)
        return rc;
    QByteArray data;
    switch (type) {
    case REG_SZ: {
        const long read = reg.RegQueryValueEx(key, name, nullptr, &data, &size);
        if (read == ERROR_SUCCESS)
            value = QString::fromUtf8(data.left(size));
        return read;
    }
    case REG_DWORD: {
        uint32_t four = 4;
        const long read = reg.RegQueryValueEx(key, name, nullptr, &data, &four);
        if (read == ERROR_SUCCESS && data.size() == 4)
            value = qFromLittleEndian<qint32>(data.constData());
        return read;
    }
    default:
        return -1;
    }
}

QVariant QueryValue(Registry &reg, HKEY root, const QString &keyName, const QString &valueName)
{
    try {
        HKEY key = 0;
        if (reg.RegOpenKeyEx(root, keyName, &key) != ERROR_SUCCESS)
            return QVariant();
        QVariant value;
        QueryValueEx(reg, key, valueName, value);
        reg.RegCloseKey(key);
        if (value.typeId() == QMetaType::QString) {
            QString text = value.toString();
            if (text.endsWith(QChar(u'\0')))
                text.chop(1);
            return text;
        }
        return value;
    } catch (...) {
        return QStringLiteral("");
    }
}

QVariant QueryValue(HKEY root, const QString &keyName, const QString &valueName)
{
    try {
        return QueryValue(Registry::system(), root, keyName, valueName);
    } catch (...) {
        return QStringLiteral("");
    }
}

bool SetKeyValue(Registry &reg, HKEY root, const QString &keyName, const QString &valueName,
                 const QVariant &value, uint32_t type)
{
    QString name = keyName;
    if (name.startsWith(QLatin1Char('\\')))
        name.remove(0, 1);
    if (name.isEmpty())
        return false;
    try {
        // The return codes aren't looked at: a refused write still gives true.
        HKEY key = 0;
        reg.RegCreateKeyEx(root, name, &key);
        SetValueEx(reg, key, valueName, type, value);
        reg.RegCloseKey(key);
        return true;
    } catch (...) {
        return false;
    }
}

bool SetKeyValue(HKEY root, const QString &keyName, const QString &valueName, const QVariant &value,
                 uint32_t type)
{
    try {
        return SetKeyValue(Registry::system(), root, keyName, valueName, value, type);
    } catch (...) {
        return false;
    }
}

} // namespace basRegistry
