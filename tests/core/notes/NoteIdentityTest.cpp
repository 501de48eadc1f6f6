// A note stays the same file when the file operations engine writes a property into it, on real
// files: its extended
// attributes of any size, its hard links, owner, group and mode, its byte-order mark; and a
// read-only note, or one on a read-only or full disk, is refused and left exactly as it was.

#include "EngineWrite.h"
#include "fileops/FileOperations.h"
#include "notes/FileProperties.h"
#include "notes/NoteFile.h"
#include "notes/NoteParser.h"
#include "support/ScratchMount.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDir>
#include <QUndoStack>
#include <cerrno>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

using namespace orwick;
using orwick::test::readAll;
using orwick::test::ScratchMount;
using orwick::test::TempTree;

namespace {

const notefile::Change kSetDone{"status", PropertyValue::ofText("done"), {}};

struct stat statOf(const FilePath& path)
{
    struct stat st {};
    EXPECT_EQ(::stat(path.c_str(), &st), 0) << path.text().toStdString();
    return st;
}

std::map<QByteArray, QByteArray> attributesOf(const FilePath& path)
{
    std::map<QByteArray, QByteArray> all;
    QByteArray names(ssize_t(::listxattr(path.c_str(), nullptr, 0)), '\0');
    names.resize(::listxattr(path.c_str(), names.data(), size_t(names.size())));
    for (const QByteArray& name : names.split('\0')) {
        if (!name.startsWith("user."))
            continue;
        QByteArray value(::getxattr(path.c_str(), name.constData(), nullptr, 0), '\0');
        value.resize(::getxattr(path.c_str(), name.constData(), value.data(), size_t(value.size())));
        all[name] = value;
    }
    return all;
}

// A folder on a file system that keeps user attributes as large as Linux allows: a tmpfs of our
// own as root (Linux 6.6 and later keep user attributes there), else /dev/shm or /tmp if either
// does. `why` says why there is none.
class AttributeFolder {
public:
    AttributeFolder()
    {
        m_mount = std::make_unique<ScratchMount>("tmpfs", "size=16m");
        if (m_mount->ok() && keepsLargeAttributes(m_mount->root())) {
            m_root = m_mount->root();
            return;
        }
        m_why = m_mount->ok() ? QStringLiteral("this kernel's tmpfs keeps no user attributes of 64 KiB; ") : m_mount->why() + "; ";
        for (const char* candidate : {"/dev/shm", "/tmp"}) {
            m_dir = std::make_unique<QTemporaryDir>(QString::fromLatin1(candidate) + "/orwick-xattr-XXXXXX");
            if (m_dir->isValid() && keepsLargeAttributes(FilePath::fromText(m_dir->path()))) {
                m_root = FilePath::fromText(m_dir->path());
                return;
            }
        }
        m_why += QStringLiteral("neither /dev/shm nor /tmp keeps user attributes of 64 KiB");
    }
    bool ok() const { return !m_root.isEmpty(); }
    QString why() const { return m_why; }
    FilePath file(const QString& name, const QByteArray& content) const
    {
        const FilePath path = m_root.child(name);
        EXPECT_TRUE(test::writeFile(path, content));
        return path;
    }

private:
    static bool keepsLargeAttributes(const FilePath& folder)
    {
        const FilePath probe = folder.child(QStringLiteral("probe"));
        QFile(probe.text()).open(QIODevice::WriteOnly);
        const QByteArray value(65536, 'p');
        const bool kept = ::setxattr(probe.c_str(), "user.probe", value.constData(), size_t(value.size()), 0) == 0;
        ::unlink(probe.c_str());
        return kept;
    }
    std::unique_ptr<ScratchMount> m_mount;
    std::unique_ptr<QTemporaryDir> m_dir;
    FilePath m_root;
    QString m_why;
};

TEST(NoteIdentity, AttributesOfAnySizeSurviveAPropertyWrite)
{
    const AttributeFolder folder;
    if (!folder.ok())
        GTEST_SKIP() << folder.why().toStdString();
    const FilePath note = folder.file("n.md", "---\nstatus: open\n---\nbody\n");
    // The largest value Linux allows (64 KiB, XATTR_SIZE_MAX), and names that list to over 12 KiB.
    QByteArray large(65536, '\0');
    for (qsizetype i = 0; i < large.size(); ++i)
        large[i] = char((i * 7919) % 251);
    ASSERT_EQ(::setxattr(note.c_str(), "user.large", large.constData(), size_t(large.size()), 0), 0) << strerror(errno);
    for (int i = 0; i < 300; ++i) {
        const QByteArray name = "user.orwick.test.name-" + QByteArray::number(i).rightJustified(3, '0') + "-padding-padding";
        const QByteArray value = "value " + QByteArray::number(i);
        ASSERT_EQ(::setxattr(note.c_str(), name.constData(), value.constData(), size_t(value.size()), 0), 0) << strerror(errno);
    }
    const auto before = attributesOf(note);
    ASSERT_EQ(before.size(), 301u);

    FileOperations ops;
    FileProperties store(nullptr, folder.file("columns.json", "{}"), &ops);
    QUndoStack undo;
    ASSERT_TRUE(store.set("status", PropertyValue::ofText("done"), {note}, &undo));
    ASSERT_TRUE(test::waitUntil([&] { return ops.isIdle() && store.isSettled(); }));
    EXPECT_EQ(readAll(note), "---\nstatus: done\n---\nbody\n");
    EXPECT_EQ(attributesOf(note), before);
    undo.undo(); // putting the old text back keeps them too
    ASSERT_TRUE(test::waitUntil([&] { return ops.isIdle() && store.isSettled(); }));
    EXPECT_EQ(readAll(note), "---\nstatus: open\n---\nbody\n");
    EXPECT_EQ(attributesOf(note), before);
}

TEST(NoteIdentity, AHardLinkedNoteStaysOneFile)
{
    TempTree tree;
    const FilePath note = tree.file(QString("n.md"), "---\nstatus: open\n---\nbody\n");
    const FilePath other = tree.path("elsewhere.md");
    ASSERT_EQ(::link(note.c_str(), other.c_str()), 0);
    const ino_t inode = statOf(note).st_ino;

    FileOperations ops;
    FileProperties store(nullptr, tree.path("columns.json"), &ops);
    QUndoStack undo;
    ASSERT_TRUE(store.set("status", PropertyValue::ofText("done"), {note}, &undo));
    ASSERT_TRUE(test::waitUntil([&] { return ops.isIdle() && store.isSettled(); }));
    for (const FilePath& name : {note, other}) {
        EXPECT_EQ(statOf(name).st_ino, inode);
        EXPECT_EQ(statOf(name).st_nlink, 2u);
        EXPECT_EQ(readAll(name), "---\nstatus: done\n---\nbody\n");
    }
    undo.undo(); // putting the old text back keeps the link too
    ASSERT_TRUE(test::waitUntil([&] { return ops.isIdle() && store.isSettled(); }));
    EXPECT_EQ(readAll(other), "---\nstatus: open\n---\nbody\n");
    EXPECT_EQ(statOf(other).st_ino, inode);
    // Shorter text must not leave the old tail behind.
    ASSERT_TRUE(test::writeProperties(other, false, {{"status", std::nullopt, {}}}));
    EXPECT_EQ(readAll(note), "body\n");
    EXPECT_EQ(statOf(other).st_ino, inode);
    EXPECT_EQ(statOf(note).st_nlink, 2u);
}

TEST(NoteIdentity, OwnerGroupAndModeAreKept)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "giving a note another owner needs root (CI runs as root)";
    TempTree tree;
    const FilePath note = tree.file(QString("n.md"), "---\nstatus: open\n---\nbody\n");
    ASSERT_EQ(::chown(note.c_str(), 12345, 12345), 0);
    ASSERT_EQ(::chmod(note.c_str(), 02640), 0); // after the chown, which would clear set-group-ID
    ASSERT_TRUE(test::writeProperties(note, false, {kSetDone}));
    const struct stat st = statOf(note);
    EXPECT_EQ(st.st_uid, 12345u);
    EXPECT_EQ(st.st_gid, 12345u);
    EXPECT_EQ(st.st_mode & 07777, 02640u);
    EXPECT_EQ(readAll(note), "---\nstatus: done\n---\nbody\n");
}

TEST(NoteIdentity, TheModificationTimeIsTheTimeOfTheWrite)
{
    TempTree tree;
    const FilePath note = tree.file(QString("n.md"), "---\nstatus: open\n---\n");
    tree.touch(note, 1000000000);
    ASSERT_TRUE(test::writeProperties(note, false, {kSetDone}));
    EXPECT_GT(statOf(note).st_mtim.tv_sec, time(nullptr) - 60);
}

TEST(NoteIdentity, AByteOrderMarkIsReadPastAndKept)
{
    TempTree tree;
    const QByteArray mark = "\xEF\xBB\xBF";
    const FilePath note = tree.file(QString("n.md"), mark + "---\nstatus: open\n---\n- [ ] task\n");
    EXPECT_EQ(notefile::read(note, false).values.value("status"), PropertyValue::ofText("open"));
    ASSERT_TRUE(test::writeProperties(note, false, {kSetDone}));
    EXPECT_EQ(readAll(note), mark + "---\nstatus: done\n---\n- [ ] task\n");
    {
        CopyProgress progress;
        ChangeRunner runner(progress);
        ASSERT_TRUE(runner.rewrite(note, [&](const QByteArray& bytes) { return toggleTaskInBytes(bytes, 4, QDate(2026, 1, 2), note); }));
    }
    EXPECT_TRUE(readAll(note).startsWith(mark + "---\nstatus: done\n---\n- [x] task")) << readAll(note).toStdString();

    // A note without front matter gets its block after the mark, not before it.
    const FilePath plain = tree.file(QString("plain.md"), mark + "body\n");
    ASSERT_TRUE(test::writeProperties(plain, false, {kSetDone}));
    EXPECT_EQ(readAll(plain), mark + "---\nstatus: done\n---\nbody\n");
    EXPECT_EQ(notefile::read(plain, false).values.value("status"), PropertyValue::ofText("done"));
    // Without a mark none is added.
    const FilePath bare = tree.file(QString("bare.md"), "body\n");
    ASSERT_TRUE(test::writeProperties(bare, false, {kSetDone}));
    EXPECT_EQ(readAll(bare), "---\nstatus: done\n---\nbody\n");
}

// Runs `work` on a thread that has given up root for user and group 12345 (the raw system calls
// change only that thread). Returns false when it couldn't.
bool runAsAnotherUser(const std::function<void()>& work)
{
    bool ran = false;
    std::thread thread([&] {
        if (::syscall(SYS_setgroups, 0, nullptr) != 0 || ::syscall(SYS_setresgid, 12345, 12345, 12345) != 0
            || ::syscall(SYS_setresuid, 12345, 12345, 12345) != 0)
            return;
        ran = true;
        work();
    });
    thread.join();
    return ran;
}

TEST(NoteIdentity, ANoteInAFolderWeMayNotWriteIsWrittenInPlace)
{
    TempTree tree;
    ASSERT_EQ(::chmod(tree.root().c_str(), 0755), 0);
    const FilePath note = tree.file(QString("n.md"), "---\nstatus: open\n---\nbody\n");
    const ino_t inode = statOf(note).st_ino;
    Status written = failure(QString());
    if (geteuid() == 0) {
        // The note is user 12345's own; the folder is root's.
        ASSERT_EQ(::chown(note.c_str(), 12345, 12345), 0);
        ASSERT_TRUE(runAsAnotherUser([&] { written = test::writeProperties(note, false, {kSetDone}); }))
            << "couldn't give up root on a thread: " << strerror(errno);
    } else {
        ASSERT_EQ(::chmod(tree.root().c_str(), 0555), 0);
        written = test::writeProperties(note, false, {kSetDone});
        ::chmod(tree.root().c_str(), 0755);
    }
    ASSERT_TRUE(written) << written.error().toStdString();
    EXPECT_EQ(readAll(note), "---\nstatus: done\n---\nbody\n");
    EXPECT_EQ(statOf(note).st_ino, inode);
}

void expectRefusedAndUntouched(const FilePath& note, const Status& written,
                               const QByteArray& content, const struct stat& before, const char* words)
{
    ASSERT_FALSE(written);
    EXPECT_TRUE(written.error().contains(QString::fromUtf8(words))) << written.error().toStdString();
    EXPECT_EQ(readAll(note), content);
    const struct stat after = statOf(note);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(QDir(note.parent().text()).entryList(QDir::Hidden | QDir::Files).filter(".orwick-").size(), 0)
        << "a temporary file was left behind";
}

TEST(NoteWriteFault, ANoteWithoutWriteBitsIsRefusedAndLeftAlone)
{
    TempTree tree;
    const QByteArray content = "---\nstatus: open\n---\nbody\n";
    for (const mode_t mode : {0444, 0400, 0440}) {
        SCOPED_TRACE(mode);
        const FilePath note = tree.file(QString("n%1.md").arg(mode, 0, 8), content);
        ASSERT_EQ(::chmod(note.c_str(), mode), 0);
        const struct stat before = statOf(note);
        expectRefusedAndUntouched(note, test::writeProperties(note, false, {kSetDone}), content, before, "read-only");
    }
    // Being read-only is what the user hears first, before anything about the note's text.
    const QByteArray nested = "---\nmeta:\n  a: 1\n---\n";
    const FilePath odd = tree.file(QString("odd.md"), nested);
    ASSERT_EQ(::chmod(odd.c_str(), 0444), 0);
    expectRefusedAndUntouched(odd, test::writeProperties(odd, false, {kSetDone}), nested, statOf(odd), "read-only");
}

TEST(NoteWriteFault, ANoteWeMayNotWriteIsRefusedAndLeftAlone)
{
    TempTree tree;
    ASSERT_EQ(::chmod(tree.root().c_str(), 0755), 0);
    const QByteArray content = "---\nstatus: open\n---\nbody\n";
    const FilePath note = tree.file(QString("n.md"), content);
    Status written = failure(QString());
    if (geteuid() == 0) {
        // Writable by its owner, root, and readable by everyone: for user 12345 it is read-only.
        ASSERT_EQ(::chmod(note.c_str(), 0644), 0);
        const struct stat before = statOf(note);
        ASSERT_TRUE(runAsAnotherUser([&] { written = test::writeProperties(note, false, {kSetDone}); }))
            << "couldn't give up root on a thread: " << strerror(errno);
        expectRefusedAndUntouched(note, written, content, before, "read-only");
    } else {
        // Group-writable, but not by its owner, who is us.
        ASSERT_EQ(::chmod(note.c_str(), 0464), 0);
        const struct stat before = statOf(note);
        expectRefusedAndUntouched(note, test::writeProperties(note, false, {kSetDone}), content, before, "read-only");
    }
}

TEST(NoteWriteFault, ANoteOnAReadOnlyDiskIsRefusedAndLeftAlone)
{
    ScratchMount disk("tmpfs", "size=1m");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const QByteArray content = "---\nstatus: open\n---\nbody\n";
    const FilePath note = disk.root().child(QStringLiteral("n.md"));
    ASSERT_TRUE(test::writeFile(note, content));
    ASSERT_TRUE(disk.makeReadOnly());
    const struct stat before = statOf(note);
    expectRefusedAndUntouched(note, test::writeProperties(note, false, {kSetDone}), content, before, "the disk is read-only");
}

TEST(NoteWriteFault, AFullDiskLeavesAHardLinkedNoteWhole)
{
    ScratchMount disk("tmpfs", "size=64k");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const QByteArray content = "---\nstatus: open\n---\n" + QByteArray(8000, 'b') + "\n";
    const FilePath note = disk.root().child(QStringLiteral("n.md"));
    ASSERT_TRUE(test::writeFile(note, content));
    ASSERT_EQ(::link(note.c_str(), disk.root().child(QStringLiteral("link.md")).c_str()), 0);
    // Fill the disk.
    QFile filler(disk.root().child(QStringLiteral("filler")).text());
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly));
    const QByteArray block(4096, 'f');
    while (filler.write(block) == block.size() && filler.flush()) {
    }
    filler.close();
    const struct stat before = statOf(note);
    const auto written = test::writeProperties(note, false, {{"status", PropertyValue::ofText(QString(20000, u'x')), {}}});
    expectRefusedAndUntouched(note, written, content, before, "no room");
}

} // namespace
