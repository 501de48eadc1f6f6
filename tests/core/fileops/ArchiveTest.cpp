// Compress and extract with libarchive: the round trip, every format it reads, and hostile or
// broken archives.

#include "FileOpsFixture.h"

#include "fileops/ArchiveFiles.h"

#include <archive.h>
#include <archive_entry.h>

namespace orwick::test {
namespace {

struct Entry {
    QByteArray path;
    QByteArray content;
    QByteArray symlink; // a link entry when set
};

// Writes an archive with libarchive: `format` like "zip", "gnutar", "7zip"; `filter` like
// "gzip", "xz", "zstd" or empty; `options` like "zip:encryption=zipcrypt".
bool writeArchive(const FilePath& path, const char* format, const char* filter, const QList<Entry>& entries,
                  const char* options = nullptr, const char* passphrase = nullptr)
{
    archive* a = archive_write_new();
    archive_write_set_format_by_name(a, format);
    if (filter && *filter)
        archive_write_add_filter_by_name(a, filter);
    if (options)
        archive_write_set_options(a, options);
    if (passphrase)
        archive_write_set_passphrase(a, passphrase);
    bool ok = archive_write_open_filename(a, path.c_str()) == ARCHIVE_OK;
    for (const Entry& e : entries) {
        archive_entry* entry = archive_entry_new();
        archive_entry_set_pathname(entry, e.path.constData());
        archive_entry_set_perm(entry, 0644);
        if (!e.symlink.isEmpty()) {
            archive_entry_set_filetype(entry, AE_IFLNK);
            archive_entry_set_symlink(entry, e.symlink.constData());
        } else {
            archive_entry_set_filetype(entry, AE_IFREG);
            archive_entry_set_size(entry, e.content.size());
        }
        ok = ok && archive_write_header(a, entry) >= ARCHIVE_WARN;
        if (!ok)
            ADD_FAILURE() << archive_error_string(a);
        if (e.symlink.isEmpty() && !e.content.isEmpty())
            ok = ok && archive_write_data(a, e.content.constData(), size_t(e.content.size())) == e.content.size();
        archive_entry_free(entry);
    }
    ok = ok && archive_write_close(a) == ARCHIVE_OK;
    archive_write_free(a);
    return ok;
}

TEST_F(FileOpsTest, CompressThenExtractGivesTheSameFilesAndSeveralItemsMakeArchiveZip)
{
    file("work/Report/summary.txt", "summary");
    file("work/Report/figures/plot.dat", QByteArray(100000, 'p'));
    tree.link("work/Report/latest", "summary.txt");
    ops.compress({tree.path("work/Report")}, &stack);
    settle();
    const FilePath zip = tree.path("work/Report.zip");
    ASSERT_TRUE(exists(zip)) << errors.join('\n').toStdString();
    EXPECT_EQ(lastToast(), QStringLiteral("Created Report.zip"));
    EXPECT_EQ(toasts.last().icon, QStringLiteral("archivebox"));

    ops.extract({zip}, &stack);
    settle();
    // One item inside: it lands beside the archive under a free name.
    const FilePath out = tree.path("work/Report 2");
    EXPECT_EQ(readAll(out.child(QStringLiteral("summary.txt"))), "summary");
    EXPECT_EQ(readAll(out.child(QStringLiteral("figures/plot.dat"))), QByteArray(100000, 'p'));
    EXPECT_TRUE(S_ISLNK(statOf(out.child(QStringLiteral("latest"))).st_mode));
    EXPECT_EQ(lastToast(), QStringLiteral("Extracted Report 2"));
    EXPECT_EQ(toasts.last().icon, QStringLiteral("archivebox.circle"));
    EXPECT_EQ(names(tree.path("work")), (QList<QByteArray>{"Report", "Report 2", "Report.zip"}));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Extract"));
    undo();
    EXPECT_FALSE(exists(out));
    undo();
    EXPECT_FALSE(exists(zip));
    // Several items make Archive.zip, under a free name.
    const FilePath a = file("a.txt", "a");
    const FilePath b = file("b.txt", "b");
    file("Archive.zip", "taken");
    ops.compress({a, b}, &stack);
    settle();
    EXPECT_TRUE(exists(tree.path("Archive 2.zip")));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Compress"));
}

TEST_F(FileOpsTest, ExtractsEveryFormatLibarchiveReadsAndMacJunkBesideOneFolderLeavesTheFolderAlone)
{
    const QList<Entry> entries = {{"one.txt", "1", {}}, {"dir/two.txt", "2", {}}, {"__MACOSX/._one.txt", "junk", {}}};
    const struct {
        const char* name;
        const char* format;
        const char* filter;
    } kinds[] = {{"a.zip", "zip", ""}, {"b.tar", "gnutar", ""}, {"c.tar.gz", "gnutar", "gzip"},
                 {"d.tar.xz", "gnutar", "xz"}, {"e.tar.zst", "gnutar", "zstd"}, {"f.7z", "7zip", ""}};
    for (const auto& kind : kinds) {
        const FilePath archive = tree.path(QString::fromLatin1(kind.name));
        ASSERT_TRUE(writeArchive(archive, kind.format, kind.filter, entries)) << kind.name;
        ops.extract({archive}, &stack);
        settle();
        const FilePath folder = tree.path(QString::fromLatin1(archiveBaseName(kind.name)));
        EXPECT_EQ(readAll(folder.child(QStringLiteral("one.txt"))), "1") << kind.name;
        EXPECT_EQ(readAll(folder.child(QStringLiteral("dir/two.txt"))), "2") << kind.name;
        EXPECT_FALSE(exists(folder.child(QStringLiteral("__MACOSX")))) << kind.name;
    }
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    for (const QByteArray& name : names(tree.root()))
        EXPECT_FALSE(name.startsWith(".orwick-")) << name.constData();
    // Mac junk beside one folder leaves the folder alone.
    const FilePath zip = tree.folder("mac").child(QStringLiteral("site.zip"));
    ASSERT_TRUE(writeArchive(zip, "zip", "", {{"site/index.html", "<p>", {}}, {"__MACOSX/site/._index.html", "x", {}}}));
    ops.extract({zip}, &stack);
    settle();
    EXPECT_EQ(names(tree.path("mac")), (QList<QByteArray>{"site", "site.zip"}));
}

TEST_F(FileOpsTest, EntriesPointingOutsideAreRefused)
{
    const FilePath zip = tree.folder("in").child(QStringLiteral("evil.tar"));
    ASSERT_TRUE(writeArchive(zip, "gnutar", "",
                             {{"ok.txt", "fine", {}}, {"../escaped.txt", "bad", {}}, {"/tmp/orwick-absolute-escape", "bad", {}},
                              {"up", "", "../../outside"}, {"abs", "", "/etc/passwd"}, {"inner", "", "ok.txt"}}));
    ops.extract({zip}, &stack);
    settle();
    const FilePath folder = tree.path("in/evil");
    EXPECT_EQ(names(folder), (QList<QByteArray>{"inner", "ok.txt"}));
    EXPECT_FALSE(exists(tree.path("escaped.txt")));
    EXPECT_FALSE(exists(FilePath::fromText(QStringLiteral("/tmp/orwick-absolute-escape"))));
    EXPECT_EQ(errors, QStringList{QStringLiteral("Extracted evil, leaving out 4 items that would have landed outside its folder.")});
}

TEST_F(FileOpsTest, DamagedArchiveSaysSoAndLeavesNothing)
{
    const FilePath zip = tree.path("broken.tar.gz");
    ASSERT_TRUE(writeArchive(zip, "gnutar", "gzip", {{"a.txt", QByteArray(200000, 'a'), {}}, {"b.txt", "b", {}}}));
    QByteArray bytes = readAll(zip);
    bytes.truncate(bytes.size() / 2);
    bytes[40] = char(bytes[40] ^ 0x55);
    file("broken.tar.gz", bytes);
    file("garbage.zip", "PK\x03\x04 this is not really a zip at all");
    ops.extract({zip, tree.path("garbage.zip")}, &stack);
    settle();
    ASSERT_EQ(errors.size(), 2);
    for (const QString& error : errors)
        EXPECT_TRUE(error.startsWith(QStringLiteral("Couldn’t extract “"))) << error.toStdString();
    EXPECT_EQ(names(tree.root()), (QList<QByteArray>{"broken.tar.gz", "garbage.zip"}));
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(FileOpsTest, EncryptedArchiveIsNamedAsSuch)
{
    const FilePath zip = tree.path("secret.zip");
    if (!writeArchive(zip, "zip", "", {{"secret.txt", "hush", {}}}, "zip:encryption=zipcrypt", "password"))
        GTEST_SKIP() << "this libarchive writes no encrypted zips";
    ops.extract({zip}, &stack);
    settle();
    EXPECT_EQ(errors, QStringList{QStringLiteral("Couldn’t extract “secret.zip”. It is protected by a password, and Orwick can’t open protected archives.")});
    EXPECT_EQ(names(tree.root()), QList<QByteArray>{"secret.zip"});
}

TEST_F(FileOpsTest, ZipBombIsStoppedAtTheCap)
{
    const FilePath zip = tree.path("bomb.zip");
    ASSERT_TRUE(writeArchive(zip, "zip", "", {{"zeros-1", QByteArray(3 << 20, '\0'), {}}, {"zeros-2", QByteArray(3 << 20, '\0'), {}}}));
    ASSERT_LT(statOf(zip).st_size, 100000);
    ops.setExtractionLimit(4 << 20);
    ops.extract({zip}, &stack);
    settle();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors[0].startsWith(QStringLiteral("Couldn’t extract “bomb.zip”. It would expand to more than ")));
    EXPECT_TRUE(errors[0].contains(QStringLiteral("zip bomb")));
    EXPECT_EQ(names(tree.root()), QList<QByteArray>{"bomb.zip"});
    EXPECT_EQ(defaultExpansionLimit(1000), qint64(1) << 30);
    EXPECT_EQ(defaultExpansionLimit(qint64(100) << 20), qint64(20000) << 20);
}

} // namespace
} // namespace orwick::test
