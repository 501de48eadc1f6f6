#include "disktools/DuplicatesChoice.h"
#include "disktools/SpaceBreakdown.h"

#include <QJsonArray>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

Duplicates::Group group(qint64 size, std::initializer_list<const char*> names)
{
    Duplicates::Group g;
    g.size = size;
    for (const char* name : names)
        g.files.push_back({FilePath::fromNative(QByteArray("/d/") + name), 0});
    return g;
}

FilePath at(const char* name) { return FilePath::fromNative(QByteArray("/d/") + name); }

DuplicatesChoice sample()
{
    Duplicates::Scan scan;
    scan.groups = {group(100, {"a copy.txt", "a.txt", "a (2).txt"}), group(10, {"b", "b copy"})};
    return DuplicatesChoice(scan);
}

} // namespace

TEST(DuplicatesChoice, TickExtraCopiesLeavesOneKeeperPerGroup)
{
    DuplicatesChoice choice = sample();
    choice.toggle(at("a.txt")); // ticked by hand, then the rule keeps it
    choice.tickExtraCopies();
    EXPECT_EQ(choice.toTrash(), (std::vector{at("a copy.txt"), at("a (2).txt"), at("b copy")}));
    EXPECT_EQ(choice.chosenBytes(), 210);
    choice.toggle(at("b copy"));
    EXPECT_EQ(choice.chosenCount(), 2);
    EXPECT_EQ(choice.chosenBytes(), 200);
}

TEST(DuplicatesChoice, MovedFilesLeaveAndUnmovedOnesStay)
{
    DuplicatesChoice choice = sample();
    choice.tickExtraCopies();
    // The Trash took two of the three; "a (2).txt" could not be moved.
    choice.removeMoved({at("a copy.txt"), at("b copy")});
    ASSERT_EQ(choice.groups().size(), 1u) << "a group left with one member goes";
    EXPECT_EQ(choice.groups()[0].files.size(), 2u);
    EXPECT_EQ(choice.toTrash(), std::vector{at("a (2).txt")}) << "the file that stayed stays ticked";
    EXPECT_FALSE(choice.isChosen(at("b copy")));
}

TEST(SpaceBreakdown, SavedMeasurementRoundTripsThroughTheSettings)
{
    SpaceBreakdown::Saved saved;
    saved.at = QDateTime::fromMSecsSinceEpoch(1700000000123, Qt::UTC);
    saved.rows = SpaceBreakdown::homeRows();
    saved.rows[0].bytes = 123456789012;
    saved.rows[1].url = FilePath::fromNative("/home/odd/na\xefve");
    SpaceBreakdown::save(saved);
    EXPECT_EQ(SpaceBreakdown::load(), saved);
    EXPECT_EQ(SpaceBreakdown::rowTitle(SpaceBreakdown::homeRows()[0]), "Caches (.cache)");
}

TEST(SpaceBreakdown, DamagedSavedMeasurementIsAbsent)
{
    EXPECT_EQ(SpaceBreakdown::Saved::fromJson(QJsonObject{{"at", "yesterday"}, {"rows", QJsonArray()}}), std::nullopt);
    EXPECT_EQ(SpaceBreakdown::Saved::fromJson(QJsonObject{{"at", "2024-01-01T00:00:00.000Z"}, {"rows", 5}}), std::nullopt);
}

TEST(SpaceBreakdown, RemainderIsTheUsedSpaceBeyondTheRows)
{
    Drive drive;
    drive.total = 1000;
    drive.free = 300;
    EXPECT_EQ(SpaceBreakdown::remainder(drive, {{FilePath::fromNative("/a"), 200}, {FilePath::fromNative("/b"), std::nullopt}}), 500);
    EXPECT_EQ(SpaceBreakdown::remainder(drive, {{FilePath::fromNative("/a"), 5000}}), 0);
    const auto drives = listDrives();
    ASSERT_FALSE(drives.empty());
    EXPECT_TRUE(drives.front().isStartup) << "the startup drive comes first";
    EXPECT_GT(drives.front().total, 0);
}
