#pragma once

#include <QString>

/// The system clipboard's text, as the pane's Cut, Copy and Paste use it.
/// These need the GUI application to exist.
namespace os::clipboard {

/// Empties the clipboard.
void clear();

/// Puts `text` on the clipboard as plain text, in place of what was there.
void setText(const QString &text);

/// The clipboard's plain text; empty when it holds none.
QString text();

/// Whether the clipboard holds plain text.
bool hasText();

} // namespace os::clipboard
