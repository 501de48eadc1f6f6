// Tags through the engine: one job and one undo step for many files, other programs' tags kept,
// and an undo that writes back each file's exact attribute, or its absence.

#include "FileOpsFixture.h"

#include "platform/Xattr.h"

namespace orwick::test {
namespace {

using TagChange = FileOperations::TagChange;

std::optional<QByteArray> tagsOf(const FilePath& file) { return xattr::get(file, xattr::tags); }
void setTags(const FilePath& file, const QByteArray& value) { ASSERT_TRUE(xattr::set(file, xattr::tags, value)); }

TEST_F(FileOpsTest, TaggingSeveralFilesIsOneStepThatUndoesEachExactly)
{
    const FilePath bare = file("bare.txt", "b");
    const FilePath odd = file("odd.txt", "o");
    const FilePath already = file("already.txt", "a");
    setTags(odd, " project-x ;; draft ");
    setTags(already, "red");

    ops.changeTag({bare, odd, already}, QStringLiteral("Red"), TagChange::add, &stack);
    settle();

    EXPECT_EQ(tagsOf(bare), QByteArray("Red"));
    EXPECT_EQ(tagsOf(odd), QByteArray("project-x,draft,Red")) << "another program's tags stay";
    EXPECT_EQ(tagsOf(already), QByteArray("red")) << "a file that had the tag is left as it was";
    EXPECT_EQ(lastToast(), QStringLiteral("Added Red to 3 items"));
    EXPECT_EQ(toasts.last().icon, QStringLiteral("tag"));
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Add Red Tag"));
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();

    undo();
    EXPECT_EQ(tagsOf(bare), std::nullopt) << "no attribute before, none after undo";
    EXPECT_EQ(tagsOf(odd), QByteArray(" project-x ;; draft ")) << "the very bytes come back";
    EXPECT_EQ(tagsOf(already), QByteArray("red"));

    redo();
    EXPECT_EQ(tagsOf(bare), QByteArray("Red"));
    EXPECT_EQ(tagsOf(odd), QByteArray("project-x,draft,Red"));
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(FileOpsTest, RemovingTheLastTagRemovesTheAttributeAndUndoPutsItBack)
{
    const FilePath one = file("one.txt");
    const FilePath two = file("two.txt");
    setTags(one, "Grey");
    setTags(two, "caf\xe9, Gray ,Blue");

    ops.changeTag({one, two}, QStringLiteral("Gray"), TagChange::remove, &stack);
    settle();
    EXPECT_EQ(tagsOf(one), std::nullopt);
    EXPECT_EQ(tagsOf(two), QByteArray("caf\xe9,Blue")) << "a name that isn't UTF-8 keeps its bytes";
    EXPECT_EQ(lastToast(), QStringLiteral("Removed Gray from 2 items"));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Remove Gray Tag"));

    undo();
    EXPECT_EQ(tagsOf(one), QByteArray("Grey"));
    EXPECT_EQ(tagsOf(two), QByteArray("caf\xe9, Gray ,Blue"));
}

TEST_F(FileOpsTest, UndoKeepsTagsAnotherProgramAddedMeanwhile)
{
    const FilePath item = file("item.txt");
    setTags(item, "work");
    ops.changeTag({item}, QStringLiteral("Blue"), TagChange::add, &stack);
    settle();
    ASSERT_EQ(tagsOf(item), QByteArray("work,Blue"));
    setTags(item, "work,Blue,urgent"); // another program adds its own tag

    undo();
    EXPECT_EQ(tagsOf(item), QByteArray("work,urgent")) << "only this step's Blue goes";
    redo();
    EXPECT_EQ(tagsOf(item), QByteArray("work,urgent,Blue"));
}

TEST_F(FileOpsTest, NothingToChangeMakesNoUndoStepAndNoToast)
{
    const FilePath item = file("item.txt");
    ops.changeTag({item}, QStringLiteral("Red"), TagChange::remove, &stack);
    settle();
    EXPECT_EQ(stack.count(), 0);
    EXPECT_TRUE(toasts.isEmpty());
    EXPECT_TRUE(reports.isEmpty());
    EXPECT_EQ(tagsOf(item), std::nullopt) << "no empty attribute is written";
}

TEST_F(FileOpsTest, AVanishedFileIsCountedAndALinkIsRefusedWithItsReason)
{
    const FilePath gone = tree.path("gone.txt");
    const FilePath target = file("target.txt");
    const FilePath link = tree.link("link.txt", target.native());
    const FilePath kept = file("kept.txt");

    ops.changeTag({gone, link, kept}, QStringLiteral("Red"), TagChange::add, &stack);
    settle();

    ASSERT_EQ(reports.size(), 1);
    EXPECT_FALSE(reports.first().isSuccess());
    EXPECT_EQ(reports.first().done, 1);
    EXPECT_EQ(reports.first().skipped, 1);
    EXPECT_EQ(reports.first().errors, QStringList{QStringLiteral("Couldn’t tag “link.txt”: a link can’t carry tags.")});
    EXPECT_EQ(tagsOf(target), std::nullopt) << "a link's target is not tagged in its place";
    EXPECT_EQ(tagsOf(kept), QByteArray("Red"));
    EXPECT_TRUE(toasts.isEmpty()) << "a partial result is not announced as success";
    EXPECT_EQ(stack.count(), 1) << "what was done can be undone";
}

TEST_F(FileOpsTest, ATagWithoutANameIsRefused)
{
    const FilePath item = file("item.txt");
    ops.changeTag({item}, QStringLiteral("  "), TagChange::add, &stack);
    settle();
    EXPECT_EQ(errors, QStringList{QStringLiteral("A tag needs a name.")});
    EXPECT_EQ(tagsOf(item), std::nullopt);
}

} // namespace
} // namespace orwick::test
