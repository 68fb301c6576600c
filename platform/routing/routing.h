#pragma once

#include "platform/mapi/message.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace routing {

/// One row of a route map.
class MapRow {
public:
    MapRow(QString activity, QString action, QString flags, QStringList args);

    QString ActivityID() const { return m_activity; }
    QString Action() const { return m_action; }
    QString Flags() const { return m_flags; }
    /// The row's arguments: their count, and the values from index 0.
    void GetArgs(int &count, QStringList &args) const;

private:
    QString m_activity, m_action, m_flags;
    QStringList m_args;
};

/// The route map on a message: attach a message, open, read the rows.
class Map {
public:
    void attach(const mapi::Message &message);
    /// Reads the attached message's map; with no message the map is empty.
    void Open(int flags);
    /// 0 when there is no map.
    int RowCount() const;
    /// From 0.
    MapRow Row(int index) const;

private:
    std::optional<mapi::Message> m_message;
    QVector<MapRow> m_rows;
};

/// A message seen as a process instance of a route.
class ProcessInstance {
public:
    void attach(const mapi::Message &message);
    /// Raises when the message is no process instance.
    void Open();
    int RUI() const { return m_rui; }
    QString Status() const { return m_status; }
    int CurrentRow() const { return m_row; }

private:
    std::optional<mapi::Message> m_message;
    int m_rui = 0;
    QString m_status;
    int m_row = 0;
};

struct TrackingRecord {
    QString Status;
    QString Time;
    QString Name;
};

/// Who has answered what on a message that went out for a vote.
class Tracking {
public:
    void attach(const mapi::Message &message);
    int RecordCount() const { return static_cast<int>(m_records.size()); }
    /// From 1.
    TrackingRecord Record(int index) const;

private:
    QVector<TrackingRecord> m_records;
};

} // namespace routing
