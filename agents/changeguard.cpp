#include "agents/changeguard.h"

#include "platform/ui/prompter.h"

#include <QDateTime>

namespace agents {

namespace {

QString question(const QString &name, const store::AgentChange &change)
{
    const QDateTime at = QDateTime::fromString(change.at, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return QStringLiteral("'%1' was changed by %2 at %3 after you opened it.\rSave your version over it?")
        .arg(name, change.user, at.toString(QStringLiteral("HH:mm")));
}

} // namespace

LoadedChange loadChange(const mapi::Session &session, const QString &entryId)
{
    return {entryId, session.AgentChange(entryId).number};
}

std::unique_ptr<store::Database::Transaction>
beginGuardedWrite(mapi::Session &session, ui::Prompter &prompter, LoadedChange &loaded, const QString &name)
{
    for (;;) {
        auto transaction = session.BeginTransaction();
        const store::AgentChange now = session.HoldAgentChange(loaded.entryId);
        if (now.number == loaded.number)
            return transaction;
        // The other program's change is not held while the user thinks.
        transaction.reset();
        if (prompter.msgBox(question(name, now), ui::Buttons::YesNo, ui::Icon::Exclamation, 2, QString()) ==
            ui::Answer::No)
            return nullptr;
        loaded.number = now.number;
    }
}

void commitGuardedWrite(mapi::Session &session, store::Database::Transaction &transaction,
                        LoadedChange &loaded)
{
    const qint64 written = session.HoldAgentChange(loaded.entryId).number;
    transaction.commit();
    loaded.number = written;
}

} // namespace agents
