#pragma once

#include <QComboBox>

namespace controls {

/// A drop-down list of one column. `CloseUp` comes each time its list
/// closes, whichever way the user closed it, after the entry picked (if
/// any) has become the current one; a change of the text made by code opens
/// nothing and sends no `CloseUp`.
class SSDBCombo : public QComboBox {
    Q_OBJECT

public:
    explicit SSDBCombo(QWidget *parent = nullptr);

    void hidePopup() override;

Q_SIGNALS:
    void CloseUp();

private:
    void closedUp();

    bool m_closing = false;
};

} // namespace controls
