#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace scripts {

/// The open command of a class (under HKEY_CLASSES_ROOT, its default value),
/// by the class key's path; empty when there is none.
using ClassCommand = std::function<QString(const QString &key)>;

/// The system's registry as ClassCommand reads it.
QString registryClassCommand(const QString &key);

/// The command prefix of an editor by its name ("Notepad", "Wordpad",
/// "Visual Basic", "Visual InterDev", "Other"), to which the quoted file
/// name is added: read from its class key and cut before "%1" (and, but for
/// "Notepad", a double quote that then ends it dropped); "notepad " on the
/// NT family; for "Other" the path trimmed with one blank added. Empty when
/// the editor isn't available (for "Other" also when the path is "n/a");
/// nothing for a name outside the five.
std::optional<QString> editorCommand(const QString &editor, const QString &otherPath, bool isNT,
                                     const ClassCommand &classCommand = registryClassCommand);

/// The viewer of the agent log: the rules of "Notepad" and "Wordpad" alone;
/// nothing for any other name.
std::optional<QString> viewerCommand(const QString &viewer, bool isNT,
                                     const ClassCommand &classCommand = registryClassCommand);

/// The editor for a file of `size` bytes: "Notepad" becomes "Wordpad" above
/// 64,000 bytes outside the NT family.
QString editorForSize(const QString &editor, qint64 size, bool isNT);

/// "<editor> not available." and the hint to choose another one.
QString notAvailableText(const QString &editor);

} // namespace scripts
