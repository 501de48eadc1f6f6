#include "ui/theme/DrawnIcons.h"

#include "ui/theme/Theme.h"

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

} // namespace orwick::drawn
