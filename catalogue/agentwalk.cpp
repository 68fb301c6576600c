#include "catalogue/agentwalk.h"

#include "agents/agentmodel.h"
#include "app/frmmain.h"
#include "app/generaldate.h"
#include "app/program.h"
#include "catalogue/agentindex.h"
#include "navigation/folderpath.h"
#include "navigation/nodekinds.h"
#include "platform/controls/sstree.h"
#include "platform/outlook/application.h"

#include <optional>

namespace catalogue {

namespace {

QString flag(int16_t mask, int bit)
{
    return (mask & bit) ? QStringLiteral("-1") : QStringLiteral("0");
}

QString textField(const mapi::Message &message, uint32_t tag)
{
    return QString::fromLatin1(message.Fields(tag).Value().toByteArray());
}

QString quoted(const QString &text)
{
    // A quote inside the field is doubled, as comma-separated files have it.
    return QLatin1Char('"') + QString(text).replace(QLatin1Char('"'), QLatin1String("\"\"")) +
           QLatin1Char('"');
}

/// The walk borrows the main window's current object: however it ends, the
/// ids go back to what they were, those of the node the tree has selected,
/// for the commands that follow act on that node.
class CurrentObjectKept {
public:
    explicit CurrentObjectKept(frmMain &main)
        : m_main(main), m_entryID(main.strEntryID), m_storeID(main.strStoreID)
    {
    }
    ~CurrentObjectKept()
    {
        m_main.strEntryID = m_entryID;
        m_main.strStoreID = m_storeID;
    }
    CurrentObjectKept(const CurrentObjectKept &) = delete;
    CurrentObjectKept &operator=(const CurrentObjectKept &) = delete;

private:
    frmMain &m_main;
    const QString m_entryID;
    const QString m_storeID;
};

/// One agent looked up afresh, one read at a time: for a node that names
/// no binding message of the store, or whose folder can't hold agents, so
/// that it fails as such a lookup fails.
AgentFacts lookUp(app::Program &program, const QString &entryId, const QString &storeId,
                  std::optional<AgentBinding> &binding, navigation::FolderPaths &paths)
{
    const mapi::Message message = program.gobjSession->GetMessage(entryId, storeId);
    agents::AgentFolder folder =
        agents::openMessageFolder(*program.gobjSession, *program.gobjEvents, message);
    const outlook::MAPIFolder olFolder =
        program.gobjNameSpace->GetFolderFromID(message.FolderID(), message.StoreID());
    if (std::optional<events::Binding> found = agents::findBinding(folder.bindings(), entryId))
        binding = AgentBinding{found->EventMask(), found->HandlerClassID()};
    AgentFacts agent;
    agent.folder = navigation::GetFolderPath(olFolder, paths);
    agent.server = folder.source.HostName();
    agent.created = message.TimeCreated();
    agent.createdBy = textField(message, mapi::PR_CREATOR_NAME);
    agent.modified = message.TimeLastModified();
    agent.modifiedBy = textField(message, mapi::PR_LAST_MODIFIER_NAME);
    return agent;
}

QString handlerName(const events::Host &host, const QString &classId)
{
    const events::Handlers &handlers = host.Handlers();
    for (int j = 1; j <= handlers.Count(); ++j)
        if (handlers.Item(j).ClassID == classId)
            return handlers.Item(j).Name;
    return QString();
}

} // namespace

void walkAgents(frmMain &main, const QString &status, const std::function<void(const AgentFacts &)> &take)
{
    const CurrentObjectKept selection(main);
    app::Program &program = main.program();
    controls::SSTree &tree = *main.treOutl;
    std::optional<AgentBinding> binding;
    // Within one walk each parent folder's path and each host is read once.
    navigation::FolderPaths paths;
    QHash<QString, events::Host> hosts;
    const events::Hosts allHosts = program.gobjEvents->Hosts();
    const auto snapshot = program.gobjSession->BeginRead();
    const AgentIndex index(program.gobjSession->MAPIOBJECT());
    const int count = tree.count();
    int agents = 0;
    for (int i = 1; i <= count; ++i)
        agents += tree.nodeImage(tree.idAt(i)) >= navigation::kImageScriptAgent;
    int done = 0;
    for (int i = 1; i <= count; ++i) {
        const controls::SSTree::Id node = tree.idAt(i);
        if (tree.nodeImage(node) < navigation::kImageScriptAgent)
            continue;
        if (++done % kProgressStep == 0)
            main.StatBar(progressText(status, done, agents), true);
        main.strEntryID = tree.nodeKey(node);
        main.strStoreID = tree.nodeTag(node);
        AgentFacts agent;
        const AgentMessage *known = index.message(main.strEntryID, main.strStoreID);
        if (known && known->eventSource) {
            if (std::optional<AgentBinding> found = index.binding(known->folderRow, main.strEntryID))
                binding = found;
            agent.folder = index.folderPath(known->folderRow);
            agent.server = known->host;
            agent.created = index.time(known->created);
            agent.createdBy = known->createdBy;
            agent.modified = index.time(known->modified);
            agent.modifiedBy = known->modifiedBy;
        } else {
            agent = lookUp(program, main.strEntryID, main.strStoreID, binding, paths);
        }
        if (!binding)
            throw com::ComError(91, QStringLiteral("Sorrelin"),
                                QStringLiteral("Object variable or With block variable not set"));
        agent.name = tree.nodeText(node);
        auto host = hosts.constFind(agent.server);
        if (host == hosts.constEnd())
            host = hosts.insert(agent.server, allHosts.Item(agent.server));
        agent.handler = handlerName(*host, binding->handlerClass);
        agent.mask = binding->mask;
        agent.entryId = main.strEntryID;
        take(agent);
    }
    snapshot->commit();
}

QString progressText(const QString &status, int done, int agents)
{
    return QStringLiteral("%1: %2 of %3").arg(status).arg(done).arg(agents);
}

QString listRow(const AgentFacts &a)
{
    return QStringList{a.name,
                       a.folder,
                       a.server,
                       a.handler,
                       generalDate(a.created),
                       a.createdBy,
                       generalDate(a.modified),
                       a.modifiedBy,
                       flag(a.mask, 2),
                       flag(a.mask, 4),
                       flag(a.mask, 8),
                       flag(a.mask, 1),
                       a.entryId}
        .join(QLatin1Char('\t'));
}

QString exportHeader()
{
    QStringList captions;
    for (const char *caption :
         {"Name", "Folder", "Server", "Created", "Created By", "Last Modified", "Last Modified By", "Server",
          "Handler", "New", "Update", "Delete", "Scheduled"})
        captions << quoted(QString::fromLatin1(caption));
    return captions.join(QLatin1Char(',')) + QStringLiteral("\r\n");
}

QString exportLine(const AgentFacts &a)
{
    return QStringList{quoted(a.name),       quoted(a.folder),
                       quoted(a.server),     quoted(generalDate(a.created)),
                       quoted(a.createdBy),  quoted(generalDate(a.modified)),
                       quoted(a.modifiedBy), quoted(a.server),
                       quoted(a.handler),    flag(a.mask, 2),
                       flag(a.mask, 4),      flag(a.mask, 8),
                       flag(a.mask, 1)}
               .join(QLatin1Char(',')) +
           QStringLiteral("\r\n");
}

} // namespace catalogue
