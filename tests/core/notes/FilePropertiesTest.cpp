// The shared property store over real folders: loading in the background, writing through the
// file operations engine with one undo step per change, renaming keys and options across a
// folder, settings in columns.json, filtering and sorting.

#include "files/Arrangement.h"
#include "PropertyStoreFixture.h"
#include "platform/StoreNotices.h"
#include "platform/Xattr.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <sys/xattr.h>
#include <gtest/gtest.h>

using namespace orwick;
using orwick::test::readAll;
using orwick::test::itemsOf;
using orwick::test::waitUntil;

namespace {

using FilePropertiesTest = test::PropertyStoreTest;

TEST_F(FilePropertiesTest, LoadsNotesAndAttributesInTheBackground)
{
    const FilePath a = tree.file(QString("notes/a.md"), "---\nstatus: done\ncount: 2\n---\n");
    const FilePath b = tree.file(QString("notes/b.md"), "no front matter");
    const FilePath c = tree.file(QString("notes/c.png"), "png");
    ASSERT_EQ(::setxattr(c.c_str(), xattr::properties, "{\"rating\":5}", 12, 0), 0);
    int changed = 0;
    QObject::connect(&store, &FileProperties::valuesChanged, [&] { ++changed; });
    load({a, b, c});
    EXPECT_EQ(store.value(a, "status"), PropertyValue::ofText("done"));
    EXPECT_EQ(store.value(a, "count"), PropertyValue::ofNumber(2));
    EXPECT_EQ(store.value(c, "rating"), PropertyValue::ofNumber(5));
    EXPECT_FALSE(store.values().contains(b)); // only files with properties have an entry
    EXPECT_EQ(changed, 1);
    EXPECT_FALSE(store.isLoading());
}

TEST_F(FilePropertiesTest, ANewerLoadOfTheFolderReplacesTheOlder)
{
    QList<FilePath> paths;
    for (int i = 0; i < 300; ++i)
        paths.append(tree.file(QString("f/n%1.md").arg(i), "---\nold: 1\n---\n"));
    store.load(itemsOf(paths)); // superseded at once: publishes nothing
    tree.file(QString("f/n0.md"), "---\nnew: 1\n---\n");
    load({paths.first()});
    ASSERT_TRUE(waitUntil([&] { return !store.isLoading(); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(store.value(paths.first(), "new"), PropertyValue::ofNumber(1));
    EXPECT_FALSE(store.values().contains(paths.last()));
}

TEST_F(FilePropertiesTest, SetIsOneUndoStep)
{
    const QByteArray aBefore = "---\nstatus: open\n---\nA body\n";
    const FilePath a = tree.file(QString("n/a.md"), aBefore);
    const FilePath b = tree.file(QString("n/b.md"), "B body\n");
    const FilePath c = tree.file(QString("n/c.txt"), "C");
    QUndoStack stack;
    ASSERT_TRUE(store.set("status", PropertyValue::ofText("done"), {a, b, c}, &stack));
    settle();
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), "Set status");
    EXPECT_EQ(readAll(a), "---\nstatus: done\n---\nA body\n");
    EXPECT_EQ(readAll(b), "---\nstatus: done\n---\nB body\n");
    EXPECT_EQ(store.value(c, "status"), PropertyValue::ofText("done"));
    undo(stack);
    EXPECT_EQ(readAll(a), aBefore);
    EXPECT_EQ(readAll(b), "B body\n");
    EXPECT_FALSE(store.values().contains(c));
    stack.redo();
    settle();
    EXPECT_EQ(store.value(b, "status"), PropertyValue::ofText("done"));
}

TEST_F(FilePropertiesTest, NoteChangedSinceLoadIsRefusedAndKept)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstatus: open\n---\n");
    load({a});
    const QByteArray theirs = "---\nstatus: open\n---\nTheir new paragraph.\n";
    tree.file(QString("n/a.md"), theirs);
    QUndoStack stack;
    ASSERT_TRUE(store.set("status", PropertyValue::ofText("done"), {a}, &stack));
    settle();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports[0].errors, QStringList{"Couldn’t change “a.md”: it changed on disk since it was read."});
    EXPECT_EQ(reports[0].done, 0);
    EXPECT_EQ(readAll(a), theirs);
    EXPECT_EQ(stack.count(), 0);
    // Trying again, once the note was read again, works and keeps their paragraph.
    load({a});
    ASSERT_TRUE(store.set("status", PropertyValue::ofText("done"), {a}, &stack));
    settle();
    EXPECT_EQ(readAll(a), "---\nstatus: done\n---\nTheir new paragraph.\n");
    EXPECT_EQ(toasts.last(), "Set status on a.md");
}

TEST_F(FilePropertiesTest, UndoAfterAnotherChangeIsRefusedNotForced)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstatus: open\n---\n");
    QUndoStack stack;
    ASSERT_TRUE(store.set("status", PropertyValue::ofText("done"), {a}, &stack));
    settle();
    ASSERT_EQ(readAll(a), "---\nstatus: done\n---\n");
    const QByteArray theirs = "---\nstatus: done\n---\nedited elsewhere\n";
    tree.file(QString("n/a.md"), theirs);
    undo(stack);
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports[0].errors, QStringList{"Couldn’t change “a.md”: it changed on disk since it was read."});
    EXPECT_EQ(readAll(a), theirs);
}

TEST_F(FilePropertiesTest, RenameAcrossTheFolder)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstatus: open\nx: 1\n---\n");
    const FilePath b = tree.file(QString("n/b.md"), "---\nother: 1\n---\n");
    const FilePath c = tree.file(QString("n/c.txt"), "C");
    const FilePath folder = a.parent();
    ASSERT_TRUE(store.set("status", PropertyValue::ofText("open"), {c}));
    settle();
    FolderColumns columns;
    columns.shown = {"status"};
    columns.widths.insert("status", 120);
    ASSERT_TRUE(store.setColumns(folder, columns));
    const FileItems items = itemsOf({a, b, c});
    QUndoStack stack;
    ASSERT_TRUE(store.rename("status", "state", folder, items, &stack));
    settle();
    EXPECT_EQ(stack.undoText(), "Rename status");
    EXPECT_EQ(readAll(a), "---\nstate: open\nx: 1\n---\n");
    EXPECT_EQ(readAll(b), "---\nother: 1\n---\n");
    EXPECT_EQ(store.value(c, "state"), PropertyValue::ofText("open"));
    EXPECT_EQ(store.columns(folder).shown, QStringList{"state"});
    EXPECT_EQ(store.columns(folder).widths.value("state"), 120);
    undo(stack);
    EXPECT_EQ(readAll(a), "---\nstatus: open\nx: 1\n---\n");
    EXPECT_EQ(store.value(c, "status"), PropertyValue::ofText("open"));
    EXPECT_EQ(store.columns(folder).shown, QStringList{"status"});
}

TEST_F(FilePropertiesTest, RenameAndDeleteOptions)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstatus: done\ntags: [done, x]\n---\n");
    const FilePath b = tree.file(QString("n/b.md"), "---\nstatus: open\n---\n");
    const FilePath folder = a.parent();
    const FileItems items = itemsOf({a, b});
    loadItems(items, store);
    store.setColor(3, "done", "status", folder);
    QUndoStack stack;
    ASSERT_TRUE(store.renameOption("status", "done", "finished", folder, items, &stack));
    settle();
    EXPECT_EQ(stack.undoText(), "Rename done");
    EXPECT_EQ(store.value(a, "status"), PropertyValue::ofText("finished"));
    EXPECT_EQ(store.value(a, "tags"), PropertyValue::ofList({"done", "x"})); // other keys untouched
    EXPECT_EQ(store.columns(folder).optionColors.value("status").value("finished"), 3);
    ASSERT_TRUE(store.deleteOption("done", "tags", folder, items, &stack));
    settle();
    EXPECT_EQ(stack.undoText(), "Delete done");
    EXPECT_EQ(readAll(a), "---\nstatus: finished\ntags: [x]\n---\n");
    undo(stack);
    undo(stack);
    EXPECT_EQ(readAll(a), "---\nstatus: done\ntags: [done, x]\n---\n");
    EXPECT_EQ(store.columns(folder).optionColors.value("status").value("done"), 3);
}

TEST_F(FilePropertiesTest, TypesOptionsAndOrder)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstage: b\nn: 1\n---\n");
    const FilePath b = tree.file(QString("n/b.md"), "---\nstage: a\nn: 2\n---\n");
    const FilePath c = tree.file(QString("n/c.md"), "---\nstage: b\nn: x\n---\n");
    const FilePath folder = a.parent();
    const FileItems items = itemsOf({a, b, c});
    loadItems(items, store);
    EXPECT_EQ(store.type("stage", folder, items), PropertyType::select);
    EXPECT_EQ(store.type("n", folder, items), PropertyType::text);
    EXPECT_EQ(store.options("stage", folder, items), (QStringList{"b", "a"}));
    store.moveOption("a", "stage", QString("b"), folder, items);
    EXPECT_EQ(store.options("stage", folder, items), (QStringList{"a", "b"}));
    FolderColumns columns = store.columns(folder);
    columns.types.insert("n", PropertyType::number);
    ASSERT_TRUE(store.setColumns(folder, columns));
    EXPECT_EQ(store.type("n", folder, items), PropertyType::number);
    EXPECT_EQ(store.keys(items), (QStringList{"n", "stage"}));
}

TEST_F(FilePropertiesTest, FilteredKeepsOrderAndJoinsWithAnd)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstatus: done\ntags: [x, y]\n---\n");
    const FilePath b = tree.file(QString("n/b.md"), "---\nstatus: open\ntags: [y]\n---\n");
    const FilePath c = tree.file(QString("n/c.md"), "---\nstatus: done\n---\n");
    const FilePath folder = a.parent();
    const FileItems items = itemsOf({a, b, c});
    loadItems(items, store);
    EXPECT_EQ(store.filtered(items, folder), items);
    FolderColumns columns;
    columns.filters = {{QUuid::createUuid(), "status", PropertyFilter::Condition::equals, "DONE"},
                       {QUuid::createUuid(), "tags", PropertyFilter::Condition::contains, "Y"}};
    ASSERT_TRUE(store.setColumns(folder, columns));
    EXPECT_EQ(store.filtered(items, folder), itemsOf({a}));
}

TEST_F(FilePropertiesTest, SettingsPersistAndDamagedEntriesSurvive)
{
    const FilePath folder = tree.folder("n");
    FolderColumns columns;
    columns.shown = {"a"};
    columns.layout = "board";
    columns.filters = {{QUuid::createUuid(), "a", PropertyFilter::Condition::filled, ""}};
    ASSERT_TRUE(store.setColumns(folder, columns));
    // Another folder's entry lacks required fields: kept as it was.
    QJsonObject json = QJsonDocument::fromJson(readAll(columnsFile())).object();
    json.insert("/elsewhere", QJsonObject{{"shown", 3}});
    tree.file(QString("data/columns.json"), QJsonDocument(json).toJson());
    FileProperties store(nullptr, columnsFile(), &ops);
    EXPECT_EQ(store.columns(folder).layout, QString("board"));
    EXPECT_EQ(store.columns(folder).filters.size(), 1);
    store.setColor(1, "x", "a", folder);
    EXPECT_TRUE(readAll(columnsFile()).contains("\"/elsewhere\""));
    EXPECT_EQ(store.columns(tree.folder("other")), FolderColumns());
}

TEST_F(FilePropertiesTest, DamagedColumnsFileGivesDefaultsAMessageAndIsKept)
{
    tree.file(QString("data/columns.json"), "{ damaged");
    StoreNotices::takePending();
    FileProperties store(nullptr, columnsFile(), &ops);
    EXPECT_EQ(store.columns(tree.root()), FolderColumns());
    const QStringList messages = StoreNotices::takePending();
    ASSERT_EQ(messages.size(), 1); // said once
    EXPECT_TRUE(messages[0].contains("couldn’t read its column settings")) << messages[0].toStdString();
    EXPECT_TRUE(messages[0].contains("columns.damaged.json")) << messages[0].toStdString();
    // The next save starts a new file; the damaged one stays where the message says.
    FolderColumns columns;
    columns.shown = {"a"};
    ASSERT_TRUE(store.setColumns(tree.folder("n"), columns));
    EXPECT_EQ(readAll(tree.path("data/columns.damaged.json")), "{ damaged");
    EXPECT_EQ(FileProperties(nullptr, columnsFile()).columns(tree.folder("n")).shown, QStringList{"a"});
    // A file that is simply not there yet is no news.
    FileProperties none(nullptr, tree.path("data/none.json"));
    EXPECT_TRUE(StoreNotices::takePending().isEmpty());
}

TEST_F(FilePropertiesTest, DeleteAPropertyAcrossTheFolder)
{
    const QByteArray aText = "---\ndone: true\nstatus: open # keep\n---\nBody\n";
    const FilePath a = tree.file(QString("n/a.md"), aText);
    const FilePath b = tree.file(QString("n/b.md"), "---\nstatus: open\n---\n");
    const FilePath c = tree.file(QString("n/c.txt"), "C");
    const FilePath folder = a.parent();
    ASSERT_TRUE(store.set("done", PropertyValue::ofBool(false), {c}));
    settle();
    FolderColumns columns;
    columns.shown = {"status", "done"};
    columns.types.insert("done", PropertyType::checkbox);
    columns.filters = {{QUuid::createUuid(), "done", PropertyFilter::Condition::checked, ""}};
    ASSERT_TRUE(store.setColumns(folder, columns));
    const FileItems items = itemsOf({a, b, c});
    QUndoStack stack;
    ASSERT_TRUE(store.remove("done", folder, items, &stack));
    settle();
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), "Delete done");
    EXPECT_EQ(readAll(a), "---\nstatus: open # keep\n---\nBody\n");
    EXPECT_EQ(readAll(b), "---\nstatus: open\n---\n");
    EXPECT_FALSE(store.value(c, "done").has_value());
    EXPECT_EQ(store.columns(folder).shown, QStringList{"status"});
    EXPECT_TRUE(store.columns(folder).filters.isEmpty());
    EXPECT_FALSE(store.columns(folder).types.contains("done"));
    undo(stack);
    EXPECT_EQ(readAll(a), aText); // the line back where it was
    EXPECT_EQ(store.value(a, "done"), PropertyValue::ofBool(true));
    EXPECT_EQ(store.value(c, "done"), PropertyValue::ofBool(false));
    EXPECT_EQ(readAll(b), "---\nstatus: open\n---\n");
    EXPECT_EQ(store.columns(folder), columns);
    stack.redo();
    settle();
    EXPECT_EQ(readAll(a), "---\nstatus: open # keep\n---\nBody\n");
}

TEST_F(FilePropertiesTest, UndoGivesBackTheExactBytesUnlessTheNoteChangedMeanwhile)
{
    const QByteArray text = "---\ntags:\n  - a\n  - 'b'\nstatus: open\n---\nBody\n";
    const FilePath a = tree.file(QString("n/a.md"), text);
    const FilePath b = tree.file(QString("n/b.md"), text);
    load({a, b});
    QUndoStack stack;
    ASSERT_TRUE(store.remove("tags", a.parent(), itemsOf({a, b}), &stack));
    settle();
    EXPECT_EQ(readAll(a), "---\nstatus: open\n---\nBody\n");
    // Someone adds a paragraph to b: its undo is refused and their paragraph stays; a's is exact.
    const QByteArray theirs = "---\nstatus: open\n---\nBody\nMore\n";
    tree.file(QString("n/b.md"), theirs);
    undo(stack);
    EXPECT_EQ(readAll(a), text);
    EXPECT_EQ(readAll(b), theirs);
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports[0].errors, QStringList{"Couldn’t change “b.md”: it changed on disk since it was read."});
    EXPECT_EQ(store.value(a, "tags"), PropertyValue::ofList({"a", "b"}));
}

TEST_F(FilePropertiesTest, MovingAndColouringOptionsAreUndoSteps)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\nstage: b\n---\n");
    const FilePath b = tree.file(QString("n/b.md"), "---\nstage: a\n---\n");
    const FilePath folder = a.parent();
    const FileItems items = itemsOf({a, b});
    loadItems(items, store);
    QUndoStack stack;
    store.moveOption("a", "stage", QString("b"), folder, items, &stack);
    EXPECT_EQ(stack.undoText(), "Move a");
    store.setColor(4, "a", "stage", folder, &stack);
    EXPECT_EQ(stack.undoText(), "Color a");
    store.setColor(4, "a", "stage", folder, &stack); // no change, no step
    EXPECT_EQ(stack.count(), 2);
    EXPECT_EQ(FileProperties(nullptr, columnsFile()).columns(folder).optionColors.value("stage").value("a"), 4);
    undo(stack);
    EXPECT_FALSE(store.columns(folder).optionColors.contains("stage"));
    undo(stack);
    EXPECT_EQ(store.options("stage", folder, items), (QStringList{"b", "a"}));
    EXPECT_EQ(readAll(a), "---\nstage: b\n---\n"); // the notes were never touched
}

TEST_F(FilePropertiesTest, PropertySortPlugsIntoTheArrangement)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\ndue: 2024-03-01\n---\n");
    const FilePath b = tree.file(QString("n/b.md"), "---\ndue: someday\n---\n");
    const FilePath c = tree.file(QString("n/c.md"), "---\ndue: 2024-01-15\n---\n");
    const FilePath d = tree.file(QString("n/d.md"), "no date");
    const FileItems items = itemsOf({d, a, b, c});
    loadItems(items, store);
    ArrangeInput input;
    input.items = items;
    input.propertySort = "due";
    input.propertyValue = store.sortValues("due", PropertyType::date);
    auto order = [&](bool ascending) {
        input.ascending = ascending;
        QList<FilePath> paths;
        const auto arranged = arrange(input);
        for (const FileItem& item : arranged->items)
            paths.append(item.url);
        return paths;
    };
    // Dates before texts, each in the chosen direction; the note without the property last.
    EXPECT_EQ(order(true), (QList<FilePath>{c, a, b, d}));
    EXPECT_EQ(order(false), (QList<FilePath>{a, c, b, d}));
}

} // namespace
