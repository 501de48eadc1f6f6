// Filter chips over a folder: one chip per saved row in the filter row's words, rows added,
// replaced and removed through the bar and saved at once for the folder.

#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/notes/FilterChipsBar.h"
#include "ui/notes/FilterRowEditor.h"

#include <QToolButton>
#include <gtest/gtest.h>

namespace orwick {
namespace {

using C = PropertyFilter::Condition;

TEST(FilterChipsBar, ShowsEditsAndSavesTheFolderFilters)
{
    test::TempTree tree;
    const FilePath note = tree.file(QString("n/a.md"), "---\nstatus: done\n---\n");
    const FilePath columnsFile = tree.path("columns.json");
    FileProperties store(nullptr, columnsFile);
    FilterChipsBar bar(&store);
    bar.setFolder(note.parent(), {FileItem::make(note)});
    EXPECT_TRUE(bar.chipTexts().isEmpty());

    PropertyFilter row{QUuid::createUuid(), "status", C::equals, "done"};
    bar.putFilter(row);
    bar.putFilter({QUuid::createUuid(), "due", C::empty, ""});
    EXPECT_EQ(bar.chipTexts(), (QStringList{"status is done", "due is empty"}));
    row.condition = C::differs;
    bar.putFilter(row);
    EXPECT_EQ(bar.chipTexts(), (QStringList{"status is not done", "due is empty"}));
    EXPECT_EQ(FileProperties(nullptr, columnsFile).columns(note.parent()).filters.size(), 2); // saved at once

    // The chip's remove button, as a click.
    QToolButton* remove = nullptr;
    for (QToolButton* button : bar.findChildren<QToolButton*>())
        if (button->text() == "×" && !button->isHidden() && !remove)
            remove = button;
    ASSERT_TRUE(remove);
    remove->click();
    EXPECT_EQ(bar.chipTexts(), QStringList{"due is empty"});
    EXPECT_EQ(store.filtered({FileItem::make(note)}, note.parent()).size(), 1);
}

TEST(FilterRowEditor, KeepsTheIdAndDropsTheOperandOfValuelessConditions)
{
    const PropertyFilter row{QUuid::createUuid(), "done", C::checked, "stale"};
    FilterRowEditor editor(row, {"done", "status"});
    const PropertyFilter edited = editor.filter();
    EXPECT_EQ(edited.id, row.id);
    EXPECT_EQ(edited.key, "done");
    EXPECT_EQ(edited.condition, C::checked);
    EXPECT_TRUE(edited.value.isEmpty());
}

} // namespace
} // namespace orwick
