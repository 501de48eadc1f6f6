// The porcelain reader keeps every mark inside the repository: a record whose path would lead
// above the root (or to the root itself) is left out rather than put a badge on another folder.

#include "git/RepoStatus.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

TEST(StatusBounds, RecordsLeadingOutOfTheRootAreLeftOut)
{
    const FilePath root = FilePath::fromNative("/work/repo");
    QString withNuls = QString::fromUtf8("## main");
    for (const char* record : {" M ../outside.txt", "?? src/../../x", "!! ../../ignored", " M .", " M src/kept.cpp"})
        withNuls += QChar(u'\0') + QString::fromUtf8(record);
    const RepoStatus status = parseStatus(withNuls, root);
    ASSERT_EQ(status.files.size(), 1);
    EXPECT_EQ(status.files[0].path, QStringLiteral("src/kept.cpp"));
    EXPECT_EQ(status.changedPaths.keys(), QList{FilePath::fromNative("/work/repo/src/kept.cpp")});
    EXPECT_EQ(status.foldersWithChanges, QSet{FilePath::fromNative("/work/repo/src")});
    EXPECT_TRUE(status.ignored.isEmpty());
    EXPECT_EQ(status.branch, QStringLiteral("main"));
}

} // namespace
} // namespace orwick
