#include "ui/theme/TextLine.h"

#include <QFontMetrics>
#include <QPainter>
#include <QRect>
#include <QString>

namespace orwick {

int centredBaseline(const QFontMetrics& metrics, const QRect& box)
{
    return box.top() + (box.height() + metrics.ascent() - metrics.descent()) / 2;
}

int drawTextLine(QPainter* painter, const QFontMetrics& metrics, const QRect& box, const QString& text,
                 Qt::TextElideMode elide, Qt::Alignment alignment)
{
    if (text.isEmpty() || box.width() <= 0)
        return 0;
    int width = metrics.horizontalAdvance(text);
    QString shown = text;
    if (width > box.width()) {
        shown = metrics.elidedText(text, elide, box.width());
        width = metrics.horizontalAdvance(shown);
    }
    const int x = alignment & Qt::AlignRight ? box.right() + 1 - width : box.left();
    painter->drawText(x, centredBaseline(metrics, box), shown);
    return width;
}

} // namespace orwick
