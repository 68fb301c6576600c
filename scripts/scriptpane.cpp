#include "scripts/scriptpane.h"

#include "platform/controls/sstree.h"

#include <QKeyEvent>
#include <QTextBlock>

namespace scripts {

ScriptPane::ScriptPane(QWidget *parent) : QPlainTextEdit(parent)
{
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setTabChangesFocus(false);
    QFont f(QStringLiteral("Times New Roman"));
    f.setPointSizeF(10.8);
    setFont(f);
    connect(this, &QPlainTextEdit::textChanged, this, &ScriptPane::Change);
}

QString ScriptPane::text() const
{
    // Each line carries the end it was loaded with; lines the user made get
    // the usual one. The raw text keeps no-break spaces, which the plain
    // text would turn into blanks.
    QString text;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        text += fromDisplay(block.text(), QString());
        if (block.next().isValid())
            text += m_lineEnds.end(block.userState());
    }
    return text;
}

void ScriptPane::setText(const QString &text)
{
    m_lineEnds = LineEnds::of(text);
    setPlainText(toDisplay(text));
    int line = 0;
    for (QTextBlock block = document()->begin(); block.isValid() && line < m_lineEnds.ends.size();
         block = block.next())
        block.setUserState(LineEnds::code(m_lineEnds.ends.at(line++)));
}

QString ScriptPane::selText() const
{
    return fromDisplay(textCursor().selectedText(), m_lineEnds.usual);
}

void ScriptPane::setSelText(const QString &text)
{
    // A locked pane shows a notice, which no command changes.
    if (isLocked())
        return;
    textCursor().insertText(toDisplay(text));
}

void ScriptPane::selectAll()
{
    QPlainTextEdit::selectAll();
}

int ScriptPane::caretLine() const
{
    return textCursor().blockNumber() + 1;
}

int ScriptPane::lineCount() const
{
    return document()->blockCount();
}

bool ScriptPane::canUndo() const
{
    return document()->isUndoAvailable();
}

void ScriptPane::keyPressEvent(QKeyEvent *event)
{
    // A locked pane takes no keys at all.
    if (isLocked() && !(event->modifiers() & Qt::ControlModifier)) {
        event->accept();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void ScriptPane::keyReleaseEvent(QKeyEvent *event)
{
    QPlainTextEdit::keyReleaseEvent(event);
    if (!event->isAutoRepeat())
        Q_EMIT KeyUp(controls::vbKeyCode(event), controls::vbShift(event->modifiers()));
}

void ScriptPane::mouseReleaseEvent(QMouseEvent *event)
{
    QPlainTextEdit::mouseReleaseEvent(event);
    Q_EMIT MouseUp();
}

void ScriptPane::focusInEvent(QFocusEvent *event)
{
    QPlainTextEdit::focusInEvent(event);
    Q_EMIT GotFocus();
}

void ScriptPane::focusOutEvent(QFocusEvent *event)
{
    QPlainTextEdit::focusOutEvent(event);
    // A popup (a menu opening) takes no focus from the pane for good, and
    // another window taking the focus (a dialog) leaves the pane the focus
    // of its own window: only a move within the main window is a lost focus.
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason)
        Q_EMIT LostFocus();
}

} // namespace scripts
