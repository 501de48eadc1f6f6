#include "PaletteRows.h"

#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::test;

namespace {

FrecentFolder folder(const char* path, double score) { return {FilePath::fromNative(path), score}; }

PaletteCommand command(const QString& id, const QString& title, const QString& keywords = {}, bool enabled = true)
{
    return {id, title, keywords, QStringLiteral("star"), QString(), QStringLiteral("Not available here"), enabled};
}

} // namespace

TEST(PaletteRanking, FrecencyBonusDecidesBetweenEqualMatches)
{
    EXPECT_EQ(PreparedFolders::frecencyBonus(0.0), 0);
    EXPECT_EQ(PreparedFolders::frecencyBonus(1.0), 150);
    EXPECT_EQ(PreparedFolders::frecencyBonus(2.9), 150);
    EXPECT_EQ(PreparedFolders::frecencyBonus(3.0), 300);

    // Same fuzzy score; the more frecent folder wins even when it comes later in the input.
    const std::vector<FrecentFolder> ranking{folder("/data/alpha1", 1.0), folder("/data/alpha2", 8.0)};
    auto sections = PaletteRanking::rank(u"alpha", {}, ranking, {});
    ASSERT_EQ(headings(sections), QStringList{QStringLiteral("Folders")});
    EXPECT_EQ(ids(sections[0].items), (QStringList{QStringLiteral("/data/alpha2"), QStringLiteral("/data/alpha1")}));

    // Within one bonus step the input order stands.
    const std::vector<FrecentFolder> close{folder("/data/alpha1", 1.0), folder("/data/alpha2", 1.5)};
    sections = PaletteRanking::rank(u"alpha", {}, close, {});
    EXPECT_EQ(ids(sections[0].items), (QStringList{QStringLiteral("/data/alpha1"), QStringLiteral("/data/alpha2")}));
}

TEST(PaletteRanking, FolderRowsMatchTheAbbreviatedPathAndShowTheParent)
{
    const QByteArray home = qgetenv("HOME");
    const std::vector<FrecentFolder> ranking{{FilePath::fromNative(home + "/Projects/site"), 1.0}};
    // "~p" only matches when the home folder is written as "~".
    const auto sections = PaletteRanking::rank(u"~ps", {}, ranking, {});
    ASSERT_EQ(sections.size(), 1);
    const PaletteItem& row = sections[0].items.value(0);
    EXPECT_EQ(row.kind, PaletteItem::Kind::folder);
    EXPECT_EQ(row.title, QStringLiteral("site"));
    EXPECT_EQ(row.subtitle, QStringLiteral("~/Projects"));
    EXPECT_EQ(row.path, ranking[0].path);
}

TEST(PaletteRanking, DisabledCommandsAreKeptAndMarked)
{
    const QList<PaletteCommand> commands{command(QStringLiteral("newTab"), QStringLiteral("New Tab")),
                                         command(QStringLiteral("trash"), QStringLiteral("Move to Trash"),
                                                 QStringLiteral("delete remove"), false)};
    const auto sections = PaletteRanking::rank(u"trash", commands, {}, {});
    ASSERT_EQ(headings(sections), QStringList{QStringLiteral("Commands")});
    ASSERT_EQ(sections[0].items.size(), 1);
    const PaletteItem& row = sections[0].items[0];
    EXPECT_EQ(row.id, QStringLiteral("cmd.trash"));
    EXPECT_EQ(row.commandId, QStringLiteral("trash"));
    EXPECT_FALSE(row.isEnabled);
    EXPECT_EQ(row.subtitle, QStringLiteral("Not available here"));

    // Keywords find a command its title does not.
    EXPECT_EQ(ids(PaletteRanking::rank(u"delete", commands, {}, {}).value(0).items), QStringList{QStringLiteral("cmd.trash")});
}

TEST(PaletteRanking, TitleMatchIsNotDilutedByLongKeywords)
{
    const QList<PaletteCommand> commands{
        command(QStringLiteral("copyPath"), QStringLiteral("Copy Path")),
        command(QStringLiteral("copy"), QStringLiteral("Copy"), QStringLiteral("duplicate clipboard text pasteboard"))};
    const auto sections = PaletteRanking::rank(u"copy", commands, {}, {});
    EXPECT_EQ(ids(sections.value(0).items), (QStringList{QStringLiteral("cmd.copy"), QStringLiteral("cmd.copyPath")}));
}

TEST(PaletteRanking, OnlyTheFirst500FoldersAndFirst5000FilesAreConsidered)
{
    std::vector<FrecentFolder> ranking;
    for (int i = 0; i < 600; ++i)
        ranking.push_back({FilePath::fromNative("/f/n" + QByteArray::number(i)), 1.0});
    std::vector<FilePath> files;
    for (int i = 0; i < 6000; ++i)
        files.push_back(FilePath::fromNative("/shown/file" + QByteArray::number(i)));

    // Only "n499" holds 4, 9, 9 in order among 0…599; likewise "n599".
    EXPECT_TRUE(section(PaletteRanking::rank(u"n499", {}, ranking, {}), QStringLiteral("Folders")));
    EXPECT_FALSE(section(PaletteRanking::rank(u"n599", {}, ranking, {}), QStringLiteral("Folders")));
    EXPECT_TRUE(section(PaletteRanking::rank(u"e4999", {}, {}, files), QStringLiteral("Files")));
    EXPECT_FALSE(section(PaletteRanking::rank(u"e5999", {}, {}, files), QStringLiteral("Files")));

    // Rows per section are capped too, best first.
    const auto many = PaletteRanking::rank(u"file", {}, {}, files);
    ASSERT_EQ(headings(many), QStringList{QStringLiteral("Files")});
    EXPECT_EQ(many[0].items.size(), PaletteRanking::kFileRows);
    EXPECT_EQ(many[0].items[0].title, QStringLiteral("file0")); // the shortest wins
}

TEST(PaletteRanking, StrongestSectionComesFirst)
{
    const QList<PaletteCommand> commands{command(QStringLiteral("newNote"), QStringLiteral("New Note"))};
    const std::vector<FrecentFolder> ranking{folder("/a/nxexwxnxoxtxe", 0.0)};
    const std::vector<FilePath> files{FilePath::fromNative("/shown/new-note-ideas.md")};

    EXPECT_EQ(headings(PaletteRanking::rank(u"newnote", commands, ranking, files)),
              (QStringList{QStringLiteral("Commands"), QStringLiteral("Files"), QStringLiteral("Folders")}));
    // A well-matched frecent folder leads.
    const std::vector<FrecentFolder> frecent{folder("/a/newnote", 100.0)};
    EXPECT_EQ(headings(PaletteRanking::rank(u"newnote", commands, frecent, files)).value(0), QStringLiteral("Folders"));
}

TEST(PaletteRanking, EmptyQueryShowsFrecentFoldersThenEveryCommandInOrder)
{
    QList<PaletteCommand> commands;
    for (const char* title : {"Zeta", "Alpha", "Mid"})
        commands.append(command(QString::fromLatin1(title).toLower(), QString::fromLatin1(title)));
    commands[1].isEnabled = false;
    std::vector<FrecentFolder> ranking;
    for (int i = 0; i < 20; ++i)
        ranking.push_back({FilePath::fromNative("/r/" + QByteArray::number(i)), 20.0 - i});
    const std::vector<FilePath> files{FilePath::fromNative("/shown/a.txt")};

    const auto sections = PaletteRanking::rank(u"  ", commands, ranking, files);
    ASSERT_EQ(headings(sections), (QStringList{QStringLiteral("Folders"), QStringLiteral("Commands")}));
    EXPECT_EQ(sections[0].items.size(), PaletteRanking::kEmptyQueryFolderRows);
    EXPECT_EQ(sections[0].items[0].id, QStringLiteral("/r/0"));
    EXPECT_EQ(ids(sections[1].items), (QStringList{QStringLiteral("cmd.zeta"), QStringLiteral("cmd.alpha"), QStringLiteral("cmd.mid")}));
    EXPECT_FALSE(sections[1].items[1].isEnabled);
}

TEST(PaletteRanking, DisabledCommandsFollowTheEnabledOnesThatMatch)
{
    // The disabled command matches best, yet the enabled ones come first, each group best first.
    const QList<PaletteCommand> commands{command("trash", "Trash", {}, false), command("trashFolder", "Open Trash"),
                                         command("emptyTrash", "Empty the Trash Now"),
                                         command("putBack", "Put Back", "restore trash", false)};
    const auto sections = PaletteRanking::rank(u"trash", commands, {}, {});
    const PaletteSection* found = section(sections, QStringLiteral("Commands"));
    ASSERT_TRUE(found);
    EXPECT_EQ(ids(found->items), (QStringList{"cmd.trashFolder", "cmd.emptyTrash", "cmd.trash", "cmd.putBack"}));
    EXPECT_TRUE(found->items[1].isEnabled);
    EXPECT_FALSE(found->items[2].isEnabled);
}

TEST(PaletteRanking, TrasFindsMoveToTrashOnItsTrashWord)
{
    // Scored on "Trash", not on the "t" of "to": it comes before commands whose letters only
    // scatter, and with "Open Trash" it differs by the length alone.
    const QList<PaletteCommand> commands{command("tidyUp", "Tidy Up Folder…", "organize sort downloads desktop clean"),
                                         command("putBack", "Put Back", "restore trash undelete"),
                                         command("trash", "Move to Trash", "delete remove"),
                                         command("textRecognition", "Copy Text from Image", "ocr recognize read scan")};
    const auto sections = PaletteRanking::rank(u"tras", commands, {}, {});
    ASSERT_FALSE(sections.isEmpty());
    EXPECT_EQ(sections[0].items.first().id, "cmd.trash");
    EXPECT_EQ(*FuzzyMatch::score(u"tras", u"Move to Trash") + 3, *FuzzyMatch::score(u"tras", u"Open Trash"));
}

TEST(PaletteRanking, AccentsFoldInFileAndFolderRows)
{
    const std::vector<FilePath> files{FilePath::fromText(QStringLiteral("/home/u/r\u00e9sum\u00e9 final.txt")),
                                      FilePath::fromText(QStringLiteral("/home/u/notes.txt"))};
    const std::vector<FrecentFolder> folders{{FilePath::fromText(QStringLiteral("/home/u/Caf\u00e9")), 1.0}};
    auto sections = PaletteRanking::rank(u"resume", {}, {}, files);
    const PaletteSection* found = section(sections, QStringLiteral("Files"));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->items.size(), 1);
    EXPECT_EQ(found->items.first().title, QStringLiteral("r\u00e9sum\u00e9 final.txt"));
    sections = PaletteRanking::rank(u"CAFE", {}, folders, {});
    ASSERT_TRUE(section(sections, QStringLiteral("Folders")));
}
