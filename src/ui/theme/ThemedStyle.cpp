#include "ui/theme/ThemedStyle.h"

#include "theme/ThemeColors.h"
#include "ui/theme/DrawnIcons.h"
#include "ui/theme/ScrollBarLook.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyleFactory>
#include <QStyleOption>
#include <QStyleOptionSlider>

namespace orwick {

namespace {

struct Marks {
    QColor edge, fill, mark;
};

// The colours of a box or a round button in the state `option` gives.
Marks marksFor(const QStyleOption& option, bool chosen)
{
    const bool enabled = option.state & QStyle::State_Enabled;
    const QColor ground = theme::background();
    Marks marks;
    if (!enabled) {
        marks.edge = theme::strongSeparator();
        marks.fill = chosen ? theme::strongSeparator() : theme::hover();
        marks.mark = theme::faintText();
        return marks;
    }
    if (chosen) {
        marks.edge = theme::accent();
        marks.fill = theme::accent();
        marks.mark = theme::onAccent();
        return marks;
    }
    // Half way to the text: about 3:1 against the ground in every built-in theme, light or dark.
    marks.edge = (option.state & QStyle::State_MouseOver) ? theme::accent() : mixColors(ground, theme::text(), 0.5);
    marks.fill = (option.state & QStyle::State_Sunken) ? theme::hover() : mixColors(ground, theme::elevated(), 0.5);
    marks.mark = theme::text();
    return marks;
}

// A box or a round button with the keyboard shows it with a ring inside its edge: Fusion marks
// the focus of a box on its own outline, which the themed box replaces, and around its label,
// which a box without words (the permission grid) does not have. Not in lists: the row shows it.
bool hasKeyboard(const QStyleOption& option)
{
    return (option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_Enabled);
}

// The ring in the accent, or on a chosen box (already the accent) in the colour of its tick.
QPen focusRingPen(bool chosen)
{
    return QPen(chosen ? theme::onAccent() : theme::accent(), 1.5);
}

// The largest square of `rect`, centred, less a pixel for the edge's antialiasing.
QRectF squareIn(const QRect& rect)
{
    const qreal edge = std::min(rect.width(), rect.height()) - 1;
    return QRectF(rect.x() + (rect.width() - edge) / 2.0, rect.y() + (rect.height() - edge) / 2.0, edge, edge);
}

void drawCheckBox(const QStyleOption& option, QPainter* painter)
{
    const bool ticked = option.state & QStyle::State_On;
    const bool partly = option.state & QStyle::State_NoChange;
    const Marks marks = marksFor(option, ticked || partly);
    const QRectF box = squareIn(option.rect);
    const qreal radius = std::max(2.0, box.width() * 0.2);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(marks.edge, 1.0));
    painter->setBrush(marks.fill);
    painter->drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    if (hasKeyboard(option)) {
        painter->setPen(focusRingPen(ticked || partly));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(box.adjusted(2.5, 2.5, -2.5, -2.5), radius * 0.6, radius * 0.6);
    }
    QPen pen(marks.mark, std::max(1.5, box.width() / 8.0), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    const qreal w = box.width();
    if (partly) {
        painter->drawLine(QPointF(box.left() + w * 0.28, box.center().y()), QPointF(box.right() - w * 0.28, box.center().y()));
    } else if (ticked) {
        QPainterPath tick;
        tick.moveTo(box.left() + w * 0.25, box.top() + w * 0.52);
        tick.lineTo(box.left() + w * 0.43, box.top() + w * 0.70);
        tick.lineTo(box.left() + w * 0.76, box.top() + w * 0.32);
        painter->drawPath(tick);
    }
    painter->restore();
}

void drawRadioButton(const QStyleOption& option, QPainter* painter)
{
    const bool chosen = option.state & QStyle::State_On;
    const Marks marks = marksFor(option, chosen);
    const QRectF circle = squareIn(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(marks.edge, 1.0));
    painter->setBrush(marks.fill);
    painter->drawEllipse(circle);
    if (hasKeyboard(option)) {
        painter->setPen(focusRingPen(chosen));
        painter->setBrush(Qt::NoBrush);
        painter->drawEllipse(circle.adjusted(2, 2, -2, -2));
    }
    if (chosen) {
        const qreal inset = circle.width() * 0.3;
        painter->setPen(Qt::NoPen);
        painter->setBrush(marks.mark);
        painter->drawEllipse(circle.adjusted(inset, inset, -inset, -inset));
    }
    painter->restore();
}

// A tab's close mark: a thin cross in the dim text colour, the text colour on a soft round
// ground under the pointer, instead of the stock picture that turns red on the current tab.
void drawTabClose(const QStyleOption& option, QPainter* painter)
{
    const QRectF area = squareIn(option.rect);
    const bool hovered = (option.state & QStyle::State_MouseOver) || (option.state & QStyle::State_Sunken);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (hovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(theme::hover());
        painter->drawEllipse(area);
    }
    const qreal inset = area.width() * 0.32;
    const QRectF cross = area.adjusted(inset, inset, -inset, -inset);
    painter->setPen(QPen(hovered ? theme::text() : theme::dimText(), std::max(1.2, area.width() / 12.0), Qt::SolidLine, Qt::RoundCap));
    painter->drawLine(cross.topLeft(), cross.bottomRight());
    painter->drawLine(cross.topRight(), cross.bottomLeft());
    painter->restore();
}

} // namespace

// On the style the application was given (Fusion unless chosen otherwise), so only the boxes change.
ThemedStyle::ThemedStyle() : QProxyStyle(QStyleFactory::create(QApplication::style()->name())) {}

void ThemedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const
{
    switch (element) {
    case PE_IndicatorCheckBox:
        drawCheckBox(*option, painter);
        return;
    case PE_IndicatorItemViewItemCheck: { // the row shows the keyboard, not its box
        QStyleOption inRow = *option;
        inRow.state &= ~State_HasFocus;
        drawCheckBox(inRow, painter);
        return;
    }
    case PE_IndicatorRadioButton:
        drawRadioButton(*option, painter);
        return;
    case PE_IndicatorTabClose:
        drawTabClose(*option, painter);
        return;
    case PE_PanelScrollAreaCorner: // between two scroll bars: the ground they sit on
        if (const auto ground = scrollbars::groundUnder(widget)) {
            painter->fillRect(option->rect, *ground);
            return;
        }
        break;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

int ThemedStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* returnData) const
{
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

QIcon ThemedStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const
{
    switch (icon) {
    case SP_MessageBoxInformation:
    case SP_MessageBoxWarning:
    case SP_MessageBoxCritical:
    case SP_MessageBoxQuestion:
        return {}; // a message box without a picture leaves its icon column out
    case SP_LineEditClearButton: return drawn::clearMark();
    case SP_ToolBarHorizontalExtensionButton: return drawn::moreChevron(Qt::Horizontal);
    case SP_ToolBarVerticalExtensionButton: return drawn::moreChevron(Qt::Vertical);
    default:
        return QProxyStyle::standardIcon(icon, option, widget);
    }
}

void ThemedStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const
{
    if (element == CE_HeaderLabel)
        if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
            header && header->orientation == Qt::Horizontal && (header->textAlignment & Qt::AlignRight)) {
            QStyleOptionHeader inset = *header;
            inset.rect.setRight(inset.rect.right() - columnGutter(QFontMetrics(widget ? widget->font() : QApplication::font())));
            QProxyStyle::drawControl(element, &inset, painter, widget);
            return;
        }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void ThemedStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                     const QWidget* widget) const
{
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option); bar && control == CC_ScrollBar) {
        scrollbars::paint(*bar, painter, widget);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect ThemedStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part, const QWidget* widget) const
{
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option); bar && control == CC_ScrollBar)
        return scrollbars::partRect(*bar, part);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

int ThemedStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent: return scrollbars::thickness();
    case PM_ScrollBarSliderMin: return scrollbars::shortestThumb();
    default: return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int ThemedStyle::columnGutter(const QFontMetrics& metrics) { return 2 * metrics.averageCharWidth(); }

} // namespace orwick
