// Tags on disks that refuse them: a file system without extended attributes and a read-only
// mount. Each refused file is a failure with its reason, never a success; mounting needs root.

#include "FileOpsFixture.h"

#include "platform/Xattr.h"
#include "support/ScratchMount.h"

#include <QFile>

namespace orwick::test {
namespace {

using TagFault = FileOpsTest;
using TagChange = FileOperations::TagChange;

FilePath makeFile(const FilePath& folder, const char* name)
{
    const FilePath path = folder.child(QByteArrayView(name));
    QFile file(path.text());
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    return path;
}

TEST_F(TagFault, ADiskWithoutAttributesFailsEveryFileWithItsReason)
{
    ScratchMount disk("ramfs"); // ramfs keeps no user attributes at all
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const FilePath a = makeFile(disk.root(), "a.txt");
    const FilePath b = makeFile(disk.root(), "b.txt");

    ops.changeTag({a, b}, QStringLiteral("Red"), TagChange::add, &stack);
    settle();

    ASSERT_EQ(reports.size(), 1);
    const OperationOutcome& outcome = reports.first();
    EXPECT_FALSE(outcome.isSuccess());
    EXPECT_EQ(outcome.done, 0);
    EXPECT_EQ(outcome.errors, (QStringList{QStringLiteral("Couldn’t tag “a.txt”: that disk doesn’t keep tags."),
                                           QStringLiteral("Couldn’t tag “b.txt”: that disk doesn’t keep tags.")}));
    EXPECT_EQ(outcomeText(outcome), QStringLiteral("Couldn’t tag 2 items: “a.txt” and “b.txt” — that disk doesn’t keep tags."));
    EXPECT_TRUE(toasts.isEmpty());
    EXPECT_EQ(stack.count(), 0) << "nothing changed, nothing to undo";
}

TEST_F(TagFault, AReadOnlyDiskRefusesAndKeepsTheTagsThereWere)
{
    ScratchMount disk("tmpfs", "size=1m");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const FilePath tagged = makeFile(disk.root(), "tagged.txt");
    ASSERT_TRUE(xattr::set(tagged, xattr::tags, "Blue,client"));
    ASSERT_TRUE(disk.makeReadOnly());

    ops.changeTag({tagged}, QStringLiteral("Blue"), TagChange::remove, &stack);
    settle();

    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports.first().errors, QStringList{QStringLiteral("Couldn’t untag “tagged.txt”: the disk is read-only.")});
    EXPECT_EQ(reports.first().done, 0);
    EXPECT_EQ(xattr::get(tagged, xattr::tags), QByteArray("Blue,client"));
    EXPECT_EQ(stack.count(), 0);
}

} // namespace
} // namespace orwick::test
