#include "navigation/folderclass.h"

#include "navigation/nodekinds.h"
#include "platform/events/events.h"
#include "platform/events/guid.h"
#include "platform/mapi/folderscan.h"
#include "platform/mapi/tags.h"

namespace navigation {

int classifyFolder(const mapi::Folder &folder, events::Events &events, const mapi::FolderScan &scan)
{
    int access = 0;
    try {
        access = folder.Fields(mapi::PR_ACCESS).toInt();
    } catch (const com::ComError &) {
        return kImageNoRights; // rights that can't be read are no rights
    }
    if (access < mapi::kFullAccess)
        return kImageNoRights;
    if (access != mapi::kFullAccess)
        return kImageFolder;
    try {
        events.GetEventSource(folder, true);
    } catch (const com::ComError &) {
        return kImageNoRights;
    }
    const mapi::FolderScan::HiddenCounts hidden = scan.hiddenCounts(folder);
    return hidden.all != 0 && hidden.bindings != 0 ? kImageFolderWithAgents : kImageFolder;
}

int classifyHandlerField(const QByteArray &handlerField)
{
    static const QByteArray script = events::memoryOrderHex(events::kScriptHandler).toLatin1();
    static const QByteArray routing = events::memoryOrderHex(events::kRoutingHandler).toLatin1();
    if (handlerField == script)
        return kImageScriptAgent;
    if (handlerField == routing)
        return kImageRoutingAgent;
    return kImageOtherAgent;
}

} // namespace navigation
