#pragma once

class QPushButton;

namespace ui {

/// A window with a Cancel button: the button whose work Esc does.
class CancelButton {
public:
    virtual const QPushButton *cancelButton() const = 0;

protected:
    ~CancelButton() = default;
};

} // namespace ui
