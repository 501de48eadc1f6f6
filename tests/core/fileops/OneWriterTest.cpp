// The file operations engine is the one writer of users' files: no source of the core outside
// fileops/ (the engine) and platform/ (the thin wrappers it and the stores call) opens a file for
// writing, makes, renames, removes or links one, or sets its attributes or mode — except the few
// files below that write Orwick's own data, each with its reason. A new writer elsewhere fails
// here and belongs in the engine (FileOperations) instead.

#include "support/TempHome.h"

#include <algorithm>

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

// Files of the core that write, relative to src/core, and why that is not a user's file.
const QMap<QString, QString> kAllowed{
    {QStringLiteral("search/NameIndexFile.cpp"),
     QStringLiteral("the name index's own cache file in Orwick's cache folder (QSaveFile; a damaged one is set aside)")},
    {QStringLiteral("theme/ThemeFolder.cpp"), QStringLiteral("makes Orwick's own Themes folder in its data folder")},
};

// What writing looks like in C++ with Qt and POSIX.
const QRegularExpression kWriting(QStringLiteral(
    R"((QIODevice|QFile)::(WriteOnly|ReadWrite|Append|Truncate)|\bQSaveFile\b|\bO_(WRONLY|RDWR|CREAT|TRUNC|APPEND)\b)"
    R"(|\bfopen\s*\([^;]*"[wa]|\bfopen\s*\([^;]*"r\+)"
    R"(|(?<![\w>])::(rename|renameat2?|unlink|unlinkat|rmdir|mkdir|mkdirat|symlink|link|linkat|truncate|ftruncate|chmod|fchmod|chown|fchown|lchown|utimensat|futimens|mkstemp)\s*\()"
    R"(|\b(set|lset|fset|remove|lremove|fremove)xattr\s*\(|\bxattr::(set|write|remove)\s*\()"
    R"(|QFile::(remove|rename|copy|link|setPermissions)\s*\(|\.removeRecursively\s*\(|\bmkpath\s*\(|QDir\(\)\.(remove|rename|rmdir|mkdir))"));

// The code of a source without its comments (line comments, and block comments line by line).
QString withoutComments(const QString& text)
{
    static const QRegularExpression block(QStringLiteral(R"(/\*.*?\*/)"), QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression line(QStringLiteral(R"(//[^\n]*)"));
    QString code = text;
    code.replace(block, QStringLiteral(" "));
    code.replace(line, QString());
    return code;
}

// The code without the opening of in-memory buffers (QBuffer) for writing: a picture or PDF
// encoded into bytes that the engine then writes is not a write to a file.
QString withoutMemoryBuffers(QString code)
{
    static const QRegularExpression declared(QStringLiteral(R"(\bQBuffer\s+(\w+))"));
    QStringList buffers;
    for (auto it = declared.globalMatch(code); it.hasNext();)
        buffers.append(it.next().captured(1));
    for (const QString& buffer : std::as_const(buffers))
        code.remove(QRegularExpression(QStringLiteral(R"(\b%1\s*(\.|->)\s*open\s*\([^;]*\))").arg(buffer)));
    return code;
}

// The core's folders that may write: the engine and the thin wrappers it calls. Only the core's
// own: the window's fileops/ folder (dialogs, the progress card) is scanned like any other.
const QStringList kCoreWriters{QStringLiteral("fileops/"), QStringLiteral("platform/")};

// Every source under `root` outside the folders `skipped` (relative to it) that writes, with its
// first writing line ("notes/X.cpp:12: ::rename(").
QMap<QString, QString> writers(const QString& root, const QStringList& skipped = {})
{
    QMap<QString, QString> found;
    QDirIterator it(root, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString relative = QDir(root).relativeFilePath(path);
        if (std::any_of(skipped.begin(), skipped.end(), [&](const QString& folder) { return relative.startsWith(folder); }))
            continue;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString code = withoutMemoryBuffers(withoutComments(QString::fromUtf8(file.readAll())));
        const QRegularExpressionMatch match = kWriting.match(code);
        if (match.hasMatch())
            found.insert(relative, QStringLiteral("%1:%2: %3").arg(relative).arg(code.left(match.capturedStart()).count(u'\n') + 1).arg(match.captured()));
    }
    return found;
}

QString coreSources()
{
    return QStringLiteral(ORWICK_CORE_SOURCE_DIR);
}

TEST(OneWriter, OnlyTheEngineWritesUsersFiles)
{
    const QString root = coreSources();
    ASSERT_TRUE(QFileInfo(root + QStringLiteral("/fileops/FileOperations.h")).exists()) << root.toStdString();
    const QMap<QString, QString> found = writers(root, kCoreWriters);
    QStringList outside;
    for (auto it = found.begin(); it != found.end(); ++it)
        if (!kAllowed.contains(it.key()))
            outside.append(it.value());
    EXPECT_TRUE(outside.isEmpty()) << "writes outside the file operations engine (make them FileOperations jobs):\n"
                                   << outside.join(u'\n').toStdString();
    // An entry that no longer writes is dropped, so that the list stays what it says.
    for (auto it = kAllowed.begin(); it != kAllowed.end(); ++it)
        EXPECT_TRUE(found.contains(it.key())) << it.key().toStdString() << " no longer writes; take it off the list";
}

// The command line and the window change files only by asking the engine (orwick-cli's image
// forms run makeFiles and replaceInPlace through EngineRun).
TEST(OneWriter, TheCommandLineAndTheWindowWriteOnlyThroughTheEngine)
{
    for (const QString& front : {QStringLiteral("/../cli"), QStringLiteral("/../ui")}) {
        const QString root = QDir::cleanPath(coreSources() + front);
        ASSERT_TRUE(QFileInfo(root).isDir()) << root.toStdString();
        const QMap<QString, QString> found = writers(root);
        EXPECT_TRUE(found.isEmpty()) << "writes outside the file operations engine (make them FileOperations jobs):\n"
                                     << QStringList(found.values()).join(u'\n').toStdString();
    }
}

TEST(OneWriter, TheScanFindsEveryKindOfWrite)
{
    orwick::test::TempTree tree;
    const QByteArray kinds[] = {
        "QFile f(p); f.open(QIODevice::WriteOnly);",
        "QSaveFile out(p);",
        "int fd = ::open(p, O_RDWR | O_CLOEXEC);",
        "FILE* f = fopen(p, \"w\");",
        "::rename(a, b);",
        "if (::unlink(a) != 0) return;",
        "QFile::remove(p);",
        "QFile::rename(a, b);",
        "xattr::set(p, name, value);",
        "QBuffer buffer(&bytes); buffer.open(QIODevice::ReadOnly); QFile f(p); f.open(QIODevice::WriteOnly);",
    };
    int index = 0;
    for (const QByteArray& line : kinds)
        tree.file(QStringLiteral("notes/Writer%1.cpp").arg(index++), "void f() {\n    " + line + "\n}\n");
    tree.file(QString("notes/Comment.cpp"), "// ::rename(a, b) is the engine's\n/* QSaveFile */ int x;\n");
    tree.file(QString("notes/Reader.cpp"), "QFile f(p); f.open(QIODevice::ReadOnly); ::open(p, O_RDONLY);\n"
                                           "Status FileProperties::rename(const QString& key);\n");
    tree.file(QString("fileops/Engine.cpp"), "::rename(a, b);\n");
    tree.file(QString("images/Encode.cpp"), "QByteArray bytes;\nQBuffer buffer(&bytes);\nbuffer.open(QIODevice::WriteOnly);\n"
                                            "class P { QBuffer m_buffer; void f() { m_buffer.open(QIODevice::WriteOnly); } };\n");
    const QMap<QString, QString> found = writers(tree.root().text(), kCoreWriters);
    EXPECT_EQ(found.size(), qsizetype(std::size(kinds))) << QStringList(found.values()).join(u'\n').toStdString();
    for (int i = 0; i < index; ++i)
        EXPECT_TRUE(found.contains(QStringLiteral("notes/Writer%1.cpp").arg(i))) << kinds[i].toStdString();
    EXPECT_EQ(found.value(QStringLiteral("notes/Writer4.cpp")), QStringLiteral("notes/Writer4.cpp:2: ::rename("));
}

// The window's own fileops/ folder is not the engine: a write there is found like anywhere else.
TEST(OneWriter, TheWindowsFileopsFolderIsScanned)
{
    orwick::test::TempTree tree;
    tree.file(QString("fileops/ConflictDialog.cpp"), "void f() {\n    ::unlink(p);\n}\n");
    tree.file(QString("platform/Helper.cpp"), "void f() {\n    ::rename(a, b);\n}\n");
    const QMap<QString, QString> found = writers(tree.root().text());
    EXPECT_EQ(found.keys(), (QStringList{QStringLiteral("fileops/ConflictDialog.cpp"), QStringLiteral("platform/Helper.cpp")}));
    EXPECT_TRUE(writers(tree.root().text(), kCoreWriters).isEmpty());
}

} // namespace
