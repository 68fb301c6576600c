#include "platform/routing/map.h"

#include "platform/routing/errors.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace routing {

MapRow::MapRow(QString activity, QString action, QString flags, QStringList args)
    : m_activity(std::move(activity)), m_action(std::move(action)), m_flags(std::move(flags)),
      m_args(std::move(args))
{
}

void MapRow::GetArgs(int &count, QStringList &args) const
{
    count = static_cast<int>(m_args.size());
    args = m_args;
}

void Map::attach(const mapi::Message &message)
{
    m_message = message;
    m_rows.clear();
}

void Map::Open(int flags)
{
    Q_UNUSED(flags);
    m_rows.clear();
    if (!m_message)
        throw routingError(com::err::InvalidParameter, QStringLiteral("No message is attached."));
    QSqlQuery &q = m_message->state()->run(
        QStringLiteral("SELECT activity, action, flags, args FROM map_rows WHERE message = ? ORDER BY row"),
        {m_message->row()});
    while (q.next()) {
        // The arguments are kept as a JSON array; any value reads as its text.
        QStringList args;
        for (const QJsonValue &v : QJsonDocument::fromJson(q.value(3).toString().toUtf8()).array())
            args << v.toVariant().toString();
        m_rows.append(MapRow(q.value(0).toString(), q.value(1).toString(), q.value(2).toString(), args));
    }
}

int Map::RowCount() const
{
    return static_cast<int>(m_rows.size());
}

MapRow Map::Row(int index) const
{
    if (index < 0 || index >= m_rows.size())
        throw routingError(com::err::SubscriptOutOfRange,
                           QStringLiteral("The map has no row %1.").arg(index));
    return m_rows.at(index);
}

} // namespace routing
