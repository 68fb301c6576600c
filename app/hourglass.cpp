#include "app/hourglass.h"

#include <QApplication>
#include <QCursor>

void SetHourglass(bool on)
{
    if (on) {
        if (!QApplication::overrideCursor())
            QApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
        return;
    }
    while (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
}
