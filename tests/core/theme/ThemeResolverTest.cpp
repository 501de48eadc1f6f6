// Resolving themes: the example file of the help, the built-in colours, chains of `extends` that
// lead nowhere or round in a circle, accent overrides and the derived colours.

#include "theme/BuiltInThemes.h"
#include "theme/ThemeResolver.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

const char* kExample = R"({
  "name": "My Theme",
  "extends": "Orwick",
  "colors": { "accent": "#FF7A59" },
  "dark": { "background": "#0E0F11", "sidebar": "#0A0B0C" },
  "light": { "sidebar": "#F4F3EF" },
  "rowHeight": 30,
  "radius": 6,
  "fontSize": 13
})";

ThemeDefinition parse(const char* json)
{
    Result<ThemeDefinition> theme = ThemeDefinition::fromBytes(QByteArray(json));
    EXPECT_TRUE(theme.has_value()) << (theme ? "" : theme.error().toStdString());
    return theme.value_or(ThemeDefinition{});
}

QList<ThemeDefinition> withBuiltIns(std::initializer_list<ThemeDefinition> files) { return builtInThemes() + QList<ThemeDefinition>(files); }

QString hex(const ThemeColors& colors, const char* key) { return themeColorText(colors.color(QString::fromLatin1(key))); }

TEST(ThemeResolver, TheExampleFileChangesOnlyWhatItSays)
{
    const QList<ThemeDefinition> themes = withBuiltIns({parse(kExample)});
    const ResolvedTheme mine = resolveTheme(themes, "My Theme");
    const ResolvedTheme orwick = resolveTheme(themes, "Orwick");
    EXPECT_EQ(mine.name, "My Theme");
    EXPECT_EQ(hex(mine.dark, "background"), "#0E0F11");
    EXPECT_EQ(hex(mine.dark, "sidebar"), "#0A0B0C");
    EXPECT_EQ(hex(mine.light, "sidebar"), "#F4F3EF");
    EXPECT_EQ(hex(mine.light, "accent"), "#FF7A59");
    EXPECT_EQ(hex(mine.dark, "accent"), "#FF7A59");
    for (const QString& key : themekeys::base()) {
        if (key == "accent")
            continue;
        if (key != "sidebar") {
            EXPECT_EQ(mine.light.color(key), orwick.light.color(key)) << key.toStdString();
        }
        if (key != "sidebar" && key != "background") {
            EXPECT_EQ(mine.dark.color(key), orwick.dark.color(key)) << key.toStdString();
        }
    }
    EXPECT_EQ(mine.rowHeight, 30);
    EXPECT_EQ(mine.radius, 6);
    EXPECT_EQ(mine.fontSize, 13);
}

TEST(ThemeResolver, BuiltInThemesComeInOrderWithEveryKeyFilledInBothAppearances)
{
    QStringList names;
    for (const ThemeDefinition& theme : builtInThemes())
        names.append(theme.name);
    EXPECT_EQ(names, (QStringList{"Orwick", "Paper", "Nord", "Dracula", "Solarized", "Catppuccin"}));
    for (const ThemeDefinition& theme : builtInThemes()) {
        const ResolvedTheme resolved = resolveTheme(builtInThemes(), theme.name);
        for (const ThemeColors* colors : {&resolved.light, &resolved.dark})
            for (const QStringList* keys : {&themekeys::base(), &themekeys::derived(), &themekeys::syntax(), &themekeys::status(),
                                            &themekeys::category(), &themekeys::tag()})
                for (const QString& key : *keys)
                    EXPECT_TRUE(colors->color(key).isValid()) << theme.name.toStdString() << " " << key.toStdString();
        EXPECT_EQ(resolved.terminalLight.size(), 16);
        EXPECT_EQ(resolved.terminalDark.size(), 16);
    }
}

TEST(ThemeResolver, TagColoursComeFromTheThemeWithTheDefaultsBeneath)
{
    EXPECT_EQ(themekeys::tag(), (QStringList{"tag.gray", "tag.green", "tag.purple", "tag.blue", "tag.yellow", "tag.red", "tag.orange"}));
    const ResolvedTheme orwick = resolveTheme(builtInThemes(), "Orwick");
    EXPECT_EQ(hex(orwick.light, "tag.red"), "#EE3B30");
    EXPECT_EQ(hex(orwick.dark, "tag.red"), "#FF453A");
    // A built-in theme gives its own hues; a file that sets one keeps the rest of its base's.
    const ResolvedTheme nord = resolveTheme(builtInThemes(), "Nord");
    EXPECT_EQ(hex(nord.dark, "tag.red"), "#BF616A");
    EXPECT_EQ(hex(nord.dark, "tag.green"), "#A3BE8C");
    const QList<ThemeDefinition> themes = withBuiltIns(
        {parse(R"({"name": "Tagged", "extends": "Nord", "colors": {"tag.red": "#FF0000"}, "light": {"tag.blue": "#0000FF"}})"),
         parse(R"({"name": "Plain", "colors": {"accent": "#FF7A59"}})")});
    const ResolvedTheme tagged = resolveTheme(themes, "Tagged");
    EXPECT_EQ(hex(tagged.light, "tag.red"), "#FF0000");
    EXPECT_EQ(hex(tagged.dark, "tag.red"), "#FF0000");
    EXPECT_EQ(hex(tagged.light, "tag.blue"), "#0000FF");
    EXPECT_EQ(hex(tagged.dark, "tag.blue"), "#81A1C1");
    // A theme that names no tag colour has the default set's.
    EXPECT_EQ(hex(resolveTheme(themes, "Plain").light, "tag.orange"), "#F58A00");
    EXPECT_TRUE(checkTheme(themes.last()).isEmpty());
    EXPECT_TRUE(checkTheme(themes[themes.size() - 2]).isEmpty());
}

TEST(ThemeResolver, AnUnknownNameGivesOrwickAndExtendingAnUnknownThemeStartsFromItsColours)
{
    const ResolvedTheme unknown = resolveTheme(builtInThemes(), "No Such Theme");
    EXPECT_EQ(unknown.name, "Orwick");
    EXPECT_EQ(unknown, resolveTheme(builtInThemes(), "Orwick"));
    const QList<ThemeDefinition> themes = withBuiltIns({parse(R"({"name": "Lost", "extends": "Nowhere", "light": {"text": "#111111"}})")});
    const ResolvedTheme lost = resolveTheme(themes, "Lost");
    const ResolvedTheme orwick = resolveTheme(themes, "Orwick");
    EXPECT_EQ(hex(lost.light, "text"), "#111111");
    EXPECT_EQ(lost.light.color("background"), orwick.light.color("background"));
    EXPECT_EQ(lost.dark, orwick.dark);
    EXPECT_EQ(themeChain(themes, "Lost").missingBase, QString("Nowhere"));
}

TEST(ThemeResolver, AThemeThatExtendsItselfOrACircleOfExtendsStillResolves)
{
    QList<ThemeDefinition> themes = withBuiltIns({parse(R"({"name": "Self", "extends": "Self", "colors": {"accent": "#123456"}})")});
    const ResolvedTheme self = resolveTheme(themes, "Self");
    EXPECT_EQ(hex(self.light, "accent"), "#123456");
    EXPECT_TRUE(themeChain(themes, "Self").isCircular);
    EXPECT_EQ(themeChain(themes, "Self").themes.size(), 1);
    // A longer circle stops where it closes.
    themes = withBuiltIns({
        parse(R"({"name": "A", "extends": "B", "colors": {"accent": "#AAAAAA"}})"),
        parse(R"({"name": "B", "extends": "A", "colors": {"accent": "#BBBBBB", "text": "#0B0B0B"}})"),
    });
    const ResolvedTheme a = resolveTheme(themes, "A");
    EXPECT_EQ(hex(a.light, "accent"), "#AAAAAA") << "the theme itself is on top";
    EXPECT_EQ(hex(a.light, "text"), "#0B0B0B") << "what it extends is below";
    const ResolvedTheme b = resolveTheme(themes, "B");
    EXPECT_EQ(hex(b.dark, "accent"), "#BBBBBB");
    EXPECT_TRUE(themeChain(themes, "A").isCircular);
}

TEST(ThemeResolver, AChainAppliesFromTheBottomUpAndOneAppearanceWinsOverBoth)
{
    const QList<ThemeDefinition> themes = withBuiltIns({
        parse(R"({"name": "Child", "extends": "Nord", "colors": {"background": "#101010"}, "light": {"background": "#FAFAFA"},
                  "rowHeight": 40})"),
        parse(R"({"name": "Grandchild", "extends": "Child", "dark": {"accent": "#00FF00"}})"),
    });
    const ResolvedTheme grandchild = resolveTheme(themes, "Grandchild");
    EXPECT_EQ(hex(grandchild.light, "background"), "#FAFAFA");
    EXPECT_EQ(hex(grandchild.dark, "background"), "#101010");
    EXPECT_EQ(hex(grandchild.dark, "accent"), "#00FF00");
    EXPECT_EQ(hex(grandchild.light, "accent"), "#5E81AC") << "from Nord, two levels down";
    EXPECT_EQ(grandchild.rowHeight, 40);
    EXPECT_EQ(grandchild.radius, 6) << "the default";
}

TEST(ThemeResolver, BadColoursAndUnknownKeysAreSkipped)
{
    const QList<ThemeDefinition> themes = withBuiltIns({parse(
        R"({"name": "Sloppy", "colors": {"accent": "red", "text": "#12345", "border": "#GGGGGG", "backgrond": "#000000",
                                         "sidebar": "#abcdef"}})")});
    const ResolvedTheme sloppy = resolveTheme(themes, "Sloppy");
    const ResolvedTheme orwick = resolveTheme(themes, "Orwick");
    EXPECT_EQ(sloppy.light.color("accent"), orwick.light.color("accent"));
    EXPECT_EQ(sloppy.light.color("text"), orwick.light.color("text"));
    EXPECT_EQ(sloppy.light.color("border"), orwick.light.color("border")) << "derived, since the written one is no colour";
    EXPECT_FALSE(sloppy.light.has("backgrond"));
    EXPECT_EQ(hex(sloppy.light, "sidebar"), "#ABCDEF") << "lower case is a colour too";
}

TEST(ThemeResolver, AnAccentOverrideAlsoMovesTheColoursDerivedFromIt)
{
    const QList<ThemeDefinition> themes = withBuiltIns({parse(R"({"name": "Set", "colors": {"selection": "#FF0000", "accentFill": "#00FF00"}})")});
    const ResolvedTheme own = resolveTheme(themes, "Set");
    EXPECT_EQ(hex(own.light, "selection"), "#FF0000");
    const ResolvedTheme green = resolveTheme(themes, "Set", QColor(0x2E, 0x9E, 0x55));
    for (const ThemeColors* colors : {&green.light, &green.dark}) {
        EXPECT_EQ(hex(*colors, "accent"), "#2E9E55");
        EXPECT_NE(hex(*colors, "selection"), "#FF0000");
        EXPECT_NE(hex(*colors, "accentFill"), "#00FF00");
    }
    const ResolvedTheme orange = resolveTheme(themes, "Set", QColor(0xEA, 0x7A, 0x1E));
    EXPECT_NE(orange.light.color("selection"), green.light.color("selection"));
    EXPECT_NE(orange.dark.color("accentFill"), green.dark.color("accentFill"));
}

TEST(ThemeResolver, DerivedColoursLieBetweenTheBackgroundAndTheirSource)
{
    const ResolvedTheme orwick = resolveTheme(builtInThemes(), "Orwick");
    for (const ThemeColors* colors : {&orwick.light, &orwick.dark}) {
        const int background = colors->color("background").lightness();
        const int text = colors->color("text").lightness();
        for (const char* key : {"hover", "pressed", "border", "borderStrong", "selectionUnfocused"}) {
            const int derived = colors->color(key).lightness();
            EXPECT_TRUE(derived != background && (derived - background) * (text - background) > 0) << key;
        }
        // Stronger marks stand further from the background.
        const auto distance = [&](const char* key) { return std::abs(colors->color(key).lightness() - background); };
        EXPECT_GT(distance("borderStrong"), distance("border"));
        EXPECT_GT(distance("pressed"), distance("hover"));
    }
}

TEST(ThemeResolver, SizesOutOfRangeAreKeptInRange)
{
    const QList<ThemeDefinition> themes = withBuiltIns({parse(R"({"name": "Huge", "rowHeight": 500, "radius": -3, "fontSize": 2})")});
    const ResolvedTheme huge = resolveTheme(themes, "Huge");
    EXPECT_EQ(huge.rowHeight, 64);
    EXPECT_EQ(huge.radius, 0);
    EXPECT_EQ(huge.fontSize, 8);
}

TEST(ThemeResolver, TerminalColoursComeFromTheThemeAndAreCompleted)
{
    const QList<ThemeDefinition> themes = withBuiltIns({
        parse(R"({"name": "Term", "terminal": {"dark": ["#010101", "#020202"], "light": ["#030303", "oops"]}})"),
    });
    const ResolvedTheme term = resolveTheme(themes, "Term");
    const ResolvedTheme orwick = resolveTheme(themes, "Orwick");
    ASSERT_EQ(term.terminalDark.size(), 16);
    EXPECT_EQ(themeColorText(term.terminalDark.at(0)), "#010101");
    EXPECT_EQ(themeColorText(term.terminalDark.at(1)), "#020202");
    EXPECT_EQ(term.terminalDark.at(2), orwick.terminalDark.at(2));
    EXPECT_EQ(term.terminalLight, orwick.terminalLight) << "a list with a bad colour is left out whole";
}

TEST(ThemeResolver, AThemeForOneAppearanceSaysSo)
{
    const QList<ThemeDefinition> themes = withBuiltIns({parse(R"({"name": "Night", "appearance": "dark"})"),
                                                        parse(R"({"name": "Night Blue", "extends": "Night"})")});
    EXPECT_EQ(resolveTheme(themes, "Night").appearance, Appearance::dark);
    EXPECT_EQ(resolveTheme(themes, "Night Blue").appearance, Appearance::dark);
    EXPECT_EQ(resolveTheme(themes, "Nord").appearance, std::nullopt);
}

TEST(ThemeColors, ColourTextsReadAndWrite)
{
    EXPECT_EQ(parseThemeColor(u"#FF7A59"), QColor(0xFF, 0x7A, 0x59));
    EXPECT_EQ(parseThemeColor(u"#ff7a59"), QColor(0xFF, 0x7A, 0x59));
    for (const char16_t* bad : {u"FF7A59", u"#FF7A5", u"#FF7A599", u"#+F7A59", u"# F7A59", u"#GG0000", u"", u"red"})
        EXPECT_FALSE(parseThemeColor(bad)) << QString::fromUtf16(bad).toStdString();
    EXPECT_EQ(cssColor(QColor(255, 122, 89)), "rgba(255,122,89,1.000)");
    QColor half(10, 20, 30);
    half.setAlphaF(0.5f);
    EXPECT_EQ(cssColor(half), "rgba(10,20,30,0.500)");
    EXPECT_EQ(themeColorText(QColor(0xab, 0xcd, 0xef)), "#ABCDEF");
}

} // namespace
