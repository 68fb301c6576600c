#include "platform/controls/sscombo.h"

#include <QAbstractItemView>
#include <QTimer>

namespace controls {

SSDBCombo::SSDBCombo(QWidget *parent) : QComboBox(parent)
{
    connect(this, &QComboBox::activated, this, &SSDBCombo::closedUp);
}

void SSDBCombo::hidePopup()
{
    const bool open = view() && view()->isVisible();
    QComboBox::hidePopup();
    if (!open)
        return;
    // The list hides before the entry clicked becomes current; the close-up
    // waits for that, or for the event loop when nothing was picked.
    m_closing = true;
    QTimer::singleShot(0, this, &SSDBCombo::closedUp);
}

void SSDBCombo::closedUp()
{
    if (!m_closing)
        return;
    m_closing = false;
    Q_EMIT CloseUp();
}

} // namespace controls
