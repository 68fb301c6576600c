#include "platform/routing/routing.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace routing {

namespace {
const QString kSource = QStringLiteral("Exchange Routing Objects");

com::ComError noSuchRow(int index)
{
    return com::ComError(com::err::SubscriptOutOfRange, kSource,
                         QStringLiteral("There is no row %1.").arg(index));
}
} // namespace

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
        return;
    const mapi::StatePtr &state = m_message->state();
    QSqlQuery q = state->db->run(
        QStringLiteral("SELECT activity, action, flags, args FROM map_rows WHERE message = ? ORDER BY row"),
        {m_message->row()});
    while (q.next()) {
        QStringList args;
        for (const QJsonValue &v : QJsonDocument::fromJson(q.value(3).toString().toUtf8()).array())
            args << v.toString();
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
        throw noSuchRow(index);
    return m_rows.at(index);
}

void ProcessInstance::attach(const mapi::Message &message)
{
    m_message = message;
}

void ProcessInstance::Open()
{
    if (!m_message)
        throw com::ComError(com::err::InvalidParameter, kSource, QStringLiteral("No message is attached."));
    const mapi::StatePtr &state = m_message->state();
    QSqlQuery q = state->db->run(QStringLiteral("SELECT rui, status, row FROM instances WHERE message = ?"),
                                 {m_message->row()});
    if (!q.next())
        throw com::ComError(
            com::err::NotFound, kSource,
            QStringLiteral("The message \"%1\" is no process instance.").arg(m_message->Subject()));
    m_rui = q.value(0).toInt();
    m_status = q.value(1).toString();
    m_row = q.value(2).toInt();
}

void Tracking::attach(const mapi::Message &message)
{
    m_records.clear();
    const mapi::StatePtr &state = message.state();
    QSqlQuery q = state->db->run(
        QStringLiteral("SELECT status, at, name FROM votes WHERE message = ? ORDER BY seq"), {message.row()});
    while (q.next())
        m_records.append(TrackingRecord{q.value(0).toString(), q.value(1).toString(), q.value(2).toString()});
}

TrackingRecord Tracking::Record(int index) const
{
    if (index < 1 || index > m_records.size())
        throw noSuchRow(index);
    return m_records.at(index - 1);
}

} // namespace routing
