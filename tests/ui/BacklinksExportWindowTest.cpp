// A note's backlinks and its export in a real window: Get Info on a note lists the notes that
// link to it under "Linked From", a note saved meanwhile joins the list, and Return on a row
// shows that note (the panel follows it); "Export Note as HTML" is dimmed with its reason on a
// folder and, on a note, makes the page beside it with one undo step and says which picture
// was missing.

#include "WindowFixture.h"

#include "commands/CommandCatalog.h"
#include "notes/BacklinkIndex.h"
#include "ui/panels/BacklinksView.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/panels/InfoPanel.h"

#include <QFile>
#include <QListView>

namespace orwick::test {
namespace {

struct BacklinksExportWindowTest : WindowTest {
    void openWithPanels(const FilePath& folder)
    {
        open(folder);
        DiskToolKeys::follow(*state, window.get());
    }
    InfoPanel* infoPanel() { return window->findChild<InfoPanel*>(); }
};

TEST_F(BacklinksExportWindowTest, GetInfoListsTheLinkingNotesAndReturnShowsOne)
{
    tree.folder("vault/.obsidian");
    const FilePath target = tree.file("vault/Plan.md", "# Plan\n");
    const FilePath daily = tree.file("vault/Journal/Monday.md", "Talked about [[Plan#Goals|the plan]] today.\n");
    tree.file("vault/Ideas.md", "# Ideas\n\nMore in [the plan](Plan.md).\n");
    openWithPanels(tree.path(QStringLiteral("vault")));
    select(target);
    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return infoPanel() && infoPanel()->info().path == target; }));
    BacklinksView* backlinks = infoPanel()->backlinks();
    ASSERT_TRUE(waitUntil([&] { return backlinks->rowTexts().size() == 2; })) << backlinks->headingText().toStdString();
    EXPECT_TRUE(backlinks->isVisible());
    EXPECT_EQ(backlinks->headingText(), QStringLiteral("Linked From 2 Notes"));
    EXPECT_EQ(backlinks->rowTexts(), (QStringList{"Ideas:3: More in [the plan](Plan.md).",
                                                  "Monday:1: Talked about [[Plan#Goals|the plan]] today."}));

    // Another program saves a note that links here: the list follows.
    QFile file(QString::fromLocal8Bit(tree.path(QStringLiteral("vault/Later.md")).native()));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("see [[plan]]\n");
    file.close();
    ASSERT_TRUE(waitUntil([&] { return backlinks->rowTexts().size() == 3; }));
    EXPECT_EQ(backlinks->headingText(), QStringLiteral("Linked From 3 Notes"));

    backlinks->list()->setFocus();
    const int monday = int(backlinks->rowTexts().indexOf(QStringLiteral("Monday:1: Talked about [[Plan#Goals|the plan]] today.")));
    ASSERT_GE(monday, 0);
    backlinks->list()->setCurrentIndex(backlinks->list()->model()->index(monday, 0));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return pane()->selection() == QSet<FilePath>{daily}; }));
    EXPECT_EQ(pane()->url(), daily.parent());
    ASSERT_TRUE(waitUntil([&] { return infoPanel() && infoPanel()->info().path == daily; }));
    ASSERT_TRUE(waitUntil([&] { return infoPanel()->backlinks()->headingText() == QStringLiteral("Linked From"); }));
    EXPECT_TRUE(infoPanel()->backlinks()->rowTexts().isEmpty());
}

TEST_F(BacklinksExportWindowTest, ExportIsDimmedOffANoteAndMakesThePageBesideIt)
{
    tree.folder("notes/sub");
    const FilePath note = tree.file("notes/Trip.md", "# Trip\n\n![map](map.png)\n");
    openWithPanels(tree.path(QStringLiteral("notes")));
    const AppCommand* command = CommandCatalog::find(QStringLiteral("exportHTML"));
    ASSERT_NE(command, nullptr);
    select(tree.path(QStringLiteral("notes/sub")));
    EXPECT_FALSE(command->enabledIn(*state));
    EXPECT_EQ(command->disabledNote, QStringLiteral("Put the cursor on a Markdown note to export it"));

    select(note);
    ASSERT_TRUE(command->enabledIn(*state));
    command->run(*state);
    const FilePath page = tree.path(QStringLiteral("notes/Trip.html"));
    ASSERT_TRUE(waitUntil([&] { return exists(page) && ops().isIdle(); }));
    EXPECT_TRUE(readAll(page).contains("Missing picture"));
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Export Note as HTML"));
    ASSERT_TRUE(waitUntil([&] { return toast().contains(QStringLiteral("1 picture was missing")); })) << toast().toStdString();
}

} // namespace
} // namespace orwick::test
