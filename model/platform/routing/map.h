#pragma once

#include "platform/mapi/message.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace routing {

/// One row of a route map: an activity, what it does, its flags and its
/// arguments, all as text.
class MapRow {
public:
    MapRow(QString activity, QString action, QString flags, QStringList args);

    QString ActivityID() const { return m_activity; }
    QString Action() const { return m_action; }
    QString Flags() const { return m_flags; }
    /// The row's arguments: their number, and the values from index 0.
    void GetArgs(int &count, QStringList &args) const;

private:
    QString m_activity, m_action, m_flags;
    QStringList m_args;
};

/// The route map on a message: attach a message, open, read the rows. A new
/// map object is made for each use.
class Map {
public:
    /// The next `Open` works on `message`.
    void attach(const mapi::Message &message);
    /// Reads the attached message's map (`flags` is 0); a message with none
    /// on it has no rows. With no message attached it raises 0x80070057 and
    /// the map has no rows.
    void Open(int flags);
    /// 0 when there is no map.
    int RowCount() const;
    /// From 0; an index outside 0 to RowCount - 1 raises 9.
    MapRow Row(int index) const;

private:
    std::optional<mapi::Message> m_message;
    QVector<MapRow> m_rows;
};

} // namespace routing
