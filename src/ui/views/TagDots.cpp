#include "ui/views/TagDots.h"

#include "ui/theme/TagColors.h"
#include "ui/theme/Theme.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>

namespace orwick {

namespace {

constexpr int kDot = 9;     // diameter
constexpr int kStep = 6;    // from one dot's left to the next: they overlap
constexpr int kPadding = 6;

QList<int> colorsOf(const QModelIndex& index)
{
    QList<int> colors = index.data(TagColorsRole).value<QList<int>>();
    if (colors.size() > kMaxTagDots)
        colors.resize(kMaxTagDots);
    return colors;
}

} // namespace

int tagDotsWidth(const QModelIndex& index)
{
    const qsizetype count = colorsOf(index).size();
    return count == 0 ? 0 : kDot + int(count - 1) * kStep + 2 * kPadding;
}

void paintTagDots(QPainter* painter, int right, int centreY, const QModelIndex& index)
{
    const QList<int> colors = colorsOf(index);
    if (colors.isEmpty())
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    // The first tag is the leftmost and lies on top.
    const int left = right - kPadding - kDot - int(colors.size() - 1) * kStep;
    for (qsizetype i = colors.size() - 1; i >= 0; --i) {
        const QRectF dot(left + i * kStep, centreY - kDot / 2.0, kDot, kDot);
        painter->setPen(QPen(theme::separator(), 1));
        painter->setBrush(theme::tagColor(colors.at(i)));
        painter->drawEllipse(dot);
    }
    painter->restore();
}

QIcon tagDotIcon(int colorIndex)
{
    QIcon icon;
    for (const int edge : {16, 32}) {
        QPixmap pixmap(edge, edge);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme::tagColor(colorIndex));
        const qreal inset = edge * 0.22;
        painter.drawEllipse(QRectF(inset, inset, edge - 2 * inset, edge - 2 * inset));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace orwick
