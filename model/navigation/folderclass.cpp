#include "navigation/folderclass.h"

#include "navigation/nodekinds.h"
#include "platform/events/guid.h"
#include "platform/mapi/tags.h"

namespace navigation {

int classifyFolder(int access, bool eventSourceReached, mapi::FolderScan::HiddenCounts hidden)
{
    if (access < mapi::kFullAccess)
        return kImageNoRights;
    if (access != mapi::kFullAccess)
        return kImageFolder;
    if (!eventSourceReached)
        return kImageNoRights;
    return hidden.all != 0 && hidden.bindings != 0 ? kImageFolderWithAgents : kImageFolder;
}

int classifyHandlerField(QByteArrayView handlerField)
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
