#include "app/positionform.h"

namespace app {

QPoint centredPosition(QSize screen, QSize window, QRect taskbar, int twipsPerPixelX, int twipsPerPixelY)
{
    // The rectangle is kept as left, top, right, bottom, right and bottom
    // being one past the last pixel.
    const int width = taskbar.isNull() ? 0 : taskbar.width();
    const int height = taskbar.isNull() ? 0 : taskbar.height();
    const int right = taskbar.isNull() ? 0 : taskbar.left() + width;
    const int bottom = taskbar.isNull() ? 0 : taskbar.top() + height;
    int left = 0;
    int top = 0;
    if (width <= height) { // at the left or the right
        top = (screen.height() - window.height()) / 2;
        const int half = (screen.width() - window.width()) / 2;
        left = taskbar.isNull() || taskbar.left() == 0 ? (twipsPerPixelX * right) / 2 + half
                                                       : half - (twipsPerPixelX * width) / 2;
    } else { // at the top or the bottom
        left = (screen.width() - window.width()) / 2;
        const int half = (screen.height() - window.height()) / 2;
        top = taskbar.top() > 0 ? half - (twipsPerPixelY * height) / 2 : (twipsPerPixelY * bottom) / 2 + half;
    }
    return QPoint(left, top);
}

} // namespace app
