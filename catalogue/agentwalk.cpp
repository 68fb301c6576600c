#include "catalogue/agentwalk.h"

#include "agents/agentmodel.h"
#include "app/frmmain.h"
#include "app/generaldate.h"
#include "app/program.h"
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

} // namespace

void walkAgents(frmMain &main, const std::function<void(const AgentFacts &)> &take)
{
    app::Program &program = main.program();
    controls::SSTree &tree = *main.treOutl;
    std::optional<events::Binding> binding;
    // Within one walk each parent folder's path and each host is read once.
    navigation::FolderPaths paths;
    QHash<QString, events::Host> hosts;
    const events::Hosts allHosts = program.gobjEvents->Hosts();
    const auto snapshot = program.gobjSession->BeginRead();
    const int count = tree.count();
    for (int i = 1; i <= count; ++i) {
        if (controls::SSTree::image(tree.nodeAt(i)) < navigation::kImageScriptAgent)
            continue;
        main.strEntryID = controls::SSTree::key(tree.nodeAt(i));
        main.strStoreID = controls::SSTree::tag(tree.nodeAt(i));
        const mapi::Message message = program.gobjSession->GetMessage(main.strEntryID, main.strStoreID);
        agents::AgentFolder folder =
            agents::openMessageFolder(*program.gobjSession, *program.gobjEvents, message);
        const outlook::MAPIFolder olFolder =
            program.gobjNameSpace->GetFolderFromID(message.FolderID(), message.StoreID());
        if (std::optional<events::Binding> found = agents::findBinding(folder.bindings(), main.strEntryID))
            binding = found;
        if (!binding)
            throw com::ComError(91, QStringLiteral("Sorrelin"),
                                QStringLiteral("Object variable or With block variable not set"));
        AgentFacts agent;
        agent.name = controls::SSTree::text(tree.nodeAt(i));
        agent.folder = navigation::GetFolderPath(olFolder, paths);
        agent.server = folder.source.HostName();
        auto host = hosts.constFind(agent.server);
        if (host == hosts.constEnd())
            host = hosts.insert(agent.server, allHosts.Item(agent.server));
        agent.handler = agents::handlerName(*host, *binding);
        agent.created = message.TimeCreated();
        agent.createdBy = textField(message, mapi::PR_CREATOR_NAME);
        agent.modified = message.TimeLastModified();
        agent.modifiedBy = textField(message, mapi::PR_LAST_MODIFIER_NAME);
        agent.mask = binding->EventMask();
        agent.entryId = main.strEntryID;
        take(agent);
    }
    snapshot->commit();
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
