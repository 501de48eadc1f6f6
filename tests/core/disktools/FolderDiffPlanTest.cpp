// The sync plans of every mode on one small comparison, with a changed pair newer on each side.

#include "disktools/FolderDiff.h"

#include <gtest/gtest.h>

using namespace orwick;
using FolderDiff::Entry;
using FolderDiff::SyncMode;

namespace {

const FilePath L = FilePath::fromNative("/data/left");
const FilePath R = FilePath::fromNative("/data/right");

FolderDiff::Result smallTree()
{
    FolderDiff::Result result;
    auto add = [&](const char* path, FolderDiff::Status status, bool folder = false) {
        Entry entry;
        entry.path = path;
        entry.status = status;
        entry.isFolder = folder;
        result.entries.push_back(entry);
    };
    add("docs", FolderDiff::Status::onlyLeft, true);
    add("left-newer.txt", FolderDiff::Status::changed);
    add("notes.txt", FolderDiff::Status::onlyRight);
    add("right-newer.txt", FolderDiff::Status::changed);
    add("same.txt", FolderDiff::Status::same);
    add("tie.txt", FolderDiff::Status::changed);
    return result;
}

std::optional<qint64> times(const FilePath& path)
{
    const QByteArray name = path.fileNameBytes();
    const bool left = L.isAncestorOf(path);
    if (name == "left-newer.txt")
        return left ? 200 : 100;
    if (name == "right-newer.txt")
        return left ? 100 : 200;
    if (name == "tie.txt")
        return 150;
    return std::nullopt;
}

QStringList copies(const FolderDiff::SyncPlan& plan)
{
    QStringList out;
    for (const FileMove& move : plan.copies)
        out << move.from.text() + " -> " + move.to.text();
    return out;
}

QStringList paths(const QList<FilePath>& list)
{
    QStringList out;
    for (const FilePath& path : list)
        out << path.text();
    return out;
}

} // namespace

TEST(FolderDiffPlan, CopyMissingToTheRightOverwritesNothing)
{
    const auto plan = FolderDiff::plan(smallTree(), L, R, SyncMode::copyMissing(true), times);
    EXPECT_EQ(copies(plan), QStringList({"/data/left/docs -> /data/right/docs"}));
    EXPECT_TRUE(plan.replacing.isEmpty());
    EXPECT_TRUE(plan.toTrash.isEmpty());
}

TEST(FolderDiffPlan, CopyMissingToTheLeft)
{
    const auto plan = FolderDiff::plan(smallTree(), L, R, SyncMode::copyMissing(false), times);
    EXPECT_EQ(copies(plan), QStringList({"/data/right/notes.txt -> /data/left/notes.txt"}));
    EXPECT_TRUE(plan.replacing.isEmpty() && plan.toTrash.isEmpty());
}

TEST(FolderDiffPlan, BothWaysNewerWinsAndATieIsLeftAlone)
{
    const auto plan = FolderDiff::plan(smallTree(), L, R, SyncMode::bothWays(), times);
    EXPECT_EQ(copies(plan), QStringList({"/data/left/docs -> /data/right/docs",
                                         "/data/left/left-newer.txt -> /data/right/left-newer.txt",
                                         "/data/right/notes.txt -> /data/left/notes.txt",
                                         "/data/right/right-newer.txt -> /data/left/right-newer.txt"}));
    EXPECT_EQ(paths(plan.replacing), QStringList({"/data/right/left-newer.txt", "/data/left/right-newer.txt"}));
    EXPECT_TRUE(plan.toTrash.isEmpty());
}

TEST(FolderDiffPlan, MirrorToTheRightReplacesAndTrashesExtras)
{
    const auto plan = FolderDiff::plan(smallTree(), L, R, SyncMode::mirror(true), times);
    EXPECT_EQ(copies(plan), QStringList({"/data/left/docs -> /data/right/docs",
                                         "/data/left/left-newer.txt -> /data/right/left-newer.txt",
                                         "/data/left/right-newer.txt -> /data/right/right-newer.txt",
                                         "/data/left/tie.txt -> /data/right/tie.txt"}));
    EXPECT_EQ(paths(plan.replacing), QStringList({"/data/right/left-newer.txt", "/data/right/right-newer.txt",
                                                  "/data/right/tie.txt"}));
    EXPECT_EQ(paths(plan.toTrash), QStringList({"/data/right/notes.txt"}));
}

TEST(FolderDiffPlan, MirrorToTheLeft)
{
    const auto plan = FolderDiff::plan(smallTree(), L, R, SyncMode::mirror(false), times);
    EXPECT_EQ(copies(plan), QStringList({"/data/right/left-newer.txt -> /data/left/left-newer.txt",
                                         "/data/right/notes.txt -> /data/left/notes.txt",
                                         "/data/right/right-newer.txt -> /data/left/right-newer.txt",
                                         "/data/right/tie.txt -> /data/left/tie.txt"}));
    EXPECT_EQ(paths(plan.toTrash), QStringList({"/data/left/docs"}));
}

TEST(FolderDiffPlan, TitlesAndConfirmations)
{
    EXPECT_EQ(FolderDiff::syncTitle(SyncMode::copyMissing(true), L, R), "Copy what's missing to right");
    EXPECT_EQ(FolderDiff::syncTitle(SyncMode::copyMissing(false), L, R), "Copy what's missing to left");
    EXPECT_EQ(FolderDiff::syncTitle(SyncMode::bothWays(), L, R), "Both ways, newer file wins");
    EXPECT_EQ(FolderDiff::syncTitle(SyncMode::mirror(true), L, R), "Mirror (extra files go to the Trash)");
    for (SyncMode mode : {SyncMode::copyMissing(true), SyncMode::bothWays(), SyncMode::mirror(true)}) {
        const auto plan = FolderDiff::plan(smallTree(), L, R, mode, times);
        EXPECT_TRUE(FolderDiff::confirmation(mode, plan, L, R).endsWith(". Undo puts everything back."));
    }
}
