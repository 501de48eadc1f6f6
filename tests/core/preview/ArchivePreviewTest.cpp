// Archives are listed from their headers, never extracted: names that would escape the folder,
// damaged and truncated archives, limits.

#include "preview/ArchiveListing.h"
#include "preview/PreviewLoader.h"
#include "support/TempHome.h"

#include <QDir>
#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>

using namespace orwick;
using Kind = PreviewContent::Kind;

namespace {

// Writes an archive with libarchive: `format` "zip" or "gnutar", gzip-compressed when asked.
void writeArchive(const FilePath& path, const char* format, bool gzip, const QList<std::pair<QByteArray, QByteArray>>& files)
{
    struct archive* a = archive_write_new();
    archive_write_set_format_by_name(a, format);
    if (gzip)
        archive_write_add_filter_gzip(a);
    ASSERT_EQ(archive_write_open_filename(a, path.c_str()), ARCHIVE_OK);
    for (const auto& [name, data] : files) {
        struct archive_entry* e = archive_entry_new();
        archive_entry_set_pathname(e, name.constData());
        archive_entry_set_filetype(e, name.endsWith('/') ? AE_IFDIR : AE_IFREG);
        archive_entry_set_perm(e, 0644);
        archive_entry_set_size(e, data.size());
        archive_write_header(a, e);
        archive_write_data(a, data.constData(), size_t(data.size()));
        archive_entry_free(e);
    }
    archive_write_close(a);
    archive_write_free(a);
}

PreviewContent load(const FilePath& path, PreviewLimits limits = {})
{
    CancelFlag cancel;
    return loadPreview({path, {800, 800}, Qt::black, limits}, cancel);
}

} // namespace

TEST(ArchivePreview, ListsEntriesWithSizesWithoutExtracting)
{
    test::TempTree tree;
    const FilePath zip = tree.path("site.zip");
    writeArchive(zip, "zip", false, {{"docs/", ""}, {"docs/readme.txt", QByteArray(1500, 'r')}, {"index.html", "<p>hi</p>"}});
    const auto before = QDir(tree.root().text()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    const PreviewContent content = load(zip);
    ASSERT_EQ(content.kind, Kind::archive) << content.message.toStdString();
    EXPECT_EQ(content.header, (QStringList{"Name", "Size"}));
    ASSERT_EQ(content.rows.size(), 3);
    EXPECT_EQ(content.rows[0], (QStringList{"docs/", "—"}));
    EXPECT_EQ(content.rows[1], (QStringList{"docs/readme.txt", "1.5 kB"}));
    EXPECT_TRUE(content.details.contains("3 entries, 1.5 kB unpacked")) << content.details.join('|').toStdString();
    EXPECT_EQ(QDir(tree.root().text()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before) << "nothing extracted";
}

TEST(ArchivePreview, NamesThatClimbOutAreListedAndFlaggedNeverFollowed)
{
    test::TempTree tree;
    const FilePath tar = tree.path("evil.tar");
    writeArchive(tar, "gnutar", false, {{"../../escape.txt", "x"}, {"/etc/evil", "y"}, {"fine/..hidden", "z"}, {"a/../../b", "w"}});
    const PreviewContent content = load(tar);
    ASSERT_EQ(content.kind, Kind::archive) << content.message.toStdString();
    ASSERT_EQ(content.rows.size(), 4);
    EXPECT_EQ(content.unsafeEntries, 3);
    EXPECT_TRUE(content.rows[0][0].endsWith("(points outside the archive)"));
    EXPECT_FALSE(content.rows[2][0].contains("outside")) << "“..hidden” is an ordinary name";
    EXPECT_TRUE(content.note.contains("3 entries would land outside the folder it’s extracted into")) << content.note.toStdString();
    EXPECT_FALSE(test::exists(tree.root().parent().child(QByteArrayView("escape.txt"))));
    EXPECT_TRUE(preview::isUnsafeEntryName(".."));
    EXPECT_FALSE(preview::isUnsafeEntryName("a..b/c"));
}

TEST(ArchivePreview, ATruncatedArchiveListsWhatCameBeforeTheDamage)
{
    test::TempTree tree;
    const FilePath whole = tree.path("whole.tar.gz");
    QList<std::pair<QByteArray, QByteArray>> files;
    for (int i = 0; i < 40; ++i) {
        QByteArray data(20000, Qt::Uninitialized);
        for (int k = 0; k < data.size(); ++k)
            data[k] = char((k * 7919 + i * 104729) >> 3); // hard to compress
        files.append({QByteArray("file-") + QByteArray::number(i), data});
    }
    writeArchive(whole, "gnutar", true, files);
    const QByteArray bytes = test::readAll(whole);
    const PreviewContent content = load(tree.file("cut.tar.gz", bytes.left(bytes.size() / 2)));
    ASSERT_EQ(content.kind, Kind::archive) << content.message.toStdString();
    EXPECT_GT(content.rows.size(), 0);
    EXPECT_LT(content.rows.size(), 40);
    EXPECT_TRUE(content.note.contains("The archive is damaged after this.")) << content.note.toStdString();
}

TEST(ArchivePreview, AFileNamedLikeAnArchiveThatIsntOneIsShownAsItsBytes)
{
    test::TempTree tree;
    const PreviewContent content = load(tree.file("notes.zip", "just text\n"));
    EXPECT_EQ(content.kind, Kind::text);
    EXPECT_EQ(content.text, "just text\n");
}

TEST(ArchivePreview, StopsAtTheEntryLimitAndSaysSo)
{
    test::TempTree tree;
    QList<std::pair<QByteArray, QByteArray>> files;
    for (int i = 0; i < 30; ++i)
        files.append({QByteArray("f") + QByteArray::number(i), "x"});
    const FilePath zip = tree.path("many.zip");
    writeArchive(zip, "zip", false, files);
    PreviewLimits limits;
    limits.archiveEntries = 10;
    const PreviewContent content = load(zip, limits);
    EXPECT_EQ(content.rows.size(), 10);
    EXPECT_EQ(content.note, "Showing the first 10 entries");
}

TEST(ArchivePreview, ACancelledListingGivesNothing)
{
    test::TempTree tree;
    const FilePath zip = tree.path("a.zip");
    writeArchive(zip, "zip", false, {{"a", "1"}});
    CancelFlag cancel;
    cancel.cancel();
    EXPECT_EQ(preview::loadArchive({zip, {}, Qt::black, {}}, cancel).kind, Kind::none);
}
