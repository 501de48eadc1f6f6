// The three renderers and the colours: HTML spans, the style sheet, the preview's formats, and
// theme colours with the defaults for keys a theme leaves out.

#include "TokenText.h"

#include <QFont>
#include <QTextCursor>
#include <QTextDocument>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

using namespace SyntaxHighlighter;

} // namespace

TEST(Renderers, HtmlEscapesTextAndWrapsEachToken)
{
    EXPECT_EQ(html(u"if (a < b && c > \"<d>\") // & done", languageKeyed("js")),
              "<span class=\"tok-keyword\">if</span> (a &lt; b &amp;&amp; c &gt; "
              "<span class=\"tok-string\">&quot;&lt;d&gt;&quot;</span>) "
              "<span class=\"tok-comment\">// &amp; done</span>");
    EXPECT_EQ(html(u"", languageKeyed("js")), "");
    EXPECT_EQ(html(u"plain 'text' & more", languageKeyed("html")), "plain 'text' &amp; more");
}

TEST(Renderers, HtmlKeepsNonAsciiAndNulUnits)
{
    const QString text = QString::fromUtf8("s = \"h\xC3\xA9 \xF0\x9F\x98\x80\" ") + QChar(0) + "x";
    EXPECT_EQ(html(text, languageKeyed("py")),
              QString::fromUtf8("s = <span class=\"tok-string\">&quot;h\xC3\xA9 \xF0\x9F\x98\x80&quot;</span> ")
                  + QChar(0) + "x");
}

TEST(Renderers, Utf8HtmlMatchesTheTextHtml)
{
    const QString text = QString::fromUtf8("<p class=\"x\">caf\xC3\xA9 \xF0\x9F\x98\x80 & \xE2\x82\xAC</p> <!-- \xCE\xB1 -->");
    const Language& language = languageKeyed("html");
    QByteArray bytes = "prefix:";
    appendHtmlUtf8(bytes, text, tokens(text, language));
    EXPECT_EQ(bytes, "prefix:" + html(text, language).toUtf8());
    // A lone surrogate is written as U+FFFD, as in any UTF-8 output.
    QByteArray lone;
    appendHtmlUtf8(lone, QString(QChar(0xDC00)), {});
    EXPECT_EQ(lone, "\xEF\xBF\xBD");
}

TEST(Renderers, StyleSheetHasOneRulePerKindInTheThemesColours)
{
    const QString light = css(false);
    const QString dark = css(true);
    EXPECT_EQ(light.count(u'{'), kKindCount);
    for (int kind = 0; kind < kKindCount; ++kind) {
        const QColor c = defaultColor(Kind(kind), false);
        EXPECT_TRUE(light.contains(QString(".tok-%1 { color: rgba(%2,%3,%4,1.000);")
                                       .arg(kindName(Kind(kind)))
                                       .arg(c.red())
                                       .arg(c.green())
                                       .arg(c.blue())))
            << light.toStdString();
    }
    EXPECT_NE(light, dark);

    SyntaxPalette palette;
    palette.string = QColor(0x11, 0x22, 0x33, 128);
    EXPECT_TRUE(css(true, palette).contains(".tok-string { color: rgba(17,34,51,0.502); }")) << css(true, palette).toStdString();
}

// The notes' preview renders the spans with Qt's rich text: its style-sheet parser must take
// the rules as written.
TEST(Renderers, QtRichTextAppliesTheStyleSheet)
{
    SyntaxPalette palette;
    palette.keyword = QColor(0x12, 0x34, 0x56);
    QTextDocument document;
    document.setDefaultStyleSheet(css(true, palette));
    document.setHtml("<pre>" + html(u"if x // c", languageKeyed("js")) + "</pre>");
    const auto colourAt = [&](int position) {
        QTextCursor cursor(&document);
        cursor.setPosition(position + 1);
        return cursor.charFormat().foreground().color();
    };
    EXPECT_EQ(colourAt(0), QColor(0x12, 0x34, 0x56));
    EXPECT_EQ(colourAt(5), defaultColor(Kind::comment, true));
    EXPECT_NE(colourAt(3), QColor(0x12, 0x34, 0x56)); // plain text keeps the document's colour
}

TEST(Renderers, ThemeColoursWinOverTheDefaults)
{
    SyntaxPalette palette = SyntaxPalette::fromLookup([](const QString& key) {
        return key == "keyword" ? QColor("#FF0000") : key == "property" ? QColor("#00FF00") : QColor();
    });
    EXPECT_EQ(color(Kind::keyword, palette, false), QColor("#FF0000"));
    EXPECT_EQ(color(Kind::keyword, palette, true), QColor("#FF0000"));
    EXPECT_EQ(color(Kind::tag, palette, true), QColor("#FF0000")); // tags share the keyword colour
    EXPECT_EQ(color(Kind::property, palette, false), QColor("#00FF00"));
    // Keys the theme doesn't set: the appearance's default.
    EXPECT_EQ(color(Kind::comment, palette, false), defaultColor(Kind::comment, false));
    EXPECT_EQ(color(Kind::comment, palette, true), defaultColor(Kind::comment, true));
    EXPECT_NE(defaultColor(Kind::comment, false), defaultColor(Kind::comment, true));
    EXPECT_EQ(SyntaxPalette::keys(),
              QString("keyword string number comment type function attribute property").split(u' '));
}

TEST(Renderers, EveryDefaultColourReadsOnItsBackground)
{
    // Light defaults are dark enough for a white page, dark ones light enough for a black one.
    for (int kind = 0; kind < kKindCount; ++kind) {
        EXPECT_LT(defaultColor(Kind(kind), false).lightnessF(), 0.5) << kind;
        EXPECT_GT(defaultColor(Kind(kind), true).lightnessF(), 0.5) << kind;
    }
}

TEST(Renderers, AttributedGivesOneFormatRangePerToken)
{
    const QString text = "let x = 1 // c";
    QFont font("Monospace", 11);
    SyntaxPalette palette;
    palette.number = QColor("#123456");
    const QList<QTextLayout::FormatRange> ranges = attributed(text, languageKeyed("js"), font, palette, true);
    ASSERT_EQ(ranges.size(), 3);
    EXPECT_EQ(ranges[0].start, 0);
    EXPECT_EQ(ranges[0].length, 3);
    EXPECT_EQ(ranges[0].format.foreground().color(), defaultColor(Kind::keyword, true));
    EXPECT_EQ(ranges[1].start, 8);
    EXPECT_EQ(ranges[1].format.foreground().color(), QColor("#123456"));
    EXPECT_EQ(ranges[2].start, 10);
    EXPECT_EQ(ranges[2].length, 4);
    EXPECT_TRUE(ranges[2].format.fontItalic());
    EXPECT_EQ(ranges[2].format.fontPointSize(), 11);
    EXPECT_EQ(ranges[0].format.fontFamilies().toStringList(), QStringList{"Monospace"});
}

} // namespace orwick::test
