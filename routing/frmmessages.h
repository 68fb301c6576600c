#pragma once

class frmMain;

namespace catalogue {
class ReportWindow;
}

namespace routing {

/// The process instance window with its columns set up and no rows; the
/// last two columns, the message's identifiers, are hidden. Map and a
/// double click open the current row's map, F11 the selected row's, and
/// Tracking its vote table, which names the window's `strFolderPath`.
catalogue::ReportWindow *newFrmMessages(frmMain &main);

} // namespace routing
