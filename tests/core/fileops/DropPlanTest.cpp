// What a drop on a folder will do: the modifiers' actions, move on one file system and copy
// across, nothing for items already there, and the refusals with their sentences.

#include "fileops/DropPlan.h"
#include "support/ScratchMount.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace orwick::test {
namespace {

QList<QUrl> urls(const QList<FilePath>& items)
{
    QList<QUrl> list;
    for (const FilePath& item : items)
        list.append(item.toUrl());
    return list;
}

struct DropPlanTest : ::testing::Test {
    TempTree tree;
    FilePath a = tree.file("from/a.txt", "a");
    FilePath folder = tree.folder("from/Photos");
    FilePath dest = tree.folder("dest");
};

TEST_F(DropPlanTest, OnOneFileSystemAPlainDropMovesControlCopiesAndBothMakeLinks)
{
    const DropPlan plan = planDrop(urls({a, folder}), dest, Qt::NoModifier);
    EXPECT_EQ(plan.action, DropAction::move);
    EXPECT_EQ(plan.items, (QList<FilePath>{a, folder}));
    EXPECT_EQ(plan.folder, dest);
    EXPECT_FALSE(plan.isRefused());
    EXPECT_EQ(planDrop(urls({a}), dest, Qt::ControlModifier).action, DropAction::copy);
    EXPECT_EQ(planDrop(urls({a}), dest, Qt::ShiftModifier).action, DropAction::move);
    EXPECT_EQ(planDrop(urls({a}), dest, Qt::ControlModifier | Qt::ShiftModifier).action, DropAction::link);
    EXPECT_EQ(planDrop(urls({a}), dest, Qt::AltModifier).action, DropAction::move) << "other keys don't count";
    // Nothing dropped is nothing to do, and no refusal.
    const DropPlan nothing = planDrop({}, dest, Qt::NoModifier);
    EXPECT_EQ(nothing.action, DropAction::none);
    EXPECT_FALSE(nothing.isRefused());
}

TEST_F(DropPlanTest, MovingItemsIntoTheFolderTheyAreInDoesNothing)
{
    const FilePath from = a.parent();
    for (const auto modifiers : {Qt::KeyboardModifiers(Qt::NoModifier), Qt::KeyboardModifiers(Qt::ShiftModifier)}) {
        const DropPlan plan = planDrop(urls({a, folder}), from, modifiers);
        EXPECT_EQ(plan.action, DropAction::none);
        EXPECT_TRUE(plan.items.isEmpty());
        EXPECT_FALSE(plan.isRefused());
    }
    // Reached through a link to the folder it is the same folder.
    const FilePath alias = tree.link("alias", from.native());
    EXPECT_EQ(planDrop(urls({a}), alias, Qt::NoModifier).action, DropAction::none);
    // Of items from two folders only those from elsewhere move.
    const FilePath b = tree.file("dest/b.txt", "b");
    const DropPlan mixed = planDrop(urls({a, b}), from, Qt::NoModifier);
    EXPECT_EQ(mixed.action, DropAction::move);
    EXPECT_EQ(mixed.items, QList<FilePath>{b});
    // A copy into its own folder is still a copy (the engine duplicates it).
    EXPECT_EQ(planDrop(urls({a}), from, Qt::ControlModifier).items, QList<FilePath>{a});
}

TEST_F(DropPlanTest, AFolderCannotGoIntoItselfOrAFolderInsideIt)
{
    const FilePath inner = tree.folder("from/Photos/2024/June");
    for (const FilePath& target : {folder, inner}) {
        for (const auto modifiers : {Qt::KeyboardModifiers(Qt::NoModifier), Qt::KeyboardModifiers(Qt::ControlModifier),
                                     Qt::KeyboardModifiers(Qt::ControlModifier | Qt::ShiftModifier)}) {
            const DropPlan plan = planDrop(urls({a, folder}), target, modifiers);
            EXPECT_EQ(plan.action, DropAction::none);
            EXPECT_EQ(plan.refusal, QStringLiteral("“Photos” can't be put inside itself."));
        }
    }
    // However the folder is reached: a link elsewhere that leads inside it.
    const FilePath shortcut = tree.link("dest/june", inner.native());
    EXPECT_EQ(planDrop(urls({folder}), shortcut, Qt::NoModifier).refusal, QStringLiteral("“Photos” can't be put inside itself."));
}

TEST_F(DropPlanTest, OnlyFilesOnThisComputerCanBeDropped)
{
    const QString sentence = QStringLiteral("Only files on this computer can be dropped here.");
    for (const char* other : {"https://example.com/a.txt", "sftp://server/home/a.txt", "file://elsewhere.example/a.txt", "trash:/a.txt"}) {
        const DropPlan plan = planDrop({a.toUrl(), QUrl::fromEncoded(other)}, dest, Qt::NoModifier);
        EXPECT_EQ(plan.refusal, sentence) << other;
        EXPECT_EQ(plan.action, DropAction::none);
    }
    EXPECT_FALSE(planDrop({QUrl::fromEncoded("file://localhost" + a.native())}, dest, Qt::NoModifier).isRefused());
    EXPECT_EQ(planTabDrop({QUrl(QStringLiteral("https://example.com/"))}).refusal, sentence);
}

TEST_F(DropPlanTest, ATargetThatIsNotAFolderIsRefused)
{
    const DropPlan plan = planDrop(urls({folder}), a, Qt::NoModifier);
    EXPECT_EQ(plan.action, DropAction::none);
    EXPECT_EQ(plan.refusal, QStringLiteral("“a.txt” is no longer a folder."));
    EXPECT_EQ(planDrop(urls({a}), tree.path("gone"), Qt::NoModifier).refusal, QStringLiteral("“gone” is no longer a folder."));
}

TEST_F(DropPlanTest, FoldersDroppedOnTheTabBarOpenInOrderAndFilesAreLeftOut)
{
    const FilePath second = tree.folder("Second");
    const FilePath linked = tree.link("linked", dest.native());
    EXPECT_EQ(planTabDrop(urls({second, a, folder, linked})).folders, (QList<FilePath>{second, folder, linked}));
    EXPECT_TRUE(planTabDrop(urls({second})).refusal.isEmpty());
    const TabDropPlan files = planTabDrop(urls({a}));
    EXPECT_TRUE(files.folders.isEmpty());
    EXPECT_EQ(files.refusal, QStringLiteral("Only folders open in tabs; drop a folder here."));
}

TEST(DropPlanFault, PlainDropAcrossFileSystemsCopiesAndShiftStillMoves)
{
    ScratchMount other("tmpfs", "size=4m");
    if (!other.ok())
        GTEST_SKIP() << other.why().toStdString();
    TempTree tree;
    const FilePath onDisk = tree.file("a.txt", "a");
    const FilePath onTmpfs = other.root().child(QStringLiteral("b.txt"));
    ASSERT_EQ(mknod(onTmpfs.c_str(), S_IFREG | 0644, 0), 0);

    EXPECT_EQ(planDrop(urls({onDisk}), other.root(), Qt::NoModifier).action, DropAction::copy);
    EXPECT_EQ(planDrop(urls({onTmpfs}), tree.root(), Qt::NoModifier).action, DropAction::copy);
    EXPECT_EQ(planDrop(urls({onDisk}), other.root(), Qt::ShiftModifier).action, DropAction::move);
    // One item from another file system makes the whole drop a copy: nothing leaves its disk unasked.
    const FilePath folder = tree.folder("dest");
    EXPECT_EQ(planDrop(urls({onDisk, onTmpfs}), folder, Qt::NoModifier).action, DropAction::copy);
    EXPECT_EQ(planDrop(urls({onDisk}), folder, Qt::NoModifier).action, DropAction::move);
}

} // namespace
} // namespace orwick::test
