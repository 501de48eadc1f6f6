// Notes rendered for the preview: GitHub's extensions, task boxes as links to their lines,
// pictures decoded off the GUI thread, raw HTML left out.

#include "preview/MarkdownRender.h"
#include "preview/PreviewLoader.h"
#include "support/TempHome.h"

#include <QImage>
#include <gtest/gtest.h>

using namespace orwick;
using preview::renderMarkdown;

TEST(MarkdownPreview, RendersTablesStrikethroughAutolinksAndFencedCode)
{
    const QString html = renderMarkdown(QStringLiteral("| a | b |\n|---|---|\n| 1 | 2 |\n\n~~gone~~ and https://example.org\n\n"
                                                       "```python\nx = 1 < 2\n```\n"),
                                        FilePath::fromText("/notes"))
                             .html;
    EXPECT_TRUE(html.contains("<table>")) << html.toStdString();
    EXPECT_TRUE(html.contains("<td>2</td>"));
    EXPECT_TRUE(html.contains("<s>gone</s>")) << "Qt's rich text draws <s>";
    EXPECT_TRUE(html.contains("<a href=\"https://example.org\">https://example.org</a>"));
    EXPECT_TRUE(html.contains("<pre><code class=\"language-python\">x = <span class=\"tok-number\">1</span> &lt; <span class=\"tok-number\">2</span>\n</code></pre>"))
        << "fenced code in a known language is coloured";
    const QString unknown = renderMarkdown(QStringLiteral("```nosuchlanguage\na < b\n```\n"), FilePath::fromText("/n")).html;
    EXPECT_TRUE(unknown.contains("<pre><code class=\"language-nosuchlanguage\">a &lt; b\n</code></pre>")) << unknown.toStdString();
}

TEST(MarkdownPreview, TaskBoxesAreLinksToTheirLinesCountingFrontMatter)
{
    const auto note = renderMarkdown(QStringLiteral("---\nstatus: open\n---\n# Plan\n\n- [ ] write\n- [x] read\n  * [X] nested\n"),
                                     FilePath::fromText("/notes"));
    EXPECT_EQ(note.taskLines, (QList<int>{6, 7, 8}));
    EXPECT_TRUE(note.html.contains(QStringLiteral("<a href=\"task:6\" style=\"text-decoration:none\">☐</a> write")))
        << note.html.toStdString();
    EXPECT_TRUE(note.html.contains(QStringLiteral("<a href=\"task:7\" style=\"text-decoration:none\">☑</a> read")));
    EXPECT_TRUE(note.html.contains(QStringLiteral("\"task:8\"")));
    EXPECT_FALSE(note.html.contains("status: open")) << "front matter isn't rendered";
    EXPECT_FALSE(note.html.contains("<input"));
    EXPECT_EQ(preview::taskLineOfLink("task:7"), 7);
    EXPECT_EQ(preview::taskLineOfLink("task:x"), 0);
    EXPECT_EQ(preview::taskLineOfLink("https://example.org"), 0);
}

TEST(MarkdownPreview, RawHtmlAndScriptLinksAreLeftOut)
{
    const QString html = renderMarkdown(QStringLiteral("<script>alert(1)</script>\n\n[x](javascript:alert(1))\n"), FilePath::fromText("/n")).html;
    EXPECT_FALSE(html.contains("<script>")) << html.toStdString();
    EXPECT_FALSE(html.contains("javascript:"));
}

TEST(MarkdownPreview, RelativePicturesAreDecodedForTheNote)
{
    test::TempTree tree;
    QImage picture(2000, 1000, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(tree.file("img/red pic.png").text()));
    const FilePath note = tree.file("note.md", "# Pictures\n\n![red](img/red%20pic.png)\n\n![gone](missing.png)\n\n![web](https://example.org/x.png)\n");
    CancelFlag cancel;
    const PreviewContent content = loadPreview({note, {1200, 1200}, Qt::black, {}, 600}, cancel);
    ASSERT_EQ(content.kind, PreviewContent::Kind::markdown);
    EXPECT_TRUE(content.html.contains("src=\"image:0\"")) << content.html.toStdString();
    EXPECT_TRUE(content.html.contains("src=\"image:2\""));
    ASSERT_TRUE(content.images.contains("image:0"));
    EXPECT_EQ(content.images.value("image:0").size(), QSize(600, 300)) << "scaled to the text column";
    EXPECT_FALSE(content.images.contains("image:1")) << "a missing picture";
    EXPECT_FALSE(content.images.contains("image:2")) << "remote pictures are not fetched";
    EXPECT_TRUE(content.text.startsWith("# Pictures"));
}
