// The scanner's rules at their edges: comments, numbers, case, ranges in UTF-16 code units,
// NUL bytes, CRLF line ends, and texts large enough to expose anything worse than linear.

#include "TokenText.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

using namespace SyntaxHighlighter;

std::vector<Token> scan(const QString& text, const char* key) { return tokens(text, languageKeyed(key)); }

} // namespace

TEST(Scanner, AnUnclosedBlockCommentRunsToTheEndAndTwoDotsEndANumber)
{
    const QString text = "int a; /* open\nint b = 2;\n\"s\"";
    const std::vector<Token> list = scan(text, "cpp");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0], (Token{0, 3, Kind::type}));
    EXPECT_EQ(list[1], (Token{7, int(text.size()) - 7, Kind::comment}));
    // Two dots end a number.
    EXPECT_EQ(scan("1..5", "rb"), (std::vector<Token>{{0, 1, Kind::number}, {3, 1, Kind::number}}));
}

// Each rule as the tokens a reader sees in a snippet.
TEST(Scanner, RulesAsTokens)
{
    const struct {
        QString text;
        const char* language;
        QStringList expected;
    } rows[] = {
        // A block comment ends at its first closer, or runs to the end.
        {"/* a */ b */ 1", "js", {"comment /* a */", "number 1"}},
        {"/**/1", "js", {"comment /**/", "number 1"}},
        {"x /*", "js", {"comment /*"}},
        {"a <!-- b", "html", {"comment <!-- b"}},
        // Numbers; two dots end one, digits inside a word are the word's.
        {"1.2.3 0x1F 1_000 3.14f .5 10px", "cpp",
         {"number 1.2.3", "number 0x1F", "number 1_000", "number 3.14f", "number .5", "number 10px"}},
        {"a1 x.5", "cpp", {"number .5"}},
        // SQL keywords in any case; elsewhere case matters.
        {"SELECT select SeLeCt Null", "sql", {"keyword SELECT", "keyword select", "keyword SeLeCt", "type Null"}},
        {"IF if", "sh", {"keyword if"}},
        // Hash comments only after a blank or at a line start; other openers count anywhere.
        {"a#b", "sh", {}},
        {"#x\n\t#y\na #z", "sh", {"comment #x", "comment #y", "comment #z"}},
        {"echo ${#arr} $#", "sh", {"keyword echo"}},
        {"a//b", "js", {"comment //b"}},
        // Strings skip escapes and run to the end when unclosed.
        {R"("a\"b" 'c\\' 1)", "py", {R"(string "a\"b")", R"(string 'c\\')", "number 1"}},
        {"x = \"open\ny = 2", "py", {"string \"open\\ny = 2"}},
        {"\"\\", "js", {"string \"\\"}}, // a backslash as the last unit
        {"'''a ' b'''", "py", {"string '''a ' b'''"}},
        {"\"\"\"open", "swift", {"string \"\"\"open"}},
        {"\"\" 1", "py", {"string \"\"", "number 1"}},
        {"'''x'''", "js", {"string ''", "string 'x'", "string ''"}}, // no triples in js
        // Words are functions before a parenthesis and types when capitalized, where the language says so.
        {"run() run () Foo Foo() X", "swift", {"function run", "type Foo", "function Foo"}},
        {"Foo", "py", {}},
        {"print(x)", "py", {"type print"}}, // a builtin stays a builtin
        // CSS words hold dashes.
        {"@font-face { font-family: x } @media-x", "css", {"keyword @font-face"}},
        {"a-b(", "css", {"function a-b"}},
        {"a-b(", "js", {"function b"}},
        // JSON keys are properties.
        {"{\"k\":\"v\",\"n\":-1,\"e\\\"\":false}", "json",
         {"property \"k\"", "string \"v\"", "property \"n\"", "number 1", "property \"e\\\"\"", "type false"}},
        // Markup tags and attributes.
        {"<?xml version=\"1.0\"?>\n<!DOCTYPE html>\n<svg:rect x=1 :y=\"2\" @click='f()'/>", "html",
         {"tag xml", "attribute version", "string \"1.0\"", "tag DOCTYPE", "attribute html", "tag svg:rect", "attribute x",
          "attribute :y", "string \"2\"", "attribute @click", "string 'f()'"}},
        {"a < b and 3 > 2 <", "html", {}},
        {"<a\nhref=\"x\"\n>", "html", {"tag a", "attribute href", "string \"x\""}},
        // Line keys only at the line start.
        {"a: b: c\n  x - y: z\n-notalist\n[sec\n", "yaml", {"property a", "property x - y"}},
        {"\"q\": 1\n[a] [b]", "yaml", {"string \"q\"", "number 1", "property [a]"}},
        {"key with space : v", "toml", {"property key with space"}},
        // CRLF line ends.
        {"x = 1 # one\r\ny: 2\r\n\"s\r\n\" # two\r\n", "py",
         {"number 1", "comment # one", "number 2", "string \"s\r\\n\"", "comment # two"}},
        {"a: 1\r\nb: 2\r\n- c\r\n[s]\r\n", "yaml", {"property a", "number 1", "property b", "number 2", "property -", "property [s]"}},
        {"x // c\r\n", "js", {"comment // c"}},
        // Empty, blank and one-character texts.
        {"", "js", {}},
        {" \t\n\r\n", "yaml", {}},
        {"#", "sh", {"comment #"}},
        {"$", "sh", {}},
        {"-", "yaml", {}},
        {"<", "html", {}},
        {".", "js", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(tokenText(row.text, row.language), row.expected) << row.language << ": " << row.text.toStdString();
}

TEST(Scanner, RangesCountUtf16CodeUnits)
{
    // U+1F600 is two UTF-16 units: offsets after it move by two.
    const QString text = QString::fromUtf8("\"\xF0\x9F\x98\x80\" \xF0\x9F\x98\x80y( 7 caf\xC3\xA9 if");
    const std::vector<Token> list = scan(text, "js");
    ASSERT_EQ(list.size(), 4u);
    EXPECT_EQ(list[0], (Token{0, 4, Kind::string}));
    EXPECT_EQ(list[1], (Token{5, 3, Kind::function})); // the emoji starts the word: both halves stay in it
    EXPECT_EQ(list[2], (Token{10, 1, Kind::number}));
    EXPECT_EQ(list[3], (Token{17, 2, Kind::keyword}));
    EXPECT_EQ(text.mid(17, 2), "if");
}

TEST(Scanner, LoneSurrogatesAreWordCharacters)
{
    QString text = "x";
    text += QChar(0xD800);
    text += " if";
    EXPECT_EQ(scan(text, "js"), (std::vector<Token>{{3, 2, Kind::keyword}}));
}

TEST(Scanner, NulUnitsAreOrdinaryCharacters)
{
    const QString text = QString::fromUtf16(u"\"a\0b\" \0if\0 // c\0d\nx", 19);
    const std::vector<Token> list = scan(text, "js");
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0], (Token{0, 5, Kind::string}));
    EXPECT_EQ(list[1], (Token{7, 2, Kind::keyword}));
    EXPECT_EQ(list[2], (Token{11, 6, Kind::comment}));
}

TEST(Scanner, TokensAscendAndNeverOverlap)
{
    const QString text = "let s = `a${b}` /* c */ // d\n#if x\n<a b='c'>\n$v: [1, 2] \"k\": 3";
    for (const Language* language : allLanguages()) {
        int end = 0;
        for (const Token& token : tokens(text, *language)) {
            EXPECT_GE(token.start, end) << languageKey(*language).toStdString();
            EXPECT_GT(token.length, 0) << languageKey(*language).toStdString();
            end = token.end();
        }
        EXPECT_LE(end, text.size());
    }
}

// A single line of 50 MB in every language: any rule that rescans the line would take hours.
TEST(Scanner, FiftyMegabyteLineIsScannedInLinearTime)
{
    const QString unit = QStringLiteral("key: value_1 (x) a#b \"s\" 'q' <b> 2.5 ");
    QString line;
    line.reserve(50'000'000 + unit.size());
    while (line.size() < 50'000'000)
        line += unit;
    line += QStringLiteral("/* open");
    for (const char* key : {"yaml", "cpp", "html", "sh", "css"}) {
        QElapsedTimer timer;
        timer.start();
        const std::vector<Token> list = scan(line, key);
        EXPECT_FALSE(list.empty()) << key;
        EXPECT_LE(list.back().end(), line.size()) << key;
        // A generous bound for a slow, shared machine; quadratic work would need far longer.
        EXPECT_LT(timer.elapsed(), 60'000) << key;
    }
    // The whole line as one token: an unclosed string and an unclosed comment.
    QString unquoted = line;
    unquoted.replace(u'"', u'x');
    EXPECT_EQ(scan("\"" + unquoted, "json").front(), (Token{0, int(line.size()) + 1, Kind::string}));
    EXPECT_EQ(scan("/*" + line, "js").front(), (Token{0, int(line.size()) + 2, Kind::comment}));
}

} // namespace orwick::test
