// The editor's colouring of a note's source: what each part of a line is, what the lines before
// leave for the next (front matter only at the very start, fences until their closing line),
// and that every span stays inside its line.

#include "editing/MarkdownSyntax.h"

#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::MarkdownSyntax;

namespace {

// The text each span of `kind` covers, in order.
QStringList covered(QStringView text, Kind kind)
{
    QStringList out;
    for (const Span& span : colourText(text))
        if (span.kind == kind)
            out.append(text.mid(span.start, span.length).toString());
    return out;
}

QStringList coveredInLine(QStringView line, Kind kind, const LineState& before = {LineState::Block::text})
{
    QStringList out;
    for (const Span& span : colourLine(line, before).spans)
        if (span.kind == kind)
            out.append(line.mid(span.start, span.length).toString());
    return out;
}

} // namespace

TEST(MarkdownSyntax, FrontMatterOnlyAtTheStart)
{
    const QString text = QStringLiteral("---\ntitle: Plan\ntags:\n  - work\n---\n# Plan\n---\n");
    EXPECT_EQ(covered(text, Kind::frontMatterKey), QStringList({"title", "tags"}));
    EXPECT_EQ(covered(text, Kind::frontMatter).size(), 5); // both delimiters and the three lines between
    EXPECT_EQ(covered(text, Kind::heading), QStringList{"# Plan"});
    // A later "---" is a rule, not front matter.
    EXPECT_EQ(covered(text, Kind::rule), QStringList{"---"});
    // Without "---" on the first line there is no front matter.
    EXPECT_TRUE(covered(QStringLiteral("\n---\ntitle: x\n---\n"), Kind::frontMatterKey).isEmpty());
}

TEST(MarkdownSyntax, HeadingsNeedASpaceAfterTheirMarks)
{
    EXPECT_EQ(coveredInLine(u"## Two *words*", Kind::heading), QStringList{"## Two *words*"});
    EXPECT_EQ(coveredInLine(u"## Two *words*", Kind::headingMarker), QStringList{"##"});
    EXPECT_EQ(coveredInLine(u"## Two *words*", Kind::emphasis), QStringList{"*words*"});
    EXPECT_TRUE(coveredInLine(u"#hashtag", Kind::heading).isEmpty());
    EXPECT_EQ(coveredInLine(u"#hashtag and #2024", Kind::tag), QStringList{"#hashtag"});
    EXPECT_TRUE(coveredInLine(u"####### seven", Kind::heading).isEmpty());
}

TEST(MarkdownSyntax, EmphasisStrongAndStrikethrough)
{
    EXPECT_EQ(coveredInLine(u"a **bold** and *slanted* and ~~gone~~", Kind::strong), QStringList{"**bold**"});
    EXPECT_EQ(coveredInLine(u"a **bold** and *slanted* and ~~gone~~", Kind::emphasis), QStringList{"*slanted*"});
    EXPECT_EQ(coveredInLine(u"a **bold** and *slanted* and ~~gone~~", Kind::strikethrough), QStringList{"~~gone~~"});
    // Not emphasis: a lone star, a star before a space, underscores inside a word.
    EXPECT_TRUE(coveredInLine(u"2 * 3 * 4", Kind::emphasis).isEmpty());
    EXPECT_TRUE(coveredInLine(u"snake_case_name", Kind::emphasis).isEmpty());
    EXPECT_EQ(coveredInLine(u"an _aside_ here", Kind::emphasis), QStringList{"_aside_"});
    // Code spans hide what looks like emphasis.
    EXPECT_TRUE(coveredInLine(u"`*not*`", Kind::emphasis).isEmpty());
    EXPECT_EQ(coveredInLine(u"`*not*` and ``a ` b``", Kind::inlineCode), QStringList({"`*not*`", "``a ` b``"}));
}

TEST(MarkdownSyntax, LinksWikilinksAndAddresses)
{
    const QString line = QStringLiteral("See [the plan](plan.md), [[Daily Note]], ![pic](a.png) and https://example.org/x.");
    EXPECT_EQ(coveredInLine(line, Kind::link), QStringList({"[the plan]", "![pic]", "https://example.org/x"}));
    EXPECT_EQ(coveredInLine(line, Kind::linkTarget), QStringList({"(plan.md)", "(a.png)"}));
    EXPECT_EQ(coveredInLine(line, Kind::wikilink), QStringList{"[[Daily Note]]"});
    EXPECT_TRUE(coveredInLine(u"[just brackets] here", Kind::link).isEmpty());
    // Emphasis inside a link's text is coloured inside it, after it.
    const auto spans = colourLine(u"[*a*](b)", {LineState::Block::text}).spans;
    ASSERT_EQ(spans.size(), 3u);
    EXPECT_EQ(spans[1].kind, Kind::emphasis);
    EXPECT_EQ(spans[2].kind, Kind::linkTarget);
}

TEST(MarkdownSyntax, ListMarkersAndTaskBoxes)
{
    EXPECT_EQ(coveredInLine(u"- [ ] buy milk", Kind::listMarker), QStringList{"-"});
    EXPECT_EQ(coveredInLine(u"- [ ] buy milk", Kind::taskBox), QStringList{"[ ]"});
    EXPECT_TRUE(coveredInLine(u"- [ ] buy milk", Kind::doneTask).isEmpty());
    EXPECT_EQ(coveredInLine(u"  12. [x] done thing", Kind::listMarker), QStringList{"12."});
    EXPECT_EQ(coveredInLine(u"  12. [x] done thing", Kind::doneTask), QStringList{" done thing"});
    EXPECT_TRUE(coveredInLine(u"-not a list", Kind::listMarker).isEmpty());
    EXPECT_EQ(coveredInLine(u"> - quoted item", Kind::quote), QStringList{"> - quoted item"});
    EXPECT_EQ(coveredInLine(u"> - quoted item", Kind::listMarker), QStringList{"-"});
}

TEST(MarkdownSyntax, FencesHoldCodeUntilTheirClosingLine)
{
    const QString text = QStringLiteral("```python\n# not a heading\ndef f(): return 1\n``\n```\n# Heading\n");
    EXPECT_EQ(covered(text, Kind::fence), QStringList({"```python", "```"}));
    EXPECT_EQ(covered(text, Kind::fencedCode), QStringList({"# not a heading", "def f(): return 1", "``"}));
    EXPECT_EQ(covered(text, Kind::heading), QStringList{"# Heading"});
    // The fence's language colours its code with the highlighter's kinds.
    bool keyword = false, comment = false;
    for (const Span& span : colourText(text)) {
        keyword = keyword || (span.kind == Kind::codeToken && span.code == SyntaxHighlighter::Kind::keyword);
        comment = comment || (span.kind == Kind::codeToken && span.code == SyntaxHighlighter::Kind::comment);
    }
    EXPECT_TRUE(keyword);
    EXPECT_TRUE(comment);
    // A "~~~" fence is closed only by "~~~" at least as long.
    EXPECT_EQ(covered(QStringLiteral("~~~~\n```\n~~~\n~~~~\nafter"), Kind::fencedCode), QStringList({"```", "~~~"}));
}

TEST(MarkdownSyntax, StateSurvivesTheEditorsBlockState)
{
    const LineState states[] = {
        {},
        {LineState::Block::text},
        {LineState::Block::frontMatter},
        {LineState::Block::fence, u'`', 3, SyntaxHighlighter::languageNamed(u"js")},
        {LineState::Block::fence, u'~', 5, nullptr},
    };
    for (const LineState& state : states)
        EXPECT_EQ(LineState::fromInt(state.toInt()), state) << state.toInt();
    EXPECT_EQ(LineState::fromInt(-1), LineState{});
}

TEST(MarkdownSyntax, SpansStayInsideTheirLineAndAscend)
{
    const QString lines[] = {QStringLiteral("**"), QStringLiteral("[["), QStringLiteral("[a](b"), QStringLiteral("`"), QStringLiteral("- [x]"), QStringLiteral("~~a~~~"), QStringLiteral("<https://x"), QStringLiteral("# "),
                             QStringLiteral("***bold slanted***"), QStringLiteral("\\*escaped*"), QStringLiteral("1)"), QStringLiteral("#"), QStringLiteral("* * *"), QStringLiteral("[**a** `b`](c) _d_")};
    // Empty lines inside front matter and fences make no empty spans.
    for (const Span& span : colourText(QStringLiteral("---\n\ntitle: x\n---\n```\n\n```\n")))
        EXPECT_GT(span.length, 0);
    for (const QString& line : lines) {
        int last = 0;
        for (const Span& span : colourLine(line, {LineState::Block::text}).spans) {
            EXPECT_GE(span.start, last) << line.toStdString();
            EXPECT_GT(span.length, 0) << line.toStdString();
            EXPECT_LE(span.end(), line.size()) << line.toStdString();
            last = span.start;
        }
    }
    EXPECT_TRUE(coveredInLine(u"\\*escaped*", Kind::emphasis).isEmpty());
    EXPECT_EQ(coveredInLine(u"***both***", Kind::strong), QStringList{"***both***"});
    EXPECT_EQ(coveredInLine(u"***both***", Kind::emphasis), QStringList{"***both***"});
}

TEST(MarkdownSyntax, LooksUseTheHighlightersColours)
{
    EXPECT_EQ(lookOf({0, 1, Kind::heading}).colour, SyntaxHighlighter::Kind::keyword);
    EXPECT_TRUE(lookOf({0, 1, Kind::heading}).bold);
    EXPECT_TRUE(lookOf({0, 1, Kind::emphasis}).italic);
    EXPECT_FALSE(lookOf({0, 1, Kind::emphasis}).colour.has_value());
    EXPECT_EQ(lookOf({0, 1, Kind::codeToken, SyntaxHighlighter::Kind::string}).colour, SyntaxHighlighter::Kind::string);
    EXPECT_TRUE(lookOf({0, 1, Kind::doneTask}).strikeOut);
}
