#pragma once

#include <QDateTime>
#include <QString>

#include <cstdint>
#include <functional>

class frmMain;

namespace catalogue {

/// What the installed-agents list and the export tell of one agent.
struct AgentFacts {
    QString name;   ///< the node's text
    QString folder; ///< the mail client's path of its folder
    QString server; ///< the event source's host
    QString handler;
    QDateTime created;
    QString createdBy;
    QDateTime modified;
    QString modifiedBy;
    int16_t mask = 0;
    QString entryId;
};

/// Walks the agent nodes of the main window's tree in the order of its
/// nodes, finding for each its message, folder, event source, binding and
/// handler as they stand in one snapshot of the store. `strEntryID` and
/// `strStoreID` of the main window are the walk's working values; when it
/// ends, however it ends, they name the tree's selected node again. `take`
/// gets each agent; the first failure ends the walk and is raised. A
/// binding that isn't found takes the one of the agent before; on the first
/// agent there is none, which fails. Every `kProgressStep` agents the status
/// bar tells how far the walk has come, in the words of `progressText`.
void walkAgents(frmMain &main, const QString &status, const std::function<void(const AgentFacts &)> &take);

/// How many agents the walk takes between two words of progress.
inline constexpr int kProgressStep = 1000;

/// The status bar's words when `done` of `agents` agents are walked:
/// "Retrieving installed agents: 1000 of 23465".
QString progressText(const QString &status, int done, int agents);

/// The list's row string: thirteen tab-separated fields, the flags "-1" or
/// "0", the entry id last.
QString listRow(const AgentFacts &agent);

/// The export's header and one agent's line, each ended by CR LF.
QString exportHeader();
QString exportLine(const AgentFacts &agent);

} // namespace catalogue
