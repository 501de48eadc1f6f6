#include "ui/theme/DrawnIcons.h"

#include "ui/theme/Theme.h"

#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <functional>

namespace orwick::drawn {

namespace {

using Drawing = std::function<void(QPainter&, const QRectF&, QIcon::Mode)>;

// An icon engine that paints with `drawing` at whatever size and scale it is asked for, reading
// the theme's colours as it paints, so a theme change reaches it without a reload.
class DrawnEngine : public QIconEngine {
public:
    explicit DrawnEngine(Drawing drawing) : m_drawing(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        m_drawing(*painter, QRectF(rect), mode);
        painter->restore();
    }
    // In device pixels: QIcon asks for the size times the screen's scale and marks the result.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return drawn;
    }
    QIconEngine* clone() const override { return new DrawnEngine(m_drawing); }
    QString key() const override { return QStringLiteral("orwick.drawn"); }

private:
    Drawing m_drawing;
};

QColor markColour(QIcon::Mode mode)
{
    return mode == QIcon::Active || mode == QIcon::Selected ? theme::text() : theme::dimText();
}

// The largest square centred in `area`, shrunk by `inset` of its side on every edge.
QRectF centredSquare(const QRectF& area, qreal inset)
{
    const qreal side = std::min(area.width(), area.height());
    const QRectF square(area.center().x() - side / 2, area.center().y() - side / 2, side, side);
    return square.adjusted(side * inset, side * inset, -side * inset, -side * inset);
}

QPen strokeFor(const QRectF& mark, QIcon::Mode mode)
{
    return QPen(markColour(mode), std::max(1.2, mark.width() / 7.0), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

} // namespace

QIcon clearMark()
{
    return QIcon(new DrawnEngine([](QPainter& painter, const QRectF& area, QIcon::Mode mode) {
        const QRectF cross = centredSquare(area, 0.3);
        painter.setPen(strokeFor(cross, mode));
        painter.drawLine(cross.topLeft(), cross.bottomRight());
        painter.drawLine(cross.topRight(), cross.bottomLeft());
    }));
}

QIcon moreChevron(Qt::Orientation orientation)
{
    return QIcon(new DrawnEngine([orientation](QPainter& painter, const QRectF& area, QIcon::Mode mode) {
        const QRectF box = centredSquare(area, 0.25);
        painter.setPen(strokeFor(box, mode));
        // Two chevrons, the second half a box further along.
        for (const qreal start : {0.0, 0.45}) {
            QPainterPath chevron;
            if (orientation == Qt::Horizontal) {
                const qreal x = box.left() + box.width() * start;
                chevron.moveTo(x, box.top());
                chevron.lineTo(x + box.width() * 0.5, box.center().y());
                chevron.lineTo(x, box.bottom());
            } else {
                const qreal y = box.top() + box.height() * start;
                chevron.moveTo(box.left(), y);
                chevron.lineTo(box.center().x(), y + box.height() * 0.5);
                chevron.lineTo(box.right(), y);
            }
            painter.drawPath(chevron);
        }
    }));
}

namespace {

// A box of `columns` × `rows` cells, the first `filled` of them (in reading order) shaded.
void drawCells(QPainter& painter, const QRectF& box, int columns, int rows, QIcon::Mode mode, QList<int> filled = {})
{
    const QPen pen = strokeFor(box, mode);
    const qreal w = box.width() / columns, h = box.height() / rows;
    QColor shade = markColour(mode);
    shade.setAlphaF(0.45f);
    for (int i : filled)
        painter.fillRect(QRectF(box.left() + (i % columns) * w, box.top() + (i / columns) * h, w, h), shade);
    painter.setPen(pen);
    painter.drawRoundedRect(box, pen.widthF(), pen.widthF());
    for (int c = 1; c < columns; ++c)
        painter.drawLine(QPointF(box.left() + c * w, box.top()), QPointF(box.left() + c * w, box.bottom()));
    for (int r = 1; r < rows; ++r)
        painter.drawLine(QPointF(box.left(), box.top() + r * h), QPointF(box.right(), box.top() + r * h));
}

using Mark = std::function<void(QPainter&, const QRectF&, QIcon::Mode)>;

const QHash<QString, Mark>& marks()
{
    static const QHash<QString, Mark> all{
        {QStringLiteral("list.bullet"),
         [](QPainter& p, const QRectF& box, QIcon::Mode mode) {
             p.setPen(strokeFor(box, mode));
             for (int line = 0; line < 3; ++line) {
                 const qreal y = box.top() + box.height() * (0.15 + 0.35 * line);
                 p.drawPoint(QPointF(box.left() + box.width() * 0.08, y));
                 p.drawLine(QPointF(box.left() + box.width() * 0.32, y), QPointF(box.right(), y));
             }
         }},
        {QStringLiteral("square.grid.2x2"),
         [](QPainter& p, const QRectF& box, QIcon::Mode mode) {
             p.setPen(strokeFor(box, mode));
             const qreal side = box.width() * 0.4;
             for (const QPointF& corner : {box.topLeft(), QPointF(box.right() - side, box.top()),
                                           QPointF(box.left(), box.bottom() - side), QPointF(box.right() - side, box.bottom() - side)})
                 p.drawRoundedRect(QRectF(corner, QSizeF(side, side)), 1, 1);
         }},
        {QStringLiteral("tablecells"), [](QPainter& p, const QRectF& box, QIcon::Mode mode) { drawCells(p, box, 3, 3, mode, {0, 1, 2}); }},
        {QStringLiteral("rectangle.split.3x1"), [](QPainter& p, const QRectF& box, QIcon::Mode mode) { drawCells(p, box, 3, 1, mode); }},
        {QStringLiteral("rectangle.split.2x1"), [](QPainter& p, const QRectF& box, QIcon::Mode mode) { drawCells(p, box, 2, 1, mode); }},
        {QStringLiteral("rectangle.righthalf.inset.filled"), [](QPainter& p, const QRectF& box, QIcon::Mode mode) { drawCells(p, box, 2, 1, mode, {1}); }},
        {QStringLiteral("rectangle.bottomhalf.inset.filled"), [](QPainter& p, const QRectF& box, QIcon::Mode mode) { drawCells(p, box, 1, 2, mode, {1}); }},
        {QStringLiteral("sidebar.left"), [](QPainter& p, const QRectF& box, QIcon::Mode mode) { drawCells(p, box, 3, 1, mode, {0}); }},
        {QStringLiteral("sidebar.right"), [](QPainter& p, const QRectF& box, QIcon::Mode mode) { drawCells(p, box, 3, 1, mode, {2}); }},
        {QStringLiteral("line.3.horizontal.decrease"),
         [](QPainter& p, const QRectF& box, QIcon::Mode mode) {
             p.setPen(strokeFor(box, mode));
             for (int line = 0; line < 3; ++line) {
                 const qreal y = box.top() + box.height() * (0.15 + 0.35 * line), inset = box.width() * 0.17 * line;
                 p.drawLine(QPointF(box.left() + inset, y), QPointF(box.right() - inset, y));
             }
         }},
        {QStringLiteral("pencil"),
         [](QPainter& p, const QRectF& box, QIcon::Mode mode) {
             p.setPen(strokeFor(box, mode));
             p.drawLine(QPointF(box.left() + box.width() * 0.1, box.bottom() - box.height() * 0.1),
                        QPointF(box.right() - box.width() * 0.1, box.top() + box.height() * 0.1));
             p.drawLine(QPointF(box.left(), box.bottom()), QPointF(box.left() + box.width() * 0.3, box.bottom()));
         }},
        {QStringLiteral("circle"),
         [](QPainter& p, const QRectF& box, QIcon::Mode mode) {
             p.setPen(strokeFor(box, mode));
             p.drawEllipse(box);
         }},
    };
    return all;
}

} // namespace

QIcon symbolMark(const QString& symbol)
{
    const auto mark = marks().constFind(symbol);
    if (mark == marks().cend())
        return {};
    return QIcon(new DrawnEngine([draw = *mark](QPainter& painter, const QRectF& area, QIcon::Mode mode) {
        draw(painter, centredSquare(area, 0.18), mode);
    }));
}

} // namespace orwick::drawn
