#pragma once

#include <QAction>

#include <optional>

namespace app {

/// A menu entry or toolbar button of the main window. A hidden action always
/// reads as disabled; this one also keeps whether the program last enabled
/// it, which the entry shows again once it is visible.
class CommandAction : public QAction {
    Q_OBJECT

public:
    using QAction::QAction;

    void setCommandEnabled(bool on)
    {
        m_enabled = on;
        setEnabled(on);
    }
    /// What the program last set, or nothing when it never has.
    std::optional<bool> commandEnabled() const { return m_enabled; }

    /// A toolbar button's image key; empty for a menu entry.
    QString imageKey() const { return m_imageKey; }
    void setImageKey(const QString &key) { m_imageKey = key; }

private:
    std::optional<bool> m_enabled;
    QString m_imageKey;
};

} // namespace app
