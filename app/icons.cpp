#include "app/icons.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <functional>

namespace app::icons {

namespace {

// One small palette for every picture.
const QColor kFolder(0xE8, 0xB9, 0x3A);
const QColor kFolderDark(0xA9, 0x7C, 0x12);
const QColor kBlue(0x2F, 0x6D, 0xB5);
const QColor kRed(0xC8, 0x37, 0x2D);
const QColor kGrey(0x8A, 0x8F, 0x98);
const QColor kGreyDark(0x5A, 0x5F, 0x66);
const QColor kPaper(0xFF, 0xFF, 0xFF);
const QColor kGreen(0x3C, 0x9A, 0x4B);

using Draw = std::function<void(QPainter &)>;

/// Paints one picture on a 16-unit square at 16, 24 and 32 pixels.
QIcon make(const Draw &draw)
{
    QIcon icon;
    for (int size : {16, 24, 32}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(size / 16.0, size / 16.0);
        draw(p);
        icon.addPixmap(pixmap);
    }
    return icon;
}

void folder(QPainter &p, const QColor &fill, const QColor &edge)
{
    p.setPen(QPen(edge, 0.8));
    p.setBrush(fill.darker(110));
    p.drawRoundedRect(QRectF(1.5, 3.5, 6, 3), 1, 1);
    p.setBrush(fill);
    p.drawRoundedRect(QRectF(1.5, 5, 13, 9), 1, 1);
}

void page(QPainter &p, const QRectF &r, const QColor &edge = kGreyDark)
{
    p.setPen(QPen(edge, 0.8));
    p.setBrush(kPaper);
    QPainterPath path;
    path.moveTo(r.left(), r.top());
    path.lineTo(r.right() - 3, r.top());
    path.lineTo(r.right(), r.top() + 3);
    path.lineTo(r.right(), r.bottom());
    path.lineTo(r.left(), r.bottom());
    path.closeSubpath();
    p.drawPath(path);
}

void lines(QPainter &p, const QRectF &r, int count, const QColor &color = kGrey)
{
    p.setPen(QPen(color, 0.9));
    for (int i = 0; i < count; ++i)
        p.drawLine(QPointF(r.left() + 1.5, r.top() + 3 + i * 2.2),
                   QPointF(r.right() - 1.5, r.top() + 3 + i * 2.2));
}

void envelope(QPainter &p, bool open)
{
    p.setPen(QPen(kGreyDark, 0.8));
    p.setBrush(kPaper);
    p.drawRect(QRectF(1.5, 4.5, 13, 9));
    if (open) {
        p.drawLine(QPointF(1.5, 4.5), QPointF(8, 1.5));
        p.drawLine(QPointF(8, 1.5), QPointF(14.5, 4.5));
    }
    p.drawLine(QPointF(1.5, 4.5), QPointF(8, 9.5));
    p.drawLine(QPointF(8, 9.5), QPointF(14.5, 4.5));
}

void star(QPainter &p, const QPointF &c, double r, const QColor &fill)
{
    QPolygonF poly;
    for (int i = 0; i < 10; ++i) {
        const double a = -M_PI / 2 + i * M_PI / 5;
        const double rr = i % 2 ? r * 0.45 : r;
        poly << QPointF(c.x() + rr * std::cos(a), c.y() + rr * std::sin(a));
    }
    p.setPen(QPen(fill.darker(140), 0.6));
    p.setBrush(fill);
    p.drawPolygon(poly);
}

void book(QPainter &p)
{
    p.setPen(QPen(kBlue.darker(140), 0.8));
    p.setBrush(kBlue);
    p.drawRoundedRect(QRectF(3, 1.5, 10, 13), 1, 1);
    p.setBrush(kPaper);
    p.drawRect(QRectF(4.5, 12, 8.5, 2.5));
    p.setPen(QPen(kPaper, 1));
    p.drawLine(QPointF(6, 5), QPointF(11, 5));
}

void flow(QPainter &p)
{
    p.setPen(QPen(kBlue.darker(130), 0.8));
    p.setBrush(QColor(0xD6, 0xE6, 0xF8));
    p.drawRect(QRectF(5.5, 1, 5, 3.5));
    p.drawRect(QRectF(1, 11, 5, 3.5));
    p.drawRect(QRectF(10, 11, 5, 3.5));
    p.drawLine(QPointF(8, 4.5), QPointF(8, 7.5));
    p.drawLine(QPointF(3.5, 7.5), QPointF(12.5, 7.5));
    p.drawLine(QPointF(3.5, 7.5), QPointF(3.5, 11));
    p.drawLine(QPointF(12.5, 7.5), QPointF(12.5, 11));
}

void clip(QPainter &p)
{
    page(p, QRectF(2.5, 1.5, 10, 13));
    lines(p, QRectF(2.5, 3, 10, 12), 4);
    p.setPen(QPen(kGreyDark, 1));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(10, 0.5, 3, 8), 1.5, 1.5);
    p.drawLine(QPointF(11.5, 2.5), QPointF(11.5, 6.5));
}

const QHash<int, Draw> &treeDrawings()
{
    static const QHash<int, Draw> drawings = {
        {1, book},
        {2, [](QPainter &p) { envelope(p, false); }},
        {3, [](QPainter &p) { envelope(p, true); }},
        {4,
         [](QPainter &p) {
             folder(p, kFolder, kFolderDark);
             star(p, QPointF(11, 10), 3, kBlue);
         }},
        {5,
         [](QPainter &p) {
             folder(p, kFolder, kFolderDark);
             envelope(p, false);
         }},
        {6, [](QPainter &p) { folder(p, kFolder, kFolderDark); }},
        {7,
         [](QPainter &p) {
             page(p, QRectF(5, 1, 8, 9));
             lines(p, QRectF(5, 1, 8, 8), 2);
             folder(p, kFolder, kFolderDark);
         }},
        {8, [](QPainter &p) { folder(p, QColor(0x9D, 0xB4, 0xCF), kBlue.darker(130)); }},
        {9,
         [](QPainter &p) {
             folder(p, kFolder, kFolderDark);
             p.setPen(QPen(kBlue, 0.8));
             p.setBrush(QColor(0xD6, 0xE6, 0xF8));
             p.drawEllipse(QPointF(10.5, 10), 3.2, 3.2);
         }},
        {10,
         [](QPainter &p) {
             p.setPen(QPen(kGreyDark, 0.8));
             p.setBrush(kPaper);
             p.drawRoundedRect(QRectF(1.5, 3, 13, 10), 1, 1);
             p.setBrush(kBlue);
             p.drawEllipse(QPointF(5, 7), 1.8, 1.8);
             lines(p, QRectF(7, 3, 7.5, 9), 3);
         }},
        {11,
         [](QPainter &p) {
             p.setPen(QPen(kGreyDark, 0.8));
             p.setBrush(kPaper);
             p.drawRect(QRectF(1.5, 2.5, 13, 12));
             p.setBrush(kRed);
             p.drawRect(QRectF(1.5, 2.5, 13, 3));
             p.setPen(QPen(kGrey, 0.8));
             for (int x = 0; x < 3; ++x)
                 for (int y = 0; y < 2; ++y)
                     p.drawRect(QRectF(3 + x * 3.8, 7 + y * 3.5, 2, 2));
         }},
        {12,
         [](QPainter &p) {
             p.setPen(QPen(kGreyDark, 0.8));
             p.setBrush(kPaper);
             p.drawRect(QRectF(2.5, 2.5, 11, 11));
             p.setPen(QPen(kGreen, 1.6));
             p.drawLine(QPointF(4.5, 8), QPointF(7, 10.5));
             p.drawLine(QPointF(7, 10.5), QPointF(11.5, 4.5));
         }},
        {13,
         [](QPainter &p) {
             book(p);
             p.setPen(QPen(kPaper, 1));
             p.drawLine(QPointF(6, 7.5), QPointF(11, 7.5));
         }},
        {14,
         [](QPainter &p) {
             p.setPen(QPen(kFolderDark, 0.8));
             p.setBrush(QColor(0xFF, 0xEE, 0x8C));
             p.drawRect(QRectF(2, 2, 12, 12));
             lines(p, QRectF(2, 2, 12, 11), 3, kFolderDark);
         }},
        {15, [](QPainter &p) { envelope(p, false); }},
        {16,
         [](QPainter &p) {
             page(p, QRectF(3, 1.5, 10, 13));
             lines(p, QRectF(3, 2, 10, 12), 5, kBlue);
         }},
        {17, [](QPainter &p) { envelope(p, true); }},
        {18, [](QPainter &p) { folder(p, QColor(0xC4, 0xC7, 0xCC), kGreyDark); }},
        {19,
         [](QPainter &p) {
             page(p, QRectF(2.5, 1.5, 11, 13));
             p.setPen(QPen(kBlue, 1));
             p.drawLine(QPointF(4.5, 5), QPointF(6.5, 5));
             p.drawLine(QPointF(6, 7.5), QPointF(11, 7.5));
             p.drawLine(QPointF(6, 10), QPointF(10, 10));
             p.drawLine(QPointF(4.5, 12.5), QPointF(7, 12.5));
         }},
        {20, flow},
        {21, clip},
    };
    return drawings;
}

const QHash<QString, Draw> &toolbarDrawings()
{
    static const QHash<QString, Draw> drawings = {
        {QStringLiteral("New"),
         [](QPainter &p) {
             page(p, QRectF(2.5, 1.5, 10, 13));
             star(p, QPointF(12, 4), 3.2, kFolder);
         }},
        {QStringLiteral("OpenScript"),
         [](QPainter &p) {
             page(p, QRectF(5, 1, 8, 9));
             lines(p, QRectF(5, 1, 8, 8), 2, kBlue);
             folder(p, kFolder, kFolderDark);
         }},
        {QStringLiteral("Open"), [](QPainter &p) { folder(p, kFolder, kFolderDark); }},
        {QStringLiteral("Save"),
         [](QPainter &p) {
             p.setPen(QPen(kBlue.darker(140), 0.8));
             p.setBrush(kBlue);
             p.drawRoundedRect(QRectF(1.5, 1.5, 13, 13), 1, 1);
             p.setBrush(kPaper);
             p.drawRect(QRectF(4, 1.5, 8, 5));
             p.setBrush(kGrey);
             p.drawRect(QRectF(4.5, 9.5, 7, 5));
         }},
        {QStringLiteral("Delete"),
         [](QPainter &p) {
             p.setPen(QPen(kRed, 2.6, Qt::SolidLine, Qt::RoundCap));
             p.drawLine(QPointF(3.5, 3.5), QPointF(12.5, 12.5));
             p.drawLine(QPointF(12.5, 3.5), QPointF(3.5, 12.5));
         }},
        {QStringLiteral("Properties"),
         [](QPainter &p) {
             folder(p, kFolder, kFolderDark);
             p.setPen(QPen(kGreyDark, 0.9));
             p.setBrush(kPaper);
             p.drawRect(QRectF(8, 8, 6.5, 6.5));
             lines(p, QRectF(8, 6.5, 6.5, 7), 2, kBlue);
         }},
        {QStringLiteral("ScriptProperties"),
         [](QPainter &p) {
             page(p, QRectF(1.5, 1.5, 10, 13));
             lines(p, QRectF(1.5, 2, 10, 12), 3, kBlue);
             p.setPen(QPen(kGreyDark, 0.9));
             p.setBrush(kGrey);
             p.drawEllipse(QPointF(11.5, 11.5), 3.5, 3.5);
             p.setBrush(kPaper);
             p.drawEllipse(QPointF(11.5, 11.5), 1.3, 1.3);
         }},
        {QStringLiteral("Question"),
         [](QPainter &p) {
             page(p, QRectF(2.5, 1.5, 11, 13));
             QFont f;
             f.setPixelSize(10);
             f.setBold(true);
             p.setFont(f);
             p.setPen(kBlue);
             p.drawText(QRectF(2.5, 2.5, 11, 12), Qt::AlignCenter, QStringLiteral("?"));
         }},
        {QStringLiteral("Send"),
         [](QPainter &p) {
             envelope(p, false);
             p.setPen(QPen(kGreen, 1.6, Qt::SolidLine, Qt::RoundCap));
             p.drawLine(QPointF(9, 2.5), QPointF(15, 2.5));
             p.drawLine(QPointF(13, 0.8), QPointF(15, 2.5));
             p.drawLine(QPointF(13, 4.2), QPointF(15, 2.5));
         }},
        {QStringLiteral("Grid"),
         [](QPainter &p) {
             p.setPen(QPen(kGreyDark, 0.8));
             p.setBrush(kPaper);
             p.drawRect(QRectF(1.5, 2.5, 13, 11));
             p.setBrush(kBlue);
             p.drawRect(QRectF(1.5, 2.5, 13, 2.5));
             p.drawLine(QPointF(6, 5), QPointF(6, 13.5));
             p.drawLine(QPointF(1.5, 8), QPointF(14.5, 8));
             p.drawLine(QPointF(1.5, 10.8), QPointF(14.5, 10.8));
         }},
        {QStringLiteral("Cut"),
         [](QPainter &p) {
             p.setPen(QPen(kGreyDark, 1.1));
             p.setBrush(Qt::NoBrush);
             p.drawEllipse(QPointF(4.5, 12), 2.2, 2.2);
             p.drawEllipse(QPointF(11.5, 12), 2.2, 2.2);
             p.drawLine(QPointF(5.8, 10.3), QPointF(11, 1.5));
             p.drawLine(QPointF(10.2, 10.3), QPointF(5, 1.5));
         }},
        {QStringLiteral("Copy"),
         [](QPainter &p) {
             page(p, QRectF(1.5, 1.5, 8.5, 10));
             page(p, QRectF(6, 4.5, 8.5, 10));
             lines(p, QRectF(6, 5, 8.5, 9), 3, kBlue);
         }},
        {QStringLiteral("Paste"),
         [](QPainter &p) {
             p.setPen(QPen(kFolderDark, 0.8));
             p.setBrush(QColor(0xC9, 0x9A, 0x5B));
             p.drawRoundedRect(QRectF(2, 2.5, 10, 12), 1, 1);
             p.setBrush(kGrey);
             p.drawRect(QRectF(4.5, 1.5, 5, 2.5));
             page(p, QRectF(7, 6, 7.5, 9));
         }},
        {QStringLiteral("TimeDate"),
         [](QPainter &p) {
             p.setPen(QPen(kGreyDark, 0.9));
             p.setBrush(kPaper);
             p.drawEllipse(QPointF(8, 8), 6.5, 6.5);
             p.setPen(QPen(kBlue, 1.3, Qt::SolidLine, Qt::RoundCap));
             p.drawLine(QPointF(8, 8), QPointF(8, 3.8));
             p.drawLine(QPointF(8, 8), QPointF(11, 9.5));
         }},
        {QStringLiteral("Folder"),
         [](QPainter &p) {
             p.setPen(QPen(kGreyDark, 0.8));
             p.drawLine(QPointF(3, 4), QPointF(3, 13));
             p.drawLine(QPointF(3, 8.5), QPointF(6, 8.5));
             p.drawLine(QPointF(3, 13), QPointF(6, 13));
             p.setBrush(kFolder);
             p.setPen(QPen(kFolderDark, 0.8));
             p.drawRect(QRectF(1, 1, 5, 3.5));
             p.drawRect(QRectF(6, 7, 8, 3.5));
             p.drawRect(QRectF(6, 11.5, 8, 3.5));
         }},
        {QStringLiteral("Script"),
         [](QPainter &p) {
             page(p, QRectF(2.5, 1.5, 11, 13));
             lines(p, QRectF(2.5, 2, 11, 12), 5, kBlue);
         }},
        {QStringLiteral("Favorite"),
         [](QPainter &p) {
             folder(p, kFolder, kFolderDark);
             star(p, QPointF(10.5, 9.5), 4.5, QColor(0xF5, 0xC5, 0x18));
         }},
        {QStringLiteral("FolderScript"),
         [](QPainter &p) {
             page(p, QRectF(5, 1, 8, 9));
             folder(p, kFolder, kFolderDark);
         }},
        {QStringLiteral("Print"),
         [](QPainter &p) {
             page(p, QRectF(4, 1.5, 8, 6));
             p.setPen(QPen(kGreyDark, 0.8));
             p.setBrush(kGrey);
             p.drawRoundedRect(QRectF(1.5, 6.5, 13, 6), 1, 1);
             page(p, QRectF(4, 10, 8, 5));
         }},
        {QStringLiteral("Find"),
         [](QPainter &p) {
             p.setPen(QPen(kGreyDark, 1.2));
             p.setBrush(QColor(0xD6, 0xE6, 0xF8));
             p.drawEllipse(QPointF(6.5, 6.5), 4.5, 4.5);
             p.setPen(QPen(kGreyDark, 2.2, Qt::SolidLine, Qt::RoundCap));
             p.drawLine(QPointF(10, 10), QPointF(14, 14));
         }},
        {QStringLiteral("Map"), flow},
    };
    return drawings;
}

} // namespace

QIcon treeImage(int index)
{
    static QHash<int, QIcon> cache;
    auto it = cache.find(index);
    if (it == cache.end()) {
        const Draw draw = treeDrawings().value(index);
        it = cache.insert(index, draw ? make(draw) : QIcon());
    }
    return *it;
}

QVector<QIcon> treeImageList()
{
    QVector<QIcon> list;
    for (int i = 1; i <= 21; ++i)
        list.append(treeImage(i));
    return list;
}

QIcon toolbarImage(const QString &key)
{
    static QHash<QString, QIcon> cache;
    auto it = cache.find(key);
    if (it == cache.end()) {
        const Draw draw = toolbarDrawings().value(key);
        it = cache.insert(key, draw ? make(draw) : QIcon());
    }
    return *it;
}

QIcon splashPicture()
{
    QIcon icon;
    for (int size : {48, 96}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(size / 16.0, size / 16.0);
        folder(p, kFolder, kFolderDark);
        QPainterPath bolt;
        bolt.moveTo(9.5, 6);
        bolt.lineTo(7, 10);
        bolt.lineTo(9, 10);
        bolt.lineTo(7.5, 13.5);
        bolt.lineTo(11.5, 9);
        bolt.lineTo(9.5, 9);
        bolt.lineTo(11, 6);
        bolt.closeSubpath();
        p.setPen(QPen(kBlue.darker(130), 0.4));
        p.setBrush(kBlue);
        p.drawPath(bolt);
        icon.addPixmap(pixmap);
    }
    return icon;
}

QIcon appIcon()
{
    return splashPicture();
}

} // namespace app::icons
