// The Orwick Guide's articles: each topic's article is in the program and renders to something;
// every key an article writes as a key (a code span such as `Ctrl+K`) runs something — a command
// of the catalogue or a key a view answers itself; no article names another platform's keys.

#include "commands/CommandCatalog.h"
#include "help/GuideTopics.h"
#include "preview/MarkdownRender.h"
#include "support/HeadlessWindow.h"

#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

// The keys the views answer themselves, which no command of the catalogue holds.
const QSet<QString> kViewKeys{
    QStringLiteral("Up"), QStringLiteral("Down"), QStringLiteral("Tab"),          // lists, sheets and fields
    QStringLiteral("H"), QStringLiteral("["), QStringLiteral("]"),                // the git review's diff
    QStringLiteral("Alt+C"), QStringLiteral("Alt+R"),                              // find in files
    QStringLiteral("Ctrl+Shift+Left"), QStringLiteral("Ctrl+Shift+Right"),         // the board
    QStringLiteral("Ctrl+S"), QStringLiteral("Ctrl+Shift+E"),                      // the note editor
};

// What reads as a key chord: modifiers, then one key, as Orwick names keys.
const QRegularExpression kChord(QStringLiteral(
    R"(^((Ctrl|Alt|Shift|Meta)\+)*(F[0-9]{1,2}|Up|Down|Left|Right|Return|Esc|Tab|Space|Del|Backspace|Home|End|PgUp|PgDown|[A-Z0-9]|[-\[\]\\.,=+`?/])$)"));

QString unescaped(QString html)
{
    return html.replace(QStringLiteral("&lt;"), QStringLiteral("<"))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"))
        .replace(QStringLiteral("&quot;"), QStringLiteral("\""))
        .replace(QStringLiteral("&amp;"), QStringLiteral("&"));
}

// The inline code spans of rendered HTML (code blocks left out).
QStringList codeSpans(QString html)
{
    html.remove(QRegularExpression(QStringLiteral("<pre[^>]*>.*?</pre>"), QRegularExpression::DotMatchesEverythingOption));
    QStringList spans;
    static const QRegularExpression code(QStringLiteral("<code>(.*?)</code>"), QRegularExpression::DotMatchesEverythingOption);
    for (const QRegularExpressionMatch& match : code.globalMatch(html))
        spans.append(unescaped(match.captured(1)));
    return spans;
}

QString keyText(const QKeySequence& key)
{
    return key.toString(QKeySequence::NativeText).replace(QStringLiteral("Backtab"), QStringLiteral("Tab"));
}

struct GuideArticlesTest : test::HeadlessWindowTest {
    void SetUp() override { openWindow(tree.root()); }
};

} // namespace

TEST_F(GuideArticlesTest, EveryTopicsArticleIsInTheProgramAndRenders)
{
    ASSERT_FALSE(guide::topics().isEmpty());
    QSet<QString> ids;
    for (const GuideTopic& topic : guide::topics()) {
        EXPECT_FALSE(ids.contains(topic.id)) << topic.id.toStdString();
        ids.insert(topic.id);
        const QString text = guide::articleText(topic);
        ASSERT_FALSE(text.isEmpty()) << topic.resource.toStdString() << " is missing";
        EXPECT_TRUE(text.startsWith("# " + topic.title + "\n")) << "an article opens with its topic's title: " << topic.id.toStdString();
        const preview::RenderedNote rendered = preview::renderMarkdown(text, FilePath());
        EXPECT_TRUE(rendered.html.contains("<h1>" + topic.title.toHtmlEscaped() + "</h1>")) << rendered.html.toStdString();
        EXPECT_GT(rendered.html.size(), 400) << topic.id.toStdString();
        EXPECT_EQ(guide::find(topic.id), &topic);
    }
    EXPECT_EQ(guide::find("noSuchTopic"), nullptr);
}

TEST_F(GuideArticlesTest, EveryKeyAnArticleNamesRunsSomething)
{
    QSet<QString> bound = kViewKeys;
    for (const AppCommand& command : CommandCatalog::all(*window))
        for (const QKeySequence& key : QList<QKeySequence>{command.shortcut} + command.otherShortcuts + command.paneShortcuts)
            if (!key.isEmpty())
                bound.insert(keyText(key));
    int chords = 0;
    for (const GuideTopic& topic : guide::topics()) {
        for (const QString& span : codeSpans(preview::renderMarkdown(guide::articleText(topic), FilePath()).html)) {
            if (!kChord.match(span).hasMatch())
                continue; // a pattern, a path or a name
            ++chords;
            EXPECT_TRUE(bound.contains(span)) << topic.id.toStdString() << " names " << span.toStdString()
                                              << ", which no command or view answers";
        }
    }
    EXPECT_GT(chords, 50) << "the articles name their keys as code";
}

TEST_F(GuideArticlesTest, ArticlesNameOnlyThisSystemsKeysAndPlaces)
{
    for (const GuideTopic& topic : guide::topics()) {
        const QString text = guide::articleText(topic);
        for (const char* foreign : {"⌘", "⌥", "⌃", "⇧", "Finder", "macOS", "Cmd+"})
            EXPECT_FALSE(text.contains(QString::fromUtf8(foreign))) << topic.id.toStdString() << " says " << foreign;
    }
}

// A key ending in "." (Ctrl+Shift+.) never ends a sentence: its full stop would read as a second dot.
TEST_F(GuideArticlesTest, NoKeyEndingInADotEndsASentence)
{
    for (const GuideTopic& topic : guide::topics())
        EXPECT_FALSE(guide::articleText(topic).contains(QStringLiteral(".`."))) << topic.id.toStdString();
}
