// The board over real notes: lanes from a select or list property's options in the folder's
// order (after "No value"), cards of notes with several list options in each lane, moving a card
// through the store and the engine as one undoable change, a lane's option for a new card, and
// the board's sentence when the property it groups by is gone or of another type, and a free-text
// property's values offered as the options of a select.

#include "fileops/FileOperations.h"
#include "notes/BoardView.h"
#include "notes/FileProperties.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QUndoStack>
#include <gtest/gtest.h>

using namespace orwick;
using orwick::test::readAll;
using orwick::test::TempTree;
using orwick::test::waitUntil;

namespace {

class BoardViewTest : public testing::Test {
protected:
    BoardViewTest() : m_store(nullptr, m_tree.path("data/columns.json"), &m_ops)
    {
        m_ops.setReportErrors([this](const OperationOutcome& outcome) { m_reports.append(outcome); });
    }
    FileItems load(const QList<FilePath>& paths)
    {
        FileItems items;
        for (const FilePath& path : paths)
            items.append(FileItem::make(path));
        const int revision = m_store.revision();
        m_store.load(items);
        EXPECT_TRUE(waitUntil([&] { return m_store.revision() > revision; }));
        return items;
    }
    void settle() { ASSERT_TRUE(waitUntil([&] { return m_ops.isIdle() && m_store.isSettled(); }, 30000)); }
    void groupBy(const QString& key, QStringList options = {})
    {
        FolderColumns settings = m_store.columns(folder());
        settings.groupBy = key;
        settings.layout = QStringLiteral("board");
        if (!options.isEmpty()) {
            settings.options.insert(key, options);
            settings.types.insert(key, PropertyType::select);
        }
        ASSERT_TRUE(m_store.setColumns(folder(), settings));
    }
    FilePath folder() const { return m_tree.path("n"); }
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

    TempTree m_tree;
    FileOperations m_ops;
    FileProperties m_store;
    QList<OperationOutcome> m_reports;
};

TEST_F(BoardViewTest, LanesFollowTheOptionOrderAfterNoValue)
{
    const FileItems items = load({m_tree.file(QString("n/a.md"), "---\nstatus: doing\n---\n"),
                                  m_tree.file(QString("n/b.md"), "---\nstatus: todo\n---\n"),
                                  m_tree.file(QString("n/c.md"), "no front matter\n"),
                                  m_tree.file(QString("n/d.md"), "---\nstatus: waiting\n---\n")});
    groupBy("status", {"todo", "doing", "done"});
    FolderColumns settings = m_store.columns(folder());
    settings.optionColors["status"]["done"] = 3;
    ASSERT_TRUE(m_store.setColumns(folder(), settings));
    const BoardView board = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    EXPECT_TRUE(board.problem.isEmpty()) << board.problem.toStdString();
    EXPECT_EQ(laneTitles(board, items), (QList<QStringList>{{"No value", "c.md"}, {"todo", "b.md"}, {"doing", "a.md"},
                                                            {"done"}, {"waiting", "d.md"}}));
    EXPECT_EQ(board.lanes[3].color, 3);
    EXPECT_EQ(board.laneOf(std::nullopt), 0);
    EXPECT_EQ(board.laneOf(QString("done")), 3);
}

TEST_F(BoardViewTest, MovingACardSetsTheLanesOptionAsOneUndoableChange)
{
    const FilePath a = m_tree.file(QString("n/a.md"), "---\nstatus: todo\ntitle: Call Bob\n---\nBody stays.\n");
    const FileItems items = load({a});
    groupBy("status", {"todo", "done"});
    const BoardView board = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    const auto moved = board.movedValue(m_store.value(a, "status"), board.laneOf(QString("todo")), board.laneOf(QString("done")));
    ASSERT_TRUE(moved.has_value());
    QUndoStack undo;
    ASSERT_TRUE(m_store.set(board.key, *moved, {a}, &undo));
    settle();
    EXPECT_EQ(readAll(a), "---\nstatus: done\ntitle: Call Bob\n---\nBody stays.\n");
    EXPECT_EQ(undo.count(), 1);
    const BoardView after = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    EXPECT_EQ(after.lanes[after.laneOf(QString("done"))].cards, QList<int>{0});
    undo.undo();
    settle();
    EXPECT_EQ(readAll(a), "---\nstatus: todo\ntitle: Call Bob\n---\nBody stays.\n");
    // To "No value": the key goes.
    const auto cleared = board.movedValue(m_store.value(a, "status"), 1, 0);
    ASSERT_TRUE(cleared.has_value());
    EXPECT_FALSE(cleared->has_value());
    EXPECT_FALSE(board.movedValue(m_store.value(a, "status"), 1, 1).has_value());
}

TEST_F(BoardViewTest, ListCardsSitInEveryLaneAndMoveOneOption)
{
    const FilePath a = m_tree.file(QString("n/a.md"), "---\ntags:\n  - home\n  - work\n---\n");
    const FileItems items = load({a, m_tree.file(QString("n/b.md"), "---\ntags:\n  - work\n---\n")});
    groupBy("tags");
    const BoardView board = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    ASSERT_EQ(board.type, PropertyType::list);
    EXPECT_EQ(laneTitles(board, items), (QList<QStringList>{{"No value"}, {"home", "a.md"}, {"work", "a.md", "b.md"}}));
    const int home = board.laneOf(QString("home")), work = board.laneOf(QString("work"));
    // home → work: the list doesn't hold "work" twice.
    EXPECT_EQ(board.movedValue(m_store.value(a, "tags"), home, work), std::optional(std::optional(PropertyValue::ofList({"work"}))));
    EXPECT_EQ(board.movedValue(m_store.value(a, "tags"), work, 0), std::optional(std::optional(PropertyValue::ofList({"home"}))));
    EXPECT_EQ(board.newItemValues(home), (PropertyMap{{"tags", PropertyValue::ofList({"home"})}}));
    EXPECT_TRUE(board.newItemValues(0).isEmpty());
}

TEST_F(BoardViewTest, AGoneOrUnsuitablePropertyIsSaidAndTheChoicesOffered)
{
    const FileItems items = load({m_tree.file(QString("n/a.md"), "---\nstatus: todo\ncount: 3\ndue: 2024-05-01\n---\n"),
                                  m_tree.file(QString("n/b.md"), "---\nstatus: done\ncount: 4\ndue: 2024-06-01\n---\n")});
    FolderColumns settings = m_store.columns(folder());
    settings.types.insert("status", PropertyType::select);
    ASSERT_TRUE(m_store.setColumns(folder(), settings));
    BoardView board = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    EXPECT_EQ(board.problem, "Choose the property the board groups by.");
    EXPECT_EQ(board.choices, QStringList{"status"});
    EXPECT_TRUE(board.lanes.isEmpty());
    groupBy("gone");
    board = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    EXPECT_EQ(board.problem, "The board groups by “gone”, which no item has any more.");
    EXPECT_EQ(board.choices, QStringList{"status"});
    groupBy("count");
    board = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    EXPECT_EQ(board.problem, "The board groups by “count”, which is a number property, not a select or list.");
    EXPECT_TRUE(board.lanes.isEmpty());
}

TEST_F(BoardViewTest, AFreeTextPropertyOffersItsValuesAsTheOptionsOfASelect)
{
    const FileItems items = load({m_tree.file(QString("n/a.md"), "---\nstate: waiting\n---\n"),
                                  m_tree.file(QString("n/b.md"), "---\nstate: done\n---\n"),
                                  m_tree.file(QString("n/c.md"), "---\nstate: waiting\n---\n"),
                                  m_tree.file(QString("n/d.md"), "---\ntitle: none\n---\n")});
    FolderColumns settings = m_store.columns(folder());
    settings.types.insert("state", PropertyType::text);
    settings.options.insert("state", {"started"});
    ASSERT_TRUE(m_store.setColumns(folder(), settings));
    groupBy("state");
    BoardView board = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    EXPECT_EQ(board.problem, "The board groups by “state”, which is a text property, not a select or list.");
    EXPECT_EQ(board.convertible, QString("state"));
    EXPECT_EQ(board.foundValues, (QStringList{"waiting", "done"})) << "each value once, in the order met";
    EXPECT_TRUE(board.choices.isEmpty());

    settings = m_store.columns(folder());
    settings.makeSelect("state", board.foundValues);
    EXPECT_EQ(settings.options.value("state"), (QStringList{"started", "waiting", "done"})) << "options it listed come first";
    ASSERT_TRUE(m_store.setColumns(folder(), settings));
    board = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    EXPECT_TRUE(board.problem.isEmpty()) << board.problem.toStdString();
    EXPECT_FALSE(board.convertible);
    EXPECT_EQ(laneTitles(board, items), (QList<QStringList>{{"No value", "d.md"}, {"started"}, {"waiting", "a.md", "c.md"}, {"done", "b.md"}}));
}

TEST_F(BoardViewTest, OnlyATextPropertyIsOfferedToBecomeASelect)
{
    const FileItems items = load({m_tree.file(QString("n/a.md"), "---\ncount: 3\n---\n")});
    groupBy("count");
    const BoardView board = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    EXPECT_FALSE(board.convertible);
    EXPECT_TRUE(board.foundValues.isEmpty());
}

TEST_F(BoardViewTest, DamagedFrontMatterLandsInNoValueAndIsNotChanged)
{
    const QByteArray damaged = "---\nstatus: todo\nparent:\n  child: 1\n---\nkeep me\n"; // nested maps are outside the subset
    const FilePath a = m_tree.file(QString("n/a.md"), damaged);
    const FileItems items = load({a, m_tree.file(QString("n/b.md"), "---\nstatus: todo\n---\n")});
    groupBy("status", {"todo", "done"});
    const BoardView board = BoardView::make(DatabaseColumns::of(m_store, folder(), items), items);
    EXPECT_EQ(board.lanes[0].cards, QList<int>{0});
    QUndoStack undo;
    ASSERT_TRUE(m_store.set("status", PropertyValue::ofText("done"), {a}, &undo));
    settle();
    EXPECT_EQ(readAll(a), damaged);
    ASSERT_EQ(m_reports.size(), 1);
    EXPECT_FALSE(m_reports[0].errors.isEmpty());
    EXPECT_EQ(undo.count(), 0);
}

} // namespace
