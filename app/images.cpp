#include "app/images.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace app::images {

namespace {

// Image n of the tree is the file whose name starts with n, two digits.
const char *const kTreeFiles[] = {
    "01-store",
    "02-root",
    "03-open-letter",
    "04-outbox",
    "05-inbox",
    "06-yellow-folder",
    "07-folder-with-agents",
    "08-folder",
    "09-public-folder",
    "10-contact",
    "11-appointment",
    "12-task",
    "13-journal",
    "14-note",
    "15-mail-unread",
    "16-document",
    "17-mail-read",
    "18-grey-folder",
    "19-script",
    "20-route",
    "21-clip",
};

QPixmap render(QSvgRenderer &svg, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    svg.render(&painter);
    return pixmap;
}

} // namespace

QIcon treeImage(int index)
{
    if (index < 1 || index > static_cast<int>(std::size(kTreeFiles)))
        return QIcon();
    return QIcon(QStringLiteral(":/icons/tree/%1.svg").arg(QLatin1String(kTreeFiles[index - 1])));
}

QVector<QIcon> treeImageList()
{
    QVector<QIcon> list;
    for (int i = 1; i <= static_cast<int>(std::size(kTreeFiles)); ++i)
        list.append(treeImage(i));
    return list;
}

QStringList toolbarKeys()
{
    QStringList keys = QDir(QStringLiteral(":/icons/toolbar")).entryList({QStringLiteral("*.svg")});
    for (QString &key : keys)
        key.chop(4);
    return keys;
}

QIcon toolbarImage(const QString &key)
{
    const QString file = QStringLiteral(":/icons/toolbar/%1.svg").arg(key);
    return QFile::exists(file) ? QIcon(file) : QIcon();
}

QIcon splashPicture()
{
    return QIcon(QStringLiteral(":/icons/sorrelin.svg"));
}

QIcon appIcon()
{
    static const QIcon icon = [] {
        QSvgRenderer small(QStringLiteral(":/icons/sorrelin-small.svg"));
        QSvgRenderer large(QStringLiteral(":/icons/sorrelin.svg"));
        QIcon made;
        for (int size : {16, 24, 32})
            made.addPixmap(render(small, size));
        for (int size : {48, 64, 128, 256})
            made.addPixmap(render(large, size));
        return made;
    }();
    return icon;
}

} // namespace app::images
