#pragma once

#include <QString>

#include <cstdint>

namespace mapi {

/// Property tags the program reads and writes: the id in the high 16 bits,
/// the type in the low ones (0x001E 8-bit text, 0x0003 number, 0x0040 time).
inline constexpr uint32_t PR_ACCESS = 0x0FF40003;
inline constexpr uint32_t PR_CREATOR_NAME = 0x3FF8001E;
inline constexpr uint32_t PR_LAST_MODIFIER_NAME = 0x3FFA001E;
inline constexpr uint32_t PR_SENDER_NAME = 0x0C1A001E;
inline constexpr uint32_t PR_MESSAGE_DELIVERY_TIME = 0x0E060040;
/// The agent's script on its binding message.
inline constexpr uint32_t PR_SCRIPT = 0x7102001E;
/// The handler's class on a binding message, in memory-order hexadecimal.
inline constexpr uint32_t PR_HANDLER = 0x7804001E;
/// The agent's log on its state message.
inline constexpr uint32_t PR_AGENT_LOG = 0x780C001E;

/// The full access of a folder: modify, read, delete, create subfolders,
/// create contents and create associated contents.
inline constexpr int kFullAccess = 63;

/// How a tag is kept in the store: "0x7102001E".
QString tagKey(uint32_t tag);

/// The message classes of an agent's two hidden messages.
inline const QString kBindingClass = QStringLiteral("IPC.Microsoft.EventBinding");
inline const QString kStateClass = QStringLiteral("IPC.Microsoft.ICS.EventBinding");

} // namespace mapi
