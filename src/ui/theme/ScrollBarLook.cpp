#include "ui/theme/ScrollBarLook.h"

#include "ui/theme/Theme.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyleOptionSlider>
#include <algorithm>

namespace orwick::scrollbars {

std::optional<QColor> groundUnder(const QWidget* widget)
{
    for (const QWidget* above = widget; above; above = above->parentWidget())
        if (const auto* area = qobject_cast<const QAbstractScrollArea*>(above)) {
            const QWidget* viewport = area->viewport();
            return viewport->palette().color(viewport->backgroundRole());
        }
    return std::nullopt;
}

int thickness() { return 11; }
int shortestThumb() { return 28; }

QRect partRect(const QStyleOptionSlider& option, QStyle::SubControl part)
{
    const QRect bar = option.rect;
    const bool vertical = option.orientation == Qt::Vertical;
    const int length = vertical ? bar.height() : bar.width();
    const int range = option.maximum - option.minimum;
    // The thumb is to the bar as the page is to everything: all of it when nothing scrolls.
    int thumbLength = range <= 0 ? length
                                 : int(qint64(length) * option.pageStep / std::max<qint64>(qint64(range) + option.pageStep, 1));
    thumbLength = std::clamp(thumbLength, std::min(shortestThumb(), length), length);
    const int thumbStart = QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                           length - thumbLength, option.upsideDown);
    auto along = [&](int start, int size) {
        return vertical ? QRect(bar.left(), bar.top() + start, bar.width(), size)
                        : QRect(bar.left() + start, bar.top(), size, bar.height());
    };
    switch (part) {
    case QStyle::SC_ScrollBarSlider: return along(thumbStart, thumbLength);
    case QStyle::SC_ScrollBarSubPage: return along(0, thumbStart);
    case QStyle::SC_ScrollBarAddPage: return along(thumbStart + thumbLength, length - thumbStart - thumbLength);
    case QStyle::SC_ScrollBarGroove: return bar;
    default: return {}; // no arrow buttons, no first and last buttons
    }
}

void paint(const QStyleOptionSlider& option, QPainter* painter, const QWidget* widget)
{
    painter->fillRect(option.rect, groundUnder(widget).value_or(option.palette.color(QPalette::Window)));
    if (option.maximum <= option.minimum)
        return;
    const bool onThumb = option.activeSubControls & QStyle::SC_ScrollBarSlider;
    const bool dragged = onThumb && (option.state & QStyle::State_Sunken);
    const bool pointed = option.state & QStyle::State_MouseOver;
    QColor colour = theme::text();
    colour.setAlphaF(dragged ? 0.55f : onThumb && pointed ? 0.42f : pointed ? 0.32f : 0.24f);
    // Inset across the bar more than along it: a thin thumb with a margin to the rows.
    const bool vertical = option.orientation == Qt::Vertical;
    const qreal across = 2.5, along = 2;
    const QRectF thumb = QRectF(partRect(option, QStyle::SC_ScrollBarSlider))
                             .adjusted(vertical ? across : along, vertical ? along : across, vertical ? -across : -along,
                                       vertical ? -along : -across);
    const qreal radius = std::min(thumb.width(), thumb.height()) / 2;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(colour);
    painter->drawRoundedRect(thumb, radius, radius);
    painter->restore();
}

} // namespace orwick::scrollbars
