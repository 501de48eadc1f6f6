// "Calculate Folder Sizes" over a folder that can't be read: its size is unknown, not zero, and
// the list says "Can’t read" rather than "Zero bytes".

#include "DiskTestSupport.h"
#include "disktools/FolderSizes.h"
#include "state/WindowState.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orwick;
using namespace orwick::test;

namespace {

// Root reads every folder; for as long as it lives, this makes the whole process act as the
// "nobody" user (seteuid changes every thread), so that permissions apply to it as well.
class ActingAsNobody {
public:
    ActingAsNobody() : m_switched(geteuid() == 0 && seteuid(65534) == 0) {}
    ~ActingAsNobody()
    {
        if (m_switched)
            (void)seteuid(0);
    }

private:
    bool m_switched;
};

TEST(FolderSizesUnreadableTest, AFolderThatCantBeReadHasNoSize)
{
    TempTree tree;
    put(tree, "readable/a.bin", patternBytes(300000, 1));
    put(tree, "locked/b.bin", patternBytes(300000, 2));
    ASSERT_EQ(chmod(tree.root().c_str(), 0755), 0); // others may walk to the folders
    ASSERT_EQ(chmod(tree.path("locked").c_str(), 0), 0);
    ViewPreferences preferences;
    PaneState pane(tree.root(), &preferences);
    ASSERT_TRUE(waitUntil([&] { return !pane.isLoading(); }));
    int finished = 0;
    QObject::connect(pane.folderSizes(), &FolderSizes::finished, [&] { ++finished; });
    {
        const ActingAsNobody nobody;
        pane.measureFolderSizes();
        ASSERT_TRUE(waitUntil([&] { return finished == 1; }));
    }
    chmod(tree.path("locked").c_str(), 0755);

    const FolderSizes& sizes = *pane.folderSizes();
    EXPECT_TRUE(sizes.isUnreadable(tree.path("locked")));
    EXPECT_FALSE(sizes.size(tree.path("locked")).has_value());
    EXPECT_FALSE(sizes.isPending(tree.path("locked")));
    EXPECT_FALSE(sizes.isUnreadable(tree.path("readable")));
    EXPECT_GT(sizes.size(tree.path("readable")).value_or(0), 300000);

    pane.measureFolderSizes(); // readable now: measured again, it has a size
    ASSERT_TRUE(waitUntil([&] { return finished == 2; }));
    EXPECT_FALSE(sizes.isUnreadable(tree.path("locked")));
    EXPECT_GT(sizes.size(tree.path("locked")).value_or(0), 300000);
}

} // namespace
