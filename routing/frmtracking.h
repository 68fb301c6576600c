#pragma once

class frmMain;

namespace catalogue {
class ReportWindow;
}

namespace routing {

/// The vote table window with its columns set up and no rows, the totals
/// "Approve:" and "Reject:" under the grid, and its own page: the caption
/// and the window's `strFolderPath` at the top, the totals
/// at the bottom.
catalogue::ReportWindow *newFrmTracking(frmMain &main);

/// Shows the two totals in `lblApprove` and `lblReject`.
void setTotals(catalogue::ReportWindow &form, int approve, int reject);

} // namespace routing
