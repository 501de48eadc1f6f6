// The link updater's text rules: relative Markdown links and images follow moved targets and
// moved notes, wikilinks follow renamed notes keeping alias and anchor, and URLs, code and links
// that still reach their target stay exactly as written.

#include "FileOpsFixture.h"

#include "fileops/LinkUpdater.h"

namespace orwick::test {
namespace {

FilePath at(const char* path) { return FilePath::fromNative(path); }

// The note at `note` (unmoved unless `movedTo` is given) after `moves`.
QString after(const QString& text, const QList<FileMove>& moves, const char* note = "/v/n.md", const char* movedTo = nullptr)
{
    const FilePath now = movedTo ? at(movedTo) : at(note);
    return LinkUpdater::rewrite(text, at(note), now, moves, at("/v")).value_or(text);
}

TEST(LinkRewrite, RelativePathClimbsWithDotDotSteps)
{
    EXPECT_EQ(LinkUpdater::relativePath(at("/v/a"), at("/v/a.md")), "../a.md");
    EXPECT_EQ(LinkUpdater::relativePath(at("/v/a/b"), at("/v/a.md")), "../../a.md");
    EXPECT_EQ(LinkUpdater::relativePath(at("/v"), at("/v/x/y.md")), "x/y.md");
    EXPECT_EQ(LinkUpdater::relativePath(at("/v/a"), at("/w/b.md")), "../../w/b.md");
    EXPECT_EQ(LinkUpdater::relativePath(at("/v/ab"), at("/v/a/c.md")), "../a/c.md");
}

TEST(LinkRewrite, NoteMovedOneDeeperClimbsOneMore)
{
    const QList<FileMove> moves{{at("/v/sub/n.md"), at("/v/sub/deeper/n.md")}};
    EXPECT_EQ(after("See [a](../a.md).", moves, "/v/sub/n.md", "/v/sub/deeper/n.md"), "See [a](../../a.md).");
}

TEST(LinkRewrite, UrlsAndSameNoteAnchorsAreNeverTouched)
{
    const QList<FileMove> moves{{at("/v/n.md"), at("/v/deep/n.md")}};
    const QString text = "[w](https://x.org/a.md) [m](mailto:me@x.org) [t](#top) [f](file:///v/a.md)";
    EXPECT_FALSE(LinkUpdater::rewrite(text, at("/v/n.md"), at("/v/deep/n.md"), moves, at("/v")));
}

TEST(LinkRewrite, MovedTargetKeepsBracketsAnchorAndEncoding)
{
    const QList<FileMove> moves{{at("/v/a.md"), at("/v/b c.md")}};
    EXPECT_EQ(after("[A](a.md)", moves), "[A](b%20c.md)");
    EXPECT_EQ(after("[A](<a.md>)", moves), "[A](<b c.md>)");
    EXPECT_EQ(after("[A](a.md#part)", moves), "[A](b%20c.md#part)");
    EXPECT_EQ(after("[A](./a.md \"title\")", moves), "[A](b%20c.md \"title\")");
}

TEST(LinkRewrite, PercentEncodedTargetIsDecodedAndWrittenEncoded)
{
    const QList<FileMove> moves{{at("/v/my note.md"), at("/v/other note é.md")}};
    EXPECT_EQ(after("[x](my%20note.md)", moves), "[x](other%20note%20%C3%A9.md)");
    EXPECT_EQ(after("[x](<my note.md>)", moves), "[x](<other note é.md>)");
}

TEST(LinkRewrite, ImagesFollowMovedPictures)
{
    const QList<FileMove> moves{{at("/v/img/p.png"), at("/v/pics/p.png")}};
    EXPECT_EQ(after("![p](img/p.png)", moves), "![p](pics/p.png)");
}

TEST(LinkRewrite, LinksInCodeStayAsWritten)
{
    const QList<FileMove> moves{{at("/v/a.md"), at("/v/b.md")}};
    const QString text = "[x](a.md)\n```\n[x](a.md) [[a]]\n```\nUse `[x](a.md)` or ``[[a]]``.\n~~~md\n[x](a.md)\n~~~\n[[a]]";
    const QString expected = "[x](b.md)\n```\n[x](a.md) [[a]]\n```\nUse `[x](a.md)` or ``[[a]]``.\n~~~md\n[x](a.md)\n~~~\n[[b]]";
    EXPECT_EQ(after(text, moves), expected);
}

TEST(LinkRewrite, WikilinkKeepsAliasAndAnchor)
{
    const QList<FileMove> moves{{at("/v/Note.md"), at("/v/New Note.md")}};
    EXPECT_EQ(after("[[Note|my alias]] and [[Note#Heading]] and [[note]] and [[Note.md]] and [[Notes]]", moves),
              "[[New Note|my alias]] and [[New Note#Heading]] and [[New Note]] and [[New Note.md]] and [[Notes]]");
}

TEST(LinkRewrite, WikilinkByPathFollowsAFolderRename)
{
    const QList<FileMove> moves{{at("/v/sub"), at("/v/renamed")}};
    EXPECT_EQ(after("[[sub/Note|n]] [[Note]]", moves), "[[renamed/Note|n]] [[Note]]");
}

TEST(LinkRewrite, WikilinkUnchangedWhenOnlyTheFolderChanges)
{
    const QList<FileMove> moves{{at("/v/Note.md"), at("/v/deep/Note.md")}};
    EXPECT_FALSE(LinkUpdater::rewrite("[[Note]]", at("/v/n.md"), at("/v/n.md"), moves, at("/v")));
}

TEST(LinkRewrite, LinksInsideAMovedFolderToEachOtherStayUntouched)
{
    const QList<FileMove> moves{{at("/v/f"), at("/v/x/y/f")}};
    const QString text = "[s](sibling.md) [d](./d/e.md) [out](../a.md) [up](<../b c.md>)";
    EXPECT_EQ(after(text, moves, "/v/f/n.md", "/v/x/y/f/n.md"),
              "[s](sibling.md) [d](./d/e.md) [out](../../../a.md) [up](<../../../b c.md>)");
}

TEST(LinkRewrite, UnrelatedNotesAreLeftAlone)
{
    const QList<FileMove> moves{{at("/v/a.md"), at("/v/b.md")}};
    EXPECT_FALSE(LinkUpdater::rewrite("[c](c.md) [[c]] plain", at("/v/n.md"), at("/v/n.md"), moves, at("/v")));
}

TEST(LinkRewrite, AbsoluteTargetsStayAbsolute)
{
    const QList<FileMove> moves{{at("/v/a.md"), at("/v/z/a.md")}};
    EXPECT_EQ(after("[a](/v/a.md)", moves), "[a](/v/z/a.md)");
}

TEST(LinkRewrite, BytesKeepByteOrderMarkAndLineEnds)
{
    const QList<FileMove> moves{{at("/v/a.md"), at("/v/b.md")}};
    const auto out = LinkUpdater::rewriteBytes("\xEF\xBB\xBF[a](a.md)\r\nx\r\n", at("/v/n.md"), at("/v/n.md"), moves);
    ASSERT_TRUE(out);
    EXPECT_EQ(*out, QByteArray("\xEF\xBB\xBF[a](b.md)\r\nx\r\n"));
    EXPECT_FALSE(LinkUpdater::rewriteBytes("[a](a.md)\xFF", at("/v/n.md"), at("/v/n.md"), moves));
}

} // namespace
} // namespace orwick::test
