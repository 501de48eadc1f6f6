#include "DiskTestSupport.h"
#include "disktools/FolderDiff.h"

#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orwick;
using namespace orwick::test;
using FolderDiff::Entry;

namespace {

struct TwoSides {
    TempTree tree;
    FilePath left = tree.folder("left");
    FilePath right = tree.folder("right");
    FilePath l(const char* relative, const QByteArray& content = {}) const { return tree.file(QByteArray("left/") + relative, content); }
    FilePath r(const char* relative, const QByteArray& content = {}) const { return tree.file(QByteArray("right/") + relative, content); }
    FolderDiff::Result compare(qint64 limit = FolderDiff::kPanelLimit) const
    {
        CancelFlag never;
        return FolderDiff::compare(left, right, limit, never);
    }
};

// "status path" for each entry, in order.
QStringList listed(const FolderDiff::Result& result)
{
    QStringList out;
    for (const Entry& entry : result.entries)
        out << FolderDiff::rawValue(entry.status) + ' ' + QString::fromUtf8(entry.path);
    return out;
}

const Entry* entry(const FolderDiff::Result& result, const QByteArray& path)
{
    for (const Entry& e : result.entries)
        if (e.path == path)
            return &e;
    return nullptr;
}

void makeSparse(const FilePath& path, qint64 size, char lastByte)
{
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(ftruncate(fd, size), 0);
    ASSERT_EQ(pwrite(fd, &lastByte, 1, size - 1), 1);
    close(fd);
}

} // namespace

TEST(FolderDiff, TwoEmptyFoldersMatch)
{
    TwoSides sides;
    const auto result = sides.compare();
    EXPECT_TRUE(result.entries.empty());
    EXPECT_FALSE(result.hasDifferences());
    EXPECT_EQ(FolderDiff::summary(result), "No differences: every file matches");
    EXPECT_EQ(FolderDiff::partialNote(result), "");
}

TEST(FolderDiff, StatusesInAscendingOrder)
{
    TwoSides sides;
    sides.l("same.txt", "abc");
    sides.r("same.txt", "abc");
    sides.l("b-only-left.txt", "x");
    sides.r("a-only-right.txt", "y");
    sides.l("sizes.txt", "short");
    sides.r("sizes.txt", "longer text");
    sides.l("sub/deep.txt", "1");
    sides.r("sub/deep.txt", "2");
    const auto result = sides.compare();
    EXPECT_EQ(listed(result), QStringList({"onlyRight a-only-right.txt", "onlyLeft b-only-left.txt", "same same.txt",
                                           "changed sizes.txt", "changed sub/deep.txt"}));
    EXPECT_EQ(result.count(FolderDiff::Status::changed), 2);
    EXPECT_EQ(result.count(FolderDiff::Status::same), 1);
    const Entry* sizes = entry(result, "sizes.txt");
    EXPECT_EQ(sizes->leftSize, 5);
    EXPECT_EQ(sizes->rightSize, 11);
    EXPECT_EQ(FolderDiff::summary(result), "1 only on the left · 1 only on the right · 2 changed");
    EXPECT_TRUE(FolderDiff::entryDetail(*sizes).endsWith(", contents differ"));
    EXPECT_EQ(FolderDiff::entryDetail(*entry(result, "sub/deep.txt")), "1 byte, contents differ");
}

TEST(FolderDiff, EachFileIsComparedWithItsNamesakeInTheSameFolder)
{
    // The same names in several folders, a sub-folder whose name sorts between its parent's
    // files, and one changed file per folder: a pair read in the wrong folder would show.
    TwoSides sides;
    for (const char* folder : {"", "a/", "a/m/", "a/m/n/", "b/"}) {
        for (const char* name : {"f.txt", "z.txt"}) {
            const QByteArray path = QByteArray(folder) + name;
            const QByteArray content = "in " + QByteArray(folder) + name;
            sides.l(path.constData(), content);
            sides.r(path.constData(), QByteArray(name) == "z.txt" ? content.toUpper() : content);
        }
    }
    const auto result = sides.compare();
    EXPECT_EQ(listed(result), QStringList({"same a/f.txt", "same a/m/f.txt", "same a/m/n/f.txt", "changed a/m/n/z.txt",
                                           "changed a/m/z.txt", "changed a/z.txt", "same b/f.txt", "changed b/z.txt",
                                           "same f.txt", "changed z.txt"}));
    EXPECT_EQ(entry(result, "a/m/f.txt")->leftSize, 12); // "in a/m/f.txt"
    EXPECT_EQ(entry(result, "a/m/f.txt")->rightSize, 12);
}

TEST(FolderDiff, WholePathsInByteOrderWhenNamesHoldBytesBelowTheSlash)
{
    // "a b", "a-c" and "a.b" sort between the folder "a" and what it holds ("a/…"), since " ",
    // "-" and "." come before "/"; a folder only on the left ("a!") sits among them with its count.
    TwoSides sides;
    for (const char* path : {"a/x", "a/y/z", "a-c", "a.b/q", "a b", "a0", "b"}) {
        sides.l(path, path);
        sides.r(path, QByteArray(path) + "!");
    }
    sides.l("a!/one", "1");
    sides.l("a!/two", "2");
    sides.r("a/x-right", "r");
    const auto result = sides.compare();
    EXPECT_EQ(listed(result), QStringList({"changed a b", "onlyLeft a!", "changed a-c", "changed a.b/q", "changed a/x",
                                           "onlyRight a/x-right", "changed a/y/z", "changed a0", "changed b"}));
    EXPECT_EQ(entry(result, "a!")->files, 2);
    EXPECT_EQ(entry(result, "a/y/z")->leftSize, 5);
    EXPECT_EQ(entry(result, "a/y/z")->rightSize, 6);
}

TEST(FolderDiff, ManyFoldersEachPairClassedOnce)
{
    // Enough folders that the threads compare some while the merge is still making entries.
    TwoSides sides;
    int changed = 0, onlyLeft = 0;
    for (int i = 0; i < 600; ++i) {
        const QByteArray path = "f" + QByteArray::number(i / 4) + "/n" + QByteArray::number(i % 4);
        const QByteArray content = "content of " + path;
        sides.l(path.constData(), content);
        if (i % 11 == 5) {
            ++onlyLeft;
            continue;
        }
        QByteArray other = content;
        if (i % 7 == 3) {
            other[other.size() - 1] = 'x'; // same size, last byte differs
            ++changed;
        }
        sides.r(path.constData(), other);
    }
    const auto result = sides.compare();
    EXPECT_EQ(result.count(FolderDiff::Status::changed), changed);
    EXPECT_EQ(result.count(FolderDiff::Status::onlyLeft), onlyLeft);
    EXPECT_EQ(result.count(FolderDiff::Status::same), 600 - changed - onlyLeft);
    EXPECT_EQ(entry(result, "f0/n3")->status, FolderDiff::Status::changed);
    EXPECT_EQ(entry(result, "f149/n0")->status, FolderDiff::Status::same);
    EXPECT_EQ(entry(result, "f149/n0")->leftSize, entry(result, "f149/n0")->rightSize);
    for (const Entry& e : result.entries)
        EXPECT_TRUE(e.leftSize.has_value()) << e.path.constData();
}

TEST(FolderDiff, ReadingToCompareLeavesAccessTimesAlone)
{
    TwoSides sides;
    const FilePath left = sides.l("read.txt", "same bytes");
    sides.r("read.txt", "same bytes");
    // An access time older than the modification time: a plain read would move it (relatime).
    const timespec times[2] = {{1'000'000, 0}, {0, UTIME_OMIT}};
    ASSERT_EQ(utimensat(AT_FDCWD, left.c_str(), times, 0), 0);
    ASSERT_EQ(listed(sides.compare()), QStringList({"same read.txt"}));
    struct stat info {};
    ASSERT_EQ(stat(left.c_str(), &info), 0);
    EXPECT_EQ(info.st_atim.tv_sec, 1'000'000);
}

TEST(FolderDiff, AFolderOnOneSideIsOneEntryWithItsFileCount)
{
    TwoSides sides;
    for (int i = 0; i < 10; ++i)
        sides.l(QByteArray("photos/" + QByteArray::number(i) + ".jpg").constData(), "x");
    sides.l("photos/2024/a.jpg", "x");
    sides.l("photos/2024/b.jpg", "x");
    sides.r("other/z.txt", "z");
    const auto result = sides.compare();
    EXPECT_EQ(listed(result), QStringList({"onlyRight other", "onlyLeft photos"}));
    const Entry* photos = entry(result, "photos");
    EXPECT_TRUE(photos->isFolder);
    EXPECT_EQ(photos->files, 12);
    EXPECT_EQ(FolderDiff::entryDetail(*photos), "folder, 12 files");
    EXPECT_EQ(entry(result, "other")->files, 1);
}

TEST(FolderDiff, BytesTimesLinksAndKindsDecideWhatChanged)
{
    TwoSides sides;
    // Equal sizes differing in the last byte are changed.
    QByteArray a = patternBytes(3 * FolderDiff::kChunk + 17, 4);
    QByteArray b = a;
    b[b.size() - 1] = char(b[b.size() - 1] ^ 1);
    sides.l("big.bin", a);
    sides.r("big.bin", b);
    sides.l("copy.bin", a);
    sides.r("copy.bin", a);
    // Huge files of equal size go by their times, unread: a.img differs but is never read.
    const qint64 size = 100'000'000;
    for (const auto& [name, leftByte, rightByte, rightTime] : {std::tuple("a.img", 'x', 'y', 1'600'000'000),
                                                               std::tuple("b.img", 'x', 'x', 1'600'000'001)}) {
        makeSparse(sides.left.child(QByteArrayView(name)), size, leftByte);
        makeSparse(sides.right.child(QByteArrayView(name)), size, rightByte);
        sides.tree.touch(sides.left.child(QByteArrayView(name)), 1'600'000'000);
        sides.tree.touch(sides.right.child(QByteArrayView(name)), rightTime);
    }
    // Links are compared as links, never followed.
    sides.tree.file("outside/target.txt", "one");
    sides.tree.file("outside/other.txt", "one");
    sides.tree.link("left/same-link", "../outside/target.txt");
    sides.tree.link("right/same-link", "../outside/target.txt");
    sides.tree.link("left/moved-link", "../outside/target.txt");
    sides.tree.link("right/moved-link", "../outside/other.txt");
    sides.tree.link("left/dir-link", "../outside");
    sides.r("dir-link", "a file");
    // A folder against a file is changed, with what it holds.
    sides.l("thing/a.txt", "a");
    sides.l("thing/b.txt", "b");
    sides.r("thing", "file");
    const auto result = sides.compare();
    EXPECT_EQ(listed(result), QStringList({"same a.img", "changed b.img", "changed big.bin", "same copy.bin", "changed dir-link",
                                           "changed moved-link", "same same-link", "changed thing"}));
    ASSERT_NE(entry(result, "thing"), nullptr);
    EXPECT_TRUE(entry(result, "thing")->isFolder);
    EXPECT_EQ(entry(result, "thing")->files, 2);
}

TEST(FolderDiff, PartialAtTheLimit)
{
    TwoSides sides;
    for (int i = 0; i < 30; ++i) {
        sides.l(QByteArray("f" + QByteArray::number(i)).constData(), "x");
        sides.r(QByteArray("f" + QByteArray::number(i)).constData(), "x");
    }
    const auto result = sides.compare(10);
    EXPECT_TRUE(result.isPartial);
    EXPECT_EQ(FolderDiff::partialNote(result, 50000), " (first 50,000 files)");
    EXPECT_FALSE(sides.compare(30).isPartial);
}

TEST(FolderDiff, AFolderWithItselfOrItsChildIsRefused)
{
    TwoSides sides;
    sides.l("inner/x.txt", "x");
    EXPECT_TRUE(FolderDiff::problemWith(sides.left, sides.left));
    EXPECT_TRUE(FolderDiff::problemWith(sides.left, sides.left.child(QByteArrayView("inner"))));
    EXPECT_TRUE(FolderDiff::problemWith(sides.left.child(QByteArrayView("inner")), sides.left));
    const FilePath alias = sides.tree.link("alias", "left");
    EXPECT_TRUE(FolderDiff::problemWith(alias, sides.left)) << "a link to the same folder is the same folder";
    EXPECT_FALSE(FolderDiff::problemWith(sides.left, sides.right));
    CancelFlag never;
    EXPECT_TRUE(FolderDiff::compare(sides.left, sides.left, 100, never).entries.empty());
}

TEST(FolderDiff, UnreadableFoldersAreLeftOutInSilence)
{
    TwoSides sides;
    sides.l("locked/a.txt", "a");
    sides.r("locked/a.txt", "b");
    sides.r("locked/only-right.txt", "b");
    sides.l("open.txt", "1");
    sides.r("open.txt", "1");
    setMode(sides.left.child(QByteArrayView("locked")), 0);
    FolderDiff::Result result;
    {
        WithoutPermissionOverride asUser;
        result = sides.compare();
    }
    setMode(sides.left.child(QByteArrayView("locked")), 0755);
    EXPECT_EQ(listed(result), QStringList({"same open.txt"}));
}

TEST(FolderDiff, NamesThatAreNotUtf8)
{
    TwoSides sides;
    sides.tree.file(QByteArray("left/caf\xe9.txt"), "a");
    sides.tree.file(QByteArray("right/caf\xe9.txt"), "b");
    const auto result = sides.compare();
    ASSERT_EQ(result.entries.size(), 1u);
    EXPECT_EQ(result.entries[0].path, QByteArray("caf\xe9.txt"));
    EXPECT_EQ(result.entries[0].status, FolderDiff::Status::changed);
}

TEST(FolderDiff, CancelStopsEarly)
{
    TwoSides sides;
    for (int i = 0; i < 200; ++i) {
        sides.l(QByteArray("f" + QByteArray::number(i)).constData(), "x");
        sides.r(QByteArray("f" + QByteArray::number(i)).constData(), "y");
    }
    CancelFlag cancel;
    cancel.cancel();
    const auto result = FolderDiff::compare(sides.left, sides.right, 1000, cancel);
    EXPECT_LT(result.entries.size(), 200u);
}
