#pragma once

#include <QStringList>

class frmMain;

namespace catalogue {

class ReportWindow;

/// The installed agents' window, its grid's columns set up and empty: Go To
/// and the double click close it and move the main window's tree to the
/// agent of the current row; print rewrites each row.
ReportWindow *newFrmScripts(frmMain &main);

/// A row's printed copy: a blank before each backslash of the folder from
/// its third character up to its first length, and "X" or "" for the ticks.
void SSDBGrid1_RowPrint(QStringList &cells);

} // namespace catalogue
