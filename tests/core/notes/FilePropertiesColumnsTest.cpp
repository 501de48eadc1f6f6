// What the store answers a table that asks after every change: the shown columns follow the
// folder's settings, the values and the items asked about; and a reading that finds what was
// there already (a folder read again after its listing reloaded) redraws nothing.

#include "PropertyStoreFixture.h"

#include <gtest/gtest.h>

using namespace orwick;
using orwick::test::itemsOf;

namespace {

using FilePropertiesColumnsTest = test::PropertyStoreTest;

PropertyColumn columnOf(const QList<PropertyColumn>& columns, const QString& key)
{
    for (const PropertyColumn& column : columns)
        if (column.key == key)
            return column;
    ADD_FAILURE() << "no column " << key.toStdString();
    return {};
}

TEST_F(FilePropertiesColumnsTest, ShownColumnsFollowSettingsValuesAndItems)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstage: b\nn: 1\n---\n");
    const FilePath b = tree.file(QString("n/b.md"), "---\nstage: a\nn: 2\n---\n");
    const FilePath c = tree.file(QString("n/c.md"), "---\nstage: b\nn: 3\n---\n");
    const FilePath folder = a.parent();
    const FileItems items = itemsOf({a, b, c});
    loadItems(items, store);
    FolderColumns settings;
    settings.shown = {"stage", "n"};
    ASSERT_TRUE(store.setColumns(folder, settings));
    QList<PropertyColumn> shown = store.shownColumns(folder, items);
    ASSERT_EQ(shown.size(), 2);
    EXPECT_EQ(shown[0].type, PropertyType::select);
    EXPECT_EQ(shown[0].options, (QStringList{"b", "a"}));
    EXPECT_EQ(shown[1].type, PropertyType::number);
    EXPECT_EQ(store.shownColumns(folder, itemsOf({a, b, c})), shown) << "the same items in another list";

    settings.types.insert("n", PropertyType::text);
    settings.options.insert("stage", {"z"});
    ASSERT_TRUE(store.setColumns(folder, settings));
    shown = store.shownColumns(folder, items);
    EXPECT_EQ(columnOf(shown, "n").type, PropertyType::text);
    EXPECT_EQ(columnOf(shown, "stage").options, (QStringList{"z", "b", "a"}));

    ASSERT_TRUE(store.set("stage", PropertyValue::ofText("c"), {a}));
    settle();
    shown = store.shownColumns(folder, items);
    EXPECT_EQ(columnOf(shown, "stage").options, (QStringList{"z", "c", "a", "b"}));
    EXPECT_EQ(columnOf(shown, "stage").type, PropertyType::text) << "three values, three texts: no longer a select";

    EXPECT_EQ(columnOf(store.shownColumns(folder, itemsOf({a, b})), "stage").options, (QStringList{"z", "c", "a"}));
    EXPECT_EQ(columnOf(store.shownColumns(folder, items), "stage").options, (QStringList{"z", "c", "a", "b"}));
}

TEST_F(FilePropertiesColumnsTest, AReadingThatFindsNothingNewRedrawsNothing)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstage: b\n---\n");
    const FilePath b = tree.file(QString("n/b.md"), "no front matter\n");
    const FileItems items = itemsOf({a, b});
    int redraws = 0;
    QObject::connect(&store, &FileProperties::valuesChanged, [&] { ++redraws; });
    loadItems(items, store);
    EXPECT_EQ(redraws, 1);
    loadItems(items, store); // waits for the revision: the reading arrived
    EXPECT_EQ(redraws, 1);
    EXPECT_EQ(store.value(a, "stage"), PropertyValue::ofText("b"));

    tree.file(QString("n/b.md"), "---\nstage: a\n---\n");
    loadItems(items, store);
    EXPECT_EQ(redraws, 2);
    EXPECT_EQ(store.value(b, "stage"), PropertyValue::ofText("a"));
    tree.file(QString("n/a.md"), "no front matter any more\n");
    loadItems(items, store);
    EXPECT_EQ(redraws, 3);
    EXPECT_FALSE(store.values().contains(a));
}

} // namespace
