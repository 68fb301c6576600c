#pragma once

class QWidget;

namespace app {

/// Makes a container of fixed-layout controls at least as large as the
/// controls it holds, hidden ones included, with a margin beyond the right
/// and bottom ones; the window around it then can't be made so small that
/// any is cut off, whatever the desktop's font makes of the bars above.
void holdControls(QWidget *container, int margin = 8);

} // namespace app
