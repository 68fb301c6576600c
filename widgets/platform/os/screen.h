#pragma once

#include <QRect>

class QWidget;

namespace os {

/// The screen a window is on, in pixels: the whole of it and the part
/// that the taskbar and the desktop's panels leave to windows.
struct ScreenGeometry {
    QRect screen;
    QRect workArea;
};

/// The screen of `window`, or the primary screen when it has none yet (a
/// window not shown before). All empty when there is no screen at all.
ScreenGeometry screenGeometry(const QWidget *window);

/// The taskbar's rectangle: the strip at one edge of the screen that the
/// work area leaves out (the top first, then the bottom, left and right);
/// an empty rectangle when the work area is the whole screen.
QRect taskbarRect(const ScreenGeometry &geometry);

} // namespace os
