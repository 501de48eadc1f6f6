#include "ui/window/PaletteRowDelegate.h"

#include "ui/theme/Theme.h"

#include <QApplication>
#include <QPainter>

namespace orwick {

namespace {
constexpr int kGap = 16;       // between title and subtitle, and before the shortcut
constexpr int kEndMargin = 8;  // after the shortcut
} // namespace

QRect PaletteRowDelegate::shortcutRect(const QRect& textRect, const QFontMetrics& metrics, const QString& shortcut)
{
    if (shortcut.isEmpty())
        return {};
    const int width = metrics.horizontalAdvance(shortcut);
    return QRect(textRect.right() - kEndMargin - width + 1, textRect.top(), width, textRect.height());
}

void PaletteRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    if (!index.data(PaletteRowRole).isValid()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem opt(option);
    initStyleOption(&opt, index);
    const bool dimmed = index.data(DimmedRole).toBool();
    if (dimmed) {
        // The accent with dim text on it would be unreadable, and the accent with bright text
        // looks like a row that runs: a dimmed row is selected in the disabled palette's colour.
        opt.state &= ~QStyle::State_Enabled; // and its icon is drawn disabled
        opt.palette.setBrush(QPalette::Highlight, opt.palette.brush(QPalette::Disabled, QPalette::Highlight));
    }
    const QString title = opt.text;
    opt.text.clear(); // background, selection and icon by the style; the texts below
    const QWidget* widget = opt.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, widget);

    const QRect textRect = style->subElementRect(QStyle::SE_ItemViewItemText, &opt, widget);
    const QFontMetrics metrics(opt.font);
    const bool selected = (opt.state & QStyle::State_Selected) && !dimmed;
    const QVariant foreground = index.data(Qt::ForegroundRole);
    const QColor textColor = dimmed     ? theme::dimText()
                             : selected ? opt.palette.color(QPalette::HighlightedText)
                             : foreground.isValid() ? foreground.value<QBrush>().color()
                                                    : opt.palette.color(QPalette::Text);
    QColor dimColor = selected ? opt.palette.color(QPalette::HighlightedText) : theme::dimText();
    if (selected)
        dimColor.setAlphaF(0.75f);

    painter->save();
    painter->setFont(opt.font);
    const QString shortcut = index.data(ShortcutRole).toString();
    const QRect keys = shortcutRect(textRect, metrics, shortcut);
    if (!keys.isEmpty()) {
        painter->setPen(dimColor);
        painter->drawText(keys, Qt::AlignRight | Qt::AlignVCenter, shortcut);
    }
    QRect rest = textRect;
    if (!keys.isEmpty())
        rest.setRight(keys.left() - kGap);
    const QString shownTitle = metrics.elidedText(title, Qt::ElideRight, rest.width());
    painter->setPen(textColor);
    painter->drawText(rest, Qt::AlignLeft | Qt::AlignVCenter, shownTitle);
    const QString subtitle = index.data(SubtitleRole).toString();
    const int subtitleLeft = rest.left() + metrics.horizontalAdvance(shownTitle) + kGap;
    if (!subtitle.isEmpty() && subtitleLeft < rest.right()) {
        const QRect below(subtitleLeft, rest.top(), rest.right() - subtitleLeft + 1, rest.height());
        painter->setPen(dimColor);
        painter->drawText(below, Qt::AlignLeft | Qt::AlignVCenter, metrics.elidedText(subtitle, Qt::ElideMiddle, below.width()));
    }
    painter->restore();
}

QSize PaletteRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    if (index.data(PaletteRowRole).isValid())
        size.setHeight(std::max(size.height(), theme::rowHeight()));
    return size;
}

} // namespace orwick
