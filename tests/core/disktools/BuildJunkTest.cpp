#include "DiskTestSupport.h"
#include "disktools/BuildJunk.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::test;

namespace {

// Found folders as "relative path: kind", in walk order.
QStringList found(const TempTree& tree, int depth = BuildJunk::searchDepth)
{
    CancelFlag never;
    QStringList out;
    for (const auto& f : BuildJunk::find(tree.root(), depth, never))
        out << QString::fromUtf8(f.url.native().mid(tree.root().native().size() + 1)) + ": " + f.kind;
    return out;
}

} // namespace

TEST(BuildJunk, MarkersBesideTheFolderDecide)
{
    TempTree tree;
    tree.folder("web/dist");
    put(tree, "web/package.json");
    tree.folder("plain/dist");
    tree.folder("app/build");
    put(tree, "app/build.gradle.kts");
    tree.folder("c/build");
    tree.folder("rust/target");
    put(tree, "rust/Cargo.toml");
    tree.folder("py/__pycache__");
    tree.folder("py/.venv");
    QStringList result = found(tree);
    result.sort();
    EXPECT_EQ(result, QStringList({"app/build: Gradle", "py/.venv: Python", "py/__pycache__: Python",
                                   "rust/target: Rust", "web/dist: JavaScript build"}));
}

TEST(BuildJunk, NamesMatchExactlyAndMatchesAreNotEnteredNorGitOrLibrary)
{
    TempTree tree;
    tree.folder("a/Node_Modules");
    tree.folder("b/node_modules/pkg/node_modules");
    tree.folder("repo/.git/__pycache__");
    tree.folder("Library/Caches/__pycache__");
    EXPECT_EQ(found(tree), QStringList({"b/node_modules: npm"}));
}

TEST(BuildJunk, SearchesSevenLevelsDown)
{
    TempTree tree;
    tree.folder("1/2/3/4/5/6/node_modules");   // seven levels down
    tree.folder("x/2/3/4/5/6/7/node_modules"); // eight
    EXPECT_EQ(found(tree), QStringList({"1/2/3/4/5/6/node_modules: npm"}));
    EXPECT_EQ(found(tree, 6), QStringList());
}

TEST(BuildJunk, UnreadableFoldersAndOtherMountsAreSkipped)
{
    TempTree tree;
    tree.folder("locked/node_modules");
    tree.folder("open/node_modules");
    const auto mountPoint = tree.folder("mounted");
    TemporaryMount mount(mountPoint);
    if (mount.isMounted())
        tree.folder("mounted/node_modules");
    setMode(tree.path("locked"), 0);
    QStringList result;
    {
        WithoutPermissionOverride asUser;
        result = found(tree);
    }
    setMode(tree.path("locked"), 0755);
    EXPECT_EQ(result, QStringList({"open/node_modules: npm"}));
}

TEST(BuildJunk, MeasuresEachFoundFolder)
{
    TempTree tree;
    put(tree, "p/node_modules/a/big", patternBytes(300000, 1));
    put(tree, "q/__pycache__/x.pyc", patternBytes(10, 2));
    CancelFlag never;
    const auto folders = BuildJunk::find(tree.root(), BuildJunk::searchDepth, never);
    ASSERT_EQ(folders.size(), 2u);
    const auto sizes = BuildJunk::measureAll(folders, never);
    ASSERT_EQ(sizes.size(), 2u);
    const size_t modules = folders[0].kind == "npm" ? 0 : 1;
    EXPECT_GE(sizes[modules], 300000);
    EXPECT_GT(sizes[1 - modules], 0);
    EXPECT_LT(sizes[1 - modules], 300000);
}
