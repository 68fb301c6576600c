#pragma once

#include "scripts/panetext.h"

#include <QPlainTextEdit>

namespace scripts {

/// The script pane: plain text that gives back every character it was given
/// and the line ends it was loaded with (carriage return and line feed for
/// a new text), a `Locked` state that refuses typing, a caret
/// line and line count, and the events the main window handles. What the
/// user puts in (keys, input methods, paste, drops) keeps only the
/// characters a script can hold; the others are left out, and `leftOut`
/// names them until the next input, key or click.
class ScriptPane : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit ScriptPane(QWidget *parent = nullptr);

    /// The whole text, with the line ends it was set with.
    QString text() const;
    void setText(const QString &text);

    /// The selection as text (CR LF line ends); setting it replaces the
    /// selection, or inserts at the caret, unless the pane is locked.
    QString selText() const;
    void setSelText(const QString &text);

    /// A whole new text from outside (an editor's file): its characters a
    /// script can't hold are left out, as from the user's input.
    void setEditedText(const QString &text);

    /// The characters the latest input left out, until the next input, key
    /// or click, or a new text; otherwise empty.
    QStringList leftOut() const { return m_leftOut; }
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
    /// Some characters of an input were left out (see `leftOut`).
    void LeftOut();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    /// Shown text as the pane may take it, and the characters it leaves out.
    struct Kept {
        QString text;
        QStringList leftOut;
    };
    static Kept holdable(const QString &shown);
    void noteLeftOut(const QStringList &characters);

    LineEnds m_lineEnds;
    QStringList m_leftOut;
};

} // namespace scripts
