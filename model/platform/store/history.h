#pragma once

#include "platform/store/statements.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QVariant>

namespace store {

class Database;

/// What a change did to an agent.
enum class ChangeKind { Script, Properties, Created, Deleted, Restored };

/// The word for a kind of change ("script", "properties", "created",
/// "deleted", "restored").
QString changeKindText(ChangeKind kind);

/// An agent as the store holds it at one moment: its binding row and its
/// binding message with every field, each as far as it is there. Empty for
/// an agent that is not in the store.
struct AgentImage {
    QJsonObject binding; ///< the binding's columns; empty when it has none
    QJsonObject message; ///< subject, times and fields of the binding message
    QVariant script;     ///< the binding message's script, apart from its fields; null for none
    QString name;        ///< the binding's name, or the message's subject
    QString folder;      ///< the entry identifier of the agent's folder

    bool isEmpty() const { return binding.isEmpty() && message.isEmpty(); }
};

/// Reads the agent (named by its binding message's entry identifier) now.
AgentImage agentImage(const RunStatement &run, const QString &agent);

/// Gives a store made before changes were kept the table that keeps them;
/// nothing happens to a store that has it.
void addHistory(Database &db);

/// Keeps `before`, what the agent was before the change numbered `number`,
/// with who and when (`at`, the store's time); run inside the change's own transaction. The row of
/// an agent that was not there before names the agent as it is now.
void keepChange(const RunStatement &run, const QString &agent, qint64 number, const QString &at,
                const QString &user, ChangeKind what, const AgentImage &before);

/// One kept change.
struct Change {
    qint64 id = 0;
    QString agent;
    qint64 number = 0; ///< the agent's change number it made
    QString at;
    QString user;
    QString what;
    QString name;
    QString folder;     ///< the folder's entry identifier
    QJsonObject before; ///< an AgentImage's binding and message; empty for a creation
    QVariant script;    ///< the script before the change; null for none
};

/// The changes of `agents` (all of them when empty), newest first.
QList<Change> changes(const Database &db, const QStringList &agents = {});

/// One change; raises when the store keeps no change `id`.
Change change(const Database &db, qint64 id);

/// The agents that `path` names: an agent's entry identifier, an agent as
/// "\Store\Folder\Name" (now or at any kept change), or a folder, for every
/// agent it held. Raises when it names nothing.
QStringList agentsNamed(Database &db, const QString &path);

/// The folder path ("\Store\Folder\Sub") of a folder's entry identifier, or
/// an empty text when the folder is gone.
QString folderPath(const Database &db, const QString &folder);

/// The script of the agent before change `id`; raises when there was none.
QByteArray scriptBefore(const Database &db, qint64 id);

/// Puts the agent back as it was before change `id`, in its folder, whole
/// (binding, binding message and a state message), as a new change by
/// `user`; gives that change's id.
qint64 restoreChange(Database &db, qint64 id, const QString &user);

/// Forgets the changes made before `cutoff` (the store's time); gives how many.
int pruneHistory(Database &db, const QString &cutoff);

} // namespace store
