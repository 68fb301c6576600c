#pragma once

#include <QByteArray>

namespace mapi {
class Folder;
class FolderScan;
} // namespace mapi
namespace events {
class Events;
}

namespace navigation {

/// The image of a folder node, which decides whether the user may install
/// agents there:
/// - PR_ACCESS below 63, or unreadable: 18;
/// - exactly 63: 18 when the folder has no event source; 7 when it holds a
///   hidden message of class "IPC.Microsoft.EventBinding"; else 6 (state
///   messages alone don't count);
/// - above 63: 6, as the rights test asks for exactly 63.
/// The hidden messages are counted as `scan` read them.
int classifyFolder(const mapi::Folder &folder, events::Events &events, const mapi::FolderScan &scan);

/// The image of an agent node from its binding message's handler field,
/// compared exactly with the memory-order forms of the two known handlers,
/// the script handler's first: 19 script, 20 routing, 21 any other.
int classifyHandlerField(const QByteArray &handlerField);

} // namespace navigation
