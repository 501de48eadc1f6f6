#pragma once
// ThemedStyle: the application's style (Fusion beneath) with the check boxes and radio buttons
// drawn in the theme's colours. Fusion outlines an unticked box in a shade of the window colour,
// which on a dark background all but disappears; here the box has an edge halfway between the
// background and the text (clear in light and dark alike), the accent when the pointer is over
// it, and a tick or dot in the text colour on the accent once chosen; one with the keyboard has a
// ring inside its edge (a box without words has nothing else to show it). Metrics are Fusion's but
// for the scroll bars; colours are read when painting, so a new theme reaches every widget at once.
// Dialog buttons carry their words only: no stock tick and cross icons, whatever the desktop's
// platform theme asks for; message boxes carry no stock question, warning or error picture
// either (their title and words say what they ask, as the window's sheets do). A tab's close
// mark is a thin cross in the theme's dim text colour, not the stock red picture, and so is a
// field's clear button; a bar's overflow button shows a drawn chevron (DrawnIcons.h).
// Scroll bars are thin thumbs on the ground of what they scroll (ScrollBarLook.h).
// A right-aligned column (sizes) keeps a gutter before the column after it: its cells' text
// and its header's title both end columnGutter() short of the edge, so a size never runs into
// the kind beside it and the title stays over its numbers.
//
// theme::follow() installs it once for the application.

#include <QProxyStyle>

namespace orwick {

class ThemedStyle : public QProxyStyle {
    Q_OBJECT
public:
    ThemedStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption* option = nullptr, const QWidget* widget = nullptr,
                  QStyleHintReturn* returnData = nullptr) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option = nullptr, const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget = nullptr) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget = nullptr) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr, const QWidget* widget = nullptr) const override;

    // Two average characters of `metrics`' font: follows the font size and the scale.
    static int columnGutter(const QFontMetrics& metrics);
};

} // namespace orwick
