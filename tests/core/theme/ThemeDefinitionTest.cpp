// Theme files as written: what decodes, what is refused and how each problem is worded.

#include "theme/ThemeDefinition.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

QString refusal(const char* json)
{
    const Result<ThemeDefinition> theme = ThemeDefinition::fromBytes(QByteArray(json));
    return theme ? QString() : theme.error();
}

TEST(ThemeDefinition, DecodesEveryField)
{
    const Result<ThemeDefinition> theme = ThemeDefinition::fromBytes(R"({
        "name": " Mine ", "extends": "Nord", "appearance": "dark", "colors": {"accent": "#FF7A59"},
        "light": {"sidebar": "#F4F3EF"}, "dark": {"background": "#0E0F11"}, "rowHeight": 30, "radius": 4.5,
        "fontSize": 14, "terminal": {"light": ["#000000"], "dark": ["#FFFFFF", "#111111"]}})");
    ASSERT_TRUE(theme) << theme.error().toStdString();
    EXPECT_EQ(theme->name, "Mine");
    EXPECT_EQ(theme->extends, QString("Nord"));
    EXPECT_EQ(theme->appearance, Appearance::dark);
    EXPECT_EQ(theme->colors.value("accent"), "#FF7A59");
    EXPECT_EQ(theme->light.value("sidebar"), "#F4F3EF");
    EXPECT_EQ(theme->dark.value("background"), "#0E0F11");
    EXPECT_EQ(theme->radius, 4.5);
    EXPECT_EQ(theme->terminalDark, (QStringList{"#FFFFFF", "#111111"}));
    EXPECT_EQ(ThemeDefinition::fromJson(theme->toJson()), theme) << "toJson gives back the same definition";
    // Only the name is needed.
    const Result<ThemeDefinition> bare = ThemeDefinition::fromBytes(R"({"name": "Bare"})");
    ASSERT_TRUE(bare);
    EXPECT_FALSE(bare->extends);
    EXPECT_FALSE(bare->rowHeight);
    EXPECT_TRUE(bare->colors.isEmpty());
    EXPECT_EQ(bare->toJson(), QJsonObject({{"name", "Bare"}}));
}

TEST(ThemeDefinition, RefusesWhatIsNotATheme)
{
    EXPECT_TRUE(refusal(R"({"name": "x",)").startsWith("not valid JSON (")) << refusal(R"({"name": "x",)").toStdString();
    EXPECT_EQ(refusal(R"(["name"])"), "a theme file holds one JSON object: { \"name\": … }");
    EXPECT_EQ(refusal(R"({"colors": {}})"), "a theme needs a “name”");
    EXPECT_EQ(refusal(R"({"name": "  "})"), "a theme needs a “name”");
    EXPECT_EQ(refusal(R"({"name": 3})"), "a theme needs a “name”");
    EXPECT_EQ(refusal(R"({"name": "x", "rowHeight": "big"})"), "“rowHeight” should be a number");
    EXPECT_EQ(refusal(R"({"name": "x", "extends": 1})"), "“extends” should be the name of a theme");
    EXPECT_EQ(refusal(R"({"name": "x", "appearance": "dusk"})"), "“appearance” should be \"light\" or \"dark\"");
    EXPECT_EQ(refusal(R"({"name": "x", "dark": ["#000000"]})"), "“dark” should be a map of colour names to colours");
    EXPECT_EQ(refusal(R"({"name": "x", "colors": {"accent": 255}})"), "“accent” in “colors” should be a colour like #FF7A59");
    EXPECT_EQ(refusal(R"({"name": "x", "terminal": {"dark": "#000000"}})"), "“terminal.dark” should be a list of colours");
}

TEST(ThemeDefinition, CheckNamesEachProblemOfATheme)
{
    const Result<ThemeDefinition> theme = ThemeDefinition::fromBytes(R"({"name": "x", "colors": {"accent": "red", "backgrond": "#000000"},
        "fontSize": 90, "terminal": {"light": ["#000000", "nope"]}})");
    ASSERT_TRUE(theme);
    EXPECT_EQ(checkTheme(*theme), (QStringList{"“accent” in “colors” is “red”, not a colour like #FF7A59, so it is left out",
                                               "“backgrond” in “colors” isn't a colour Orwick uses, so it does nothing",
                                               "“fontSize” is 90; it is kept between 8 and 28",
                                               "“terminal.light” holds “nope”, not a colour like #FF7A59, so the list is left out"}));
    EXPECT_TRUE(checkTheme(*ThemeDefinition::fromBytes(R"({"name": "fine", "colors": {"keyword": "#112233"}})")).isEmpty());
}

} // namespace
