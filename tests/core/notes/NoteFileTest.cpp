// Reading and writing properties of real files: notes' front matter and other files' attribute
// (written as the file operations engine writes them), and every way a write is refused without
// changing the file.

#include "EngineWrite.h"
#include "fileops/FileReplace.h"
#include "notes/NoteFile.h"
#include "platform/Xattr.h"
#include "support/TempHome.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <cerrno>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

using namespace orwick;
using namespace orwick::notefile;
using orwick::test::readAll;
using orwick::test::TempTree;

namespace {

PropertyMap readNote(const FilePath& path) { return read(path, false).values; }

constexpr auto write = test::writeProperties;

const PropertyMap kStatus{{"status", PropertyValue::ofText("done")}};

TEST(NoteFile, ReadsOnlyWhatItUnderstands)
{
    const struct {
        const char* name;
        QByteArray content;
        PropertyMap expected;
    } rows[] = {
        {"plain", "---\nstatus: done\n---\nbody", kStatus},
        {"windowsLineEndings", "---\r\nstatus: done\r\n---\r\nbody\r\n", kStatus},
        {"notUtf8", "---\nstatus: d\xffne\n---\n", {}},
        {"notUtf8InBodyWithinHead", "---\nstatus: done\n---\n\xc3\x28", {}},
        {"unclosed", "---\nstatus: done\n", {}},
        {"nestedMap", "---\nstatus: done\nmeta:\n  a: 1\n---\n", {}},
        {"blockScalar", "---\nstatus: done\ntext: |\n---\n", {}},
        {"flowMap", "---\nstatus: done\nm: {a: 1}\n---\n", {}},
        {"repeatedKeyFirstWins", "---\nstatus: done\nstatus: open\n---\n", kStatus},
        {"noFrontMatter", "status: done\n", {}},
        {"empty", "", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TempTree tree;
        EXPECT_EQ(readNote(tree.file(QString("note.md"), row.content)), row.expected);
    }
}

TEST(NoteFile, ReadsOnlyTheHeadOfANote)
{
    TempTree tree;
    const QByteArray block = "---\nstatus: done\n";
    const QByteArray padding(kHeadBytes, '#');
    // The closing line lies past the first 16,384 bytes: no properties.
    EXPECT_TRUE(readNote(tree.file(QString("late.md"), block + "# " + padding + "\n---\n")).isEmpty());
    // Inside them, with a multi-byte character cut at the limit after it: read.
    QByteArray cut = block + "---\n";
    cut += QByteArray(kHeadBytes - cut.size() - 1, 'x') + "é and more";
    EXPECT_EQ(readNote(tree.file(QString("cut.md"), cut)), kStatus);
}

TEST(NoteFile, ACancelledReadGivesNothing)
{
    TempTree tree;
    const QList<Target> targets{{tree.file(QString("a.md"), "---\na: 1\n---\n"), false, std::nullopt}};
    CancelFlag cancel;
    EXPECT_EQ(readAll(targets, &cancel)->first().values.value("a"), PropertyValue::ofNumber(1));
    cancel.cancel();
    EXPECT_EQ(readAll(targets, &cancel), std::nullopt);
}

TEST(NoteFile, APipeNamedLikeANoteIsSkipped)
{
    TempTree tree;
    const FilePath pipe = tree.path("pipe.md");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_TRUE(readNote(pipe).isEmpty()); // returns at once instead of waiting for a writer
    EXPECT_FALSE(write(pipe, false, {{"a", PropertyValue::ofNumber(1), {}}}));
}

TEST(NoteFile, NotesAreKnownByExtension)
{
    for (const char* name : {"/a.md", "/a.MARKDOWN", "/a.mdown", "/a.mkd", "/a.mdx"})
        EXPECT_TRUE(isNote(FilePath::fromNative(name))) << name;
    for (const char* name : {"/a.txt", "/md", "/a.md.bak"})
        EXPECT_FALSE(isNote(FilePath::fromNative(name))) << name;
}

TEST(NoteFile, WritingKeepsEveryOtherByte)
{
    TempTree tree;
    const QByteArray before = "---\r\n# kept comment\r\ntitle: \"Q: \\\"x\\\"\"\r\nstatus: open\r\n---\r\nbody \xe2\x9c\x93\r\n\r\n";
    const FilePath note = tree.file(QString("n.md"), before);
    ASSERT_TRUE(write(note, false, {{"status", PropertyValue::ofText("done"), {}}}));
    QByteArray expected = before;
    expected.replace("status: open", "status: done");
    EXPECT_EQ(readAll(note), expected);
    EXPECT_EQ(readNote(note).value("title").text(), "Q: \\\"x\\\""); // escapes read back as written
}

TEST(NoteFile, WritingKeepsPermissionsAndLinks)
{
    TempTree tree;
    const FilePath note = tree.file(QString("real.md"), "body\n");
    ::chmod(note.c_str(), 0600);
    const FilePath link = tree.link("link.md", "real.md");
    ASSERT_TRUE(write(link, false, {{"n", PropertyValue::ofNumber(3), {}}}));
    struct stat st;
    ASSERT_EQ(::lstat(link.c_str(), &st), 0);
    EXPECT_TRUE(S_ISLNK(st.st_mode));
    ASSERT_EQ(::stat(note.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    EXPECT_EQ(readAll(note), "---\nn: 3\n---\nbody\n");
}

const Change kSetDone{"status", PropertyValue::ofText("done"), {}};

TEST(NoteFile, RefusedWritesLeaveTheNoteAlone)
{
    const struct {
        const char* name;
        QByteArray content;
        Change change;
    } rows[] = {
        {"notUtf8", "---\na: 1\n---\n\xff\xfe body", kSetDone},
        {"unclosed", "---\na: 1\nbody", kSetDone},
        {"nestedMap", "---\nmeta:\n  a: 1\n---\n", kSetDone},
        {"nestedMapUnderTheKey", "---\nstatus:\n  a: 1\n---\n", kSetDone},
        {"blockScalar", "---\nstatus: >\n  folded\n---\n", kSetDone},
        {"flowMap", "---\nm: {a: 1}\n---\n", kSetDone},
        {"openingNotReadable", "--- \nstatus: open\n---\n", kSetDone},
        {"valueWithLineBreak", "---\na: 1\n---\n", {"a", PropertyValue::ofText("two\nlines"), {}}},
        {"lineBreakBeforeComment", "---\na: 1\n---\n", {"a", PropertyValue::ofText("x\n# y: z"), {}}},
        {"keyWithColon", "---\na: 1\n---\n", {"a:b", PropertyValue::ofText("x"), {}}},
        {"listItemWithLineBreak", "body", {"t", PropertyValue::ofList({"a\nb"}), {}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TempTree tree;
        const FilePath note = tree.file(QString("n.md"), row.content);
        EXPECT_FALSE(write(note, false, {row.change}));
        EXPECT_EQ(readAll(note), row.content);
    }
}

TEST(NoteFile, ValuesFullOfQuotesAndBackslashesAreWritten)
{
    TempTree tree;
    const FilePath note = tree.file(QString("n.md"), "text\n");
    const QString nasty = R"(it's "quoted" \ and \\ 'single' "")";
    ASSERT_TRUE(write(note, false, {{"q", PropertyValue::ofText(nasty), {}}}));
    EXPECT_EQ(readAll(note), QByteArray(R"(---
q: "it's \"quoted\" \\ and \\\\ 'single' \"\""
---
text
)"));
    // Read back with the backslashes that writing added.
    QString expected = nasty;
    expected.replace("\\", "\\\\").replace("\"", "\\\"");
    EXPECT_EQ(readNote(note).value("q"), PropertyValue::ofText(expected));
}

TEST(NoteFile, ChangedDuringTheWriteIsRefused)
{
    TempTree tree;
    const FilePath note = tree.file(QString("n.md"), "---\na: 1\n---\n");
    const QByteArray other = "---\na: 2\n---\nwritten meanwhile\n";
    const auto file = readFile(note);
    ASSERT_TRUE(file);
    const auto bytes = changedNoteBytes(file->bytes, {kSetDone}, note);
    ASSERT_TRUE(bytes);
    const auto written = filereplace::replaceFile(note, file->bytes, file->version, *bytes,
                                                  [&] { tree.file(QString("n.md"), other); });
    ASSERT_FALSE(written);
    EXPECT_TRUE(written.error().contains("changed on disk"));
    EXPECT_EQ(readAll(note), other);
    // No temporary file is left behind.
    EXPECT_EQ(QDir(tree.root().text()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{"n.md"});
}

TEST(NoteFile, RenameKeepsThePlace)
{
    TempTree tree;
    const FilePath note = tree.file(QString("n.md"), "---\na: 1\ntags:\n- x\nz: 2\n---\n");
    ASSERT_TRUE(write(note, false, {{"tags", std::nullopt, QString("labels")}}));
    EXPECT_EQ(readAll(note), "---\na: 1\nlabels:\n- x\nz: 2\n---\n");
}

TEST(NoteFile, OtherFilesUseTheAttribute)
{
    TempTree tree;
    const FilePath file = tree.file(QString("photo.jpg"), "jpeg bytes");
    const FilePath folder = tree.folder("Project");
    for (const auto& [path, isFolder] : {std::pair(file, false), std::pair(folder, true)}) {
        ASSERT_TRUE(write(path, isFolder, {{"rating", PropertyValue::ofNumber(4), {}}, {"tags", PropertyValue::ofList({"a"}), {}}}));
        EXPECT_EQ(read(path, isFolder).values,
                  (PropertyMap{{"rating", PropertyValue::ofNumber(4)}, {"tags", PropertyValue::ofList({"a"})}}));
        ASSERT_TRUE(write(path, isFolder, {{"rating", std::nullopt, {}}, {"tags", std::nullopt, {}}}));
        EXPECT_EQ(xattr::get(path, xattr::properties), std::nullopt); // an empty map removes the attribute
    }
    EXPECT_EQ(readAll(file), "jpeg bytes");
}

TEST(NoteFile, DamagedAttributeIsNotOverwritten)
{
    TempTree tree;
    const FilePath file = tree.file(QString("a.bin"), "x");
    ASSERT_TRUE(xattr::set(file, xattr::properties, "{not json"));
    EXPECT_TRUE(read(file, false).values.isEmpty());
    EXPECT_FALSE(write(file, false, {kSetDone}));
    EXPECT_EQ(xattr::get(file, xattr::properties), QByteArray("{not json"));
}

TEST(NoteFile, AttributeKeepsEntriesItDoesNotUnderstand)
{
    TempTree tree;
    const FilePath file = tree.file(QString("a.bin"), "x");
    ASSERT_TRUE(xattr::set(file, xattr::properties, R"({"odd":{"nested":1},"n":2})"));
    EXPECT_EQ(read(file, false).values, (PropertyMap{{"n", PropertyValue::ofNumber(2)}}));
    ASSERT_TRUE(write(file, false, {{"n", PropertyValue::ofNumber(3), {}}}));
    const QJsonObject stored = QJsonDocument::fromJson(*xattr::get(file, xattr::properties)).object();
    EXPECT_EQ(stored.value("odd").toObject().value("nested").toInt(), 1);
    EXPECT_EQ(stored.value("n").toDouble(), 3);
}

TEST(NoteFile, FileSystemWithoutAttributesReportsIt)
{
    // procfs keeps no user attributes; its files can't be written either way.
    const FilePath refusing = FilePath::fromNative("/proc/version");
    if (::lsetxattr(refusing.c_str(), "user.orwick.probe", "1", 1, 0) == 0 || errno != ENOTSUP)
        GTEST_SKIP() << "no file system here refuses user attributes";
    const QByteArray before = readAll(refusing);
    const auto written = write(refusing, false, {kSetDone});
    ASSERT_FALSE(written);
    EXPECT_TRUE(written.error().contains("doesn’t keep properties")) << written.error().toStdString();
    EXPECT_EQ(readAll(refusing), before);
}

} // namespace
