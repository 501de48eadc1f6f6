// Trashing through a bind mount: the home's disk reached through another mount can't take a
// rename into the home Trash, so the item goes to the Trash at the top of that mount.

#include "FileOpsFixture.h"

#include "support/ScratchMount.h"

namespace orwick::test {
namespace {

using TrashMountFault = FileOpsTest;

TEST_F(TrashMountFault, ItemReachedThroughABindMountGoesToThatMountsTrashAndComesBack)
{
    const FilePath data = tree.folder("data");
    file("data/report.txt", "report");
    ScratchMount view(data);
    if (!view.ok())
        GTEST_SKIP() << view.why().toStdString();
    const FilePath item = view.root().child(QStringLiteral("report.txt"));
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_FALSE(exists(item));
    const QByteArray volumeTrash = ".Trash-" + QByteArray::number(getuid());
    EXPECT_EQ(readAll(view.root().child(QByteArrayView(volumeTrash + "/files/report.txt"))), "report");
    undo();
    EXPECT_EQ(readAll(item), "report");
}

} // namespace
} // namespace orwick::test
