// The board over real notes: lanes from a select or list property's options in the folder's
// order (after "No value"), cards of notes with several list options in each lane, moving a card
// through the store and the engine as one undoable change that keeps the lane it leaves, a
// lane's option for a new card, the board's sentence when the property it groups by is gone or
// of another type, and a free-text property's values offered as the options of a select.

#include "PropertyStoreFixture.h"
#include "notes/BoardView.h"

#include <gtest/gtest.h>

using namespace orwick;
using orwick::test::readAll;

namespace {

struct BoardViewTest : test::PropertyStoreTest {
    void groupBy(const QString& key, QStringList options = {})
    {
        FolderColumns settings = store.columns(folder());
        settings.groupBy = key;
        settings.layout = QStringLiteral("board");
        if (!options.isEmpty()) {
            settings.options.insert(key, options);
            settings.types.insert(key, PropertyType::select);
        }
        ASSERT_TRUE(store.setColumns(folder(), settings));
    }
    FilePath folder() const { return tree.path("n"); }
    QList<QStringList> laneTitles(const BoardView& board, const FileItems& items) const
    {
        QList<QStringList> lanes;
        for (const BoardLane& lane : board.lanes) {
            QStringList names{lane.title};
            for (int card : lane.cards)
                names.append(items.at(card).name);
            lanes.append(names);
        }
        return lanes;
    }
};

TEST_F(BoardViewTest, LanesFollowTheOptionOrderAfterNoValue)
{
    const FileItems items = load({tree.file(QString("n/a.md"), "---\nstatus: doing\n---\n"),
                                  tree.file(QString("n/b.md"), "---\nstatus: todo\n---\n"),
                                  tree.file(QString("n/c.md"), "no front matter\n"),
                                  tree.file(QString("n/d.md"), "---\nstatus: waiting\n---\n")});
    groupBy("status", {"todo", "doing", "done"});
    FolderColumns settings = store.columns(folder());
    settings.optionColors["status"]["done"] = 3;
    ASSERT_TRUE(store.setColumns(folder(), settings));
    const BoardView board = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    EXPECT_TRUE(board.problem.isEmpty()) << board.problem.toStdString();
    EXPECT_EQ(laneTitles(board, items), (QList<QStringList>{{"No value", "c.md"}, {"todo", "b.md"}, {"doing", "a.md"},
                                                            {"done"}, {"waiting", "d.md"}}));
    EXPECT_EQ(board.lanes[3].color, 3);
    EXPECT_EQ(board.laneOf(std::nullopt), 0);
    EXPECT_EQ(board.laneOf(QString("done")), 3);
}

TEST_F(BoardViewTest, MovingACardSetsTheLanesOptionAsOneUndoableChange)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstatus: todo\ntitle: Call Bob\n---\nBody stays.\n");
    const FileItems items = load({a});
    groupBy("status", {"todo", "done"});
    const BoardView board = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    const auto moved = board.movedValue(store.value(a, "status"), board.laneOf(QString("todo")), board.laneOf(QString("done")));
    ASSERT_TRUE(moved.has_value());
    QUndoStack undo;
    ASSERT_TRUE(store.set(board.key, *moved, {a}, &undo));
    settle();
    EXPECT_EQ(readAll(a), "---\nstatus: done\ntitle: Call Bob\n---\nBody stays.\n");
    EXPECT_EQ(undo.count(), 1);
    const BoardView after = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    EXPECT_EQ(after.lanes[after.laneOf(QString("done"))].cards, QList<int>{0});
    undo.undo();
    settle();
    EXPECT_EQ(readAll(a), "---\nstatus: todo\ntitle: Call Bob\n---\nBody stays.\n");
    // To "No value": the key goes.
    const auto cleared = board.movedValue(store.value(a, "status"), 1, 0);
    ASSERT_TRUE(cleared.has_value());
    EXPECT_FALSE(cleared->has_value());
    EXPECT_FALSE(board.movedValue(store.value(a, "status"), 1, 1).has_value());
}

TEST_F(BoardViewTest, ListCardsSitInEveryLaneAndMoveOneOption)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\ntags:\n  - home\n  - work\n---\n");
    const FileItems items = load({a, tree.file(QString("n/b.md"), "---\ntags:\n  - work\n---\n")});
    groupBy("tags");
    const BoardView board = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    ASSERT_EQ(board.type, PropertyType::list);
    EXPECT_EQ(laneTitles(board, items), (QList<QStringList>{{"No value"}, {"home", "a.md"}, {"work", "a.md", "b.md"}}));
    const int home = board.laneOf(QString("home")), work = board.laneOf(QString("work"));
    // home → work: the list doesn't hold "work" twice.
    EXPECT_EQ(board.movedValue(store.value(a, "tags"), home, work), std::optional(std::optional(PropertyValue::ofList({"work"}))));
    EXPECT_EQ(board.movedValue(store.value(a, "tags"), work, 0), std::optional(std::optional(PropertyValue::ofList({"home"}))));
    EXPECT_EQ(board.newItemValues(home), (PropertyMap{{"tags", PropertyValue::ofList({"home"})}}));
    EXPECT_TRUE(board.newItemValues(0).isEmpty());
}

// A select whose options are only the notes' values: the option of a lane goes with its last
// card, unless the move keeps the board's lanes in the folder's settings.
TEST_F(BoardViewTest, AMovedCardKeepsTheLaneItLeavesEmpty)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstatus: todo\n---\n");
    const FileItems items = load({a, tree.file(QString("n/b.md"), "---\nstatus: done\n---\n"),
                                  tree.file(QString("n/c.md"), "---\nstatus: done\n---\n")});
    groupBy("status");
    const FolderColumns before = store.columns(folder());
    const BoardView board = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    ASSERT_EQ(board.type, PropertyType::select) << board.problem.toStdString();
    EXPECT_EQ(laneTitles(board, items), (QList<QStringList>{{"No value"}, {"todo", "a.md"}, {"done", "b.md", "c.md"}}));

    const FolderColumns kept = board.keepingLanes(before);
    EXPECT_EQ(kept.options.value("status"), (QStringList{"todo", "done"}));
    EXPECT_EQ(kept.types.value("status"), PropertyType::select);
    FolderColumns others = kept;
    others.options.remove("status");
    others.types.remove("status");
    EXPECT_EQ(others, before) << "nothing else of the folder's settings changes";
    FolderColumns listing = before;
    listing.options.insert("status", {"done"});
    EXPECT_EQ(board.keepingLanes(listing).options.value("status"), (QStringList{"done", "todo"})) << "listed options stay first";

    const auto moved = board.movedValue(store.value(a, "status"), board.laneOf(QString("todo")), board.laneOf(QString("done")));
    ASSERT_TRUE(moved.has_value());
    QUndoStack undo;
    ASSERT_TRUE(store.set(board.key, *moved, {a}, folder(), kept, &undo));
    settle();
    EXPECT_EQ(readAll(a), "---\nstatus: done\n---\n");
    EXPECT_EQ(undo.count(), 1);
    const BoardView after = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    EXPECT_EQ(laneTitles(after, items), (QList<QStringList>{{"No value"}, {"todo"}, {"done", "a.md", "b.md", "c.md"}}));

    undo.undo(); // the note and the settings, as they were
    settle();
    EXPECT_EQ(readAll(a), "---\nstatus: todo\n---\n");
    EXPECT_EQ(store.columns(folder()), before);

    // Nothing to write: the settings stay as they are.
    ASSERT_TRUE(store.set(board.key, PropertyValue::ofText("todo"), {a}, folder(), kept, &undo));
    EXPECT_EQ(store.columns(folder()), before);
}

TEST_F(BoardViewTest, AGoneOrUnsuitablePropertyIsSaidAndTheChoicesOffered)
{
    const FileItems items = load({tree.file(QString("n/a.md"), "---\nstatus: todo\ncount: 3\ndue: 2024-05-01\n---\n"),
                                  tree.file(QString("n/b.md"), "---\nstatus: done\ncount: 4\ndue: 2024-06-01\n---\n")});
    FolderColumns settings = store.columns(folder());
    settings.types.insert("status", PropertyType::select);
    ASSERT_TRUE(store.setColumns(folder(), settings));
    BoardView board = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    EXPECT_EQ(board.problem, "Choose the property the board groups by.");
    EXPECT_EQ(board.choices, QStringList{"status"});
    EXPECT_TRUE(board.lanes.isEmpty());
    groupBy("gone");
    board = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    EXPECT_EQ(board.problem, "The board groups by “gone”, which no item has any more.");
    EXPECT_EQ(board.choices, QStringList{"status"});
    groupBy("count");
    board = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    EXPECT_EQ(board.problem, "The board groups by “count”, which is a number property, not a select or list.");
    EXPECT_TRUE(board.lanes.isEmpty());
    EXPECT_FALSE(board.convertible) << "only a text property is offered to become a select";
    EXPECT_TRUE(board.foundValues.isEmpty());
}

TEST_F(BoardViewTest, AFreeTextPropertyOffersItsValuesAsTheOptionsOfASelect)
{
    const FileItems items = load({tree.file(QString("n/a.md"), "---\nstate: waiting\n---\n"),
                                  tree.file(QString("n/b.md"), "---\nstate: done\n---\n"),
                                  tree.file(QString("n/c.md"), "---\nstate: waiting\n---\n"),
                                  tree.file(QString("n/d.md"), "---\ntitle: none\n---\n")});
    FolderColumns settings = store.columns(folder());
    settings.types.insert("state", PropertyType::text);
    settings.options.insert("state", {"started"});
    ASSERT_TRUE(store.setColumns(folder(), settings));
    groupBy("state");
    BoardView board = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    EXPECT_EQ(board.problem, "The board groups by “state”, which is a text property, not a select or list.");
    EXPECT_EQ(board.convertible, QString("state"));
    EXPECT_EQ(board.foundValues, (QStringList{"waiting", "done"})) << "each value once, in the order met";
    EXPECT_TRUE(board.choices.isEmpty());

    settings = store.columns(folder());
    settings.makeSelect("state", board.foundValues);
    EXPECT_EQ(settings.options.value("state"), (QStringList{"started", "waiting", "done"})) << "options it listed come first";
    ASSERT_TRUE(store.setColumns(folder(), settings));
    board = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    EXPECT_TRUE(board.problem.isEmpty()) << board.problem.toStdString();
    EXPECT_FALSE(board.convertible);
    EXPECT_EQ(laneTitles(board, items), (QList<QStringList>{{"No value", "d.md"}, {"started"}, {"waiting", "a.md", "c.md"}, {"done", "b.md"}}));
}

TEST_F(BoardViewTest, DamagedFrontMatterLandsInNoValueAndIsNotChanged)
{
    const QByteArray damaged = "---\nstatus: todo\nparent:\n  child: 1\n---\nkeep me\n"; // nested maps are outside the subset
    const FilePath a = tree.file(QString("n/a.md"), damaged);
    const FileItems items = load({a, tree.file(QString("n/b.md"), "---\nstatus: todo\n---\n")});
    groupBy("status", {"todo", "done"});
    const BoardView board = BoardView::make(DatabaseColumns::of(store, folder(), items), items);
    EXPECT_EQ(board.lanes[0].cards, QList<int>{0});
    QUndoStack undo;
    ASSERT_TRUE(store.set("status", PropertyValue::ofText("done"), {a}, &undo));
    settle();
    EXPECT_EQ(readAll(a), damaged);
    ASSERT_EQ(reports.size(), 1);
    EXPECT_FALSE(reports[0].errors.isEmpty());
    EXPECT_EQ(undo.count(), 0);
}

} // namespace
