#include "theme/ThemeColors.h"

#include "files/FileCategory.h"

namespace orwick {

QString appearanceName(Appearance appearance)
{
    return appearance == Appearance::dark ? QStringLiteral("dark") : QStringLiteral("light");
}

std::optional<Appearance> appearanceFromName(QStringView name)
{
    if (name == QLatin1StringView("light"))
        return Appearance::light;
    if (name == QLatin1StringView("dark"))
        return Appearance::dark;
    return std::nullopt;
}

namespace themekeys {

const QStringList& base()
{
    static const QStringList keys{"background", "sidebar", "elevated", "text", "textSecondary", "textTertiary", "accent"};
    return keys;
}

const QStringList& derived()
{
    static const QStringList keys{"hover", "pressed", "selection", "selectionUnfocused", "border", "borderStrong", "accentFill"};
    return keys;
}

const QStringList& syntax()
{
    static const QStringList keys{"keyword", "string", "comment", "number", "type", "function", "property", "attribute"};
    return keys;
}

const QStringList& status()
{
    static const QStringList keys{"warning", "positive", "negative", "informative"};
    return keys;
}

const QStringList& category()
{
    static const QStringList keys = [] {
        QStringList made;
        for (int c = int(FileCategory::folder); c <= int(FileCategory::other); ++c)
            made.append(QStringLiteral("category.") + categoryName(FileCategory(c)));
        return made;
    }();
    return keys;
}

const QStringList& tag()
{
    static const QStringList keys{"tag.gray", "tag.green", "tag.purple", "tag.blue", "tag.yellow", "tag.red", "tag.orange"};
    return keys;
}

bool isKnown(const QString& key)
{
    return base().contains(key) || derived().contains(key) || syntax().contains(key) || status().contains(key)
        || category().contains(key) || tag().contains(key);
}

} // namespace themekeys

std::optional<QColor> parseThemeColor(QStringView text)
{
    if (text.size() != 7 || text.front() != QLatin1Char('#'))
        return std::nullopt;
    bool ok = false;
    const uint rgb = text.mid(1).toUInt(&ok, 16);
    if (!ok)
        return std::nullopt;
    for (const QChar c : text.mid(1))
        if (!c.isDigit() && !QStringView(u"abcdefABCDEF").contains(c))
            return std::nullopt; // toUInt also takes signs and spaces
    return QColor::fromRgb(QRgb(0xff000000u | rgb));
}

QString themeColorText(const QColor& color) { return color.name(QColor::HexRgb).toUpper(); }

QString cssColor(const QColor& color)
{
    return QString::asprintf("rgba(%d,%d,%d,%.3f)", color.red(), color.green(), color.blue(), color.alphaF());
}

QColor mixColors(const QColor& from, const QColor& to, double amount)
{
    // Whole 8-bit steps, as a theme file writes them and a screen shows them.
    auto mix = [amount](int a, int b) { return qRound(a + (b - a) * amount); };
    return QColor(mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue()));
}

bool ThemeColors::isDark() const { return color(QStringLiteral("background")).lightnessF() < 0.5f; }

void ThemeColors::deriveMissing()
{
    const QColor background = color(QStringLiteral("background"));
    const QColor text = color(QStringLiteral("text"));
    const QColor accent = color(QStringLiteral("accent"));
    const bool dark = isDark();
    // Tints lean from the background towards the text (hover, lines) or the accent (selection),
    // a little further on dark backgrounds, where the eye tells small steps apart less well.
    const std::pair<const char*, QColor> rules[] = {
        {"hover", mixColors(background, text, dark ? 0.08 : 0.05)},
        {"pressed", mixColors(background, text, dark ? 0.15 : 0.10)},
        {"selection", mixColors(background, accent, dark ? 0.45 : 0.24)},
        {"selectionUnfocused", mixColors(background, text, dark ? 0.18 : 0.11)},
        {"border", mixColors(background, text, dark ? 0.14 : 0.11)},
        {"borderStrong", mixColors(background, text, dark ? 0.28 : 0.24)},
        {"accentFill", mixColors(background, accent, dark ? 0.28 : 0.14)},
    };
    for (const auto& [key, derived] : rules)
        if (!has(QLatin1StringView(key)))
            set(QLatin1StringView(key), derived);
}

} // namespace orwick
