#include "platform/os/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace os::clipboard {

void clear()
{
    QGuiApplication::clipboard()->clear();
}

void setText(const QString &text)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(text);
}

QString text()
{
    return QGuiApplication::clipboard()->text();
}

bool hasText()
{
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasText();
}

} // namespace os::clipboard
