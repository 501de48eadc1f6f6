#pragma once
// The named accents offered besides the theme's own ("Accent: Blue"…), in the order offered.

#include <QColor>
#include <QList>
#include <QString>

namespace orwick {

struct AccentColor {
    QString name;
    QColor color;
};

inline const QList<AccentColor>& accentColors()
{
    static const QList<AccentColor> accents{
        {QStringLiteral("Blue"), QColor(0x2F, 0x6F, 0xDE)},   {QStringLiteral("Purple"), QColor(0x8E, 0x5C, 0xD9)},
        {QStringLiteral("Pink"), QColor(0xD6, 0x3F, 0x8C)},   {QStringLiteral("Red"), QColor(0xE0, 0x44, 0x4A)},
        {QStringLiteral("Orange"), QColor(0xEA, 0x7A, 0x1E)}, {QStringLiteral("Yellow"), QColor(0xC9, 0x9A, 0x06)},
        {QStringLiteral("Green"), QColor(0x2E, 0x9E, 0x55)},  {QStringLiteral("Graphite"), QColor(0x80, 0x84, 0x8C)},
    };
    return accents;
}

} // namespace orwick
