#pragma once
// ThemeDefinition: one theme as it is written, built in or in a JSON file of the themes folder.
// Every key but "name" is optional:
//
//   { "name": "My Theme", "extends": "Orwick", "appearance": "dark",
//     "colors": { "accent": "#FF7A59" },           both appearances
//     "dark": { "background": "#0E0F11" },         one appearance; wins over "colors"
//     "light": { "sidebar": "#F4F3EF" },
//     "rowHeight": 30, "radius": 6, "fontSize": 13,
//     "terminal": { "light": ["#000000", …], "dark": [ … ] } }
//
// Colour values are kept as written; resolution skips the ones that are not "#RRGGBB", and
// checkTheme() words what is wrong with them. A plain value: compared by value, to and from JSON.

#include "base/Result.h"
#include "theme/ThemeColors.h"

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>
#include <optional>

namespace orwick {

struct ThemeDefinition {
    QString name;
    std::optional<QString> extends;
    std::optional<Appearance> appearance; // meant for one appearance only
    QMap<QString, QString> colors;        // both appearances
    QMap<QString, QString> light;
    QMap<QString, QString> dark;
    std::optional<double> rowHeight;
    std::optional<double> radius;
    std::optional<double> fontSize;
    std::optional<QStringList> terminalLight;
    std::optional<QStringList> terminalDark;

    const QMap<QString, QString>& colorsFor(Appearance a) const { return a == Appearance::dark ? dark : light; }

    QJsonObject toJson() const;
    // The definition in `json`, or why it can't be one ("“rowHeight” should be a number").
    static Result<ThemeDefinition> fromJson(const QJsonObject& json);
    // Parses a file's bytes; the error also says when they are not JSON at all.
    static Result<ThemeDefinition> fromBytes(const QByteArray& bytes);

    bool operator==(const ThemeDefinition&) const = default;
};

// What is wrong in a definition that still loads: colour values that are not "#RRGGBB", colour
// names Orwick doesn't use, sizes out of range, terminal colours that are not colours. One
// sentence per problem, in the user's words; empty when all is well.
QStringList checkTheme(const ThemeDefinition& theme);

} // namespace orwick
