#include "platform/controls/updown.h"

#include <QLineEdit>
#include <QRegularExpression>
#include <QToolButton>
#include <QVBoxLayout>

namespace controls {

UpDown::UpDown(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_up = new QToolButton(this);
    m_up->setArrowType(Qt::UpArrow);
    m_down = new QToolButton(this);
    m_down->setArrowType(Qt::DownArrow);
    for (QToolButton *b : {m_up, m_down}) {
        b->setAutoRepeat(true);
        b->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        b->setFocusPolicy(Qt::NoFocus);
        layout->addWidget(b);
    }
    connect(m_up, &QToolButton::clicked, this, &UpDown::stepUp);
    connect(m_down, &QToolButton::clicked, this, &UpDown::stepDown);
}

void UpDown::setBuddy(QWidget *buddy, int minimum, int maximum, int increment)
{
    m_buddy = buddy;
    m_minimum = minimum;
    m_maximum = maximum;
    m_increment = increment;
}

void UpDown::stepUp()
{
    step(1);
    Q_EMIT UpClick();
}

void UpDown::stepDown()
{
    step(-1);
    Q_EMIT DownClick();
}

void UpDown::step(int direction)
{
    auto *edit = qobject_cast<QLineEdit *>(m_buddy);
    if (!edit)
        return;
    static const QRegularExpression number(QStringLiteral("^\\s*(-?\\d+)"));
    const QRegularExpressionMatch m = number.match(edit->text());
    const int value = m.hasMatch() ? m.captured(1).toInt() : m_minimum;
    edit->setText(QString::number(qBound(m_minimum, value + direction * m_increment, m_maximum)));
}

} // namespace controls
