#pragma once

#include "platform/mapi/folderscan.h"

#include <QByteArrayView>

namespace navigation {

/// The image of a folder node, which decides whether the user may install
/// agents there:
/// - PR_ACCESS below 63: 18;
/// - exactly 63: 18 when the folder's event source can't be reached (the
///   folder has none, or the event configuration has no session); 7 when it
///   holds a hidden message of class "IPC.Microsoft.EventBinding"; else 6
///   (state messages alone don't count);
/// - above 63: 6, as the rights test asks for exactly 63.
/// The hidden messages are counted as the folder scan read them.
int classifyFolder(int access, bool eventSourceReached, mapi::FolderScan::HiddenCounts hidden);

/// The image of an agent node from its binding message's handler field,
/// compared exactly with the memory-order forms of the two known handlers,
/// the script handler's first: 19 script, 20 routing, 21 any other.
int classifyHandlerField(QByteArrayView handlerField);

} // namespace navigation
