#pragma once

#include <QString>

namespace events {

/// A class identifier in registry form ("{69E54151-B371-11D0-BCD9-00AA00C1AB1C}")
/// as its 16 bytes in memory order, 32 upper-case hexadecimal digits
/// ("5141E56971B3D011BCD900AA00C1AB1C"): the first three groups are kept
/// least significant byte first. Braces may be left off; digits of either
/// case are read. Empty when the text is no class identifier.
QString memoryOrderHex(const QString &classId);

/// The way back: registry form, upper case with braces, from the
/// memory-order digits; empty when the text is not 32 hexadecimal digits.
QString registryForm(const QString &memoryOrder);

/// The handlers of script agents and of routing agents.
inline const QString kScriptHandler = QStringLiteral("{69E54151-B371-11D0-BCD9-00AA00C1AB1C}");
inline const QString kRoutingHandler = QStringLiteral("{69E64151-B371-11D0-BCD9-00AA00C1AB1C}");

} // namespace events
