#include "navigation/folderclass.h"

#include "navigation/nodekinds.h"
#include "platform/events/events.h"
#include "platform/events/guid.h"
#include "platform/mapi/folder.h"
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
        // A folder whose hidden messages can't be read shows no agents.
    }
    return kImageFolder;
}

int classifyHandlerField(const QByteArray &handlerField)
{
    const QString field = QString::fromLatin1(handlerField);
    if (field == events::memoryOrderHex(events::kScriptHandler))
        return kImageScriptAgent;
    if (field == events::memoryOrderHex(events::kRoutingHandler))
        return kImageRoutingAgent;
    return kImageOtherAgent;
}

} // namespace navigation
