#include "ui/theme/Theme.h"

#include "theme/ThemeStore.h"

#include <QApplication>
#include <QFontMetrics>

namespace orwick::theme {

namespace {

const ThemeStore& store() { return ThemeStore::shared(); }

} // namespace

QColor color(const QString& key) { return store().colors().color(key); }
int revision() { return store().revision(); }
bool isDark() { return store().appearance() == Appearance::dark; }

QColor categoryTint(FileCategory category) { return color(QStringLiteral("category.") + categoryName(category)); }
QColor accent() { return color(QStringLiteral("accent")); }
QColor text() { return color(QStringLiteral("text")); }
QColor dimText() { return color(QStringLiteral("textSecondary")); }
QColor faintText() { return color(QStringLiteral("textTertiary")); }
QColor background() { return color(QStringLiteral("background")); }
QColor sidebar() { return color(QStringLiteral("sidebar")); }
QColor elevated() { return color(QStringLiteral("elevated")); }
QColor hover() { return color(QStringLiteral("hover")); }
QColor selection() { return color(QStringLiteral("selection")); }
QColor selectionUnfocused() { return color(QStringLiteral("selectionUnfocused")); }
QColor separator() { return color(QStringLiteral("border")); }
QColor strongSeparator() { return color(QStringLiteral("borderStrong")); }
QColor accentFill() { return color(QStringLiteral("accentFill")); }
QColor cursorRing() { return accent(); }
QColor onAccent() { return accent().lightness() > 165 ? QColor(0x1D, 0x1E, 0x21) : QColor(Qt::white); }
QColor warning() { return color(QStringLiteral("warning")); }
QColor positive() { return color(QStringLiteral("positive")); }
QColor negative() { return color(QStringLiteral("negative")); }
QColor informative() { return color(QStringLiteral("informative")); }
// Toasts stand out from any window: the text colour as their ground.
QColor toastBackground() { return text(); }
QColor toastText() { return background(); }

QStringList optionColorNames()
{
    return {QStringLiteral("Gray"), QStringLiteral("Brown"), QStringLiteral("Orange"), QStringLiteral("Yellow"),
            QStringLiteral("Green"), QStringLiteral("Blue"), QStringLiteral("Purple"), QStringLiteral("Pink"),
            QStringLiteral("Red")};
}

QColor optionColor(std::optional<int> index)
{
    // Full hues for each option, laid over the theme's background so that chips sit in any theme:
    // pale on light backgrounds, deep on dark ones, and always told apart by hue.
    static const QColor hues[] = {QColor(0x8E, 0x8E, 0x93), QColor(0xA2, 0x6B, 0x4F), QColor(0xF0, 0x8C, 0x1A),
                                  QColor(0xE8, 0xB9, 0x1C), QColor(0x34, 0xA8, 0x53), QColor(0x2F, 0x7F, 0xE0),
                                  QColor(0x9B, 0x5C, 0xE0), QColor(0xE0, 0x5C, 0xA8), QColor(0xE5, 0x48, 0x4D)};
    if (!index || *index < 0 || *index >= int(std::size(hues)))
        return mixColors(background(), text(), 0.10);
    return mixColors(background(), hues[*index], isDark() ? 0.42 : 0.24);
}

QColor chipText(const QColor& background)
{
    if (background.alphaF() < 0.5f)
        return text();
    return background.lightness() < 128 ? QColor(0xf2, 0xf2, 0xf2) : QColor(0x25, 0x25, 0x25);
}

int rowHeight()
{
    return std::max(int(store().current().rowHeight), QFontMetrics(QApplication::font()).height() + 6);
}

int cornerRadius() { return int(store().current().radius); }
qreal fontPixelSize() { return store().current().fontSize; }

} // namespace orwick::theme
