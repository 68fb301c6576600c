#pragma once

#include "platform/registry/registry.h"

#include <QString>

namespace ui {
class Prompter;
}

/// The system information program, as the About box starts it.
namespace dialogs {

/// Reads one text value of a key into `value`: false when the key can't be
/// opened or the value can't be read (a value of more than 1,024 bytes
/// included). A closing NUL is cut off; a value that isn't text leaves
/// `value` empty and still gives true.
bool GetKeyValue(registry::Registry &reg, registry::HKEY root, const QString &keyName,
                 const QString &valueName, QString &value);

/// Starts the system information program that the registry names, without
/// waiting for it; when there is none, or it can't be started, says
/// "System Information Is Unavailable At This Time".
void StartSysInfo(registry::Registry &reg, ui::Prompter &prompter);

} // namespace dialogs
