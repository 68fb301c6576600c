#pragma once

#include <QObject>

class QWidget;

namespace os {

/// The help topic of a window or a control: F1 on it, or on a control
/// within it that has none of its own, opens this topic. Owned by the
/// widget it belongs to.
class HelpTopic : public QObject {
    Q_OBJECT

public:
    HelpTopic(QWidget *owner, int context);

    int context() const { return m_context; }

    /// The topic of `widget` itself, or null.
    static const HelpTopic *of(const QWidget *widget);

private:
    const int m_context;
};

} // namespace os
