#pragma once

class frmMain;

namespace navigation {

/// Before a command replaces the pane's text while the pane still has the
/// window's focus: saves a pending edit as leaving the pane does. False when
/// the edit is still pending and the pane must keep it.
bool settlePendingEdit(frmMain &main);

} // namespace navigation
