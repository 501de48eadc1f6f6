#include "files/ListingLoader.h"
#include "platform/RecentFiles.h"
#include "platform/Xattr.h"
#include "platform/XdgPaths.h"
#include "support/TempHome.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <fcntl.h>
#include <sys/stat.h>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

void writeRecents(const QList<std::pair<FilePath, QDateTime>>& entries)
{
    QByteArray xml = "<?xml version=\"1.0\"?>\n<xbel version=\"1.0\" xmlns:bookmark=\"http://www.freedesktop.org/standards/desktop-bookmarks\">\n";
    for (const auto& [path, when] : entries) {
        const QByteArray date = when.toUTC().toString(Qt::ISODate).toUtf8();
        xml += "<bookmark href=\"" + path.toUrl().toEncoded() + "\" added=\"" + date + "\" modified=\"" + date + "\" visited=\"" + date
             + "\"><info><metadata owner=\"http://freedesktop.org\"><bookmark:applications><bookmark:application name=\"x\" modified=\""
             + date + "\" count=\"1\"/></bookmark:applications></metadata></info></bookmark>\n";
    }
    xml += "</xbel>\n";
    ASSERT_TRUE(test::writeFile(xdg::recentFilesList(), xml));
}

QStringList names(const FileItems& items)
{
    QStringList out;
    for (const FileItem& item : items)
        out << item.name;
    return out;
}

} // namespace

TEST(ListingLoader, RecentsAreRecentFilesOnlyNewestFirst)
{
    test::TempTree tree;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    writeRecents({{tree.file("older.txt"), now.addDays(-3)},
                  {tree.file("newest.txt"), now.addSecs(-60)},
                  {tree.folder("AFolder"), now},
                  {tree.file("launcher.desktop"), now},
                  {tree.file("ancient.txt"), now.addDays(-31)},
                  {tree.path("deleted.txt"), now}});
    const ListingResult result = ListingLoader::load(Listing::of(Listing::Kind::recents), false);
    EXPECT_FALSE(result.error);
    EXPECT_EQ(names(result.items), (QStringList{"newest.txt", "older.txt"}));
}

TEST(ListingLoader, OpeningAFileAddsItToRecents)
{
    test::TempTree tree;
    QFile::remove(xdg::recentFilesList().text());
    const FilePath opened = tree.file("report.pdf", "%PDF");
    RecentFiles::add(opened, "application/pdf");
    RecentFiles::add(opened, "application/pdf"); // once, not twice
    const auto entries = RecentFiles::read();
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries.first().path, opened);
    EXPECT_EQ(names(ListingLoader::load(Listing::of(Listing::Kind::recents), false).items), QStringList{"report.pdf"});
}

TEST(ListingLoader, TrashListsTheTrashFilesFolder)
{
    const FilePath files = xdg::homeTrash().child(QByteArrayView("files"));
    QDir(files.text()).removeRecursively();
    const ListingResult empty = ListingLoader::load(Listing::of(Listing::Kind::trash), false);
    EXPECT_FALSE(empty.error); // no Trash folder yet is an empty Trash
    EXPECT_TRUE(empty.items.isEmpty());

    QDir().mkpath(files.text());
    QFile(files.child(QByteArrayView("thrown.txt")).text()).open(QIODevice::WriteOnly);
    EXPECT_EQ(names(ListingLoader::load(Listing::of(Listing::Kind::trash), false).items), QStringList{"thrown.txt"});
}

TEST(ListingLoader, TrashItemsSayWhereTheyCameFromAndWhenTheyWereDeleted)
{
    const FilePath trashFolder = xdg::homeTrash();
    QDir(trashFolder.text()).removeRecursively();
    const FilePath files = trashFolder.child(QByteArrayView("files"));
    const FilePath info = trashFolder.child(QByteArrayView("info"));
    QDir().mkpath(files.text());
    QDir().mkpath(info.text());
    ASSERT_TRUE(test::writeFile(files.child(QByteArrayView("report.txt")), "r"));
    ASSERT_TRUE(test::writeFile(info.child(QByteArrayView("report.txt.trashinfo")),
                                "[Trash Info]\nPath=/home/u/My%20Files/report.txt\nDeletionDate=2024-05-01T10:20:30\n"));
    ASSERT_TRUE(test::writeFile(files.child(QByteArrayView("stray")), "s")); // no record

    const ListingResult result = ListingLoader::load(Listing::of(Listing::Kind::trash), false);
    ASSERT_EQ(result.items.size(), 2);
    for (const FileItem& item : result.items) {
        if (item.name == QStringLiteral("report.txt")) {
            EXPECT_EQ(item.trashedFrom, FilePath::fromNative("/home/u/My Files/report.txt"));
            EXPECT_EQ(item.deleted, QDateTime(QDate(2024, 5, 1), QTime(10, 20, 30)).toMSecsSinceEpoch()) << "local time";
        } else {
            EXPECT_TRUE(item.trashedFrom.isEmpty());
            EXPECT_EQ(item.deleted, kDistantPast);
        }
    }
}

TEST(ListingLoader, ScreenshotsComeFromThePicturesFolderNewestFirst)
{
    const FilePath pictures = xdg::picturesDir();
    QDir(pictures.text()).removeRecursively();
    test::TempTree scratch;
    auto make = [](const FilePath& path, qint64 seconds) {
        QDir().mkpath(path.parent().text());
        QFile(path.text()).open(QIODevice::WriteOnly);
        struct timespec times[2] = {{seconds, 0}, {seconds, 0}};
        utimensat(AT_FDCWD, path.c_str(), times, 0);
    };
    make(pictures.child(QByteArrayView("Screenshots/a.png")), 1000);
    make(pictures.child(QByteArrayView("Screenshot from today.png")), 3000);
    make(pictures.child(QByteArrayView("holiday.jpg")), 5000);
    EXPECT_EQ(names(ListingLoader::load(Listing::of(Listing::Kind::screenshots), false).items),
              (QStringList{"Screenshot from today.png", "a.png"}));
}

TEST(ListingLoader, TagListsFilesCarryingTheColourTag)
{
    const FilePath home = xdg::home();
    const FilePath tagged = home.child(QByteArrayView("Work/plan.txt"));
    QDir().mkpath(tagged.parent().text());
    QFile(tagged.text()).open(QIODevice::WriteOnly);
    QFile(home.child(QByteArrayView("Work/other.txt")).text()).open(QIODevice::WriteOnly);
    if (!xattr::set(tagged, xattr::tags, "Blue,Red"))
        GTEST_SKIP() << "this file system keeps no user attributes";
    EXPECT_EQ(names(ListingLoader::load(Listing::tag("red"), false).items), QStringList{"plan.txt"});
    EXPECT_TRUE(ListingLoader::load(Listing::tag("Green"), false).items.isEmpty());
}

TEST(Listing, NamesAndEmptyTexts)
{
    EXPECT_EQ(Listing::fromName("drives")->kind, Listing::Kind::thisMac);
    EXPECT_EQ(Listing::fromName("tag:Red")->tagName, "Red");
    EXPECT_FALSE(Listing::fromName("tag:").has_value());
    EXPECT_FALSE(Listing::fromName("bogus").has_value());
    EXPECT_EQ(emptyText::forSource(std::nullopt), "This folder is empty");
    EXPECT_EQ(emptyText::forSource(Listing::of(Listing::Kind::trash)), "The Trash is empty");
    EXPECT_EQ(emptyText::nothingMatches("zz"), "Nothing matches “zz”");
}
