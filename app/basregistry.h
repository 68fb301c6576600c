#pragma once

#include "platform/registry/registry.h"

#include <QString>
#include <QVariant>

/// The four registry routines the program uses for its settings and for the
/// class keys of editors and viewers. An empty QVariant is a value that
/// isn't there; it compares equal to the empty string.
namespace basRegistry {

/// Writes one value: type 1 as text of its own length with no NUL, type 4
/// as a 32-bit number; any other type writes nothing and gives 0.
long SetValueEx(registry::Registry &reg, registry::HKEY key, const QString &name, uint32_t type,
                const QVariant &value);

/// Reads one value into `value` (emptied first); 0 on success, else the
/// registry's code. Text is the stored bytes as UTF-8, NULs included; a
/// number is an int. Another type than text or number gives -1 and leaves
/// `value` empty.
long QueryValueEx(registry::Registry &reg, registry::HKEY key, const QString &name, QVariant &value);

/// One value of a key, a text without one trailing NUL; an empty variant
/// (whose toString() is "") when the key or the value is missing, "" when
/// anything raises. Never fails for its caller. The second form reads the
/// system's registry.
QVariant QueryValue(registry::Registry &reg, registry::HKEY root, const QString &keyName,
                    const QString &valueName);
QVariant QueryValue(registry::HKEY root, const QString &keyName, const QString &valueName);

/// Writes one value, making the key and its parents; false for an empty key
/// name or a raised error, true otherwise (a refused write included).
bool SetKeyValue(registry::Registry &reg, registry::HKEY root, const QString &keyName,
                 const QString &valueName, const QVariant &value, uint32_t type);
bool SetKeyValue(registry::HKEY root, const QString &keyName, const QString &valueName, const QVariant &value,
                 uint32_t type);

} // namespace basRegistry
