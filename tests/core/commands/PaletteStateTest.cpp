#include "commands/PaletteState.h"

#include "commands/Frecency.h"
#include "support/GitTestRepo.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::test;

namespace {

QStringList titles(const QList<PaletteItem>& rows)
{
    QStringList result;
    for (const PaletteItem& row : rows)
        result.append(row.title);
    return result;
}

// What chosen() carried, in order.
struct Choice {
    PaletteItem item;
    PaletteMode mode;
    bool alternate;
};

struct PaletteFixture : ::testing::Test {
    TempTree tree;
    Frecency frecency{tree.path(QStringLiteral("data/frecency.json"))};
    PaletteState palette{&frecency};

    std::vector<Choice> choices;
    int resultChanges = 0;

    void SetUp() override
    {
        QObject::connect(&palette, &PaletteState::chosen, [this](const PaletteItem& item, PaletteMode mode, bool alternate) {
            choices.push_back({item, mode, alternate});
        });
        QObject::connect(&palette, &PaletteState::resultsChanged, [this] { ++resultChanges; });
    }

    QString at(const QString& relative) const { return tree.path(relative).text(); }
};

} // namespace

TEST_F(PaletteFixture, OpeningResetsQueryAndModeAndClosingDiscardsRows)
{
    palette.setCommands({{QStringLiteral("newTab"), QStringLiteral("New Tab"), {}, {}, {}, {}, true}});
    palette.open(PaletteMode::path, tree.root());
    palette.setQuery(QStringLiteral("elsewhere"));
    palette.open();
    EXPECT_EQ(palette.mode(), PaletteMode::main);
    EXPECT_EQ(palette.query(), QString());
    EXPECT_EQ(palette.prompt(), QStringLiteral("Search folders, files and commands…"));
    EXPECT_EQ(titles(palette.rows()), QStringList{QStringLiteral("New Tab")});

    palette.close();
    EXPECT_FALSE(palette.isOpen());
    EXPECT_TRUE(palette.rows().isEmpty());
    EXPECT_EQ(palette.selectedItem(), nullptr);
}

TEST_F(PaletteFixture, MainModeRanksEachKeystrokeAndRunsOnlyEnabledRows)
{
    const FilePath visited = tree.folder(QStringLiteral("reports"));
    frecency.record(visited);
    palette.setCommands({{QStringLiteral("rename"), QStringLiteral("Rename"), {}, {}, QStringLiteral("F2"), {}, false},
                         {QStringLiteral("reload"), QStringLiteral("Reload"), {}, {}, {}, {}, true}});
    const std::vector<FilePath> files{tree.file("readme.md")};
    palette.setFileCandidates(files);
    palette.open();

    palette.setQuery(QStringLiteral("ren"));
    ASSERT_NE(palette.selectedItem(), nullptr);
    EXPECT_EQ(palette.selectedItem()->id, QStringLiteral("cmd.rename"));
    EXPECT_EQ(palette.selectedItem()->shortcut, QStringLiteral("F2"));
    EXPECT_FALSE(palette.choose());
    EXPECT_TRUE(palette.isOpen());
    EXPECT_EQ(int(choices.size()), 0);

    palette.setQuery(QStringLiteral("repo"));
    ASSERT_EQ(palette.sections().value(0).heading, QStringLiteral("Folders"));
    EXPECT_EQ(palette.selectedItem()->path, visited);
    palette.setQuery(QStringLiteral("readme"));
    EXPECT_EQ(palette.selectedItem()->kind, PaletteItem::Kind::file);
    EXPECT_TRUE(palette.choose());
    EXPECT_FALSE(palette.isOpen());
    ASSERT_EQ(int(choices.size()), 1);
    EXPECT_EQ(choices[0].item.path, files[0]);
}

TEST_F(PaletteFixture, PathModeCompletesWithTabGoesToThePathAndAMissingOneDoesNothing)
{
    tree.folder(QStringLiteral("Projects/site"));
    tree.folder(QStringLiteral("Photos"));
    tree.folder(QStringLiteral(".secret"));
    tree.file("notes.txt");

    palette.open(PaletteMode::path, tree.root());
    EXPECT_EQ(palette.query(), tree.root().text() + QLatin1Char('/'));
    EXPECT_EQ(palette.footer(), QStringLiteral("Go to path · Tab completes"));
    EXPECT_EQ(titles(palette.rows()),
              (QStringList{QStringLiteral("Go to ") + tree.root().text(), QStringLiteral("Go to ") + at(QStringLiteral("Photos")),
                           QStringLiteral("Go to ") + at(QStringLiteral("Projects"))}));
    EXPECT_EQ(palette.rows()[0].symbol, QStringLiteral("arrow.turn.down.right"));

    palette.setQuery(at(QStringLiteral("proj")));
    EXPECT_FALSE(palette.rows()[0].isEnabled); // nothing is called "proj"
    EXPECT_EQ(palette.rows().value(1).path, tree.path(QStringLiteral("Projects")));
    ASSERT_TRUE(palette.completePath());
    EXPECT_EQ(palette.query(), at(QStringLiteral("Projects")) + QLatin1Char('/'));
    EXPECT_EQ(palette.rows()[0].title, QStringLiteral("Go to ") + at(QStringLiteral("Projects")));

    // Relative text starts from the folder the mode opened in; hidden folders only when asked.
    palette.setQuery(QStringLiteral("pho"));
    ASSERT_TRUE(palette.completePath());
    EXPECT_EQ(palette.query(), QStringLiteral("Photos/"));
    palette.setQuery(QStringLiteral(".se"));
    ASSERT_TRUE(palette.completePath());
    EXPECT_EQ(palette.query(), QStringLiteral(".secret/"));
    palette.setQuery(QStringLiteral("zzz"));
    EXPECT_FALSE(palette.completePath());

    palette.setQuery(QStringLiteral("notes.txt"));
    EXPECT_EQ(palette.rows()[0].kind, PaletteItem::Kind::file);
    ASSERT_TRUE(palette.choose());
    EXPECT_EQ(choices[0].item.path, tree.path(QStringLiteral("notes.txt")));
    EXPECT_EQ(choices[0].mode, PaletteMode::path);

    // A missing path gives one row that does nothing.
    palette.open(PaletteMode::path, tree.root());
    palette.setQuery(at(QStringLiteral("nowhere/deeper")));
    ASSERT_EQ(palette.rows().size(), 1);
    EXPECT_EQ(palette.rows()[0].title, QStringLiteral("Nothing at “%1”").arg(at(QStringLiteral("nowhere/deeper"))));
    EXPECT_FALSE(palette.rows()[0].isEnabled);
    EXPECT_FALSE(palette.choose());
    EXPECT_TRUE(palette.isOpen());
    EXPECT_FALSE(palette.completePath());
    EXPECT_EQ(int(choices.size()), 1);
}

TEST_F(PaletteFixture, DestinationModeNamesTheTransferAndOffersFrecentFolders)
{
    const FilePath archive = tree.folder(QStringLiteral("Archive"));
    const FilePath inbox = tree.folder(QStringLiteral("Inbox"));
    frecency.record(archive);
    frecency.record(inbox);
    frecency.record(inbox);

    palette.openDestination(TransferKind::move, 3);
    EXPECT_EQ(palette.mode(), PaletteMode::destination);
    EXPECT_EQ(palette.prompt(), QStringLiteral("Move 3 items"));
    ASSERT_EQ(palette.sections().size(), 1);
    EXPECT_EQ(palette.sections()[0].heading, QStringLiteral("Folders"));
    EXPECT_EQ(titles(palette.rows()), (QStringList{QStringLiteral("Inbox"), QStringLiteral("Archive")}));
    palette.setQuery(QStringLiteral("arch"));
    EXPECT_EQ(titles(palette.rows()), QStringList{QStringLiteral("Archive")});

    palette.openDestination(TransferKind::copy, 1, inbox);
    EXPECT_EQ(palette.prompt(), QStringLiteral("Copy 1 item"));
    EXPECT_EQ(titles(palette.rows()), QStringList{QStringLiteral("Archive")}) << "the items' own folder is not offered";
    palette.openDestination(TransferKind::copy, 12);
    EXPECT_EQ(palette.prompt(), QStringLiteral("Copy 12 items"));
}

TEST_F(PaletteFixture, ProjectsModeFindsRepositoriesUnderHome)
{
    GitTestRepo app(tree, QStringLiteral("code/app"));
    GitTestRepo lib(tree, QStringLiteral("code/lib"));
    GitTestRepo nested(tree, QStringLiteral("code/app/vendored")); // inside a repository: not looked for
    GitTestRepo hidden(tree, QStringLiteral(".config/tool"));
    GitTestRepo dependency(tree, QStringLiteral("web/node_modules/pkg"));
    GitTestRepo deep(tree, QStringLiteral("a/b/c/d/too-deep"));
    tree.file(QStringLiteral("work/linked/.git"), "gitdir: /elsewhere/.git/worktrees/linked\n");

    palette.setProjectWalk(tree.root(), {.maxDepth = 3, .maxFolders = 1000});
    palette.setEditorName(QStringLiteral("Kate"));
    palette.open(PaletteMode::projects);
    EXPECT_EQ(palette.prompt(), QStringLiteral("Open a project…"));
    EXPECT_EQ(palette.footer(), QStringLiteral("Projects · Ctrl+Return opens in Kate"));
    EXPECT_EQ(palette.status(), QStringLiteral("Looking for git repositories…"));
    ASSERT_TRUE(waitUntil([&] { return !palette.isLookingForProjects(); }));
    EXPECT_EQ(palette.status(), QString());

    QStringList found;
    for (const PaletteItem& row : palette.rows())
        found.append(row.path.text());
    found.sort();
    EXPECT_EQ(found, (QStringList{at(QStringLiteral("code/app")), at(QStringLiteral("code/lib")),
                                  at(QStringLiteral("work/linked"))}));

    palette.setQuery(QStringLiteral("lib"));
    ASSERT_TRUE(palette.choose(true));
    EXPECT_EQ(choices[0].item.path, lib.root());
    EXPECT_TRUE(choices[0].alternate);

    palette.setEditorName({});
    palette.open(PaletteMode::projects);
    EXPECT_EQ(palette.footer(), QStringLiteral("Projects · Ctrl+Return opens in your editor"));
}

TEST_F(PaletteFixture, ClosingStopsTheProjectWalkAndItsResultNeverLands)
{
    GitTestRepo app(tree, QStringLiteral("code/app"));
    palette.setProjectWalk(tree.root(), {});
    palette.open(PaletteMode::projects);
    palette.close();
    EXPECT_FALSE(palette.isLookingForProjects());
    const qsizetype afterClose = resultChanges;
    waitUntil([] { return false; }, 300);
    EXPECT_EQ(resultChanges, afterClose);
    EXPECT_TRUE(palette.rows().isEmpty());
}

TEST(ProjectFinder, StopsWhenCancelledOrAtItsBounds)
{
    TempTree tree;
    GitTestRepo one(tree, QStringLiteral("one"));
    GitTestRepo two(tree, QStringLiteral("x/two"));

    CancelFlag cancelled;
    cancelled.cancel();
    const ProjectSearch stopped = findProjects(tree.root(), cancelled);
    EXPECT_TRUE(stopped.isPartial);
    EXPECT_TRUE(stopped.repositories.empty());

    CancelFlag running;
    const ProjectSearch bounded = findProjects(tree.root(), running, {.maxDepth = 5, .maxFolders = 2});
    EXPECT_TRUE(bounded.isPartial);
    EXPECT_EQ(bounded.repositories, std::vector<FilePath>{one.root()});

    const ProjectSearch all = findProjects(tree.root(), running);
    EXPECT_FALSE(all.isPartial);
    EXPECT_EQ(all.repositories, (std::vector<FilePath>{one.root(), two.root()}));
}

TEST_F(PaletteFixture, NamesWithControlCharactersShowTheirPicturesAndStillMatch)
{
    const std::vector<FilePath> files{tree.file(QByteArray("two\nlines.txt"), "x"), tree.file(QByteArray("tab\there.md"), "y")};
    palette.setFileCandidates(files);
    palette.open();
    palette.setQuery(QStringLiteral("lines"));
    ASSERT_NE(palette.selectedItem(), nullptr);
    EXPECT_EQ(palette.selectedItem()->title, QStringLiteral("two\u240Alines.txt")) << "a newline must not break the row";
    EXPECT_EQ(palette.selectedItem()->path, files[0]) << "the row still names the real file";
    palette.setQuery(QStringLiteral("tabhere"));
    ASSERT_NE(palette.selectedItem(), nullptr);
    EXPECT_EQ(palette.selectedItem()->title, QStringLiteral("tab\u2409here.md"));
}
