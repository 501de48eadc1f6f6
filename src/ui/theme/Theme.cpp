#include "ui/theme/Theme.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPalette>

namespace orwick::theme {

bool isDark() { return QApplication::palette().color(QPalette::Window).lightness() < 128; }

QColor categoryTint(FileCategory category)
{
    const bool dark = isDark();
    switch (category) {
    case FileCategory::folder: return dark ? QColor(0x5a, 0xa9, 0xf0) : QColor(0x2f, 0x80, 0xd8);
    case FileCategory::app: return QColor(0x8e, 0x5c, 0xd9);
    case FileCategory::package: return QColor(0x9a, 0x7b, 0x4f);
    case FileCategory::image: return QColor(0x2e, 0xa8, 0x6a);
    case FileCategory::video: return QColor(0xd9, 0x4f, 0x70);
    case FileCategory::audio: return QColor(0xe0, 0x7b, 0x39);
    case FileCategory::pdf: return QColor(0xd6, 0x45, 0x3d);
    case FileCategory::archive: return QColor(0xa0, 0x84, 0x4a);
    case FileCategory::code: return QColor(0x3b, 0x9e, 0xb5);
    case FileCategory::data: return QColor(0x6b, 0x8e, 0x23);
    case FileCategory::text: return dark ? QColor(0xb8, 0xbe, 0xc6) : QColor(0x6a, 0x73, 0x7d);
    case FileCategory::diskImage: return QColor(0x70, 0x80, 0x90);
    case FileCategory::other: return dark ? QColor(0x9a, 0xa0, 0xa6) : QColor(0x8a, 0x90, 0x96);
    }
    return QColor(0x8a, 0x90, 0x96);
}

QColor accent() { return QApplication::palette().color(QPalette::Highlight); }
QColor text() { return QApplication::palette().color(QPalette::Text); }

QColor dimText()
{
    QColor c = text();
    c.setAlphaF(0.55f);
    return c;
}

QColor selection()
{
    QColor c = accent();
    c.setAlphaF(isDark() ? 0.45f : 0.28f);
    return c;
}

QColor cursorRing() { return accent(); }

QColor separator()
{
    QColor c = text();
    c.setAlphaF(0.12f);
    return c;
}

QColor warning() { return QColor(0xf0, 0x8c, 0x1a); }
QColor positive() { return QColor::fromRgbF(0.30f, 0.72f, 0.42f); }
QColor negative() { return QColor::fromRgbF(0.92f, 0.40f, 0.40f); }
QColor informative() { return QColor::fromRgbF(0.30f, 0.56f, 0.95f); }
QColor toastBackground() { return isDark() ? QColor(0xee, 0xee, 0xee) : QColor(0x2b, 0x2d, 0x31); }
QColor toastText() { return isDark() ? QColor(0x1b, 0x1b, 0x1b) : QColor(0xf4, 0xf4, 0xf4); }

QStringList optionColorNames()
{
    return {QStringLiteral("Gray"), QStringLiteral("Brown"), QStringLiteral("Orange"), QStringLiteral("Yellow"),
            QStringLiteral("Green"), QStringLiteral("Blue"), QStringLiteral("Purple"), QStringLiteral("Pink"),
            QStringLiteral("Red")};
}

QColor optionColor(std::optional<int> index)
{
    static const QColor light[] = {QColor(0xe3, 0xe2, 0xe0), QColor(0xee, 0xe0, 0xda), QColor(0xfa, 0xde, 0xc9),
                                   QColor(0xfd, 0xec, 0xc8), QColor(0xdb, 0xed, 0xdb), QColor(0xd3, 0xe5, 0xef),
                                   QColor(0xe8, 0xde, 0xee), QColor(0xf5, 0xe0, 0xe9), QColor(0xff, 0xe2, 0xdd)};
    static const QColor dark[] = {QColor(0x5a, 0x5a, 0x5a), QColor(0x60, 0x3b, 0x2c), QColor(0x85, 0x4c, 0x1d),
                                  QColor(0x89, 0x63, 0x2a), QColor(0x2b, 0x59, 0x3f), QColor(0x28, 0x45, 0x6c),
                                  QColor(0x49, 0x2f, 0x64), QColor(0x69, 0x31, 0x4c), QColor(0x6e, 0x36, 0x30)};
    const bool isDarkTheme = isDark();
    if (!index || *index < 0 || *index >= int(std::size(light))) {
        QColor plain = text();
        plain.setAlphaF(0.10f);
        return plain;
    }
    return isDarkTheme ? dark[*index] : light[*index];
}

QColor chipText(const QColor& background)
{
    if (background.alphaF() < 0.5f)
        return text();
    return background.lightness() < 128 ? QColor(0xf2, 0xf2, 0xf2) : QColor(0x25, 0x25, 0x25);
}

int rowHeight() { return QFontMetrics(QApplication::font()).height() + 10; }
int cornerRadius() { return 6; }

} // namespace orwick::theme
