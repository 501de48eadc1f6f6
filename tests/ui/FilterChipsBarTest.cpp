// Filter chips over a folder: one chip per saved row in the filter row's words, rows added,
// replaced and removed through the bar and saved at once for the folder.

#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/notes/FilterChipsBar.h"
#include "ui/notes/FilterRowEditor.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
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
    FilterRowEditor editor(row, {"done", "status"}, [](const QString&) { return PropertyType::checkbox; });
    const PropertyFilter edited = editor.filter();
    EXPECT_EQ(edited.id, row.id);
    EXPECT_EQ(edited.key, "done");
    EXPECT_EQ(edited.condition, C::checked);
    EXPECT_TRUE(edited.value.isEmpty());
}

// "is checked", "is not checked", "is empty", "is not empty" take no operand: no Value row.
TEST(FilterRowEditor, ShowsTheValueRowOnlyForConditionsThatTakeOne)
{
    const auto typeOf = [](const QString& key) { return key == "done" ? PropertyType::checkbox : PropertyType::text; };
    FilterRowEditor editor({QUuid::createUuid(), "done", C::checked, ""}, {"done", "status"}, typeOf);
    auto* value = editor.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_TRUE(value);
    const auto valueLabel = [&]() -> QWidget* {
        auto* form = qobject_cast<QFormLayout*>(editor.layout());
        QLayoutItem* label = form ? form->itemAt(2, QFormLayout::LabelRole) : nullptr;
        return label ? label->widget() : nullptr;
    };
    ASSERT_TRUE(valueLabel());
    EXPECT_FALSE(value->isVisibleTo(&editor));
    EXPECT_FALSE(valueLabel()->isVisibleTo(&editor));
    auto* condition = editor.findChildren<QComboBox*>().value(1);
    condition->setCurrentIndex(int(editor.conditionTitles().indexOf("is not checked")));
    EXPECT_FALSE(value->isVisibleTo(&editor));

    auto* key = editor.findChildren<QComboBox*>().value(0);
    key->setCurrentText("status");
    condition->setCurrentIndex(int(editor.conditionTitles().indexOf("contains")));
    EXPECT_TRUE(value->isVisibleTo(&editor));
    EXPECT_TRUE(valueLabel()->isVisibleTo(&editor));
    condition->setCurrentIndex(int(editor.conditionTitles().indexOf("is empty")));
    EXPECT_FALSE(value->isVisibleTo(&editor));
    condition->setCurrentIndex(int(editor.conditionTitles().indexOf("is")));
    EXPECT_TRUE(value->isVisibleTo(&editor));
}

TEST(FilterRowEditor, OffersTheConditionsOfThePropertysTypeAndFollowsTheKey)
{
    test::TempTree tree;
    const FilePath a = tree.file(QString("n/a.md"), "---\ndone: true\ndue: 2024-05-17\npoints: 3\nstatus: open\n---\n");
    const FilePath b = tree.file(QString("n/b.md"), "---\ndone: false\ndue: 2024-06-01\npoints: 5\nstatus: done\n---\n");
    FileProperties store(nullptr, tree.path("columns.json"));
    const FileItems items{FileItem::make(a), FileItem::make(b)};
    store.load(items);
    ASSERT_TRUE(test::waitUntil([&] { return store.value(b, "status").has_value(); }));
    const FilterRowEditor::TypeOf typeOf = [&](const QString& key) { return store.type(key, a.parent(), items); };

    FilterRowEditor editor({QUuid::createUuid(), "done", C::checked, ""}, store.keys(items), typeOf);
    EXPECT_EQ(editor.conditionTitles(), (QStringList{"is checked", "is not checked", "is empty", "is not empty"}));
    auto* key = editor.findChildren<QComboBox*>().value(0);
    ASSERT_TRUE(key && key->isEditable());
    key->setCurrentText("due");
    EXPECT_EQ(editor.conditionTitles(), (QStringList{"is", "is before", "is after", "is empty", "is not empty"}));
    EXPECT_EQ(editor.filter().condition, C::equals); // "is checked" does not fit a date
    auto* condition = editor.findChildren<QComboBox*>().value(1);
    condition->setCurrentIndex(int(editor.conditionTitles().indexOf("is not empty")));
    key->setCurrentText("points");
    EXPECT_EQ(editor.conditionTitles(), (QStringList{"is", "is not", ">", "<", "is empty", "is not empty"}));
    EXPECT_EQ(editor.filter().condition, C::filled); // kept: it fits a number too
    key->setCurrentText("status");
    EXPECT_EQ(editor.conditionTitles(), (QStringList{"is", "is not", "contains", "doesn't contain", "is empty", "is not empty"}));

    // A new row on a checkbox starts at "is checked", and offers nothing else but its type's.
    FilterChipsBar bar(&store);
    bar.setFolder(a.parent(), items);
    const PropertyFilter fresh = bar.newFilter();
    EXPECT_EQ(fresh.key, "done");
    EXPECT_EQ(fresh.condition, C::checked);
    EXPECT_EQ(FilterRowEditor(fresh, store.keys(items), typeOf).conditionTitles().size(), 4);

    // A row saved with a condition its type does not offer keeps it while its property stays.
    FilterRowEditor old({QUuid::createUuid(), "status", C::greater, "4"}, store.keys(items), typeOf);
    EXPECT_EQ(old.conditionTitles().last(), ">");
    EXPECT_EQ(old.filter().condition, C::greater);
    EXPECT_EQ(old.filter().value, "4");
}

} // namespace
} // namespace orwick
