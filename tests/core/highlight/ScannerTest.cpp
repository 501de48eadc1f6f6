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

TEST(Scanner, UnclosedBlockCommentRunsToTheEnd)
{
    const QString text = "int a; /* open\nint b = 2;\n\"s\"";
    const std::vector<Token> list = scan(text, "cpp");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0], (Token{0, 3, Kind::type}));
    EXPECT_EQ(list[1], (Token{7, int(text.size()) - 7, Kind::comment}));
    EXPECT_EQ(tokenText("x /*", "js"), QStringList{"comment /*"});
    EXPECT_EQ(tokenText("a <!-- b", "html"), QStringList{"comment <!-- b"});
}

TEST(Scanner, BlockCommentEndsAtItsFirstCloser)
{
    EXPECT_EQ(tokenText("/* a */ b */ 1", "js"), (QStringList{"comment /* a */", "number 1"}));
    EXPECT_EQ(tokenText("/**/1", "js"), (QStringList{"comment /**/", "number 1"}));
}

TEST(Scanner, TwoDotsEndANumber)
{
    const std::vector<Token> list = scan("1..5", "rb");
    EXPECT_EQ(list, (std::vector<Token>{{0, 1, Kind::number}, {3, 1, Kind::number}}));
    EXPECT_EQ(tokenText("1.2.3 0x1F 1_000 3.14f .5 10px", "cpp"),
              (QStringList{"number 1.2.3", "number 0x1F", "number 1_000", "number 3.14f", "number .5",
                           "number 10px"}));
    EXPECT_EQ(tokenText("a1 x.5", "cpp"), QStringList{"number .5"}); // digits inside a word are the word's
}

TEST(Scanner, SqlKeywordsInAnyCase)
{
    EXPECT_EQ(tokenText("SELECT select SeLeCt Null", "sql"),
              (QStringList{"keyword SELECT", "keyword select", "keyword SeLeCt", "type Null"}));
    // Elsewhere case matters.
    EXPECT_EQ(tokenText("IF if", "sh"), QStringList{"keyword if"});
}

TEST(Scanner, HashCommentsOnlyAfterABlankOrAtALineStart)
{
    EXPECT_EQ(tokenText("a#b", "sh"), QStringList{});
    EXPECT_EQ(tokenText("#x\n\t#y\na #z", "sh"), (QStringList{"comment #x", "comment #y", "comment #z"}));
    EXPECT_EQ(tokenText("echo ${#arr} $#", "sh"), QStringList{"keyword echo"});
    // Other openers count anywhere.
    EXPECT_EQ(tokenText("a//b", "js"), QStringList{"comment //b"});
}

TEST(Scanner, StringsSkipEscapesAndRunToTheEndWhenUnclosed)
{
    EXPECT_EQ(tokenText(R"("a\"b" 'c\\' 1)", "py"), (QStringList{R"(string "a\"b")", R"(string 'c\\')", "number 1"}));
    EXPECT_EQ(tokenText("x = \"open\ny = 2", "py"), QStringList{"string \"open\\ny = 2"});
    EXPECT_EQ(tokenText("\"\\", "js"), QStringList{"string \"\\"}); // a backslash as the last unit
    EXPECT_EQ(tokenText("'''a ' b'''", "py"), QStringList{"string '''a ' b'''"});
    EXPECT_EQ(tokenText("\"\"\"open", "swift"), QStringList{"string \"\"\"open"});
    EXPECT_EQ(tokenText("\"\" 1", "py"), (QStringList{"string \"\"", "number 1"}));
    EXPECT_EQ(tokenText("'''x'''", "js"), (QStringList{"string ''", "string 'x'", "string ''"})); // no triples in js
}

TEST(Scanner, WordsAreFunctionsBeforeAParenthesisAndTypesWhenCapitalized)
{
    EXPECT_EQ(tokenText("run() run () Foo Foo() X", "swift"), (QStringList{"function run", "type Foo", "function Foo"}));
    EXPECT_EQ(tokenText("Foo", "py"), QStringList{}); // py doesn't colour capitalized words
    EXPECT_EQ(tokenText("print(x)", "py"), QStringList{"type print"}); // a builtin stays a builtin
}

TEST(Scanner, CssWordsHoldDashes)
{
    EXPECT_EQ(tokenText("@font-face { font-family: x } @media-x", "css"), QStringList{"keyword @font-face"});
    EXPECT_EQ(tokenText("a-b(", "css"), QStringList{"function a-b"});
    EXPECT_EQ(tokenText("a-b(", "js"), QStringList{"function b"});
}

TEST(Scanner, JsonKeysAreProperties)
{
    EXPECT_EQ(tokenText("{\"k\":\"v\",\"n\":-1,\"e\\\"\":false}", "json"),
              (QStringList{"property \"k\"", "string \"v\"", "property \"n\"", "number 1", "property \"e\\\"\"",
                           "type false"}));
}

TEST(Scanner, MarkupTagsAndAttributes)
{
    EXPECT_EQ(tokenText("<?xml version=\"1.0\"?>\n<!DOCTYPE html>\n<svg:rect x=1 :y=\"2\" @click='f()'/>", "html"),
              (QStringList{"tag xml", "attribute version", "string \"1.0\"", "tag DOCTYPE", "attribute html",
                           "tag svg:rect", "attribute x", "attribute :y", "string \"2\"", "attribute @click",
                           "string 'f()'"}));
    EXPECT_EQ(tokenText("a < b and 3 > 2 <", "html"), QStringList{});
    EXPECT_EQ(tokenText("<a\nhref=\"x\"\n>", "html"), (QStringList{"tag a", "attribute href", "string \"x\""}));
}

TEST(Scanner, LineKeysOnlyAtTheLineStart)
{
    EXPECT_EQ(tokenText("a: b: c\n  x - y: z\n-notalist\n[sec\n", "yaml"),
              (QStringList{"property a", "property x - y"}));
    EXPECT_EQ(tokenText("\"q\": 1\n[a] [b]", "yaml"), (QStringList{"string \"q\"", "number 1", "property [a]"}));
    EXPECT_EQ(tokenText("key with space : v", "toml"), QStringList{"property key with space"});
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

TEST(Scanner, CrLfLineEnds)
{
    const QString text = "x = 1 # one\r\ny: 2\r\n\"s\r\n\" # two\r\n";
    EXPECT_EQ(tokenText(text, "py"), (QStringList{"number 1", "comment # one", "number 2", "string \"s\r\\n\"",
                                                  "comment # two"}));
    EXPECT_EQ(tokenText("a: 1\r\nb: 2\r\n- c\r\n[s]\r\n", "yaml"),
              (QStringList{"property a", "number 1", "property b", "number 2", "property -", "property [s]"}));
    EXPECT_EQ(tokenText("x // c\r\n", "js"), QStringList{"comment // c"});
}

TEST(Scanner, EmptyAndBlankTexts)
{
    EXPECT_TRUE(scan("", "js").empty());
    EXPECT_TRUE(scan(" \t\n\r\n", "yaml").empty());
    EXPECT_EQ(tokenText("#", "sh"), QStringList{"comment #"});
    EXPECT_EQ(tokenText("$", "sh"), QStringList{});
    EXPECT_EQ(tokenText("-", "yaml"), QStringList{});
    EXPECT_EQ(tokenText("<", "html"), QStringList{});
    EXPECT_EQ(tokenText(".", "js"), QStringList{});
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
