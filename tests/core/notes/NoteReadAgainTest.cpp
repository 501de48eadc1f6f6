// A folder's notes read again after a reload of its listing: only the notes that changed are
// read, and what was read before stays.

#include "PropertyStoreFixture.h"
#include "notes/NoteFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace orwick;

namespace {

using NoteReadAgainTest = test::PropertyStoreTest;

// Sets a file's modification time `secondsAgo` in the past (a note not touched lately).
void age(const FilePath& path, int secondsAgo)
{
    timespec times[2];
    ::clock_gettime(CLOCK_REALTIME, &times[0]);
    times[0].tv_sec -= secondsAgo;
    times[1] = times[0];
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

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
    age(kept, 60);
    age(edited, 60);
    const auto first = notefile::readAll({{kept}, {edited}, {fresh}});
    ASSERT_TRUE(first && first->size() == 3);

    tree.file(QString("n/edited.md"), "---\nstatus: closed\n---\n");
    age(edited, 30);
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
    age(a, 60);
    age(b, 60);
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
