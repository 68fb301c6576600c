#pragma once

#include <QByteArray>

namespace mapi {
class Folder;
}
namespace events {
class Events;
}

namespace navigation {

/// The image of a folder node: 7 when the user has full rights, the folder
/// has an event source and it holds binding messages; 6 with full rights and
/// an event source but no binding message; 18 otherwise. This decides
/// whether the user may install in the folder.
int classifyFolder(const mapi::Folder &folder, events::Events &events);

/// The image of an agent node from its binding message's handler field:
/// 19 the script handler, 20 the routing handler, 21 any other.
int classifyHandlerField(const QByteArray &handlerField);

} // namespace navigation
