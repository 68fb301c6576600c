#pragma once

#include "platform/mapi/message.h"

#include <QHash>
#include <QString>

#include <optional>

namespace routing {

/// A message seen as a process instance of a route: attach, open, read.
/// One object serves a whole listing: it reads the states of a folder's
/// instances once, at its first open of a message there, and answers from
/// that snapshot for the folder's other messages.
class ProcessInstance {
public:
    /// The next `Open` works on `message`.
    void attach(const mapi::Message &message);
    /// Reads the instance's state. Raises 0x8004010F for a message that is
    /// no process instance: its status is then empty, while RUI and current
    /// row keep the numbers read last.
    void Open();
    /// The number that tells the instance apart.
    int RUI() const { return m_rui; }
    QString Status() const { return m_status; }
    /// The row of the map that the instance has reached.
    int CurrentRow() const { return m_row; }

private:
    struct State {
        int rui = 0;
        QString status;
        int row = 0;
    };
    std::optional<mapi::Message> m_message;
    QString m_folder; ///< whose states m_states holds
    QHash<qint64, State> m_states;
    int m_rui = 0;
    QString m_status;
    int m_row = 0;
};

} // namespace routing
