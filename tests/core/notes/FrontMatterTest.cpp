// Reading and writing the front-matter subset, as pure text functions.

#include "notes/FrontMatter.h"
#include "notes/PropertyValue.h"

#include <gtest/gtest.h>

using namespace orwick;
using FrontMatter::Property;

namespace {

QList<Property> props(std::initializer_list<Property> list) { return QList<Property>(list); }

TEST(FrontMatter, FindsTheTextBetweenTheDelimiters)
{
    const struct {
        const char* name;
        QString text;
        std::optional<QString> block;
    } rows[] = {
        {"plain", "---\na: 1\nb: 2\n---\nbody", QString("a: 1\nb: 2")},
        {"empty", "---\n---\n", QString()},
        {"closingWithSpaces", "---\na: 1\n  ---\t\nbody", QString("a: 1")},
        {"windowsLineEndings", "---\r\na: 1\r\nb: x\r\n---\r\nbody\r\n", QString("a: 1\nb: x")},
        {"firstClosingWins", "---\na: 1\n---\nb: 2\n---\n", QString("a: 1")},
        {"neverCloses", "---\na: 1\nb: 2\n", std::nullopt},
        {"onlyOpening", "---", std::nullopt},
        {"openingNotFirst", "\n---\na: 1\n---\n", std::nullopt},
        {"openingIndented", " ---\na: 1\n---\n", std::nullopt},
        {"fourDashes", "----\na: 1\n---\n", std::nullopt},
        {"noFrontMatter", "# Title\n\ntext", std::nullopt},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FrontMatter::block(row.text), row.block) << row.name;
}

TEST(FrontMatter, ReadsTheSubsetAndRefusesTheRest)
{
    const struct {
        const char* name;
        QString block;
        std::optional<QList<Property>> properties;
    } rows[] = {
        {"scalars", "title: Hello\ncount: 3", props({{"title", {"Hello"}, false}, {"count", {"3"}, false}})},
        {"commentsAndBlankLines", "# note\n\n  # indented comment\na: 1", props({{"a", {"1"}, false}})},
        {"valueWithColons", "url: http://x.org:80/a", props({{"url", {"http://x.org:80/a"}, false}})},
        {"quotedScalar", "a: \"hi there\"\nb: 'x'", props({{"a", {"hi there"}, false}, {"b", {"x"}, false}})},
        {"inlineList", "tags: [a, \"b\", 'c']", props({{"tags", {"a", "b", "c"}, true}})},
        {"inlineListDropsEmptyPieces", "tags: [a,, b, ]", props({{"tags", {"a", "b"}, true}})},
        {"emptyInlineList", "tags: []", props({{"tags", {}, true}})},
        {"commaInQuotesIsNotProtected", "t: [\"a, b\"]", props({{"t", {"\"a", "b\""}, true}})},
        {"dashList", "tags:\n  - a\n- \"b\"\n  -", props({{"tags", {"a", "b", ""}, true}})},
        {"emptyListStaysOpenThenCloses", "tags:\nnext: 1", props({{"tags", {}, true}, {"next", {"1"}, false}})},
        {"orderKept", "z: 1\na: 2", props({{"z", {"1"}, false}, {"a", {"2"}, false}})},
        {"nestedMap", "parent:\n  child: 1", std::nullopt},
        {"indentedScalarLine", "a: 1\n\tb: 2", std::nullopt},
        {"blockScalarLiteral", "text: |\n  line", std::nullopt},
        {"blockScalarFolded", "text: >", std::nullopt},
        {"flowMap", "map: {a: 1}", std::nullopt},
        {"lineWithoutColon", "just words", std::nullopt},
        {"emptyKey", ": value", std::nullopt},
        {"itemWithoutList", "- a", std::nullopt},
        {"itemAfterScalar", "a: 1\n- b", std::nullopt},
        {"backslashesStay", R"(a: "C:\\path \"q\"")", props({{"a", {R"(C:\\path \"q\")"}, false}})},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FrontMatter::parse(row.block), row.properties) << row.name;
}

TEST(FrontMatter, UnquoteRemovesOnlyAMatchingPair)
{
    EXPECT_EQ(FrontMatter::unquote(u" \"a\" "), "a");
    EXPECT_EQ(FrontMatter::unquote(u"'a'"), "a");
    EXPECT_EQ(FrontMatter::unquote(u"\"a'"), "\"a'");
    EXPECT_EQ(FrontMatter::unquote(u"\""), "\"");
    EXPECT_EQ(FrontMatter::unquote(u"\"\""), "");
    EXPECT_EQ(FrontMatter::unquote(u"\" padded \""), " padded ");
    EXPECT_EQ(FrontMatter::unquote(u"\"a\\\"\""), "a\\\"");
}

TEST(FrontMatter, QuotesOnlyWhatNeedsIt)
{
    const std::pair<QString, QString> cases[] = {
        {"plain text", "plain text"},
        {"v1.2 (beta)+x@y/z_w-q", "v1.2 (beta)+x@y/z_w-q"},
        {"", "\"\""},
        {"yes", "\"yes\""},
        {"No", "\"No\""},
        {"TRUE", "\"TRUE\""},
        {"null", "\"null\""},
        {"~", "\"~\""},
        {" lead", "\" lead\""},
        {"trail ", "\"trail \""},
        {"a: b", "\"a: b\""},
        {"#tag", "\"#tag\""},
        {"é", "\"é\""},
        {R"(say "hi")", R"("say \"hi\"")"},
        {R"(C:\dir)", R"("C:\\dir")"},
    };
    for (const auto& [text, written] : cases)
        EXPECT_EQ(FrontMatter::quoted(text), written) << text.toStdString();
}

TEST(FrontMatter, YamlOfEachKind)
{
    EXPECT_EQ(FrontMatter::yaml(PropertyValue::ofNumber(42)), "42");
    EXPECT_EQ(FrontMatter::yaml(PropertyValue::ofNumber(-3.5)), "-3.5");
    EXPECT_EQ(FrontMatter::yaml(PropertyValue::ofNumber(1e20)), "1e+20");
    EXPECT_EQ(FrontMatter::yaml(PropertyValue::ofBool(false)), "false");
    EXPECT_EQ(FrontMatter::yaml(PropertyValue::ofText("yes")), "\"yes\"");
    EXPECT_EQ(FrontMatter::yaml(PropertyValue::ofList({"a", "b c", "x,y"})), "[a, b c, \"x,y\"]");
    EXPECT_EQ(FrontMatter::yaml(PropertyValue::ofList({})), "[]");
}

TEST(FrontMatter, WritingQuotesThenReadingKeepsTheBackslashes)
{
    const QString text = FrontMatter::setting("say", FrontMatter::yaml(PropertyValue::ofText(R"(a "b" \c)")), "");
    EXPECT_EQ(text, "---\nsay: \"a \\\"b\\\" \\\\c\"\n---\n");
    const auto read = FrontMatter::read(text);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->first().values, QStringList{R"(a \"b\" \\c)"});
}

TEST(FrontMatter, SettingChangesOnlyTheKeysLines)
{
    const struct {
        const char* name;
        QString key;
        std::optional<QString> value;
        QString before;
        QString after;
    } rows[] = {
        {"createsBlock", "status", QString("done"), "# Note\nbody", "---\nstatus: done\n---\n# Note\nbody"},
        {"createsBlockInEmptyFile", "a", QString("1"), "", "---\na: 1\n---\n"},
        {"removeWithoutBlockLeavesFile", "a", std::nullopt, "body", "body"},
        {"replacesInPlace", "b", QString("9"), "---\na: 1\nb: 2\nc: 3\n---\nbody", "---\na: 1\nb: 9\nc: 3\n---\nbody"},
        {"appendsBeforeClosing", "z", QString("new"), "---\n# c\na: 1\n---\n\nbody\n", "---\n# c\na: 1\nz: new\n---\n\nbody\n"},
        {"replacesListAndItsItems", "tags", QString("[x]"), "---\ntags:\n  - a\n\n  - b\nnext: 1\n---\n", "---\ntags: [x]\nnext: 1\n---\n"},
        {"removesKeyAndItems", "tags", std::nullopt, "---\na: 1\ntags:\n- a\n- b\n# kept\nz: 2\n---\nb", "---\na: 1\n# kept\nz: 2\n---\nb"},
        {"keyWithSpaceBeforeColon", "a", QString("2"), "---\na : 1\n---\n", "---\na: 2\n---\n"},
        {"prefixOfAnotherKeyUntouched", "a", QString("2"), "---\nab: 1\n---\n", "---\nab: 1\na: 2\n---\n"},
        {"windowsLineEndingsKept", "b", QString("2"), "---\r\na: 1\r\nb: 1\r\n---\r\nbody\r\n", "---\r\na: 1\r\nb: 2\r\n---\r\nbody\r\n"},
        {"windowsAppend", "c", QString("3"), "---\r\na: 1\r\n---\r\n", "---\r\na: 1\r\nc: 3\r\n---\r\n"},
        {"windowsCreate", "c", QString("3"), "body\r\nmore", "---\r\nc: 3\r\n---\r\nbody\r\nmore"},
        {"unclosedLeftAlone", "a", QString("2"), "---\na: 1\n", "---\na: 1\n"},
        {"bodyDashesUntouched", "a", QString("2"), "---\na: 1\n---\n---\na: 1\n", "---\na: 2\n---\n---\na: 1\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FrontMatter::setting(row.key, row.value, row.before), row.after) << row.name;
}

TEST(FrontMatter, RenamingKeepsValueAndPlace)
{
    EXPECT_EQ(FrontMatter::renaming("tags", "labels", "---\na: 1\ntags:\n- x\nb: 2\n---\n"),
              "---\na: 1\nlabels:\n- x\nb: 2\n---\n");
    EXPECT_EQ(FrontMatter::renaming("missing", "x", "---\na: 1\n---\n"), "---\na: 1\n---\n");
}

TEST(FrontMatter, WritableKeys)
{
    for (const char* good : {"status", "due date", "a.b", "ключ"})
        EXPECT_TRUE(FrontMatter::isWritableKey(QString::fromUtf8(good))) << good;
    for (const char* bad : {"", " pad", "pad ", "a:b", "-x", "#x", "[x", "\"x", "a\nb", "---"})
        EXPECT_FALSE(FrontMatter::isWritableKey(QString::fromUtf8(bad))) << bad;
}

} // namespace
