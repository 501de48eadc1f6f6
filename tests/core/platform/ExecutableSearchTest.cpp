// Finding a program as a shell does: PATH's folders in order, a relative folder from the working
// folder, and only executable files (a folder or a file without the x bit of that name is passed by).

#include "platform/ExecutableSearch.h"
#include "support/TempHome.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

class ExecutableSearchTest : public ::testing::Test {
protected:
    void SetUp() override { m_path = qgetenv("PATH"); }
    void TearDown() override { qputenv("PATH", m_path); }
    QByteArray m_path;
};

void makeProgram(const TempTree& tree, const QString& relative, bool executable)
{
    const FilePath file = tree.file(relative, "#!/bin/sh\n");
    QFile::setPermissions(file.text(), executable ? QFile::ReadOwner | QFile::ExeOwner : QFile::ReadOwner);
}

TEST_F(ExecutableSearchTest, TakesTheFirstExecutableFileInPathOrder)
{
    TempTree tree;
    tree.folder("a/tool"); // a folder of that name
    makeProgram(tree, QStringLiteral("b/tool"), false);
    makeProgram(tree, QStringLiteral("c/tool"), true);
    makeProgram(tree, QStringLiteral("d/tool"), true);
    const QByteArray root = tree.root().native();
    qputenv("PATH", root + "/a:" + root + "/b::" + root + "/c/:" + root + "/d");
    EXPECT_EQ(findExecutable("tool"), std::optional<std::string>((root + "/c/tool").toStdString()));
    EXPECT_EQ(findExecutable("none"), std::nullopt);
}

TEST_F(ExecutableSearchTest, ARelativeFolderCountsFromTheWorkingFolder)
{
    TempTree tree;
    makeProgram(tree, QStringLiteral("bin/tool"), true);
    const QString working = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(tree.root().text()));
    qputenv("PATH", "bin");
    const std::optional<std::string> found = findExecutable("tool");
    QDir::setCurrent(working);
    EXPECT_EQ(found, std::optional<std::string>((tree.root().native() + "/bin/tool").toStdString()));
}

TEST_F(ExecutableSearchTest, NoPathFindsNothing)
{
    qputenv("PATH", "");
    EXPECT_EQ(findExecutable("sh"), std::nullopt);
    qunsetenv("PATH");
    EXPECT_EQ(findExecutable("sh"), std::nullopt);
}

} // namespace
} // namespace orwick::test
