// Property changes across many real notes go through the file operations engine: one job, one
// undo step whose undo gives back every note's bytes, failures counted and never called success.

#include "PropertyStoreFixture.h"

#include <QSet>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace orwick;
using orwick::test::readAll;

namespace {

struct PropertyRenameTest : test::PropertyStoreTest {
    PropertyRenameTest()
    {
        QObject::connect(&ops, &FileOperations::jobsChanged, [this] {
            for (const FileJob& job : ops.jobs())
                jobs.insert(job.id);
        });
    }
    FileItems notes(int count, QList<QByteArray>* texts)
    {
        FileItems items;
        for (int i = 0; i < count; ++i) {
            const QByteArray text = "---\ntitle: Note " + QByteArray::number(i) + "\nstatus: open # kept\ntags: [a, b]\n---\n\nBody "
                + QByteArray::number(i) + "\n";
            texts->append(text);
            items.append(FileItem::make(tree.file(QString("notes/n%1.md").arg(i, 3, 10, QChar('0')), text)));
        }
        return items;
    }
    QUndoStack stack;
    QSet<quint64> jobs;
};

TEST_F(PropertyRenameTest, RenamingAcrossFiveHundredNotesIsOneJobAndOneUndoStep)
{
    QList<QByteArray> texts;
    const FileItems items = notes(500, &texts);
    const FilePath folder = items.first().url.parent();
    loadItems(items, store);
    FolderColumns columns;
    columns.shown = {"status"};
    ASSERT_TRUE(store.setColumns(folder, columns));
    ASSERT_TRUE(store.rename("status", "state", folder, items, &stack));
    EXPECT_EQ(store.columns(folder).shown, QStringList{"state"}); // the view follows at once
    settle();
    EXPECT_EQ(jobs.size(), 1u);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), "Rename status");
    EXPECT_TRUE(reports.isEmpty());
    EXPECT_EQ(toasts, QStringList{"Renamed status to state in 500 items"});
    for (int i = 0; i < 500; i += 97) {
        QByteArray expected = texts[i];
        expected.replace("status: open", "state: open");
        EXPECT_EQ(readAll(items[i].url), expected);
        EXPECT_EQ(store.value(items[i].url, "state"), PropertyValue::ofText("open # kept"));
    }

    stack.undo();
    settle();
    EXPECT_EQ(jobs.size(), 2u); // the undo is one job too
    for (int i = 0; i < 500; ++i)
        ASSERT_EQ(readAll(items[i].url), texts[i]) << i;
    EXPECT_EQ(store.value(items[0].url, "status"), PropertyValue::ofText("open # kept"));
    EXPECT_FALSE(store.value(items[0].url, "state").has_value());
    EXPECT_EQ(store.columns(folder).shown, QStringList{"status"});
    EXPECT_TRUE(reports.isEmpty());
}

TEST_F(PropertyRenameTest, NotesThatCantBeChangedAreCountedNotCalledDone)
{
    QList<QByteArray> texts;
    const FileItems items = notes(4, &texts);
    const FilePath folder = items.first().url.parent();
    const QByteArray latin = "---\nstatus: open\n---\ncaf\xe9\n";
    const FilePath notUtf8 = tree.file(QString("notes/latin.md"), latin);
    ASSERT_EQ(::chmod(items[1].url.c_str(), 0444), 0);
    const QByteArray huge = "---\nstatus: open\n---\n" + QByteArray(FileOperations::kLargestRewrite + 1, 'x');
    const FilePath large = tree.file(QString("notes/large.md"), huge);
    FileItems all = items;
    all.append(FileItem::make(notUtf8));
    all.append(FileItem::make(large));
    loadItems(all, store);
    for (const FilePath& path : {notUtf8, large})
        store.apply({{path, {{"status", PropertyValue::ofText("open")}}, notefile::fingerprint(path)}}); // as a view would show them
    ASSERT_TRUE(store.set("status", PropertyValue::ofText("done"), {items[0].url, items[1].url, notUtf8, large}, &stack));
    settle();
    EXPECT_TRUE(toasts.isEmpty()); // not a success
    ASSERT_EQ(reports.size(), 1);
    const OperationOutcome& outcome = reports[0];
    EXPECT_EQ(outcome.done, 1);
    EXPECT_EQ(outcome.errors,
              (QStringList{"Couldn’t change “n001.md”: it is read-only.", "Couldn’t change “latin.md”: it isn’t UTF-8 text.",
                           "Couldn’t change “large.md”: it is larger than 17 MB."}));
    EXPECT_EQ(outcomeText(outcome),
              "Set status on n000.md; couldn’t change 3 items: “n001.md”, “latin.md” and “large.md”.");
    EXPECT_TRUE(outcome.canUndo);
    EXPECT_EQ(readAll(items[1].url), texts[1]);
    EXPECT_EQ(readAll(notUtf8), latin);
    EXPECT_EQ(readAll(large).size(), huge.size());
    // The one that was changed is the whole undo step.
    stack.undo();
    settle();
    EXPECT_EQ(readAll(items[0].url), texts[0]);
    EXPECT_EQ(reports.size(), 1);
}

TEST_F(PropertyRenameTest, ARenameOfAnAttributeIsUndoneExactly)
{
    const FilePath photo = tree.file(QString("notes/photo.jpg"), "jpeg");
    const FilePath note = tree.file(QString("notes/a.md"), "---\nrating: 3\n---\n");
    const FileItems items{FileItem::make(photo), FileItem::make(note)};
    ASSERT_TRUE(store.set("rating", PropertyValue::ofNumber(5), {photo}, &stack));
    settle();
    EXPECT_EQ(store.value(photo, "rating"), PropertyValue::ofNumber(5));
    loadItems(items, store);
    ASSERT_TRUE(store.rename("rating", "stars", photo.parent(), items, &stack));
    settle();
    EXPECT_EQ(store.value(photo, "stars"), PropertyValue::ofNumber(5));
    EXPECT_EQ(readAll(note), "---\nstars: 3\n---\n");
    stack.undo();
    settle();
    EXPECT_EQ(store.value(photo, "rating"), PropertyValue::ofNumber(5));
    EXPECT_EQ(readAll(note), "---\nrating: 3\n---\n");
    stack.undo();
    settle();
    EXPECT_FALSE(store.values().contains(photo)); // the attribute is gone again
    EXPECT_TRUE(reports.isEmpty());
}

} // namespace
