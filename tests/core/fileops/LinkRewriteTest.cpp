// The link updater's text rules: relative Markdown links and images follow moved targets and
// moved notes, wikilinks follow renamed notes keeping alias and anchor, and URLs, code and links
// that still reach their target stay exactly as written.

#include "FileOpsFixture.h"

#include "fileops/LinkUpdater.h"

#include <optional>

namespace orwick::test {
namespace {

FilePath at(const char* path) { return FilePath::fromNative(path); }

// `moves` after enough moves elsewhere (pictures and notes of another folder) that the rewrite
// looks the moves up by path instead of one after another: it must give what the few give.
QList<FileMove> amongMany(const QList<FileMove>& moves)
{
    QList<FileMove> many;
    for (int i = 0; i < 100; ++i) {
        const QByteArray n = QByteArray::number(i);
        many.append({FilePath::fromNative("/elsewhere/IMG_" + n + ".jpg"), FilePath::fromNative("/elsewhere/photo-" + n + ".jpg")});
        many.append({FilePath::fromNative("/elsewhere/note " + n + ".md"), FilePath::fromNative("/elsewhere/renamed " + n + ".md")});
    }
    return many + moves;
}

TEST(LinkRewrite, RelativePathClimbsWithDotDotSteps)
{
    EXPECT_EQ(LinkUpdater::relativePath(at("/v/a"), at("/v/a.md")), "../a.md");
    EXPECT_EQ(LinkUpdater::relativePath(at("/v/a/b"), at("/v/a.md")), "../../a.md");
    EXPECT_EQ(LinkUpdater::relativePath(at("/v"), at("/v/x/y.md")), "x/y.md");
    EXPECT_EQ(LinkUpdater::relativePath(at("/v/a"), at("/w/b.md")), "../../w/b.md");
    EXPECT_EQ(LinkUpdater::relativePath(at("/v/ab"), at("/v/a/c.md")), "../a/c.md");
}

// The text of the note at `note` (moved to `movedTo`) after one move in the vault /v; no
// `expected` means the text is left exactly as it was (rewrite gives nothing).
TEST(LinkRewrite, TextAfterOneMove)
{
    struct Row {
        const char *from, *to;
        QString text;
        std::optional<QString> expected;
        const char* note = "/v/n.md";
        const char* movedTo = "/v/n.md";
    };
    const Row rows[] = {
        // A note moved one deeper climbs one more.
        {"/v/sub/n.md", "/v/sub/deeper/n.md", "See [a](../a.md).", "See [a](../../a.md).", "/v/sub/n.md", "/v/sub/deeper/n.md"},
        // URLs and the same note's anchors are never touched.
        {"/v/n.md", "/v/deep/n.md", "[w](https://x.org/a.md) [m](mailto:me@x.org) [t](#top) [f](file:///v/a.md)", std::nullopt,
         "/v/n.md", "/v/deep/n.md"},
        // A moved target keeps brackets, anchor and title, and is written encoded.
        {"/v/a.md", "/v/b c.md", "[A](a.md)", "[A](b%20c.md)"},
        {"/v/a.md", "/v/b c.md", "[A](<a.md>)", "[A](<b c.md>)"},
        {"/v/a.md", "/v/b c.md", "[A](a.md#part)", "[A](b%20c.md#part)"},
        {"/v/a.md", "/v/b c.md", "[A](./a.md \"title\")", "[A](b%20c.md \"title\")"},
        {"/v/my note.md", "/v/other note é.md", "[x](my%20note.md)", "[x](other%20note%20%C3%A9.md)"},
        {"/v/my note.md", "/v/other note é.md", "[x](<my note.md>)", "[x](<other note é.md>)"},
        {"/v/img/p.png", "/v/pics/p.png", "![p](img/p.png)", "![p](pics/p.png)"},
        {"/v/a.md", "/v/z/a.md", "[a](/v/a.md)", "[a](/v/z/a.md)"}, // absolute stays absolute
        // Links in code stay as written.
        {"/v/a.md", "/v/b.md", "[x](a.md)\n```\n[x](a.md) [[a]]\n```\nUse `[x](a.md)` or ``[[a]]``.\n~~~md\n[x](a.md)\n~~~\n[[a]]",
         "[x](b.md)\n```\n[x](a.md) [[a]]\n```\nUse `[x](a.md)` or ``[[a]]``.\n~~~md\n[x](a.md)\n~~~\n[[b]]"},
        {"/v/a.md", "/v/b.md", "[c](c.md) [[c]] plain", std::nullopt}, // unrelated
        // Wikilinks keep alias and anchor, follow a folder rename, and ignore a move to another folder.
        {"/v/Note.md", "/v/New Note.md", "[[Note|my alias]] and [[Note#Heading]] and [[note]] and [[Note.md]] and [[Notes]]",
         "[[New Note|my alias]] and [[New Note#Heading]] and [[New Note]] and [[New Note.md]] and [[Notes]]"},
        {"/v/sub", "/v/renamed", "[[sub/Note|n]] [[Note]]", "[[renamed/Note|n]] [[Note]]"},
        {"/v/Note.md", "/v/deep/Note.md", "[[Note]]", std::nullopt},
        // Links inside a moved folder to each other stay; those leaving it climb.
        {"/v/f", "/v/x/y/f", "[s](sibling.md) [d](./d/e.md) [out](../a.md) [up](<../b c.md>)",
         "[s](sibling.md) [d](./d/e.md) [out](../../../a.md) [up](<../../../b c.md>)", "/v/f/n.md", "/v/x/y/f/n.md"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text.toStdString());
        const QList<FileMove> moves{{at(row.from), at(row.to)}};
        EXPECT_EQ(LinkUpdater::rewrite(row.text, at(row.note), at(row.movedTo), moves, at("/v")), row.expected);
        EXPECT_EQ(LinkUpdater::rewrite(row.text, at(row.note), at(row.movedTo), amongMany(moves), at("/v")), row.expected)
            << "among many moves";
    }
}

TEST(LinkRewrite, TheFirstMoveThatConcernsAPathWins)
{
    const QString text = QStringLiteral("[a](f/a.md) [[Note]] [n](Note.md)");
    const QList<FileMove> folderFirst{{at("/v/f"), at("/v/g")}, {at("/v/f/a.md"), at("/v/z.md")},
                                      {at("/v/Note.md"), at("/v/First.md")}, {at("/v/Note.md"), at("/v/Second.md")}};
    const QList<FileMove> itemFirst{{at("/v/f/a.md"), at("/v/z.md")}, {at("/v/f"), at("/v/g")},
                                    {at("/v/Note.md"), at("/v/Second.md")}, {at("/v/Note.md"), at("/v/First.md")}};
    for (const QList<FileMove>& moves : {folderFirst, amongMany(folderFirst)})
        EXPECT_EQ(LinkUpdater::rewrite(text, at("/v/n.md"), at("/v/n.md"), moves, at("/v")),
                  QStringLiteral("[a](g/a.md) [[First]] [n](First.md)"));
    for (const QList<FileMove>& moves : {itemFirst, amongMany(itemFirst)})
        EXPECT_EQ(LinkUpdater::rewrite(text, at("/v/n.md"), at("/v/n.md"), moves, at("/v")),
                  QStringLiteral("[a](z.md) [[Second]] [n](Second.md)"));
    // Where a note was and is: the first move to it.
    EXPECT_EQ(LinkUpdater::unmapped(at("/v/g/a.md"), amongMany(folderFirst)), at("/v/f/a.md"));
    EXPECT_EQ(LinkUpdater::mapped(at("/v/f/b/c.md"), amongMany(folderFirst)), at("/v/g/b/c.md"));
    EXPECT_EQ(LinkUpdater::mapped(at("/v/fx/c.md"), amongMany(folderFirst)), at("/v/fx/c.md"));
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
