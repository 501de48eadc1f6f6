// Property columns appended to a file list: typed cells, header, in-place edits written to the
// notes as one undo step each, and refusals reported.

#include "fileops/FileOperations.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/notes/PropertyColumnsModel.h"

#include <QStandardItemModel>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::readAll;
using test::TempTree;

constexpr int kUrlRole = Qt::UserRole + 1;

class PropertyColumnsModelTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        a = tree.file(QString("n/a.md"), "---\nstatus: open\ndone: false\ndue: 2024-05-17\ntags: [x, y]\n---\nA\n");
        b = tree.file(QString("n/b.md"), "B\n");
        for (const FilePath& path : {a, b}) {
            auto* row = new QStandardItem(path.fileName());
            row->setData(QVariant::fromValue(path), kUrlRole);
            source.appendRow(row);
        }
        FileItems items;
        for (const FilePath& path : {a, b})
            items.append(FileItem::make(path));
        const int revision = store.revision();
        store.load(items);
        ASSERT_TRUE(test::waitUntil([&] { return store.revision() > revision; }));
        FolderColumns columns;
        columns.shown = {"status", "done", "due", "tags"};
        columns.types.insert("status", PropertyType::select);
        columns.types.insert("done", PropertyType::checkbox);
        columns.types.insert("due", PropertyType::date);
        ASSERT_TRUE(store.setColumns(a.parent(), columns));
        model.setSourceModel(&source);
        model.setFolder(a.parent());
        model.setUndoStack(&undo);
    }
    QModelIndex cell(int row, int column) const { return model.index(row, column); }

    TempTree tree;
    FilePath a, b;
    QStandardItemModel source;
    FileProperties store{nullptr, tree.path("columns.json")};
    PropertyColumnsModel model{&store, kUrlRole};
    QUndoStack undo;
};

TEST_F(PropertyColumnsModelTest, AppendsTypedColumns)
{
    ASSERT_EQ(model.columnCount(), 5);
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), "status");
    EXPECT_EQ(model.data(cell(0, 0), Qt::DisplayRole).toString(), "a.md"); // the source's own column
    EXPECT_EQ(model.data(cell(0, 1), Qt::DisplayRole).toString(), "open");
    EXPECT_EQ(model.data(cell(0, 2), Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_TRUE(model.flags(cell(0, 2)) & Qt::ItemIsUserCheckable);
    EXPECT_EQ(model.data(cell(0, 3), Qt::DisplayRole).toString(), QLocale().toString(QDate(2024, 5, 17), QLocale::ShortFormat));
    EXPECT_EQ(model.data(cell(0, 3), Qt::EditRole).toString(), "2024-05-17");
    EXPECT_EQ(model.data(cell(0, 4), Qt::DisplayRole).toString(), "x, y");
    EXPECT_FALSE(model.data(cell(1, 1), Qt::DisplayRole).isValid()); // b has no status
    EXPECT_FALSE(model.mapToSource(cell(0, 1)).isValid());
}

TEST_F(PropertyColumnsModelTest, EditsWriteTheNoteAsOneUndoStep)
{
    auto settle = [&] { ASSERT_TRUE(test::waitUntil([&] { return FileOperations::shared().isIdle() && store.isSettled(); })); };
    ASSERT_TRUE(model.setData(cell(1, 1), "doing", Qt::EditRole));
    settle();
    EXPECT_EQ(readAll(b), "---\nstatus: doing\n---\nB\n");
    EXPECT_EQ(undo.undoText(), "Set status");
    EXPECT_EQ(model.data(cell(1, 1), Qt::DisplayRole).toString(), "doing");
    // A list is edited as its text (checkboxes and dates go through the table's own editors).
    ASSERT_TRUE(model.setData(cell(0, 4), "x, z", Qt::EditRole));
    settle();
    EXPECT_TRUE(readAll(a).contains("tags: [x, z]\n"));
    EXPECT_EQ(undo.count(), 2);
    while (undo.canUndo()) {
        undo.undo();
        settle();
    }
    EXPECT_EQ(readAll(a), "---\nstatus: open\ndone: false\ndue: 2024-05-17\ntags: [x, y]\n---\nA\n");
    EXPECT_EQ(readAll(b), "B\n");
}

TEST_F(PropertyColumnsModelTest, ARefusedEditIsReported)
{
    tree.file(QString("n/a.md"), "---\nstatus: open\n---\nchanged elsewhere\n");
    QString reported;
    FileOperations::shared().setReportErrors([&](const OperationOutcome& outcome) { reported = outcomeText(outcome); });
    EXPECT_TRUE(model.setData(cell(0, 1), "done", Qt::EditRole)); // asked of the engine, which refuses it
    ASSERT_TRUE(test::waitUntil([&] { return FileOperations::shared().isIdle() && store.isSettled(); }));
    FileOperations::shared().setReportErrors({});
    EXPECT_TRUE(reported.contains("changed on disk")) << reported.toStdString();
    EXPECT_EQ(readAll(a), "---\nstatus: open\n---\nchanged elsewhere\n");
    EXPECT_EQ(undo.count(), 0);
}

} // namespace
} // namespace orwick
