#pragma once

#include "scripts/panetext.h"

#include <QPlainTextEdit>

namespace scripts {

/// The script pane: plain text that gives back every character it was given
/// and the line ends it was loaded with (carriage return and line feed for
/// a new text), a `Locked` state that refuses typing, a caret
/// line and line count, and the events the main window handles.
class ScriptPane : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit ScriptPane(QWidget *parent = nullptr);

    /// The whole text, with the line ends it was set with.
    QString text() const;
    void setText(const QString &text);

    /// The selection as text (CR LF line ends); setting it replaces the
    /// selection, or inserts at the caret.
    QString selText() const;
    void setSelText(const QString &text);
    void selectAll();

    bool isLocked() const { return isReadOnly(); }
    void setLocked(bool locked) { setReadOnly(locked); }

    /// The caret's line, from 1, and the number of lines; an empty pane is
    /// line 1 of 1.
    int caretLine() const;
    int lineCount() const;

    bool canUndo() const;

Q_SIGNALS:
    void Change();
    void GotFocus();
    void LostFocus();
    void KeyUp(int keyCode, int shift);
    void MouseUp();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    LineEnds m_lineEnds;
};

} // namespace scripts
