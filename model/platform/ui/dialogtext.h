#pragma once

#include <QString>
#include <QStringList>

namespace ui {

/// A classic filter ("Text Files (*.txt)|*.txt|All Files (*.*)|*.*") as
/// Qt's name filters ("Text Files (*.txt) (*.txt)", "All Files (*.*) (*)"):
/// the description as it stands, then the patterns in parentheses, "*.*"
/// becoming "*" so that names without a dot show too and ";" between
/// patterns a blank. A description without patterns takes every file.
QStringList qtNameFilters(const QString &filter);

/// The 1-based index of the classic filter that a dialog's choice stands
/// for in `filters` (qtNameFilters' result), the choice given whole or as
/// its description alone; 0 when it is none of them.
int filterIndexOf(const QStringList &filters, const QString &nameFilter);

/// A message's own line breaks (single carriage returns, or CR LF) as the
/// line feeds that Qt's dialogs break lines at.
QString displayText(const QString &text);

} // namespace ui
