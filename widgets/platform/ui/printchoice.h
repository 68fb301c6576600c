#pragma once

#include <QString>

class QPrinter;

namespace ui {

/// Where a print goes before its dialogs: the default printer, or with none
/// set up a PDF file named after `title` in the user's documents; true in
/// that last case, so that the caller can say where it went.
bool printToDocuments(QPrinter &printer, const QString &title);

} // namespace ui
