#include "commands/Frecency.h"
#include "PaletteRows.h"
#include "commands/PaletteState.h"
#include "search/NameIndex.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>
#include <unistd.h>

using namespace orwick;
using namespace orwick::test;

TEST(PaletteNameIndex, IndexedFilesComeAfterCommandsAndFoldersWithTheirFolderBelow)
{
    NameTable names;
    const FilePath home = tempHome();
    const quint32 root = names.addRoot(home);
    const quint32 projects = names.add(root, "Projects", true);
    const quint32 site = names.add(projects, "site", true);
    names.add(site, "copy.txt", false);
    names.add(root, "copyright.md", false);
    names.add(root, "unrelated.txt", false);
    const FilePath shown = home.child(QStringLiteral("Projects/site/copy.txt"));
    PaletteCandidates candidates;
    candidates.setCommands({{QStringLiteral("copy"), QStringLiteral("Copy"), {}, {}, {}, {}, true}});
    candidates.setFolders(std::vector<FrecentFolder>{{home.child(QStringLiteral("copybook")), 3.0}});
    candidates.setIndexedNames(names);

    const auto sections = PaletteRanking::rank(FuzzyQuery(QStringLiteral("copy")), candidates);
    // However well a file matches, commands and folders come first.
    QStringList shownHeadings = headings(sections);
    ASSERT_EQ(shownHeadings.size(), 3);
    EXPECT_EQ(shownHeadings.takeLast(), QStringLiteral("Files Elsewhere"));
    shownHeadings.sort();
    EXPECT_EQ(shownHeadings, (QStringList{"Commands", "Folders"}));
    const PaletteSection* elsewhere = section(sections, QStringLiteral("Files Elsewhere"));
    ASSERT_TRUE(elsewhere);
    ASSERT_EQ(elsewhere->items.size(), 2);
    EXPECT_EQ(elsewhere->items[0].title, QStringLiteral("copy.txt"));
    EXPECT_EQ(elsewhere->items[0].subtitle, QStringLiteral("~/Projects/site"));
    EXPECT_EQ(elsewhere->items[0].path, shown);
    EXPECT_EQ(elsewhere->items[0].kind, PaletteItem::Kind::file);
    EXPECT_EQ(elsewhere->items[1].title, QStringLiteral("copyright.md"));

    // A file the shown folder offers already is not repeated below.
    const std::vector<FilePath> shownFiles{shown};
    candidates.setFiles(shownFiles);
    const auto again = PaletteRanking::rank(FuzzyQuery(QStringLiteral("copy")), candidates);
    ASSERT_TRUE(section(again, QStringLiteral("Files")));
    ASSERT_TRUE(section(again, QStringLiteral("Files Elsewhere")));
    EXPECT_EQ(section(again, QStringLiteral("Files Elsewhere"))->items.size(), 1);
    EXPECT_EQ(headings(again).last(), QStringLiteral("Files Elsewhere"));
    // No query, no files.
    EXPECT_FALSE(section(PaletteRanking::rank(FuzzyQuery(), candidates), QStringLiteral("Files Elsewhere")));
}

TEST(PaletteNameIndex, OpeningThePaletteStartsTheIndexAndRowsFollowItsFirstWalk)
{
    TempTree tree;
    const FilePath quarterly = tree.file("work/reports/quarterly-figures.ods");
    NameIndex::Options options;
    options.file = tree.path(QStringLiteral("data/name-index.bin"));
    options.roots = [root = tree.path(QStringLiteral("work"))] { return std::vector<FilePath>{root}; };
    NameIndex index(std::move(options));
    TempTree frecencyFolder;
    Frecency frecency{frecencyFolder.path(QStringLiteral("frecency.json"))};
    PaletteState palette{&frecency};
    palette.setNameIndex(&index);
    EXPECT_FALSE(index.isStarted());

    palette.open(PaletteMode::path, tree.root()); // other modes leave the index alone
    EXPECT_FALSE(index.isStarted());
    palette.open();
    EXPECT_TRUE(index.isStarted());
    palette.setQuery(QStringLiteral("quarfig"));
    ASSERT_TRUE(waitUntil([&] { return !palette.rows().isEmpty(); }, 20000));
    EXPECT_EQ(palette.rows().first().path, quarterly);
    EXPECT_EQ(palette.rows().first().subtitle, tree.path(QStringLiteral("work/reports")).abbreviated());

    std::vector<PaletteItem> chosen;
    QObject::connect(&palette, &PaletteState::chosen,
                     [&](const PaletteItem& item, PaletteMode, bool) { chosen.push_back(item); });
    EXPECT_TRUE(palette.choose());
    ASSERT_EQ(chosen.size(), 1u);
    EXPECT_EQ(chosen.front().kind, PaletteItem::Kind::file); // the window reveals it
}
