#include "app/leastsize.h"

#include <QRect>
#include <QWidget>

namespace app {

void holdControls(QWidget *container, int margin)
{
    QRect used;
    for (const QWidget *child : container->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        if (!child->isWindow())
            used |= child->geometry();
    container->setMinimumSize(
        container->minimumSize().expandedTo(QSize(used.right() + 1 + margin, used.bottom() + 1 + margin)));
}

} // namespace app
