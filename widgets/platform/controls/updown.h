#pragma once

#include <QWidget>

class QToolButton;

namespace controls {

/// A spin control beside a text box: its two halves raise UpClick and
/// DownClick; with a buddy and a range it also steps the buddy's number.
class UpDown : public QWidget {
    Q_OBJECT

public:
    explicit UpDown(QWidget *parent = nullptr);

    /// Steps the number in `buddy` by `increment`, kept within the range.
    void setBuddy(QWidget *buddy, int minimum, int maximum, int increment);

public Q_SLOTS:
    /// A click on the upper or lower half.
    void stepUp();
    void stepDown();

Q_SIGNALS:
    void UpClick();
    void DownClick();

private:
    void step(int direction);

    QToolButton *m_up = nullptr;
    QToolButton *m_down = nullptr;
    QWidget *m_buddy = nullptr;
    int m_minimum = 0;
    int m_maximum = 0;
    int m_increment = 1;
};

} // namespace controls
