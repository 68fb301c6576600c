#include "navigation/folderclass.h"

#include "navigation/nodekinds.h"
#include "platform/events/events.h"
#include "platform/events/guid.h"
#include "platform/mapi/folder.h"
#include "platform/mapi/message.h"
#include "platform/mapi/tags.h"

namespace navigation {

int classifyFolder(const mapi::Folder &folder, events::Events &events)
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
    try {
        mapi::MessageList hidden = folder.HiddenMessages();
        if (hidden.Count() != 0) {
            hidden.Filter().setType(mapi::kBindingClass);
            if (hidden.Count() != 0)
                return kImageFolderWithAgents;
        }
    } catch (const com::ComError &) {
        // Agents that can't be listed aren't shown.
    }
    return kImageFolder;
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

int classifyBindingMessage(const mapi::Message &message)
{
    try {
        return classifyHandlerField(message.Fields(mapi::PR_HANDLER).Value().toByteArray());
    } catch (const com::ComError &) {
        return kImageOtherAgent;
    }
}

} // namespace navigation
