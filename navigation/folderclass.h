#pragma once

#include <QByteArray>

namespace mapi {
class Folder;
class Message;
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
///   messages alone, or hidden messages that can't be read, don't count);
/// - above 63: 6, as the rights test asks for exactly 63.
int classifyFolder(const mapi::Folder &folder, events::Events &events);

/// The image of an agent node from its binding message's handler field,
/// compared exactly with the memory-order forms of the two known handlers,
/// the script handler's first: 19 script, 20 routing, 21 any other.
int classifyHandlerField(const QByteArray &handlerField);

/// The same from the binding message itself; a message whose handler field
/// is missing or can't be read is of another handler (21).
int classifyBindingMessage(const mapi::Message &message);

} // namespace navigation
