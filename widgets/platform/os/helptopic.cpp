#include "platform/os/helptopic.h"

#include <QWidget>

namespace os {

HelpTopic::HelpTopic(QWidget *owner, int context) : QObject(owner), m_context(context) {}

const HelpTopic *HelpTopic::of(const QWidget *widget)
{
    return widget->findChild<const HelpTopic *>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace os
