// Empty Trash: what it measures, what it deletes (only what was measured), what it reports.

#include "FileOpsFixture.h"

#include "fileops/TrashContents.h"
#include "fileops/TrashLog.h"
#include "files/ListingLoader.h"
#include "platform/AllTrashes.h"
#include "platform/Trash.h"
#include "platform/XdgPaths.h"

namespace orwick::test {
namespace {

class EmptyTrashTest : public FileOpsTest {
protected:
    // Trashes the items through the engine and returns where they lie now.
    QList<FilePath> trashed(const QList<FilePath>& items)
    {
        ops.trash(items, QStringLiteral("Move to Trash"), &stack, false);
        settle();
        QList<FilePath> inTrash;
        for (const FilePath& item : items)
            inTrash.append(homeTrashFiles().child(QByteArrayView(item.fileNameBytes())));
        return inTrash;
    }
    TrashContents homeContents() const { return TrashContents::measure({xdg::homeTrash()}); }
};

TEST_F(EmptyTrashTest, MeasuresItemsAndBytesOfEveryTrashedItemAndCountsTheHomeTrashWithTheOthers)
{
    file("folder/inner/b.bin", QByteArray(2500, 'b'));
    trashed({file("a.txt", QByteArray(1000, 'a')), tree.folder("folder")});
    const TrashContents contents = homeContents();
    EXPECT_EQ(contents.items.size(), 2);
    EXPECT_EQ(contents.bytes, 3500);
    EXPECT_EQ(contents.summary(), QStringLiteral("2 items, 3.5 kB"));
    // The home Trash is listed and counted with the others.
    const QList<FilePath> folders = trash::allTrashFolders();
    ASSERT_FALSE(folders.isEmpty());
    EXPECT_EQ(folders.first(), xdg::homeTrash());
    EXPECT_EQ(trash::countItems(xdg::homeTrash()), 2);
    EXPECT_GE(trash::countAllItems(), 2);
}

TEST_F(EmptyTrashTest, DeletesWhatWasMeasuredWithInfoAndLogAndSaysSo)
{
    const QList<FilePath> inTrash = trashed({file("one.txt", "1"), file("two/deep.txt", "2")});
    trashed({tree.folder("two")});
    const TrashContents contents = homeContents();
    ASSERT_EQ(contents.items.size(), 3);
    const int undoSteps = stack.count();
    ops.emptyTrash(contents.items, &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_TRUE(names(homeTrashFiles()).isEmpty());
    EXPECT_TRUE(names(xdg::homeTrash().child(QByteArrayView("info"))).isEmpty());
    for (const FilePath& item : inTrash)
        EXPECT_FALSE(TrashLog().formerPath(item)) << item.c_str();
    EXPECT_EQ(lastToast(), QStringLiteral("Emptied the Trash"));
    EXPECT_FALSE(toasts.last().canUndo);
    EXPECT_EQ(stack.count(), undoSteps) << "deleting for good leaves no undo step that would pretend otherwise";
    EXPECT_EQ(ListingLoader::load(Listing::of(Listing::Kind::trash), true).items.size(), 0);
}

TEST_F(EmptyTrashTest, ItemTrashedAfterTheQuestionStays)
{
    trashed({file("asked.txt", "a")});
    const TrashContents contents = homeContents();
    const QList<FilePath> later = trashed({file("later.txt", "l")});
    ops.emptyTrash(contents.items, &stack);
    settle();
    EXPECT_EQ(names(homeTrashFiles()), QList<QByteArray>{"later.txt"});
    EXPECT_EQ(readAll(later.first()), "l");
    EXPECT_TRUE(exists(trash::infoFileFor(later.first())));
}

TEST_F(EmptyTrashTest, ItemGoneMeanwhileIsCountedNotFailed)
{
    const QList<FilePath> inTrash = trashed({file("stays.txt", "s"), file("put back.txt", "p")});
    const TrashContents contents = homeContents();
    ops.putBack({inTrash.last()}, &stack);
    settle();
    ops.emptyTrash(contents.items, &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty());
    ASSERT_FALSE(reports.isEmpty());
    EXPECT_EQ(reports.last().skipped, 1);
    EXPECT_EQ(reports.last().done, 1);
    EXPECT_EQ(readAll(tree.path(QStringLiteral("put back.txt"))), "p");
}

TEST_F(EmptyTrashTest, RefusesWhatIsNotInATrash)
{
    const FilePath outside = file("precious.txt", "keep");
    ops.emptyTrash({outside}, &stack);
    settle();
    EXPECT_EQ(readAll(outside), "keep");
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(errors.first(), QStringLiteral("Couldn’t delete “precious.txt”: it isn’t in your Trash."));
    EXPECT_TRUE(toasts.isEmpty());
}

} // namespace
} // namespace orwick::test
