#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace app {

/// Where a window goes when it is centred in what the taskbar leaves of the
/// screen. Screen and window sizes are twips, the taskbar's rectangle pixels
/// (all zeros when there is none); the result is twips.
QPoint centredPosition(QSize screen, QSize window, QRect taskbar, int twipsPerPixelX, int twipsPerPixelY);

} // namespace app
