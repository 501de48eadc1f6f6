// A folder's notes read again after a reload of its listing: only the notes that changed are
// read, and what was read before stays.

#include "PropertyStoreFixture.h"
#include "notes/NoteFile.h"

#include <ctime>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

using NoteReadAgainTest = test::PropertyStoreTest;

QList<FilePath> pathsOf(const QList<notefile::Loaded>& loaded)
{
    QList<FilePath> paths;
    for (const notefile::Loaded& entry : loaded)
        paths.append(entry.path);
    return paths;
}

TEST_F(NoteReadAgainTest, OnlyNotesThatChangedOrChangedLatelyAreReadAgain)
{
    const FilePath kept = tree.file(QString("n/kept.md"), "---\nstatus: done\n---\n");
    const FilePath edited = tree.file(QString("n/edited.md"), "---\nstatus: open\n---\n");
    const FilePath fresh = tree.file(QString("n/fresh.md"), "---\nstatus: new\n---\n");
    tree.touch(kept, ::time(nullptr) - 60); // not touched lately
    tree.touch(edited, ::time(nullptr) - 60);
    const auto first = notefile::readAll({{kept, false, std::nullopt}, {edited, false, std::nullopt}, {fresh, false, std::nullopt}});
    ASSERT_TRUE(first && first->size() == 3);

    tree.file(QString("n/edited.md"), "---\nstatus: closed\n---\n");
    tree.touch(edited, ::time(nullptr) - 30);
    QList<notefile::Target> again;
    for (const notefile::Loaded& entry : *first)
        again.append({entry.path, false, entry.fingerprint});
    const auto second = notefile::readAll(again);
    ASSERT_TRUE(second);
    // The untouched note is left out; the edited one is read; the one written a moment ago is
    // read although its version looks the same.
    EXPECT_EQ(pathsOf(*second), (QList<FilePath>{edited, fresh}));
    EXPECT_EQ(second->first().values.value("status"), PropertyValue::ofText("closed"));
}

TEST_F(NoteReadAgainTest, TheStoreKeepsWhatItReadWhenTheFolderIsLoadedAgain)
{
    const FilePath a = tree.file(QString("v/a.md"), "---\nstatus: done\n---\n");
    const FilePath b = tree.file(QString("v/b.md"), "---\nstatus: open\n---\n");
    tree.touch(a, ::time(nullptr) - 60);
    tree.touch(b, ::time(nullptr) - 60);
    const FileItems items = load({a, b});
    ASSERT_EQ(store.value(a, "status"), PropertyValue::ofText("done"));

    loadItems(items, store); // nothing changed: nothing is read, nothing is lost
    EXPECT_EQ(store.value(a, "status"), PropertyValue::ofText("done"));
    EXPECT_EQ(store.value(b, "status"), PropertyValue::ofText("open"));

    tree.file(QString("v/b.md"), "---\nstatus: shipped\n---\n");
    loadItems(items, store);
    EXPECT_EQ(store.value(a, "status"), PropertyValue::ofText("done"));
    EXPECT_EQ(store.value(b, "status"), PropertyValue::ofText("shipped"));
}

} // namespace
