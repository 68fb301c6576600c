#pragma once

#include <QString>

#include <cstdint>

namespace mapi {

/// Property tags the program reads and writes: the id in the high 16 bits,
/// the type in the low ones.
inline constexpr uint32_t PT_LONG = 0x0003;    ///< 32-bit number
inline constexpr uint32_t PT_STRING8 = 0x001E; ///< 8-bit text, kept as bytes
inline constexpr uint32_t PT_SYSTIME = 0x0040; ///< date and time

inline constexpr uint32_t PR_ACCESS = 0x0FF40003;
inline constexpr uint32_t PR_CREATOR_NAME = 0x3FF8001E;
inline constexpr uint32_t PR_LAST_MODIFIER_NAME = 0x3FFA001E;
inline constexpr uint32_t PR_SENDER_NAME = 0x0C1A001E;
inline constexpr uint32_t PR_SUBJECT = 0x0037001E;
inline constexpr uint32_t PR_CLIENT_SUBMIT_TIME = 0x00390040;
inline constexpr uint32_t PR_MESSAGE_DELIVERY_TIME = 0x0E060040;
inline constexpr uint32_t PR_CREATION_TIME = 0x30070040;
inline constexpr uint32_t PR_LAST_MODIFICATION_TIME = 0x30080040;
/// The agent's script on its binding message.
inline constexpr uint32_t PR_SCRIPT = 0x7102001E;
/// The handler's class on a binding message, in memory-order hexadecimal.
inline constexpr uint32_t PR_HANDLER = 0x7804001E;
/// The agent's log on its state message.
inline constexpr uint32_t PR_AGENT_LOG = 0x780C001E;

/// The type half of a tag.
constexpr uint32_t propType(uint32_t tag)
{
    return tag & 0xFFFFu;
}

/// The full access of a folder: modify 1, read 2, delete 4, create
/// subfolders 8, create contents 16 and create associated contents 32.
inline constexpr int kFullAccess = 63;

/// How a tag is kept in the store: "0x7102001E", upper-case digits.
QString tagKey(uint32_t tag);

/// The message classes of an agent's two hidden messages.
inline const QString kBindingClass = QStringLiteral("IPC.Microsoft.EventBinding");
inline const QString kStateClass = QStringLiteral("IPC.Microsoft.ICS.EventBinding");

} // namespace mapi
