#include "app/icons.h"

#include <QHash>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace app::icons {

namespace {

// Every picture draws from this one small palette.
namespace ink {
const QColor paper(0xFFFFFFu);
const QColor paperEdge(0x5A5F66u);
const QColor paperFold(0xDDE1E6u);
const QColor text(0xA3A8B0u);

const QColor folder(0xE8B93Au);
const QColor folderBack(0xD4A02Au);
const QColor folderLight(0xF7DA83u);
const QColor folderEdge(0x98700Fu);

const QColor steel(0xA3B9D3u);
const QColor steelBack(0x8AA3C2u);
const QColor steelLight(0xC8D7E8u);
const QColor steelEdge(0x4B6589u);

const QColor ash(0xC9CCD1u);
const QColor ashBack(0xB2B6BCu);
const QColor ashLight(0xE0E2E5u);
const QColor ashEdge(0x6E737Au);

const QColor blue(0x2F6DB5u);
const QColor blueEdge(0x1E4B80u);
const QColor blueMid(0x7FA7DAu);
const QColor blueLight(0xD6E6F8u);

const QColor red(0xC8372Du);
const QColor redEdge(0x8C221Bu);

const QColor green(0x3C9A4Bu);
const QColor greenEdge(0x25693Au);

const QColor grey(0x8A8F98u);
const QColor greyEdge(0x5A5F66u);
const QColor greyLight(0xD3D7DCu);

const QColor gold(0xFFC535u);
const QColor goldEdge(0xA8700Au);

const QColor note(0xFFE680u);
const QColor noteFold(0xF0CC4Au);
const QColor noteEdge(0xB08E22u);
const QColor noteLine(0xCFAE3Cu);

const QColor board(0xC99550u);
const QColor boardEdge(0x86601Fu);
} // namespace ink

constexpr double kPi = 3.14159265358979323846;

/// A square of pixels seen as a 16-unit grid. A point at a half unit is the
/// centre of a pixel at 16 px; such points, and the edges of filled bars,
/// are snapped to whole device pixels at every size so that one-unit strokes
/// stay crisp at 16, 24 and 32 px. Other points are only scaled.
class Canvas {
public:
    Canvas(QPainter &painter, int size) : p(painter), s(size / 16.0) {}

    QPainter &p;
    const double s;

    /// Device width of a stroke `w` units wide: thin strokes stay one pixel
    /// wide until there is room for two.
    double width(double w) const
    {
        const double d = w * s;
        return (w <= 1.0 && d < 2.0) ? 1.0 : d;
    }

    /// Device position of a stroke `w` units wide centred on `u`.
    double at(double u, double w = 1) const
    {
        const double d = width(w);
        const double start = u - w / 2;
        if (std::abs(start - std::round(start)) > 1e-6 || std::abs(d - std::round(d)) > 1e-6)
            return u * s;
        return std::round(start * s) + d / 2;
    }

    QPointF pt(const QPointF &u, double w = 1) const { return {at(u.x(), w), at(u.y(), w)}; }

    QPen pen(const QColor &color, double w = 1, Qt::PenCapStyle cap = Qt::SquareCap,
             Qt::PenJoinStyle join = Qt::MiterJoin) const
    {
        if (!color.isValid())
            return QPen(Qt::NoPen);
        return QPen(color, width(w), Qt::SolidLine, cap, join);
    }

    /// A closed outline through snapped points.
    void poly(std::initializer_list<QPointF> points, const QBrush &fill, const QColor &edge,
              double w = 1) const
    {
        QPolygonF polygon;
        for (const QPointF &u : points)
            polygon << pt(u, w);
        p.setPen(pen(edge, w));
        p.setBrush(fill);
        p.drawPolygon(polygon);
    }

    /// An open line through snapped points.
    void polyline(std::initializer_list<QPointF> points, const QColor &edge, double w = 1,
                  Qt::PenCapStyle cap = Qt::SquareCap) const
    {
        QPolygonF polygon;
        for (const QPointF &u : points)
            polygon << pt(u, w);
        p.setPen(pen(edge, w, cap, cap == Qt::RoundCap ? Qt::RoundJoin : Qt::MiterJoin));
        p.setBrush(Qt::NoBrush);
        p.drawPolyline(polygon);
    }

    /// A rectangle whose outline runs through the given stroke centres.
    void box(double l, double t, double r, double b, const QBrush &fill, const QColor &edge,
             double radius = 0, double w = 1) const
    {
        const QRectF rect(QPointF(at(l, w), at(t, w)), QPointF(at(r, w), at(b, w)));
        p.setPen(pen(edge, w));
        p.setBrush(fill);
        if (radius > 0)
            p.drawRoundedRect(rect, radius * s, radius * s);
        else
            p.drawRect(rect);
    }

    /// A solid bar between pixel edges, at least one device pixel thick.
    void bar(double l, double t, double r, double b, const QColor &color) const
    {
        const double x = std::round(l * s);
        const double y = std::round(t * s);
        const double wd = std::max(1.0, std::round((r - l) * s - 0.25));
        const double ht = std::max(1.0, std::round((b - t) * s - 0.25));
        p.fillRect(QRectF(x, y, wd, ht), color);
    }

    /// A free shape in units, only scaled.
    void path(const QPainterPath &unitPath, const QBrush &fill, const QColor &edge, double w = 1,
              Qt::PenCapStyle cap = Qt::RoundCap) const
    {
        p.setPen(pen(edge, w, cap, Qt::RoundJoin));
        p.setBrush(fill);
        p.drawPath(QTransform::fromScale(s, s).map(unitPath));
    }

    void ellipse(double cx, double cy, double rx, double ry, const QBrush &fill, const QColor &edge,
                 double w = 1) const
    {
        p.setPen(pen(edge, w));
        p.setBrush(fill);
        p.drawEllipse(QPointF(cx * s, cy * s), rx * s, ry * s);
    }

    void line(double x1, double y1, double x2, double y2, const QColor &color, double w = 1,
              Qt::PenCapStyle cap = Qt::RoundCap) const
    {
        p.setPen(pen(color, w, cap));
        p.drawLine(pt({x1, y1}, w), pt({x2, y2}, w));
    }
};

using Picture = void (*)(Canvas &);

QImage paint(Picture draw, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    Canvas c(p, size);
    draw(c);
    return image;
}

QIcon make(Picture draw)
{
    QIcon icon;
    for (int size : {16, 24, 32})
        icon.addPixmap(QPixmap::fromImage(paint(draw, size)));
    return icon;
}

// ---------------------------------------------------------------------------
// Shared parts

struct FolderInk {
    QColor back, front, light, edge;
};

const FolderInk kYellow{ink::folderBack, ink::folder, ink::folderLight, ink::folderEdge};
const FolderInk kSteel{ink::steelBack, ink::steel, ink::steelLight, ink::steelEdge};
const FolderInk kAsh{ink::ashBack, ink::ash, ink::ashLight, ink::ashEdge};

/// The back of a folder with its tab; `right` is the right-hand edge.
void folderBack(Canvas &c, const FolderInk &k, double right = 14.5)
{
    c.poly({{1.5, 2.5}, {6.5, 2.5}, {8.5, 4.5}, {right, 4.5}, {right, 13.5}, {1.5, 13.5}}, k.back, k.edge);
}

/// The front of a closed folder.
void folderFront(Canvas &c, const FolderInk &k)
{
    c.box(1.5, 6.5, 14.5, 13.5, k.front, k.edge);
    c.bar(2, 7, 14, 8, k.light);
}

void folder(Canvas &c, const FolderInk &k)
{
    folderBack(c, k);
    folderFront(c, k);
}

/// The front of an open folder, leaning towards the viewer.
void openFolderFront(Canvas &c, const FolderInk &k)
{
    c.poly({{4.5, 7.5}, {15.5, 7.5}, {13.5, 13.5}, {1.5, 13.5}}, k.front, k.edge);
    c.bar(5, 8, 15, 9, k.light);
}

/// A sheet of paper with its top right corner turned down.
void page(Canvas &c, double l, double t, double r, double b, double ear = 3)
{
    c.poly({{l, t}, {r - ear, t}, {r, t + ear}, {r, b}, {l, b}}, ink::paper, ink::paperEdge);
    c.poly({{r - ear, t}, {r - ear, t + ear}, {r, t + ear}}, ink::paperFold, ink::paperEdge);
}

/// Lines of text, one unit thick and two apart, starting on row `y`.
void textLines(Canvas &c, double l, double r, double y, int count, const QColor &color = ink::text)
{
    for (int i = 0; i < count; ++i)
        c.bar(l, y + 2 * i, r, y + 2 * i + 1, color);
}

void star(Canvas &c, double cx, double cy, double radius, const QColor &fill, const QColor &edge,
          bool halo = false)
{
    QPainterPath path;
    for (int i = 0; i < 10; ++i) {
        const double a = -kPi / 2 + i * kPi / 5;
        const double r = i % 2 ? radius * 0.46 : radius;
        const QPointF q(cx + r * std::cos(a), cy + r * std::sin(a));
        if (i == 0)
            path.moveTo(q);
        else
            path.lineTo(q);
    }
    path.closeSubpath();
    if (halo)
        c.path(path, ink::paper, ink::paper, 2.6, Qt::RoundCap);
    c.path(path, fill, edge, 1, Qt::RoundCap);
}

void gear(Canvas &c, double cx, double cy, double outer, double inner, double hole, int teeth,
          const QColor &fill, const QColor &edge)
{
    QPainterPath path;
    const double step = 2 * kPi / teeth;
    for (int i = 0; i < teeth; ++i) {
        const double a = -kPi / 2 + i * step;
        const double angles[4] = {a - step * 0.22, a + step * 0.22, a + step * 0.32, a + step * 0.68};
        const double radii[4] = {outer, outer, inner, inner};
        for (int j = 0; j < 4; ++j) {
            const QPointF q(cx + radii[j] * std::cos(angles[j]), cy + radii[j] * std::sin(angles[j]));
            if (i == 0 && j == 0)
                path.moveTo(q);
            else
                path.lineTo(q);
        }
    }
    path.closeSubpath();
    path.addEllipse(QPointF(cx, cy), hole, hole);
    path.setFillRule(Qt::OddEvenFill);
    c.path(path, fill, edge, 1, Qt::RoundCap);
}

/// A closed envelope seen from the back.
void envelope(Canvas &c, double l, double t, double r, double b)
{
    const double mid = (l + r) / 2;
    c.box(l, t, r, b, ink::paper, ink::paperEdge);
    c.poly({{l, t}, {r, t}, {mid, t + (b - t) * 0.58}}, ink::paperFold, ink::paperEdge);
}

/// An envelope with its flap up, and whatever `inside` draws in it.
void openEnvelope(Canvas &c, void (*inside)(Canvas &))
{
    c.poly({{1.5, 7.5}, {8, 1.5}, {14.5, 7.5}}, ink::greyLight, ink::paperEdge);
    if (inside)
        inside(c);
    c.poly({{1.5, 7.5}, {8, 11.5}, {14.5, 7.5}, {14.5, 14.5}, {1.5, 14.5}}, ink::paper, ink::paperEdge);
}

/// An in- or out-tray.
void tray(Canvas &c)
{
    c.poly({{1.5, 9.5},
            {4.5, 9.5},
            {5.5, 11.5},
            {10.5, 11.5},
            {11.5, 9.5},
            {14.5, 9.5},
            {14.5, 14.5},
            {1.5, 14.5}},
           ink::steelLight, ink::steelEdge);
}

/// A fat arrow pointing up (or down), its tip on row `tip`.
void upArrow(Canvas &c, double tip, bool down, const QColor &fill, const QColor &edge)
{
    const double d = down ? -1 : 1;
    c.poly({{8, tip},
            {12.5, tip + d * 4.5},
            {9.5, tip + d * 4.5},
            {9.5, tip + d * 8.5},
            {6.5, tip + d * 8.5},
            {6.5, tip + d * 4.5},
            {3.5, tip + d * 4.5}},
           fill, edge);
}

/// Three boxes joined by arrows.
void flowChart(Canvas &c)
{
    c.box(4.5, 1.5, 11.5, 5.5, ink::blue, ink::blueEdge);
    c.bar(5, 2, 11, 3, ink::blueMid);
    c.box(0.5, 10.5, 6.5, 14.5, ink::blueLight, ink::blueEdge);
    c.box(9.5, 10.5, 15.5, 14.5, ink::blueLight, ink::blueEdge);
    c.bar(8, 6, 9, 8, ink::greyEdge);
    c.bar(3, 7, 14, 8, ink::greyEdge);
    c.bar(3, 7, 4, 9, ink::greyEdge);
    c.bar(12, 7, 13, 9, ink::greyEdge);
    for (double x : {3.5, 12.5}) {
        QPainterPath head;
        head.moveTo(x - 2, 8.5);
        head.lineTo(x + 2, 8.5);
        head.lineTo(x, 10.5);
        head.closeSubpath();
        c.path(head, ink::greyEdge, QColor());
    }
}

void book(Canvas &c, const QColor &cover, const QColor &edge, const QColor &light)
{
    // The pages' edge along the bottom, then the cover over them.
    c.box(3.5, 11.5, 13.5, 14.5, ink::paper, edge, 0);
    c.bar(4, 13, 13, 14, ink::greyLight);
    c.box(2.5, 1.5, 13.5, 12.5, cover, edge, 0.8);
    c.bar(3, 2, 5, 12, edge);
    c.bar(7, 4, 12, 7, light);
}

/// A paper clip: three legs on pixel centres joined by two round bends.
void paperclip(Canvas &c)
{
    const double outer = c.at(4.5), inner = c.at(6.5), right = c.at(8.5);
    const double top = c.at(1.5), bottom = c.at(10.5);
    const double small = (right - inner) / 2, large = (right - outer) / 2;
    QPainterPath clip;
    clip.moveTo(inner, c.at(8.5));
    clip.lineTo(inner, top);
    clip.arcTo(QRectF(inner, top - small, 2 * small, 2 * small), 180, -180);
    clip.lineTo(right, bottom);
    clip.arcTo(QRectF(outer, bottom - large, 2 * large, 2 * large), 0, -180);
    clip.lineTo(outer, c.at(3.5));
    c.p.setPen(c.pen(ink::steelEdge, 1, Qt::RoundCap, Qt::RoundJoin));
    c.p.setBrush(Qt::NoBrush);
    c.p.drawPath(clip);
}

// ---------------------------------------------------------------------------
// The tree's images

void imgStore(Canvas &c)
{
    book(c, ink::blue, ink::blueEdge, ink::blueLight);
}

void imgRoot(Canvas &c)
{
    c.box(1.5, 3.5, 14.5, 12.5, ink::paper, ink::paperEdge);
    c.bar(10, 5, 13, 8, ink::red);
    c.bar(11, 6, 12, 7, QColor(0xE8, 0x8A, 0x82));
    textLines(c, 4, 10, 8, 2, ink::grey);
    c.bar(4, 8, 10, 9, ink::blue);
}

void letterInside(Canvas &c)
{
    c.box(3.5, 3.5, 12.5, 10.5, ink::paper, ink::paperEdge);
    textLines(c, 5, 11, 5, 2, ink::blue);
}

void imgOpenLetter(Canvas &c)
{
    openEnvelope(c, letterInside);
}

void imgOutbox(Canvas &c)
{
    tray(c);
    upArrow(c, 0.5, false, ink::green, ink::greenEdge);
}

void imgInbox(Canvas &c)
{
    tray(c);
    upArrow(c, 10.5, true, ink::blue, ink::blueEdge);
}

void imgYellowFolder(Canvas &c)
{
    folder(c, kYellow);
}

void imgFolderWithAgents(Canvas &c)
{
    folderBack(c, kYellow);
    c.box(5.5, 1.5, 13.5, 8, ink::paper, ink::paperEdge);
    c.bar(7, 3, 12, 4, ink::text);
    c.bar(7, 5, 11, 6, ink::text);
    folderFront(c, kYellow);
}

void imgFolder(Canvas &c)
{
    folder(c, kSteel);
}

void imgPublicFolder(Canvas &c)
{
    folder(c, kYellow);
    c.ellipse(11.5, 11.5, 4, 4, ink::blueLight, ink::blueEdge);
    c.ellipse(11.5, 11.5, 1.6, 4, Qt::NoBrush, ink::blue, 0.8);
    c.line(7.8, 11.5, 15.2, 11.5, ink::blue, 0.8, Qt::FlatCap);
}

void imgContact(Canvas &c)
{
    c.box(1.5, 2.5, 14.5, 13.5, ink::paper, ink::paperEdge, 1);
    c.bar(2, 3, 14, 4, ink::blueLight);
    c.ellipse(5.5, 6.5, 1.6, 1.6, ink::blue, QColor());
    QPainterPath shoulders;
    shoulders.addRoundedRect(QRectF(3, 9, 5, 6), 2.2, 2.2);
    QPainterPath below;
    below.addRect(QRectF(3, 9, 5, 4));
    c.path(shoulders.intersected(below), ink::blue, QColor());
    c.bar(9, 6, 13, 7, ink::grey);
    c.bar(9, 8, 13, 9, ink::text);
    c.bar(9, 10, 12, 11, ink::text);
}

void imgAppt(Canvas &c)
{
    c.box(1.5, 2.5, 14.5, 14.5, ink::paper, ink::paperEdge);
    c.box(1.5, 2.5, 14.5, 5.5, ink::red, ink::redEdge);
    c.bar(4, 1, 5, 4, ink::greyEdge);
    c.bar(11, 1, 12, 4, ink::greyEdge);
    for (int row = 0; row < 2; ++row)
        for (int col = 0; col < 3; ++col)
            c.bar(3 + col * 4, 7 + row * 3.5, 5 + col * 4, 9 + row * 3.5,
                  row == 1 && col == 1 ? ink::blue : ink::greyLight);
}

void imgTask(Canvas &c)
{
    c.box(2.5, 3.5, 12.5, 13.5, ink::paper, ink::paperEdge);
    QPainterPath tick;
    tick.moveTo(5, 8.2);
    tick.lineTo(7.6, 10.8);
    tick.lineTo(13.8, 2.6);
    c.path(tick, Qt::NoBrush, ink::green, 2.1, Qt::RoundCap);
}

void imgJournal(Canvas &c)
{
    c.box(0.5, 4.5, 15.5, 14.5, ink::blue, ink::blueEdge);
    c.poly({{1.5, 2.5}, {5, 2.5}, {7.5, 3.5}, {7.5, 13.5}, {1.5, 13.5}}, ink::paper, ink::paperEdge);
    c.poly({{8.5, 3.5}, {11, 2.5}, {14.5, 2.5}, {14.5, 13.5}, {8.5, 13.5}}, ink::paper, ink::paperEdge);
    textLines(c, 3, 7, 6, 3);
    textLines(c, 10, 14, 6, 3);
}

void imgNote(Canvas &c)
{
    c.poly({{1.5, 1.5}, {14.5, 1.5}, {14.5, 10.5}, {10.5, 14.5}, {1.5, 14.5}}, ink::note, ink::noteEdge);
    c.poly({{10.5, 14.5}, {10.5, 10.5}, {14.5, 10.5}}, ink::noteFold, ink::noteEdge);
    textLines(c, 4, 12, 4, 2, ink::noteLine);
    c.bar(4, 8, 9, 9, ink::noteLine);
}

void imgMailUnread(Canvas &c)
{
    envelope(c, 1.5, 3.5, 14.5, 12.5);
}

void imgDoc(Canvas &c)
{
    page(c, 2.5, 1.5, 13.5, 14.5);
    c.bar(5, 5, 9, 6, ink::blue);
    textLines(c, 5, 11, 7, 3);
    c.bar(5, 13, 9, 14, ink::text);
}

void imgMailRead(Canvas &c)
{
    openEnvelope(c, nullptr);
}

void imgGreyFolder(Canvas &c)
{
    folder(c, kAsh);
}

void imgScript(Canvas &c)
{
    page(c, 2.5, 1.5, 13.5, 14.5);
    c.bar(5, 5, 9, 6, ink::blue);
    c.bar(7, 7, 11, 8, ink::green);
    c.bar(7, 9, 12, 10, ink::grey);
    c.bar(5, 11, 8, 12, ink::blue);
}

void imgRoute(Canvas &c)
{
    flowChart(c);
}

void imgClip(Canvas &c)
{
    page(c, 2.5, 2.5, 13.5, 14.5);
    textLines(c, 10, 12, 7, 3);
    paperclip(c);
}

// Image n is kTree[n - 1].
const Picture kTree[21] = {
    imgStore,
    imgRoot,
    imgOpenLetter,
    imgOutbox,
    imgInbox,
    imgYellowFolder,
    imgFolderWithAgents,
    imgFolder,
    imgPublicFolder,
    imgContact,
    imgAppt,
    imgTask,
    imgJournal,
    imgNote,
    imgMailUnread,
    imgDoc,
    imgMailRead,
    imgGreyFolder,
    imgScript,
    imgRoute,
    imgClip,
};

// ---------------------------------------------------------------------------
// The toolbar's images

void tbNew(Canvas &c)
{
    page(c, 3.5, 1.5, 13.5, 14.5);
    star(c, 4.2, 4.2, 3.9, ink::gold, ink::goldEdge);
}

void tbOpenScript(Canvas &c)
{
    folderBack(c, kYellow, 13.5);
    c.box(4.5, 1.5, 11.5, 9, ink::paper, ink::paperEdge);
    c.bar(6, 3, 10, 4, ink::blue);
    c.bar(7, 5, 10, 6, ink::green);
    openFolderFront(c, kYellow);
}

void tbSave(Canvas &c)
{
    c.poly({{1.5, 1.5}, {12.5, 1.5}, {14.5, 3.5}, {14.5, 14.5}, {1.5, 14.5}}, ink::blue, ink::blueEdge);
    c.box(4.5, 1.5, 11.5, 5.5, ink::greyLight, ink::blueEdge);
    c.bar(9, 2, 11, 5, ink::greyEdge);
    c.box(3.5, 8.5, 12.5, 14.5, ink::paper, ink::blueEdge);
    textLines(c, 5, 11, 10, 2, ink::text);
}

void tbDelete(Canvas &c)
{
    c.line(4, 4, 12, 12, ink::redEdge, 3.4, Qt::RoundCap);
    c.line(12, 4, 4, 12, ink::redEdge, 3.4, Qt::RoundCap);
    c.line(4, 4, 12, 12, ink::red, 2.2, Qt::RoundCap);
    c.line(12, 4, 4, 12, ink::red, 2.2, Qt::RoundCap);
}

void tbProperties(Canvas &c)
{
    folderBack(c, kYellow);
    c.box(1.5, 6.5, 14.5, 13.5, ink::folder, ink::folderEdge);
    c.bar(2, 7, 14, 8, ink::folderLight);
    c.box(7.5, 8.5, 15.5, 15.5, ink::paper, ink::paperEdge);
    c.bar(9, 10, 10, 11, ink::blue);
    c.bar(11, 10, 14, 11, ink::grey);
    c.bar(9, 12, 10, 13, ink::blue);
    c.bar(11, 12, 14, 13, ink::grey);
}

void tbScriptProperties(Canvas &c)
{
    page(c, 1.5, 1.5, 11.5, 14.5);
    c.bar(4, 5, 8, 6, ink::blue);
    c.bar(5, 7, 8, 8, ink::green);
    c.bar(4, 9, 7, 10, ink::grey);
    gear(c, 11.5, 11.5, 4.4, 3.1, 1.4, 6, ink::grey, ink::greyEdge);
}

void tbQuestion(Canvas &c)
{
    page(c, 2.5, 1.5, 13.5, 14.5);
    QPainterPath hook;
    hook.arcMoveTo(QRectF(5.5, 3.6, 5, 4.8), 165);
    hook.arcTo(QRectF(5.5, 3.6, 5, 4.8), 165, -255);
    hook.lineTo(8, 9.6);
    c.path(hook, Qt::NoBrush, ink::blue, 1.7, Qt::RoundCap);
    c.ellipse(8, 12.1, 1.05, 1.05, ink::blue, QColor());
}

void tbSend(Canvas &c)
{
    envelope(c, 0.5, 2.5, 12.5, 11.5);
    c.poly({{6.5, 9.5}, {10.5, 9.5}, {10.5, 7.5}, {15, 11.5}, {10.5, 15.5}, {10.5, 13.5}, {6.5, 13.5}},
           ink::green, ink::greenEdge);
}

void tbGrid(Canvas &c)
{
    c.box(1.5, 2.5, 14.5, 13.5, ink::paper, ink::paperEdge);
    c.bar(2, 3, 14, 6, ink::blue);
    c.bar(2, 6, 6, 13, ink::blueLight);
    c.bar(6, 6, 7, 13, ink::grey);
    c.bar(10, 3, 11, 13, ink::grey);
    c.bar(2, 6, 14, 7, ink::grey);
    c.bar(2, 9, 14, 10, ink::grey);
    c.bar(10, 3, 11, 6, ink::blueMid);
}

void tbCut(Canvas &c)
{
    c.line(5.6, 9.6, 11, 1.3, ink::greyEdge, 1.4, Qt::RoundCap);
    c.line(10.4, 9.6, 5, 1.3, ink::greyEdge, 1.4, Qt::RoundCap);
    c.ellipse(4.6, 12, 2.3, 2.3, Qt::NoBrush, ink::red, 1.5);
    c.ellipse(11.4, 12, 2.3, 2.3, Qt::NoBrush, ink::red, 1.5);
    c.ellipse(8, 6.1, 0.8, 0.8, ink::paper, QColor());
}

void tbCopy(Canvas &c)
{
    page(c, 1.5, 0.5, 10.5, 11.5);
    textLines(c, 3, 7, 4, 3);
    page(c, 5.5, 4.5, 14.5, 15.5);
    textLines(c, 7, 11, 8, 3, ink::blue);
    c.bar(7, 14, 10, 15, ink::blue);
}

void tbPaste(Canvas &c)
{
    c.box(1.5, 2.5, 11.5, 14.5, ink::board, ink::boardEdge, 1);
    c.box(4.5, 1.5, 8.5, 3.5, ink::greyLight, ink::greyEdge);
    page(c, 6.5, 5.5, 14.5, 15.5, 2.5);
    textLines(c, 8, 12, 9, 3, ink::blue);
}

void tbTimeDate(Canvas &c)
{
    c.ellipse(7.5, 7.5, 6.1, 6.1, ink::paper, ink::blueEdge, 1.3);
    c.bar(7, 3, 8, 4, ink::grey);
    c.bar(7, 11, 8, 12, ink::grey);
    c.bar(3, 7, 4, 8, ink::grey);
    c.bar(11, 7, 12, 8, ink::grey);
    c.polyline({{7.5, 4.5}, {7.5, 7.5}, {9.5, 7.5}}, ink::greyEdge);
    c.bar(7, 7, 8, 8, ink::red);
}

void miniFolder(Canvas &c, double l, double t, double r, double b)
{
    c.box(l, t, l + 3, t + 1.5, ink::folderBack, ink::folderEdge);
    c.box(l, t + 1, r, b, ink::folder, ink::folderEdge);
}

void tbFolder(Canvas &c)
{
    c.bar(3, 6, 4, 14, ink::grey);
    c.bar(3, 9, 7, 10, ink::grey);
    c.bar(3, 13, 7, 14, ink::grey);
    miniFolder(c, 1.5, 0.5, 9.5, 5.5);
    miniFolder(c, 7.5, 6.5, 14.5, 10.5);
    miniFolder(c, 7.5, 11.5, 14.5, 15.5);
}

void tbScript(Canvas &c)
{
    page(c, 2.5, 1.5, 13.5, 14.5);
    textLines(c, 5, 11, 5, 4, ink::blue);
    c.bar(5, 13, 9, 14, ink::blue);
}

void tbFavorite(Canvas &c)
{
    folder(c, kYellow);
    star(c, 11, 10.4, 4.8, ink::gold, ink::goldEdge, true);
}

void tbOpen(Canvas &c)
{
    folderBack(c, kYellow, 13.5);
    openFolderFront(c, kYellow);
}

void tbPrint(Canvas &c)
{
    c.box(4.5, 1.5, 11.5, 7.5, ink::paper, ink::paperEdge);
    c.box(1.5, 6.5, 14.5, 12.5, ink::greyLight, ink::greyEdge, 1);
    c.bar(2, 7, 14, 8, ink::paper);
    c.bar(12, 9, 13, 10, ink::green);
    c.poly({{3.5, 10.5}, {12.5, 10.5}, {12.5, 14.5}, {3.5, 14.5}}, ink::paper, ink::paperEdge);
    c.bar(5, 12, 11, 13, ink::text);
}

void tbFind(Canvas &c)
{
    c.line(10.2, 10.2, 14, 14, ink::greyEdge, 2.6, Qt::RoundCap);
    c.ellipse(6.5, 6.5, 4.6, 4.6, ink::blueLight, ink::greyEdge, 1.4);
    QPainterPath shine;
    shine.arcMoveTo(QRectF(3.6, 3.6, 5.8, 5.8), 100);
    shine.arcTo(QRectF(3.6, 3.6, 5.8, 5.8), 100, 70);
    c.path(shine, Qt::NoBrush, ink::paper, 1.1, Qt::RoundCap);
}

void tbFolderScript(Canvas &c)
{
    folderBack(c, kYellow);
    c.box(5.5, 1.5, 13.5, 8, ink::paper, ink::paperEdge);
    c.bar(7, 3, 11, 4, ink::blue);
    c.bar(8, 5, 12, 6, ink::green);
    folderFront(c, kYellow);
}

void tbMap(Canvas &c)
{
    c.poly({{1.5, 3.5}, {5.5, 1.5}, {5.5, 12.5}, {1.5, 14.5}}, ink::blueLight, ink::paperEdge);
    c.poly({{5.5, 1.5}, {10.5, 3.5}, {10.5, 14.5}, {5.5, 12.5}}, ink::paper, ink::paperEdge);
    c.poly({{10.5, 3.5}, {14.5, 1.5}, {14.5, 12.5}, {10.5, 14.5}}, ink::blueLight, ink::paperEdge);
    QPainterPath route;
    route.moveTo(3, 11.5);
    route.lineTo(7.5, 7.5);
    route.lineTo(9, 10.5);
    route.lineTo(12.5, 6.5);
    c.path(route, Qt::NoBrush, ink::red, 1.2, Qt::RoundCap);
    c.ellipse(12.5, 5, 1.6, 1.6, ink::red, ink::redEdge, 0.8);
}

struct ToolbarPicture {
    const char *key;
    Picture draw;
};

const ToolbarPicture kToolbar[] = {
    {"New", tbNew},
    {"OpenScript", tbOpenScript},
    {"Save", tbSave},
    {"Delete", tbDelete},
    {"Properties", tbProperties},
    {"ScriptProperties", tbScriptProperties},
    {"Question", tbQuestion},
    {"Send", tbSend},
    {"Grid", tbGrid},
    {"Cut", tbCut},
    {"Copy", tbCopy},
    {"Paste", tbPaste},
    {"TimeDate", tbTimeDate},
    {"Folder", tbFolder},
    {"Script", tbScript},
    {"Favorite", tbFavorite},
    {"Open", tbOpen},
    {"Print", tbPrint},
    {"Find", tbFind},
    {"FolderScript", tbFolderScript},
    {"Map", tbMap},
};

// ---------------------------------------------------------------------------
// The product's picture

/// The product's picture drawn large, on a 96-unit square.
QImage productPicture(int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 96.0, size / 96.0);

    // A soft shadow under the folder.
    QRadialGradient shadow(QPointF(48, 86), 44);
    shadow.setColorAt(0, QColor(0, 0, 0, 70));
    shadow.setColorAt(1, QColor(0, 0, 0, 0));
    p.setPen(Qt::NoPen);
    p.setBrush(shadow);
    p.save();
    p.translate(48, 86);
    p.scale(1, 0.16);
    p.translate(-48, -86);
    p.drawEllipse(QPointF(48, 86), 44, 44);
    p.restore();

    const QPen edge(ink::folderEdge, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);

    // The back with its tab.
    QPainterPath back;
    back.moveTo(10, 84);
    back.lineTo(10, 18);
    back.quadTo(10, 14, 14, 14);
    back.lineTo(34, 14);
    back.quadTo(37, 14, 39, 16.5);
    back.lineTo(43, 21.5);
    back.quadTo(45, 24, 48, 24);
    back.lineTo(82, 24);
    back.quadTo(86, 24, 86, 28);
    back.lineTo(86, 84);
    back.closeSubpath();
    QLinearGradient backFill(0, 14, 0, 84);
    backFill.setColorAt(0, ink::folder);
    backFill.setColorAt(1, ink::folderBack.darker(108));
    p.setPen(edge);
    p.setBrush(backFill);
    p.drawPath(back);

    // A script sheet standing in it.
    p.save();
    p.translate(50, 40);
    p.rotate(-5);
    p.setPen(QPen(ink::paperEdge, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(ink::paper);
    p.drawRect(QRectF(-28, -24, 50, 40));
    p.setPen(Qt::NoPen);
    const QColor codes[] = {ink::blue, ink::green, ink::grey, ink::blue};
    const double indents[] = {0, 6, 6, 0};
    const double lengths[] = {18, 22, 16, 12};
    for (int i = 0; i < 4; ++i) {
        p.setBrush(codes[i]);
        p.drawRoundedRect(QRectF(-22 + indents[i], -18 + i * 6, lengths[i], 3), 1.5, 1.5);
    }
    p.restore();

    // The front, leaning a little.
    QPainterPath front;
    front.moveTo(14, 38);
    front.lineTo(88, 38);
    front.quadTo(92, 38, 91.4, 42);
    front.lineTo(86.6, 80);
    front.quadTo(86, 84, 82, 84);
    front.lineTo(14, 84);
    front.quadTo(10, 84, 9.6, 80);
    front.lineTo(6.6, 42);
    front.quadTo(6.2, 38, 10, 38);
    front.closeSubpath();
    QLinearGradient frontFill(0, 38, 0, 84);
    frontFill.setColorAt(0, ink::folderLight);
    frontFill.setColorAt(0.45, ink::folder);
    frontFill.setColorAt(1, ink::folder.darker(108));
    p.setPen(edge);
    p.setBrush(frontFill);
    p.drawPath(front);
    p.setPen(QPen(QColor(255, 255, 255, 150), 1.6, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(11, 41.5), QPointF(86, 41.5));

    // A gear with a spark of lightning in it.
    const QPointF hub(68, 66);
    QPainterPath cog;
    const int teeth = 9;
    const double step = 2 * kPi / teeth;
    for (int i = 0; i < teeth; ++i) {
        const double a = -kPi / 2 + i * step;
        const double angles[4] = {a - step * 0.2, a + step * 0.2, a + step * 0.32, a + step * 0.68};
        const double radii[4] = {22, 22, 17.5, 17.5};
        for (int j = 0; j < 4; ++j) {
            const QPointF q = hub + QPointF(radii[j] * std::cos(angles[j]), radii[j] * std::sin(angles[j]));
            if (i == 0 && j == 0)
                cog.moveTo(q);
            else
                cog.lineTo(q);
        }
    }
    cog.closeSubpath();
    QLinearGradient cogFill(hub.x(), hub.y() - 22, hub.x(), hub.y() + 22);
    cogFill.setColorAt(0, ink::blue.lighter(125));
    cogFill.setColorAt(1, ink::blue);
    p.setPen(QPen(ink::blueEdge, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(cogFill);
    p.drawPath(cog);
    p.setBrush(ink::paper);
    p.drawEllipse(hub, 12, 12);

    QPainterPath bolt;
    bolt.moveTo(hub + QPointF(2.5, -10));
    bolt.lineTo(hub + QPointF(-6, 1.5));
    bolt.lineTo(hub + QPointF(-0.5, 1.5));
    bolt.lineTo(hub + QPointF(-3, 10));
    bolt.lineTo(hub + QPointF(6, -2));
    bolt.lineTo(hub + QPointF(0.5, -2));
    bolt.lineTo(hub + QPointF(4.5, -10));
    bolt.closeSubpath();
    p.setPen(QPen(ink::goldEdge, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(ink::gold);
    p.drawPath(bolt);
    return image;
}

/// The product's picture cut down for small sizes: the folder and a spark.
void smallProduct(Canvas &c)
{
    folder(c, kYellow);
    c.ellipse(11, 10.5, 4.6, 4.6, ink::blue, ink::blueEdge, 1);
    QPainterPath bolt;
    bolt.moveTo(11.8, 6.6);
    bolt.lineTo(8.8, 11);
    bolt.lineTo(10.9, 11);
    bolt.lineTo(10, 14.4);
    bolt.lineTo(13.2, 9.8);
    bolt.lineTo(11.1, 9.8);
    bolt.lineTo(12.6, 6.6);
    bolt.closeSubpath();
    c.path(bolt, ink::gold, QColor());
}

} // namespace

QIcon treeImage(int index)
{
    static QHash<int, QIcon> cache;
    if (index < 1 || index > 21)
        return QIcon();
    auto it = cache.find(index);
    if (it == cache.end())
        it = cache.insert(index, make(kTree[index - 1]));
    return *it;
}

QVector<QIcon> treeImageList()
{
    QVector<QIcon> list;
    list.reserve(21);
    for (int i = 1; i <= 21; ++i)
        list.append(treeImage(i));
    return list;
}

QStringList toolbarKeys()
{
    QStringList keys;
    for (const ToolbarPicture &picture : kToolbar)
        keys << QString::fromLatin1(picture.key);
    return keys;
}

QIcon toolbarImage(const QString &key)
{
    static QHash<QString, QIcon> cache;
    auto it = cache.find(key);
    if (it == cache.end()) {
        QIcon icon;
        for (const ToolbarPicture &picture : kToolbar) {
            if (key == QLatin1String(picture.key)) {
                icon = make(picture.draw);
                break;
            }
        }
        it = cache.insert(key, icon);
    }
    return *it;
}

QIcon splashPicture()
{
    static const QIcon icon = [] {
        QIcon made;
        for (int size : {48, 96, 192})
            made.addPixmap(QPixmap::fromImage(productPicture(size)));
        return made;
    }();
    return icon;
}

QIcon appIcon()
{
    static const QIcon icon = [] {
        QIcon made;
        for (int size : {16, 24, 32})
            made.addPixmap(QPixmap::fromImage(paint(smallProduct, size)));
        for (int size : {48, 64, 128, 256})
            made.addPixmap(QPixmap::fromImage(productPicture(size)));
        return made;
    }();
    return icon;
}

} // namespace app::icons
