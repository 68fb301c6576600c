#include "platform/store/ids.h"

namespace store {

namespace {
QString hex(qint64 value, int width)
{
    // Not through QString::arg, whose general formatting costs a load of
    // many rows more than the rest of an identifier.
    return QString::number(value, 16).toUpper().rightJustified(width, QLatin1Char('0'));
}
} // namespace

QString makeStoreId(qint64 storeRow)
{
    return QStringLiteral("5EA10000") + hex(storeRow, 8);
}

QString makeEntryId(qint64 storeRow, IdKind kind, qint64 row)
{
    // The fixed middle keeps identifiers looking like the long provider
    // identifiers they stand in for; only the store, kind and row vary.
    return QStringLiteral("00000000") + hex(storeRow, 8) + hex(static_cast<int>(kind), 4) +
           QStringLiteral("A1B2C3D4") + hex(row, 20);
}

} // namespace store
