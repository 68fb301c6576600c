#include "platform/events/guid.h"

#include <QByteArray>
#include <QUuid>

#include <algorithm>

namespace events {

namespace {
/// Swaps the byte order of the first three groups, both ways.
QByteArray swapGroups(QByteArray bytes)
{
    std::reverse(bytes.begin(), bytes.begin() + 4);
    std::reverse(bytes.begin() + 4, bytes.begin() + 6);
    std::reverse(bytes.begin() + 6, bytes.begin() + 8);
    return bytes;
}
} // namespace

QString memoryOrderHex(const QString &classId)
{
    const QUuid uuid = QUuid::fromString(classId);
    if (uuid.isNull())
        return QString();
    return QString::fromLatin1(swapGroups(uuid.toRfc4122()).toHex().toUpper());
}

QString registryForm(const QString &memoryOrder)
{
    const QByteArray bytes = QByteArray::fromHex(memoryOrder.toLatin1());
    if (memoryOrder.size() != 32 || bytes.size() != 16)
        return QString();
    return QUuid::fromRfc4122(swapGroups(bytes)).toString(QUuid::WithBraces).toUpper();
}

} // namespace events
