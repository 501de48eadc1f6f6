#include "DiskTestSupport.h"
#include "disktools/Duplicates.h"
#include "support/TempHome.h"

#include <QLocale>
#include <QSet>
#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::test;

namespace {

Duplicates::Scan findIn(const TempTree& tree, qint64 minimumSize = 0, Duplicates::Options options = {})
{
    options.minimumSize = minimumSize;
    CancelFlag never;
    return Duplicates::find(tree.root(), options, never);
}

// Each group as the set of its members' paths relative to the tree.
QList<QSet<QByteArray>> groupSets(const TempTree& tree, const Duplicates::Scan& scan)
{
    QList<QSet<QByteArray>> sets;
    for (const auto& group : scan.groups) {
        QSet<QByteArray> members;
        for (const auto& file : group.files)
            members.insert(file.url.native().mid(tree.root().native().size() + 1));
        sets.append(members);
    }
    return sets;
}

using Set = QSet<QByteArray>;

} // namespace

TEST(Duplicates, EmptyFilesGroupOnlyWhenTheMinimumAllowsThem)
{
    TempTree tree;
    put(tree, "a/empty1");
    put(tree, "b/empty2");
    EXPECT_EQ(groupSets(tree, findIn(tree, 0)), QList<Set>({Set{"a/empty1", "b/empty2"}}));
    const auto scan = findIn(tree, Duplicates::defaultMinimumSize);
    EXPECT_TRUE(scan.groups.empty());
    EXPECT_EQ(scan.files, 2);
}

TEST(Duplicates, HeadsDecideSmallFilesAndWholeFilesDecideLargeOnes)
{
    TempTree tree;
    const QByteArray head = patternBytes(65536, 1);
    put(tree, "exact1", head);
    put(tree, "exact2", head);
    QByteArray longer = patternBytes(65537, 2);
    put(tree, "long1", longer);
    put(tree, "long2", longer);
    longer[65536] = char(longer[65536] + 1);
    put(tree, "long3", longer); // same head and size, different last byte
    put(tree, "decoy", patternBytes(65536, 3)); // same size as exact*, other head

    std::vector<Duplicates::Stage> stages;
    Duplicates::Options options;
    options.stageStarted = [&](Duplicates::Stage stage) { stages.push_back(stage); };
    const auto scan = findIn(tree, 0, options);
    QList<Set> sets = groupSets(tree, scan);
    std::sort(sets.begin(), sets.end(), [](const Set& a, const Set& b) { return *a.begin() < *b.begin(); });
    EXPECT_EQ(sets, QList<Set>({Set{"exact1", "exact2"}, Set{"long1", "long2"}}));
    EXPECT_EQ(stages, (std::vector{Duplicates::Stage::comparingHeads, Duplicates::Stage::comparingWholeFiles,
                                   Duplicates::Stage::done}));
}

TEST(Duplicates, HardLinksOfOneFileAreOneFile)
{
    TempTree tree;
    const auto original = put(tree, "one/original", "same bytes");
    tree.folder("two");
    makeHardLink(original, tree.path("two/linked"));
    EXPECT_TRUE(findIn(tree).groups.empty()) << "two names of one file are not duplicates";

    put(tree, "three/copy", "same bytes");
    const auto scan = findIn(tree);
    ASSERT_EQ(scan.groups.size(), 1u);
    EXPECT_EQ(scan.groups[0].files.size(), 2u) << "the linked name and the copy, not the file twice";
}

TEST(Duplicates, NeverFollowsLinksNorTakesSkippedHiddenOrPackageFoldersOrWhatDesktopsHide)
{
    TempTree tree;
    put(tree, "real/data", "payload");
    tree.link("real/again", "data");                 // a link to a file
    tree.link("real/loop", ".");                     // a link loop
    tree.link("outside", tree.root().native());       // a link to the whole tree
    put(tree, "deep/x/node_modules/data", "payload");
    put(tree, "deep/y/z/__pycache__/data", "payload");
    put(tree, ".hidden-folder/data", "payload");
    put(tree, "real/.data", "payload");
    put(tree, "Thing.app/data", "payload");
    put(tree, "Build/data", "payload");               // only "build" is skipped
    put(tree, "real/twin", "payload");
    put(tree, "real/.hidden", "twin\n");             // desktops hide what .hidden names
    const auto scan = findIn(tree);
    EXPECT_EQ(groupSets(tree, scan), QList<Set>({Set{"real/data", "Build/data"}}));
    EXPECT_EQ(scan.files, 2);
}

TEST(Duplicates, UnreadableFoldersAndFilesAreLeftOutInSilence)
{
    TempTree tree;
    put(tree, "open/a", "same");
    put(tree, "open/b", "same");
    put(tree, "locked/c", "same");
    const auto unreadableFile = put(tree, "open/d", "same");
    setMode(tree.path("locked"), 0);
    setMode(unreadableFile, 0);
    Duplicates::Scan scan;
    {
        WithoutPermissionOverride asUser;
        scan = findIn(tree);
    }
    setMode(tree.path("locked"), 0755);
    EXPECT_EQ(groupSets(tree, scan), QList<Set>({Set{"open/a", "open/b"}}));
}

TEST(Duplicates, FilesThatChangeOrVanishBetweenStagesDropOut)
{
    TempTree tree;
    const QByteArray big = patternBytes(200000, 7);
    for (const char* name : {"a", "b", "c", "d", "e"})
        put(tree, name, big);
    Duplicates::Options options;
    options.stageStarted = [&](Duplicates::Stage stage) {
        if (stage == Duplicates::Stage::comparingHeads) {
            ::unlink(tree.path("a").c_str());            // vanishes before its head is read
            put(tree, "b", big + "grown");               // changes size
        } else if (stage == Duplicates::Stage::comparingWholeFiles) {
            ::unlink(tree.path("c").c_str());            // vanishes before the whole read
        }
    };
    const auto scan = findIn(tree, 0, options);
    EXPECT_EQ(groupSets(tree, scan), QList<Set>({Set{"d", "e"}}));
}

TEST(Duplicates, StopsAtTheFileLimitAndSaysSo)
{
    TempTree tree;
    for (int i = 0; i < 30; ++i)
        put(tree, "f" + QByteArray::number(i), "same");
    Duplicates::Options options;
    options.limit = 10;
    const auto scan = findIn(tree, 0, options);
    EXPECT_TRUE(scan.isPartial);
    EXPECT_EQ(scan.files, 10);
    EXPECT_TRUE(Duplicates::summary(&scan).endsWith(" (stopped there)"));
    EXPECT_FALSE(findIn(tree).isPartial);
}

TEST(Duplicates, NamesThatAreNotUtf8KeepTheirBytes)
{
    TempTree tree;
    const auto first = put(tree, QByteArray("caf\xe9.txt"), "bytes");
    const auto second = put(tree, QByteArray("other\xff"), "bytes");
    EXPECT_EQ(groupSets(tree, findIn(tree)), QList<Set>({Set{"caf\xe9.txt", "other\xff"}}));
    // The temporary folder's own clean-up goes through text paths; these need their bytes.
    ::unlink(first.c_str());
    ::unlink(second.c_str());
}

TEST(Duplicates, AnotherMountedFileSystemIsNotEntered)
{
    TempTree tree;
    put(tree, "here", "same");
    const auto mountPoint = tree.folder("mounted");
    TemporaryMount mount(mountPoint);
    if (!mount.isMounted())
        GTEST_SKIP() << "no permission to mount a tmpfs here";
    put(tree, "mounted/there", "same");
    EXPECT_TRUE(findIn(tree).groups.empty());
}

TEST(Duplicates, MembersGoOldestFirstAndGroupsByWasteThenByFirstPathDescending)
{
    TempTree tree;
    const auto newer = put(tree, "a-newer", "group one");
    const auto older = put(tree, "z-older", "group one");
    tree.touch(newer, 2000000000);
    tree.touch(older, 1000000000);
    const auto tie1 = put(tree, "m1", "group 2!!");
    const auto tie2 = put(tree, "m2", "group 2!!");
    tree.touch(tie1, 1500000000);
    tree.touch(tie2, 1500000000);
    const QByteArray big = patternBytes(300, 1);
    put(tree, "big1", big);
    put(tree, "big2", big);

    const auto scan = findIn(tree);
    ASSERT_EQ(scan.groups.size(), 3u);
    EXPECT_EQ(scan.groups[0].size, 300) << "largest waste first";
    // "group one" and "group 2!!" waste 9 bytes each: the later first path ("z-older" > "m1") leads.
    EXPECT_EQ(scan.groups[1].files[0].url.fileName(), "z-older");
    EXPECT_EQ(scan.groups[1].files[1].url.fileName(), "a-newer");
    EXPECT_EQ(scan.groups[2].files[0].url.fileName(), "m1") << "equal dates go by path";
}

TEST(Duplicates, KeepRulePrefersTheOldestNotNamedLikeACopy)
{
    auto group = [](std::initializer_list<const char*> names) {
        Duplicates::Group g;
        g.size = 1;
        for (const char* name : names)
            g.files.push_back({FilePath::fromNative(QByteArray("/d/") + name), 0});
        return g;
    };
    EXPECT_EQ(Duplicates::suggestedKeep(group({"a copy.txt", "a.txt", "a (2).txt"})).url.fileName(), "a.txt");
    EXPECT_EQ(Duplicates::suggestedKeep(group({"b copy.txt", "copy of b.txt"})).url.fileName(), "b copy.txt");
    for (const char* copy : {"x copy.txt", "x copy 2.txt", "Copy of x", "report (2).pdf", "X COPY.txt"})
        EXPECT_TRUE(Duplicates::isNamedLikeCopy(FilePath::fromNative(QByteArray("/d/") + copy))) << copy;
    for (const char* original : {"copyright.txt", "x.copy", "report (a).pdf", "notes ().md", "()"})
        EXPECT_FALSE(Duplicates::isNamedLikeCopy(FilePath::fromNative(QByteArray("/d/") + original))) << original;
}

TEST(Duplicates, FooterWordsEachState)
{
    EXPECT_EQ(Duplicates::summary(nullptr),
              "Same size first, then the same first bytes, then the whole file: most are never read.");
    Duplicates::Scan scan;
    scan.files = 1234;
    const QString count = QLocale().toString(1234);
    EXPECT_EQ(Duplicates::summary(&scan), "Looked through " + count + " files");
    Duplicates::Group group;
    group.size = 1500000;
    group.files.resize(3);
    scan.groups.push_back(group);
    scan.isPartial = true;
    EXPECT_EQ(Duplicates::summary(&scan),
              "1 group, 3 MB in extra copies · Looked through " + count + " files (stopped there)");
    scan.files = 1;
    scan.groups.clear();
    scan.isPartial = false;
    EXPECT_EQ(Duplicates::summary(&scan), "Looked through 1 file");
}

TEST(Duplicates, CancelledSearchStopsBeforeReading)
{
    TempTree tree;
    put(tree, "a", "same");
    put(tree, "b", "same");
    CancelFlag cancel;
    Duplicates::Options options;
    options.minimumSize = 0;
    options.stageStarted = [&](Duplicates::Stage) { cancel.cancel(); };
    EXPECT_TRUE(Duplicates::find(tree.root(), options, cancel).groups.empty());
}
