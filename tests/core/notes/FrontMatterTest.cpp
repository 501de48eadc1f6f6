// Reading and writing the front-matter subset, as pure text functions.

#include "notes/FrontMatter.h"
#include "notes/PropertyValue.h"

#include <gtest/gtest.h>

using namespace orwick;
using FrontMatter::Property;

namespace {

QList<Property> props(std::initializer_list<Property> list) { return QList<Property>(list); }

struct BlockCase {
    const char* name;
    friend void PrintTo(const BlockCase& c, std::ostream* os) { *os << c.name; } // the name, not bytes
    QString text;
    std::optional<QString> block;
};

class BlockTest : public testing::TestWithParam<BlockCase> {};

TEST_P(BlockTest, FindsTheTextBetweenTheDelimiters)
{
    EXPECT_EQ(FrontMatter::block(GetParam().text), GetParam().block);
}

INSTANTIATE_TEST_SUITE_P(
    FrontMatter, BlockTest,
    testing::Values(BlockCase{"plain", "---\na: 1\nb: 2\n---\nbody", QString("a: 1\nb: 2")},
                    BlockCase{"empty", "---\n---\n", QString()},
                    BlockCase{"closingWithSpaces", "---\na: 1\n  ---\t\nbody", QString("a: 1")},
                    BlockCase{"windowsLineEndings", "---\r\na: 1\r\nb: x\r\n---\r\nbody\r\n", QString("a: 1\nb: x")},
                    BlockCase{"firstClosingWins", "---\na: 1\n---\nb: 2\n---\n", QString("a: 1")},
                    BlockCase{"neverCloses", "---\na: 1\nb: 2\n", std::nullopt},
                    BlockCase{"onlyOpening", "---", std::nullopt},
                    BlockCase{"openingNotFirst", "\n---\na: 1\n---\n", std::nullopt},
                    BlockCase{"openingIndented", " ---\na: 1\n---\n", std::nullopt},
                    BlockCase{"fourDashes", "----\na: 1\n---\n", std::nullopt},
                    BlockCase{"noFrontMatter", "# Title\n\ntext", std::nullopt}),
    [](const auto& info) { return std::string(info.param.name); });

struct ParseCase {
    const char* name;
    friend void PrintTo(const ParseCase& c, std::ostream* os) { *os << c.name; } // the name, not bytes
    QString block;
    std::optional<QList<Property>> properties;
};

class ParseTest : public testing::TestWithParam<ParseCase> {};

TEST_P(ParseTest, ReadsTheSubsetAndRefusesTheRest)
{
    EXPECT_EQ(FrontMatter::parse(GetParam().block), GetParam().properties);
}

INSTANTIATE_TEST_SUITE_P(
    FrontMatter, ParseTest,
    testing::Values(
        ParseCase{"scalars", "title: Hello\ncount: 3", props({{"title", {"Hello"}, false}, {"count", {"3"}, false}})},
        ParseCase{"commentsAndBlankLines", "# note\n\n  # indented comment\na: 1", props({{"a", {"1"}, false}})},
        ParseCase{"valueWithColons", "url: http://x.org:80/a", props({{"url", {"http://x.org:80/a"}, false}})},
        ParseCase{"quotedScalar", "a: \"hi there\"\nb: 'x'", props({{"a", {"hi there"}, false}, {"b", {"x"}, false}})},
        ParseCase{"inlineList", "tags: [a, \"b\", 'c']", props({{"tags", {"a", "b", "c"}, true}})},
        ParseCase{"inlineListDropsEmptyPieces", "tags: [a,, b, ]", props({{"tags", {"a", "b"}, true}})},
        ParseCase{"emptyInlineList", "tags: []", props({{"tags", {}, true}})},
        ParseCase{"commaInQuotesIsNotProtected", "t: [\"a, b\"]", props({{"t", {"\"a", "b\""}, true}})},
        ParseCase{"dashList", "tags:\n  - a\n- \"b\"\n  -", props({{"tags", {"a", "b", ""}, true}})},
        ParseCase{"emptyListStaysOpenThenCloses", "tags:\nnext: 1", props({{"tags", {}, true}, {"next", {"1"}, false}})},
        ParseCase{"orderKept", "z: 1\na: 2", props({{"z", {"1"}, false}, {"a", {"2"}, false}})},
        ParseCase{"nestedMap", "parent:\n  child: 1", std::nullopt},
        ParseCase{"indentedScalarLine", "a: 1\n\tb: 2", std::nullopt},
        ParseCase{"blockScalarLiteral", "text: |\n  line", std::nullopt},
        ParseCase{"blockScalarFolded", "text: >", std::nullopt},
        ParseCase{"flowMap", "map: {a: 1}", std::nullopt},
        ParseCase{"lineWithoutColon", "just words", std::nullopt},
        ParseCase{"emptyKey", ": value", std::nullopt},
        ParseCase{"itemWithoutList", "- a", std::nullopt},
        ParseCase{"itemAfterScalar", "a: 1\n- b", std::nullopt},
        ParseCase{"backslashesStay", R"(a: "C:\\path \"q\"")", props({{"a", {R"(C:\\path \"q\")"}, false}})}),
    [](const auto& info) { return std::string(info.param.name); });

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

struct SettingCase {
    const char* name;
    friend void PrintTo(const SettingCase& c, std::ostream* os) { *os << c.name; } // the name, not bytes
    QString key;
    std::optional<QString> value;
    QString before;
    QString after;
};

class SettingTest : public testing::TestWithParam<SettingCase> {};

TEST_P(SettingTest, ChangesOnlyTheKeysLines)
{
    const SettingCase& c = GetParam();
    EXPECT_EQ(FrontMatter::setting(c.key, c.value, c.before), c.after);
}

INSTANTIATE_TEST_SUITE_P(
    FrontMatter, SettingTest,
    testing::Values(
        SettingCase{"createsBlock", "status", QString("done"), "# Note\nbody", "---\nstatus: done\n---\n# Note\nbody"},
        SettingCase{"createsBlockInEmptyFile", "a", QString("1"), "", "---\na: 1\n---\n"},
        SettingCase{"removeWithoutBlockLeavesFile", "a", std::nullopt, "body", "body"},
        SettingCase{"replacesInPlace", "b", QString("9"), "---\na: 1\nb: 2\nc: 3\n---\nbody", "---\na: 1\nb: 9\nc: 3\n---\nbody"},
        SettingCase{"appendsBeforeClosing", "z", QString("new"), "---\n# c\na: 1\n---\n\nbody\n",
                    "---\n# c\na: 1\nz: new\n---\n\nbody\n"},
        SettingCase{"replacesListAndItsItems", "tags", QString("[x]"), "---\ntags:\n  - a\n\n  - b\nnext: 1\n---\n",
                    "---\ntags: [x]\nnext: 1\n---\n"},
        SettingCase{"removesKeyAndItems", "tags", std::nullopt, "---\na: 1\ntags:\n- a\n- b\n# kept\nz: 2\n---\nb",
                    "---\na: 1\n# kept\nz: 2\n---\nb"},
        SettingCase{"keyWithSpaceBeforeColon", "a", QString("2"), "---\na : 1\n---\n", "---\na: 2\n---\n"},
        SettingCase{"prefixOfAnotherKeyUntouched", "a", QString("2"), "---\nab: 1\n---\n", "---\nab: 1\na: 2\n---\n"},
        SettingCase{"windowsLineEndingsKept", "b", QString("2"), "---\r\na: 1\r\nb: 1\r\n---\r\nbody\r\n",
                    "---\r\na: 1\r\nb: 2\r\n---\r\nbody\r\n"},
        SettingCase{"windowsAppend", "c", QString("3"), "---\r\na: 1\r\n---\r\n", "---\r\na: 1\r\nc: 3\r\n---\r\n"},
        SettingCase{"windowsCreate", "c", QString("3"), "body\r\nmore", "---\r\nc: 3\r\n---\r\nbody\r\nmore"},
        SettingCase{"unclosedLeftAlone", "a", QString("2"), "---\na: 1\n", "---\na: 1\n"},
        SettingCase{"bodyDashesUntouched", "a", QString("2"), "---\na: 1\n---\n---\na: 1\n", "---\na: 2\n---\n---\na: 1\n"}),
    [](const auto& info) { return std::string(info.param.name); });

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
