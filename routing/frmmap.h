#pragma once

class frmMain;

namespace catalogue {
class ReportWindow;
}

namespace routing {

/// The route map window with its columns set up and no rows: the row
/// number, `ActivityID`, `Action`, `Flags` and seven parameters.
catalogue::ReportWindow *newFrmMap(frmMain &main);

} // namespace routing
