#include "theme/ThemeResolver.h"

#include "theme/BuiltInThemes.h"
#include "theme/ThemeMetrics.h"

#include <QSet>
#include <algorithm>

namespace orwick {

namespace {

void overlay(ThemeColors& colors, const QMap<QString, QString>& written)
{
    for (auto it = written.cbegin(); it != written.cend(); ++it)
        if (themekeys::isKnown(it.key()))
            if (const auto color = parseThemeColor(it.value()))
                colors.set(it.key(), *color);
}

std::optional<QList<QColor>> colorList(const std::optional<QStringList>& written)
{
    if (!written)
        return std::nullopt;
    QList<QColor> list;
    for (const QString& text : *written) {
        const auto color = parseThemeColor(text);
        if (!color)
            return std::nullopt; // one bad entry would shift every colour after it
        list.append(*color);
    }
    return list;
}

QList<QColor> completeTerminal(QList<QColor> list, Appearance appearance)
{
    const QStringList& fallback = defaultTerminalColors(appearance);
    list = list.mid(0, fallback.size());
    for (qsizetype i = list.size(); i < fallback.size(); ++i)
        list.append(*parseThemeColor(fallback.at(i)));
    return list;
}

double metric(const QList<const ThemeDefinition*>& bottomUp, std::optional<double> ThemeDefinition::*field, const char* name)
{
    const ThemeMetricRange range = themeMetricRange(QLatin1StringView(name));
    double value = range.fallback;
    for (const ThemeDefinition* theme : bottomUp)
        if (theme->*field)
            value = std::clamp(*(theme->*field), range.lowest, range.highest);
    return value;
}

} // namespace

const ThemeDefinition* findTheme(const QList<ThemeDefinition>& themes, const QString& name)
{
    for (const ThemeDefinition& theme : themes)
        if (theme.name == name)
            return &theme;
    return nullptr;
}

ThemeChain themeChain(const QList<ThemeDefinition>& themes, const QString& name)
{
    ThemeChain chain;
    const ThemeDefinition* current = findTheme(themes, name);
    QSet<QString> seen;
    while (current) {
        chain.themes.append(current);
        seen.insert(current->name);
        if (!current->extends)
            break;
        const ThemeDefinition* base = findTheme(themes, *current->extends);
        if (!base) {
            chain.missingBase = *current->extends;
            break;
        }
        if (seen.contains(base->name)) {
            chain.isCircular = true;
            break;
        }
        current = base;
    }
    return chain;
}

ResolvedTheme resolveTheme(const QList<ThemeDefinition>& themes, const QString& name, const std::optional<QColor>& accentOverride)
{
    const QString chosen = findTheme(themes, name) ? name : kDefaultThemeName;
    QList<const ThemeDefinition*> bottomUp = themeChain(themes, chosen).themes;
    std::reverse(bottomUp.begin(), bottomUp.end());

    ResolvedTheme resolved;
    resolved.name = chosen;
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        ThemeColors colors;
        overlay(colors, defaultColors(appearance));
        std::optional<QList<QColor>> terminal;
        for (const ThemeDefinition* theme : bottomUp) {
            overlay(colors, theme->colors);
            overlay(colors, theme->colorsFor(appearance));
            if (auto list = colorList(appearance == Appearance::dark ? theme->terminalDark : theme->terminalLight))
                terminal = list;
        }
        if (accentOverride) {
            colors.set(QStringLiteral("accent"), accentOverride->toRgb());
            colors.remove(QStringLiteral("selection"));
            colors.remove(QStringLiteral("accentFill"));
        }
        colors.deriveMissing();
        (appearance == Appearance::dark ? resolved.dark : resolved.light) = colors;
        (appearance == Appearance::dark ? resolved.terminalDark : resolved.terminalLight) = completeTerminal(terminal.value_or(QList<QColor>()), appearance);
    }
    for (const ThemeDefinition* theme : bottomUp)
        if (theme->appearance)
            resolved.appearance = theme->appearance;
    resolved.rowHeight = metric(bottomUp, &ThemeDefinition::rowHeight, "rowHeight");
    resolved.radius = metric(bottomUp, &ThemeDefinition::radius, "radius");
    resolved.fontSize = metric(bottomUp, &ThemeDefinition::fontSize, "fontSize");
    return resolved;
}

} // namespace orwick
