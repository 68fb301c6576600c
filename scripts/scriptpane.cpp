#include "scripts/scriptpane.h"

#include "platform/controls/sstree.h"
#include "scripts/scriptmarker.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
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

ScriptPane::Kept ScriptPane::holdable(const QString &shown)
{
    // The symbols of control characters and the line breaks are bytes of
    // the script: the rule is the script's, not the shown text's.
    const QStringList unkept = unkeptCharacters(fromDisplay(shown, QStringLiteral("\n")));
    return {withoutCharacters(shown, unkept), unkept};
}

void ScriptPane::noteLeftOut(const QStringList &characters)
{
    m_leftOut = characters;
    if (!characters.isEmpty())
        Q_EMIT LeftOut();
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
    m_leftOut.clear();
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
    const Kept kept = holdable(toDisplay(text));
    textCursor().insertText(kept.text);
    noteLeftOut(kept.leftOut);
}

void ScriptPane::setEditedText(const QString &text)
{
    const QStringList unkept = unkeptCharacters(text);
    setText(withoutCharacters(text, unkept));
    noteLeftOut(unkept);
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
    m_leftOut.clear();
    // A locked pane takes no keys at all.
    if (isLocked() && !(event->modifiers() & Qt::ControlModifier)) {
        event->accept();
        return;
    }
    const Kept kept = holdable(event->text());
    if (kept.leftOut.isEmpty()) {
        QPlainTextEdit::keyPressEvent(event);
        return;
    }
    if (!kept.text.isEmpty()) {
        QKeyEvent keptKey(event->type(), event->key(), event->modifiers(), event->nativeScanCode(),
                          event->nativeVirtualKey(), event->nativeModifiers(), kept.text,
                          event->isAutoRepeat(), event->count());
        QPlainTextEdit::keyPressEvent(&keptKey);
    }
    event->accept();
    noteLeftOut(kept.leftOut);
}

void ScriptPane::keyReleaseEvent(QKeyEvent *event)
{
    QPlainTextEdit::keyReleaseEvent(event);
    if (!event->isAutoRepeat())
        Q_EMIT KeyUp(controls::vbKeyCode(event), controls::vbShift(event->modifiers()));
}

void ScriptPane::mousePressEvent(QMouseEvent *event)
{
    m_leftOut.clear();
    QPlainTextEdit::mousePressEvent(event);
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

void ScriptPane::inputMethodEvent(QInputMethodEvent *event)
{
    const Kept kept = holdable(event->commitString());
    if (kept.leftOut.isEmpty()) {
        QPlainTextEdit::inputMethodEvent(event);
        return;
    }
    QInputMethodEvent keptInput(event->preeditString(), event->attributes());
    keptInput.setCommitString(kept.text, event->replacementStart(), event->replacementLength());
    QPlainTextEdit::inputMethodEvent(&keptInput);
    event->accept();
    noteLeftOut(kept.leftOut);
}

void ScriptPane::insertFromMimeData(const QMimeData *source)
{
    // Paste and drop alike take the plain text only.
    const Kept kept = holdable(source->text());
    QMimeData keptData;
    keptData.setText(kept.text);
    QPlainTextEdit::insertFromMimeData(&keptData);
    noteLeftOut(kept.leftOut);
}

} // namespace scripts
