// Tables, fonts, folders and the kinds shown by their details only.

#include "preview/DelimitedTable.h"
#include "preview/FolderSummary.h"
#include "preview/PreviewLoader.h"
#include "support/TempHome.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace orwick;
using Kind = PreviewContent::Kind;

namespace {

PreviewContent load(const FilePath& path, PreviewLimits limits = {})
{
    CancelFlag cancel;
    return loadPreview({path, {600, 600}, Qt::black, limits}, cancel);
}

} // namespace

TEST(TablePreview, QuotedCellsAndTheSeparatorOfTsvAndOfSemicolonsWhenTheyDominate)
{
    test::TempTree tree;
    const PreviewContent content = load(tree.file("people.csv", "name,note\r\n\"Doe, Jane\",\"said \"\"hi\"\"\nthen left\"\r\nBob,\n"));
    ASSERT_EQ(content.kind, Kind::table);
    EXPECT_EQ(content.header, (QStringList{"name", "note"}));
    ASSERT_EQ(content.rows.size(), 2);
    EXPECT_EQ(content.rows[0], (QStringList{"Doe, Jane", "said \"hi\"\nthen left"}));
    EXPECT_EQ(content.rows[1], (QStringList{"Bob", ""}));
    // Tabs for .tsv, and semicolons when they dominate.
    EXPECT_EQ(load(tree.file("a.tsv", "a\tb,c\n1\t2\n")).header, (QStringList{"a", "b,c"}));
    EXPECT_EQ(load(tree.file("b.csv", "a;b;c,d\n1;2;3\n")).header, (QStringList{"a", "b", "c,d"}));
}

TEST(TablePreview, StopsAtTheRowLimitAndSaysSo)
{
    test::TempTree tree;
    QByteArray csv("n\n");
    for (int i = 0; i < 50; ++i)
        csv += QByteArray::number(i) + '\n';
    PreviewLimits limits;
    limits.tableRows = 20;
    const PreviewContent content = load(tree.file("n.csv", csv), limits);
    EXPECT_EQ(content.rows.size(), 20);
    EXPECT_EQ(content.note, "Showing the first 20 rows");
    EXPECT_TRUE(preview::parseDelimited(u"a,b,c", u',', 10, 2).isPartial) << "columns beyond the limit";
}

TEST(FontPreview, DrawsASampleAndNamesTheFamily)
{
    const FilePath font = FilePath::fromText("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
    if (!test::exists(font))
        GTEST_SKIP() << "needs the DejaVu fonts (fonts-dejavu-core) for a real font file";
    const PreviewContent content = load(font);
    ASSERT_EQ(content.kind, Kind::font) << content.message.toStdString();
    EXPECT_EQ(content.details.first(), "DejaVu Sans Book");
    EXPECT_EQ(content.image.width(), 600);
    // Something was drawn: some pixels are not transparent.
    int inked = 0;
    for (int y = 0; y < content.image.height(); y += 2)
        for (int x = 0; x < content.image.width(); x += 2)
            inked += qAlpha(content.image.pixel(x, y)) > 0;
    EXPECT_GT(inked, 100);
}

TEST(FontPreview, AFileThatIsntAFontGivesAMessage)
{
    test::TempTree tree;
    const PreviewContent content = load(tree.file("broken.ttf", QByteArray(5000, 'x')));
    EXPECT_EQ(content.kind, Kind::message);
    EXPECT_EQ(content.message, "“broken.ttf” isn’t a font Orwick can read.");
}

TEST(FolderPreview, CountsItemsByKindAndMeasuresTheTotalLaterAndSaysWhenEmptyOrUnreadable)
{
    test::TempTree tree;
    tree.file("box/a.png", "x");
    tree.file("box/b.png", "x");
    tree.file("box/c.txt", "x");
    tree.file("box/.hidden", "x");
    tree.file("box/sub/deep.bin", QByteArray(10000, 'd'));
    const PreviewContent content = load(tree.path("box"));
    ASSERT_EQ(content.kind, Kind::folder);
    EXPECT_EQ(content.title, "box");
    ASSERT_GE(content.details.size(), 3);
    EXPECT_EQ(content.details[0], "5 items");
    EXPECT_TRUE(content.details[1].contains("2 images")) << content.details[1].toStdString();
    EXPECT_TRUE(content.details[1].contains("1 folder")) << content.details[1].toStdString();
    EXPECT_EQ(content.details[2], "1 hidden");
    EXPECT_TRUE(content.measuresSize);
    CancelFlag cancel;
    const preview::FolderSize size = preview::measureFolder(tree.path("box"), PreviewBudget(cancel, 5000));
    EXPECT_EQ(size.files, 5);
    EXPECT_GE(size.bytes, 10000);
    EXPECT_FALSE(size.isPartial);
    cancel.cancel();
    EXPECT_TRUE(preview::measureFolder(tree.path("box"), PreviewBudget(cancel, 5000)).isPartial);
    // Empty and unreadable folders.
    tree.folder("empty");
    EXPECT_EQ(load(tree.path("empty")).details, QStringList{"Empty folder"});
    EXPECT_FALSE(load(tree.path("empty")).measuresSize);
    EXPECT_EQ(preview::describeCounts(preview::countFolder(tree.path("nowhere"), CancelFlag())), QStringList{"Can’t read this folder"});
}

TEST(DetailsPreview, AudioShowsItsKindAndSizeAndAPdfGetsItsPageFromTheWindow)
{
    test::TempTree tree;
    const PreviewContent content = load(tree.file("song.mp3", QByteArray(2048, '\0')));
    EXPECT_EQ(content.kind, Kind::details);
    EXPECT_TRUE(content.details.contains("2 kB")) << content.details.join('|').toStdString();
    // A PDF gets its details here and its page from the window.
    const PreviewContent pdf = load(tree.file("paper.pdf", "%PDF-1.4\n"));
    EXPECT_EQ(pdf.kind, Kind::pdf);
    EXPECT_TRUE(pdf.image.isNull());
}
