// The links a note makes, as the backlinks read them: Markdown links and images with their
// decoded paths, wikilinks without alias or heading, each with its line and the line's text;
// code, URLs and anchors are not links to files; a note that isn't UTF-8 gives none. And the
// note a wikilink name reaches, the way Obsidian finds it.

#include "notes/NoteLinks.h"
#include "notes/NoteNames.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

using Kind = NoteLink::Kind;

QList<QByteArray> targets(const QList<NoteLink>& links)
{
    QList<QByteArray> out;
    for (const NoteLink& link : links)
        out.append(link.target);
    return out;
}

TEST(NoteLinks, FindsMarkdownLinksAndWikilinksWithTheirLines)
{
    const QString text = QStringLiteral("---\nrelated: \"[[Plan]]\"\n---\n"
                                        "# Title\n"
                                        "See [the plan](plans/The%20Plan.md#goals) and ![chart](<pics/a chart.png>).\n"
                                        "   Also [[Plan#Heading|our plan]] and ![[Embedded]].\n"
                                        "Web [site](https://example.com/a.md), [top](#title), [mail](mailto:a@b.c).\n"
                                        "Absolute [x](/srv/notes/x.md?raw=1)\n");
    const QList<NoteLink> links = notelinks::linksIn(text);
    EXPECT_EQ(targets(links), (QList<QByteArray>{"Plan", "plans/The Plan.md", "pics/a chart.png", "Plan", "Embedded", "/srv/notes/x.md"}));
    ASSERT_EQ(links.size(), 6);
    EXPECT_EQ(links[0].kind, Kind::wikilink);
    EXPECT_EQ(links[0].line, 2); // front matter lines count
    EXPECT_EQ(links[1].kind, Kind::markdown);
    EXPECT_EQ(links[1].line, 5);
    EXPECT_EQ(links[1].lineText, "See [the plan](plans/The%20Plan.md#goals) and ![chart](<pics/a chart.png>).");
    EXPECT_EQ(links[3].line, 6);
    EXPECT_EQ(links[3].lineText, "Also [[Plan#Heading|our plan]] and ![[Embedded]]."); // blanks at both ends removed
    EXPECT_EQ(links[5].line, 8);
    // Wikilink names lose their alias, heading and a table's escape; a heading alone links nowhere.
    EXPECT_EQ(targets(notelinks::linksIn(QStringLiteral("| a | [[Plan\\|alias]] |\n[[ folder/Note.md #h ]]\n[[#Only a heading]]\n"))),
              (QList<QByteArray>{"Plan", "folder/Note.md"}));
}

TEST(NoteLinks, LinksInCodeDontCount)
{
    const QString text = QStringLiteral("```md\n[[Fenced]] [a](fenced.md)\n```\n"
                                        "~~~~\n[[Tilde]]\n~~~~\n"
                                        "Inline `[[Code]]` and ``[b](code.md)`` but [[Real]].\n"
                                        "```\n[[Unclosed fence runs to the end]]\n");
    const QList<NoteLink> links = notelinks::linksIn(text);
    EXPECT_EQ(targets(links), QList<QByteArray>{"Real"});
    ASSERT_EQ(links.size(), 1);
    EXPECT_EQ(links[0].line, 7);
}

TEST(NoteLinks, BytesThatArentUtf8GiveNothing)
{
    EXPECT_FALSE(notelinks::linksInBytes(QByteArray("[[Plan]] \xff\xfe")).has_value());
    const auto withMark = notelinks::linksInBytes(QByteArray("\xEF\xBB\xBF[[Plan]]\n"));
    ASSERT_TRUE(withMark.has_value());
    EXPECT_EQ(targets(*withMark), QList<QByteArray>{"Plan"});
    const auto none = notelinks::linksInBytes(QByteArray("no links here"));
    ASSERT_TRUE(none.has_value());
    EXPECT_TRUE(none->isEmpty());
    const QString longLine = QStringLiteral("[[Plan]] ") + QString(500, u'x');
    const QList<NoteLink> cut = notelinks::linksIn(longLine);
    ASSERT_EQ(cut.size(), 1);
    EXPECT_EQ(cut[0].lineText.size(), notelinks::kLineTextLength + 1);
    EXPECT_TRUE(cut[0].lineText.endsWith(QChar(0x2026)));
}

TEST(NoteLinks, MarkdownTargetsResolveFromTheNotesFolder)
{
    const FilePath folder = FilePath::fromNative("/v/notes");
    EXPECT_EQ(notelinks::markdownTargetPath("../other/b.md", folder), FilePath::fromNative("/v/other/b.md"));
    EXPECT_EQ(notelinks::markdownTargetPath("./b.md", folder), FilePath::fromNative("/v/notes/b.md"));
    EXPECT_EQ(notelinks::markdownTargetPath("/abs/c.md", folder), FilePath::fromNative("/abs/c.md"));
}

TEST(NoteNames, BareNamesPreferTheLinkingFolderThenTheShallowestNote)
{
    NoteNames names(FilePath::fromNative("/v"));
    const FilePath top = FilePath::fromNative("/v/Plan.md");
    const FilePath deep = FilePath::fromNative("/v/a/b/plan.md");
    const FilePath side = FilePath::fromNative("/v/c/PLAN.markdown");
    names.add(deep);
    names.add(side);
    names.add(top);
    EXPECT_EQ(names.size(), 3);
    EXPECT_EQ(names.resolve("plan", FilePath::fromNative("/v/x/note.md")), top);
    EXPECT_EQ(names.resolve("Plan.md", FilePath::fromNative("/v/a/b/note.md")), deep);
    EXPECT_EQ(names.resolve("PLAN", FilePath::fromNative("/v/c/note.md")), side);
    EXPECT_FALSE(names.resolve("Other", top).has_value());
    names.remove(top);
    EXPECT_EQ(names.resolve("plan", FilePath::fromNative("/v/x/note.md")), side); // /v/c is shallower than /v/a/b
    names.remove(side);
    names.remove(side); // twice is harmless
    EXPECT_EQ(names.size(), 1);
    EXPECT_EQ(names.resolve("plan", FilePath::fromNative("/v/x/note.md")), deep);
}

TEST(NoteNames, NamesWithFoldersReachThatPath)
{
    NoteNames names(FilePath::fromNative("/v"));
    const FilePath work = FilePath::fromNative("/v/work/Plan.md");
    const FilePath home = FilePath::fromNative("/v/home/Plan.md");
    const FilePath nested = FilePath::fromNative("/v/home/sub/work/Plan.md");
    names.add(work);
    names.add(home);
    names.add(nested);
    const FilePath from = FilePath::fromNative("/v/home/note.md");
    EXPECT_EQ(names.resolve("work/Plan", from), work);         // from the vault's top first
    EXPECT_EQ(names.resolve("/home/plan.md", from), home);
    EXPECT_EQ(names.resolve("sub/work/Plan", from), nested);   // from the linking note's folder
    EXPECT_EQ(names.resolve("home/sub/work/Plan", from), nested);
    EXPECT_EQ(names.resolve("b/work/Plan", from), std::nullopt); // no such path
    EXPECT_EQ(names.resolve("ub/work/Plan", from), std::nullopt); // a path ends at a folder's edge
}

} // namespace
