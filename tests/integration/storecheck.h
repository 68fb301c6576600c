#pragma once

#include <QSet>
#include <QString>

namespace store {
class Database;
}

namespace testsupport {

/// What another process finds in a store file after the program: SQLite's
/// own integrity check (or why the store can't be opened), and every agent
/// that is not whole (a binding without its binding message, script or state
/// message; a binding or state message without its binding), each as a line
/// of words.
struct StoreCheck {
    QString integrity;
    QSet<QString> halfAgents;

    static StoreCheck of(const QString &path);
    /// The agents that are not whole in a store of either engine.
    static QSet<QString> halfAgentsIn(const store::Database &db);
};

} // namespace testsupport
