// The palette's command rows over the real catalogue, in a window with a file selected: the
// everyday command comes first among those that match equally well.
#include "commands/CommandCatalog.h"
#include "commands/PaletteRanking.h"
#include "support/HeadlessWindow.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {
struct CatalogRanking : test::HeadlessWindowTest {
    void SetUp() override
    {
        tree.file("report.txt");
        openWindow(tree.root());
        window->activePane()->click(tree.path("report.txt"), Qt::NoModifier);
    }
    // The command rows for `query`, as the palette builds them from the catalogue.
    QStringList commandRows(QStringView query)
    {
        QList<PaletteCommand> commands;
        for (const AppCommand& command : CommandCatalog::all(*window))
            commands.append({command.id, command.title, command.keywords, command.symbol, command.shortcutText(),
                             command.disabledNote, command.enabledIn(*window)});
        QStringList ids;
        for (const PaletteSection& section : PaletteRanking::rank(query, commands, {}, {}))
            if (section.heading == QLatin1StringView("Commands"))
                for (const PaletteItem& item : section.items)
                    ids.append(item.commandId);
        return ids;
    }
};
} // namespace

TEST_F(CatalogRanking, TrasRanksMoveToTrashFirst)
{
    const QStringList rows = commandRows(u"tras");
    ASSERT_GE(rows.size(), 3);
    EXPECT_EQ(rows.first(), "trash") << rows.join(u' ').toStdString();
    // Open Trash and Empty Trash… match the same letters; they follow, the one with a key first.
    EXPECT_LT(rows.indexOf("emptyTrash"), rows.indexOf("trashFolder"));
    EXPECT_EQ(commandRows(u"trash").first(), "trash");
}

TEST_F(CatalogRanking, AnExactTitleStillBeatsItsLongerNamesakes)
{
    EXPECT_EQ(commandRows(u"copy").first(), "copy") << "before Copy Path, Copy to…";
    EXPECT_EQ(commandRows(u"duplicate").first(), "duplicate") << "before Copy to…, whose keyword it is";
    EXPECT_EQ(commandRows(u"select all").first(), "selectAll");
    EXPECT_EQ(commandRows(u"rename").first(), "rename");
    EXPECT_EQ(commandRows(u"new folder").first(), "newFolder");
    EXPECT_EQ(commandRows(u"delete").first(), "trash") << "a keyword typed whole beats letters scattered over a title";
}

// Typing a dimmed command's title and pressing Return shows why it can't run; letters of "undo"
// scattered over Tidy Up Folder…'s keywords must not put that command first and run it instead.
TEST_F(CatalogRanking, ADimmedCommandTypedWholeComesBeforeScatteredLetters)
{
    ASSERT_FALSE(CommandCatalog::find(QStringLiteral("undo"))->enabledIn(*window)); // nothing done yet
    const QStringList rows = commandRows(u"undo");
    ASSERT_FALSE(rows.isEmpty());
    EXPECT_EQ(rows.first(), "undo") << rows.join(u' ').toStdString();
    EXPECT_EQ(commandRows(u"bigger icons").first(), "biggerIcons"); // a list, not the grid
}

TEST_F(CatalogRanking, DisabledCommandsComeAfterTheEnabledOnes)
{
    const QStringList rows = commandRows(u"resume");
    ASSERT_FALSE(rows.isEmpty());
    bool seenDisabled = false;
    for (const QString& id : rows) {
        const bool on = CommandCatalog::find(id) && CommandCatalog::find(id)->enabledIn(*window);
        EXPECT_FALSE(seenDisabled && on) << id.toStdString() << " is enabled but follows a dimmed row";
        seenDisabled = seenDisabled || !on;
    }
}
