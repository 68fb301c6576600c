#pragma once

#include "platform/mapi/session.h"
#include "platform/store/database.h"

#include <QString>

#include <memory>

namespace ui {
class Prompter;
}

namespace agents {

/// The change of one agent that the program loaded and shows: what a write
/// of it must find in the store to go ahead without asking.
struct LoadedChange {
    QString entryId;
    qint64 number = 0;
};

/// What the program loads for `entryId` now.
LoadedChange loadChange(const mapi::Session &session, const QString &entryId);

/// Begins the write transaction of the loaded agent. When another program
/// has changed the agent since it was loaded, the user is told by whom and
/// when and asked whether to write over it: No gives nothing, and nothing is
/// written or held; Yes takes the store's change as the one loaded.
/// `name` names the agent in the question.
std::unique_ptr<store::Database::Transaction>
beginGuardedWrite(mapi::Session &session, ui::Prompter &prompter, LoadedChange &loaded, const QString &name);

/// Commits the write, after which the program has loaded what it wrote.
void commitGuardedWrite(mapi::Session &session, store::Database::Transaction &transaction,
                        LoadedChange &loaded);

} // namespace agents
