#include "platform/events/guid.h"

#include <QByteArray>
#include <QRegularExpression>

#include <algorithm>

namespace events {

namespace {

/// Swaps the byte order of the first three groups (4, 2 and 2 bytes); the
/// same step leads both ways between registry order and memory order.
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
    static const QRegularExpression form(QStringLiteral("^(\\{)?([0-9A-Fa-f]{8})-([0-9A-Fa-f]{4})-([0-9A-Fa-"
                                                        "f]{4})-([0-9A-Fa-f]{4})-([0-9A-Fa-f]{12})(\\})?$"));
    const QRegularExpressionMatch m = form.match(classId);
    if (!m.hasMatch() || m.hasCaptured(1) != m.hasCaptured(7))
        return QString();
    QString digits;
    for (int group = 2; group <= 6; ++group)
        digits += m.captured(group);
    return QString::fromLatin1(swapGroups(QByteArray::fromHex(digits.toLatin1())).toHex().toUpper());
}

QString registryForm(const QString &memoryOrder)
{
    static const QRegularExpression form(QStringLiteral("^[0-9A-Fa-f]{32}$"));
    if (!form.match(memoryOrder).hasMatch())
        return QString();
    const QString hex =
        QString::fromLatin1(swapGroups(QByteArray::fromHex(memoryOrder.toLatin1())).toHex().toUpper());
    return QLatin1Char('{') + hex.mid(0, 8) + QLatin1Char('-') + hex.mid(8, 4) + QLatin1Char('-') +
           hex.mid(12, 4) + QLatin1Char('-') + hex.mid(16, 4) + QLatin1Char('-') + hex.mid(20, 12) +
           QLatin1Char('}');
}

} // namespace events
