#pragma once

#include "platform/mapi/message.h"

#include <QString>
#include <QVector>

namespace routing {

/// One recipient's answer to a vote.
struct TrackingRecord {
    QString Status; ///< "Approve", "Reject", blank when unanswered, or any text
    QString Time;
    QString Name;
};

/// Who has answered what on a message that went out for a vote. A new
/// tracking object is made for each use.
class Tracking {
public:
    /// Reads the message's records; a message that is no vote has none.
    void attach(const mapi::Message &message);
    int RecordCount() const { return static_cast<int>(m_records.size()); }
    /// From 1; an index outside 1 to RecordCount raises 9.
    TrackingRecord Record(int index) const;

private:
    QVector<TrackingRecord> m_records;
};

} // namespace routing
