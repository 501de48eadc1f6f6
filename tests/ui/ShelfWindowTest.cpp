// The shelf in a real window: Ctrl+Alt+S gathers the selection from one folder and another, Copy
// Shelf Here and Move Shelf Here land it in a third as one undoable job and select what landed,
// items gone since are not counted as landed, and the sidebar's Shelf button lists the items.

#include "WindowFixture.h"
#include "commands/CommandCatalog.h"
#include "places/Shelf.h"
#include "ui/shelf/ShelfButton.h"
#include "ui/shelf/ShelfList.h"

#include <QListWidget>
#include <QToolButton>

using namespace orwick;
using test::waitUntil;

namespace {

struct ShelfWindowTest : test::WindowTest {
    void SetUp() override { Shelf::shared().clear(); }
    void TearDown() override
    {
        Shelf::shared().clear(); // the shelf is the process's: the next test starts without it
        ASSERT_TRUE(waitUntil([] { return !Shelf::shared().hasUnsavedChanges(); }));
    }
    bool enabled(const char* id) { return CommandCatalog::find(QString::fromLatin1(id))->enabledIn(*state); }
    void run(const char* id) { CommandCatalog::find(QString::fromLatin1(id))->run(*state); }
    void show(const FilePath& folder)
    {
        pane()->navigate(folder);
        ASSERT_TRUE(waitUntil([&] { return pane()->url() == folder && !pane()->isLoading(); }));
    }
    void addToShelf(const QList<FilePath>& items)
    {
        select(items.first());
        for (const FilePath& item : items.mid(1))
            pane()->click(item, Qt::ControlModifier);
        press(Qt::Key_S, Qt::ControlModifier | Qt::AltModifier);
    }
};

TEST_F(ShelfWindowTest, GatheredFromTwoFoldersThenCopiedAndMovedIntoAThirdWithUndo)
{
    const FilePath a = tree.file("one/a.txt", "a"), b = tree.file("one/b.txt", "b"), c = tree.file("two/c.txt", "c");
    const FilePath there = tree.folder("there");
    open(tree.path("one"));
    EXPECT_FALSE(enabled("copyShelfHere"));
    EXPECT_FALSE(enabled("clearShelf"));

    addToShelf({a, b});
    EXPECT_EQ(toast(), QStringLiteral("Added 2 items to the shelf"));
    show(tree.path("two"));
    addToShelf({c});
    EXPECT_EQ(toast(), QStringLiteral("Added “c.txt” to the shelf"));
    addToShelf({c});
    EXPECT_EQ(toast(), QStringLiteral("“c.txt” is on the shelf already"));
    EXPECT_EQ(Shelf::shared().items(), (QList<FilePath>{a, b, c}));

    // Copy: the shelf stays as it is, the copies are selected where they landed.
    show(there);
    ASSERT_TRUE(enabled("copyShelfHere"));
    run("copyShelfHere");
    settle();
    const FilePath a2 = there.child(QStringLiteral("a.txt")), b2 = there.child(QStringLiteral("b.txt")),
                   c2 = there.child(QStringLiteral("c.txt"));
    EXPECT_EQ(test::readAll(a2), "a");
    EXPECT_EQ(test::readAll(c2), "c");
    EXPECT_TRUE(test::exists(a) && test::exists(c));
    EXPECT_EQ(Shelf::shared().count(), 3);
    EXPECT_TRUE(waitUntil([&] { return pane()->selection() == QSet<FilePath>{a2, b2, c2}; })) << "the copies are revealed";
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Copy"));
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_FALSE(test::exists(a2) || test::exists(b2) || test::exists(c2));

    // Move, with b gone since it was shelved: a and c move and leave the shelf, b is not counted.
    ASSERT_TRUE(QFile::remove(b.text()));
    run("moveShelfHere");
    settle();
    EXPECT_FALSE(test::exists(a) || test::exists(c));
    EXPECT_EQ(test::readAll(a2), "a");
    EXPECT_EQ(test::readAll(c2), "c");
    EXPECT_FALSE(test::exists(b2));
    EXPECT_TRUE(toast().contains(QStringLiteral("no longer there"))) << toast().toStdString();
    EXPECT_FALSE(toast().contains(QStringLiteral("3 items"))) << toast().toStdString();
    EXPECT_EQ(Shelf::shared().items(), QList<FilePath>{b}) << "only what moved left the shelf";
    EXPECT_TRUE(waitUntil([&] { return pane()->selection() == QSet<FilePath>{a2, c2}; }));

    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(test::readAll(a), "a");
    EXPECT_EQ(test::readAll(c), "c");
    EXPECT_FALSE(test::exists(a2) || test::exists(c2));

    run("clearShelf");
    EXPECT_TRUE(Shelf::shared().isEmpty());
    EXPECT_FALSE(enabled("clearShelf"));
}

TEST_F(ShelfWindowTest, NothingIsAddedFromTheTrashOrWithoutASelection)
{
    tree.file("a.txt", "a");
    open(tree.root());
    EXPECT_FALSE(enabled("addToShelf"));
    EXPECT_EQ(CommandCatalog::find(QStringLiteral("addToShelf"))->disabledNote, QStringLiteral("Select the items to add to the shelf"));
    pane()->show(Listing::of(Listing::Kind::trash));
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading(); }));
    pane()->selectAll();
    EXPECT_FALSE(enabled("addToShelf"));
    EXPECT_FALSE(enabled("copyShelfHere")) << "no folder shown";
}

TEST_F(ShelfWindowTest, TheSidebarsShelfButtonListsTheItemsAndTakesOneOff)
{
    const FilePath a = tree.file("a.txt", "a"), b = tree.file("b.txt", "b");
    open(tree.root());
    auto* button = window->findChild<ShelfButton*>();
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), QStringLiteral("Shelf"));
    addToShelf({a, b});
    EXPECT_EQ(button->text(), QStringLiteral("Shelf · 2"));

    run("showShelf");
    ShelfList* list = button->list();
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(waitUntil([&] { return list->isVisible(); }));
    EXPECT_EQ(list->shownItems(), (QList<FilePath>{a, b}));
    // Delete on the first row takes it off the shelf; the file stays.
    list->rows()->setCurrentRow(0);
    list->rows()->setFocus();
    press(Qt::Key_Delete);
    EXPECT_EQ(Shelf::shared().items(), QList<FilePath>{b});
    EXPECT_EQ(list->shownItems(), QList<FilePath>{b});
    EXPECT_TRUE(test::exists(a));
    // The row's own button does the same.
    QToolButton* remove = list->rows()->itemWidget(list->rows()->item(0))->findChild<QToolButton*>();
    ASSERT_NE(remove, nullptr);
    remove->click();
    EXPECT_TRUE(Shelf::shared().isEmpty());
    EXPECT_EQ(button->text(), QStringLiteral("Shelf"));
    list->close();
}

} // namespace
