#include "scripts/scriptpane.h"

#include "platform/controls/sstree.h"

#include <QKeyEvent>
#include <QTextBlock>

namespace scripts {

namespace {
QString toPane(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

QString fromPane(QString text)
{
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    text.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    return text;
}
} // namespace

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
    return fromPane(toPlainText());
}

void ScriptPane::setText(const QString &text)
{
    setPlainText(toPane(text));
}

QString ScriptPane::selText() const
{
    return fromPane(textCursor().selectedText());
}

void ScriptPane::setSelText(const QString &text)
{
    textCursor().insertText(toPane(text));
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
    // A popup (a menu opening) takes no focus from the pane for good.
    if (event->reason() != Qt::PopupFocusReason)
        Q_EMIT LostFocus();
}

} // namespace scripts
