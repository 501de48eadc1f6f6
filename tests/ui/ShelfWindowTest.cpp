// The shelf in a real window: Ctrl+Alt+S gathers the selection from one folder and another, Copy
// Shelf Here and Move Shelf Here land it in a third as one undoable job and select what landed,
// items gone since are not counted as landed, a move takes off the shelf only what the engine
// moved (a skipped, failed or gone item stays) and its undo puts that back on the shelf, and the
// sidebar's Shelf button lists the items.

#include "WindowFixture.h"
#include "commands/CommandCatalog.h"
#include "places/Shelf.h"
#include "support/ScratchMount.h"
#include "ui/shelf/ShelfButton.h"
#include "ui/shelf/ShelfList.h"

#include <QAbstractButton>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QToolButton>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

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
    void answerConflict(const QString& choice)
    {
        QMessageBox* box = nullptr;
        ASSERT_TRUE(waitUntil([&] { return (box = window->findChild<QMessageBox*>()) && box->isVisible(); }));
        for (QAbstractButton* button : box->buttons())
            if (button->text() == choice)
                button->click();
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

TEST_F(ShelfWindowTest, AMoveTakesOffOnlyWhatItMovedAndItsUndoPutsThatBack)
{
    const FilePath a = tree.file("one/a.txt", "a"), b = tree.file("one/b.txt", "new b"), gone = tree.file("one/gone.txt", "g");
    const FilePath there = tree.folder("there");
    const FilePath olderB = tree.file("there/b.txt", "older b");
    open(tree.path("one"));
    addToShelf({a, b, gone});
    ASSERT_EQ(Shelf::shared().items(), (QList<FilePath>{a, b, gone}));
    ASSERT_TRUE(QFile::remove(gone.text())); // between shelving and landing

    show(there);
    run("moveShelfHere");
    answerConflict(QStringLiteral("Skip")); // b.txt is there already
    settle();
    const FilePath a2 = there.child(QStringLiteral("a.txt"));
    EXPECT_EQ(test::readAll(a2), "a");
    EXPECT_FALSE(test::exists(a));
    EXPECT_EQ(test::readAll(b), "new b");
    EXPECT_EQ(test::readAll(olderB), "older b");
    EXPECT_TRUE(toast().contains(QStringLiteral("no longer there"))) << toast().toStdString();
    EXPECT_EQ(Shelf::shared().items(), (QList<FilePath>{b, gone})) << "the skipped and the gone item stay on the shelf";

    // Undo brings a.txt back to its place and onto the shelf; redo takes it off again.
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(test::readAll(a), "a");
    EXPECT_EQ(Shelf::shared().items(), (QList<FilePath>{b, gone, a}));
    state->undoStack()->redo();
    settle();
    EXPECT_EQ(test::readAll(a2), "a");
    EXPECT_EQ(Shelf::shared().items(), (QList<FilePath>{b, gone}));
}

TEST_F(ShelfWindowTest, AnItemCarriedAlongInsideAShelvedFolderIsNotTakenAsMovedByItself)
{
    const FilePath project = tree.folder("one/Project");
    const FilePath notes = tree.file("one/Project/notes.txt", "n");
    const FilePath there = tree.folder("there");
    Shelf::shared().add({project, notes});
    open(there);
    run("moveShelfHere");
    settle();
    EXPECT_EQ(test::readAll(there.child(QStringLiteral("Project/notes.txt"))), "n");
    // The folder moved first, with notes.txt in it; notes.txt's own turn found it no longer
    // there, so the engine moved nothing for it: it stays on the shelf as an item that is gone.
    EXPECT_TRUE(toast().contains(QStringLiteral("no longer there"))) << toast().toStdString();
    EXPECT_EQ(Shelf::shared().items(), QList<FilePath>{notes});
}

TEST_F(ShelfWindowTest, AnItemThatCouldntBeMovedStaysOnTheShelf)
{
    // A folder nothing can be taken out of: a read-only disk for root, else a read-only folder.
    std::optional<test::ScratchMount> disk;
    FilePath locked = tree.folder("locked");
    if (geteuid() == 0) {
        disk.emplace("tmpfs", "size=1m");
        if (!disk->ok())
            GTEST_SKIP() << disk->why().toStdString();
        locked = disk->root();
    }
    const FilePath kept = locked.child(QStringLiteral("kept.txt"));
    ASSERT_TRUE(test::writeFile(kept, "k"));
    ASSERT_TRUE(disk ? disk->makeReadOnly() : chmod(locked.c_str(), 0555) == 0);
    const FilePath a = tree.file("one/a.txt", "a");
    const FilePath there = tree.folder("there");
    Shelf::shared().add({kept, a});

    open(there);
    run("moveShelfHere");
    settle();
    if (!disk)
        chmod(locked.c_str(), 0755);
    EXPECT_EQ(test::readAll(kept), "k");
    EXPECT_FALSE(test::exists(a));
    EXPECT_TRUE(toast().contains(QStringLiteral("“kept.txt”"))) << toast().toStdString();
    EXPECT_EQ(Shelf::shared().items(), QList<FilePath>{kept});
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

TEST_F(ShelfWindowTest, TheShelfsListSaysWhichItemsAreGoneOnceItHasLookedAtThem)
{
    const FilePath kept = tree.file("kept.txt", "k"), lost = tree.file("lost.txt", "l");
    const FilePath folder = tree.folder("box");
    open(tree.root());
    addToShelf({kept, lost, folder});
    ASSERT_EQ(::unlink(lost.c_str()), 0);
    run("showShelf");
    ShelfList* list = window->findChild<ShelfButton*>()->list();
    ASSERT_NE(list, nullptr);
    // The row of `item`'s text: its name and where it is, or that it is gone.
    const auto rowText = [&](const FilePath& item) {
        const int row = int(list->shownItems().indexOf(item));
        if (row < 0)
            return QString();
        const QList<QLabel*> labels = list->rows()->itemWidget(list->rows()->item(row))->findChildren<QLabel*>();
        return labels.size() == 2 ? labels[1]->text() : QString();
    };
    EXPECT_TRUE(waitUntil([&] { return rowText(lost).contains("is gone"); })) << rowText(lost).toStdString();
    EXPECT_TRUE(rowText(kept).contains("kept.txt")) << rowText(kept).toStdString();
    EXPECT_FALSE(rowText(kept).contains("is gone"));
    EXPECT_FALSE(rowText(folder).contains("is gone"));
    list->close();
}

} // namespace
