#include "platform/os/screen.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace os {

ScreenGeometry screenGeometry(const QWidget *window)
{
    const QScreen *screen = window && window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return {};
    return {screen->geometry(), screen->availableGeometry()};
}

QRect taskbarRect(const ScreenGeometry &g)
{
    const QRect &s = g.screen;
    const QRect &a = g.workArea;
    if (s.isEmpty() || a.isEmpty())
        return QRect();
    if (a.top() > s.top())
        return QRect(s.left(), s.top(), s.width(), a.top() - s.top());
    if (a.bottom() < s.bottom())
        return QRect(s.left(), a.bottom() + 1, s.width(), s.bottom() - a.bottom());
    if (a.left() > s.left())
        return QRect(s.left(), s.top(), a.left() - s.left(), s.height());
    if (a.right() < s.right())
        return QRect(a.right() + 1, s.top(), s.right() - a.right(), s.height());
    return QRect();
}

} // namespace os
