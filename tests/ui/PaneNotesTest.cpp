// Notes in a window's pane: the table shows typed property columns, an edit writes the note and
// the window's undo takes it back, and the folder's filters and a property sort reach the rows.
#include "NotesWindowFixture.h"

#include "fileops/FileOperations.h"
#include "TableColumns.h"
#include "ui/notes/FilterChipsBar.h"
#include "ui/notes/PropertyColumnsModel.h"
#include "ui/views/FileTableView.h"

#include <QApplication>
#include <QHeaderView>
#include <QUndoStack>
#include <gtest/gtest.h>

using namespace orwick;
using test::readAll;
using test::waitUntil;

namespace {

struct PaneNotesTest : test::NotesWindowTest {
    void SetUp() override
    {
        FolderColumns columns;
        columns.shown = {"priority", "status"};
        columns.types.insert("priority", PropertyType::number);
        writeNotes("---\npriority: 10\nstatus: open\n---\nAlpha\n", "---\npriority: 3\nstatus: done\n---\nBeta\n", columns);
        if (HasFatalFailure())
            return;

        openWindow();
        window->show();
        pane()->chooseViewMode(ViewMode::table);
        ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && pane()->items().size() == 2; }));
        // The properties arrive after the rows.
        ASSERT_TRUE(waitUntil([&] { return store.value(beta, "priority").has_value(); }));
        QApplication::processEvents();
    }
    QAbstractItemModel* table() { return widget()->tableView()->model(); }
    int columnOf(const QString& key) { return test::columnTitled(table(), key); }
    QModelIndex cell(const FilePath& path, const QString& key) { return table()->index(pane()->row(path), columnOf(key)); }
    QStringList shownNames()
    {
        QStringList names;
        for (const FileItem& item : pane()->items())
            names.append(item.url.fileName());
        return names;
    }
};

} // namespace

TEST_F(PaneNotesTest, TableShowsTypedPropertiesAndEditsAreOneUndoStep)
{
    auto* decoration = PaneNotesDecoration::of(widget());
    ASSERT_NE(decoration, nullptr);
    EXPECT_EQ(table(), decoration->columnsModel());
    ASSERT_GE(columnOf("priority"), 0);
    ASSERT_GE(columnOf("status"), 0);
    EXPECT_EQ(cell(beta, "priority").data(Qt::DisplayRole).toString(), "3");
    const auto typed = cell(beta, "priority").data(PropertyColumnsModel::PropertyValueRole);
    ASSERT_TRUE(typed.canConvert<PropertyValue>());
    EXPECT_TRUE(typed.value<PropertyValue>().isNumber());
    EXPECT_EQ(cell(beta, "priority").data(PropertyColumnsModel::PropertyTypeRole).toInt(), int(PropertyType::number));
    EXPECT_EQ(cell(alpha, "status").data(Qt::DisplayRole).toString(), "open");

    QUndoStack* undo = state->undoStack();
    // The edit is a job of the file operations engine: written in the background, one undo step.
    ASSERT_TRUE(table()->setData(cell(beta, "priority"), "7", Qt::EditRole));
    ASSERT_TRUE(waitUntil([&] { return readAll(beta) == "---\npriority: 7\nstatus: done\n---\nBeta\n"; }));
    ASSERT_TRUE(waitUntil([&] { return cell(beta, "priority").data(Qt::DisplayRole).toString() == "7"; }));
    ASSERT_TRUE(waitUntil([&] { return FileOperations::shared().isIdle(); }));
    EXPECT_EQ(undo->undoText(), "Set priority");
    undo->undo();
    ASSERT_TRUE(waitUntil([&] { return readAll(beta) == "---\npriority: 3\nstatus: done\n---\nBeta\n"; }));
    ASSERT_TRUE(waitUntil([&] { return cell(beta, "priority").data(Qt::DisplayRole).toString() == "3"; }));
    EXPECT_EQ(readAll(alpha), "---\npriority: 10\nstatus: open\n---\nAlpha\n");
}

TEST_F(PaneNotesTest, FiltersAndPropertySortReachTheRows)
{
    auto* decoration = PaneNotesDecoration::of(widget());
    ASSERT_NE(decoration, nullptr);
    ASSERT_TRUE(decoration->chipsBar()->isVisible());
    EXPECT_EQ(shownNames(), (QStringList{"alpha.md", "beta.md"}));

    // Sorting by the number column puts 3 before 10; a second click flips it.
    QHeaderView* header = widget()->tableView()->header();
    Q_EMIT header->sectionClicked(columnOf("priority"));
    ASSERT_TRUE(waitUntil([&] { return shownNames() == QStringList{"beta.md", "alpha.md"}; }));
    Q_EMIT header->sectionClicked(columnOf("priority"));
    ASSERT_TRUE(waitUntil([&] { return shownNames() == QStringList{"alpha.md", "beta.md"}; }));

    PropertyFilter filter;
    filter.key = "status";
    filter.condition = PropertyFilter::Condition::equals;
    filter.value = "done";
    decoration->chipsBar()->putFilter(filter);
    ASSERT_TRUE(waitUntil([&] { return shownNames() == QStringList{"beta.md"}; }));
    EXPECT_EQ(decoration->chipsBar()->chipTexts().size(), 1);

    // A property change that the filter rejects drops the row; removing the filter brings all back.
    ASSERT_TRUE(store.set("status", PropertyValue::ofText("open"), {beta}, state->undoStack()));
    ASSERT_TRUE(waitUntil([&] { return shownNames().isEmpty(); }));
    decoration->chipsBar()->removeFilter(filter.id);
    ASSERT_TRUE(waitUntil([&] { return shownNames().size() == 2; }));
}

TEST_F(PaneNotesTest, NewPanesGetColumnsToo)
{
    state->newTab(folder);
    QApplication::processEvents();
    ASSERT_NE(widget(), nullptr);
    ASSERT_NE(PaneNotesDecoration::of(widget()), nullptr);
    pane()->chooseViewMode(ViewMode::table);
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && pane()->items().size() == 2; }));
    ASSERT_TRUE(waitUntil([&] { return cell(alpha, "priority").data(Qt::DisplayRole).toString() == "10"; }));
}
