// orwick-cli rename, run as the built program on temporary trees: each old and new name printed
// with its problem, --dry-run changing nothing, the modes of the window, and exit statuses.

#include "CliRun.h"
#include "support/TempHome.h"

#include <QDir>
#include <gtest/gtest.h>
#include <dirent.h>

inline void PrintTo(const QByteArray& bytes, std::ostream* out) { *out << '"' << bytes.toStdString() << '"'; }

namespace orwick::test {
namespace {

// A folder's names as bytes, sorted.
QList<QByteArray> namesIn(const FilePath& folder)
{
    QList<QByteArray> names;
    if (DIR* dir = opendir(folder.c_str())) {
        while (dirent* entry = readdir(dir))
            if (QByteArray name(entry->d_name); name != "." && name != "..")
                names.append(name);
        closedir(dir);
    }
    std::sort(names.begin(), names.end());
    return names;
}

class CliRenameTest : public ::testing::Test {
protected:
    QByteArray at(const char* name) const { return tree.path(QString::fromUtf8(name)).native(); }
    TempTree tree;
};

TEST_F(CliRenameTest, DryRunPrintsEachChangeAndRenamesNothing)
{
    tree.file("alpha-beta.txt");
    tree.file("one-two.md");
    tree.file("plain.txt");
    const CliRun run = runCli({"rename", at("alpha-beta.txt"), at("one-two.md"), at("plain.txt"), "--replace",
                               "(\\w+)-(\\w+)", "--with", "$2-$1", "--regex", "--dry-run"});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    const QList<QByteArray> lines = run.outLines();
    ASSERT_EQ(lines.size(), 3) << run.out.toStdString();
    EXPECT_EQ(lines[0], at("alpha-beta.txt") + " → beta-alpha.txt");
    EXPECT_EQ(lines[1], at("one-two.md") + " → two-one.md");
    EXPECT_EQ(lines[2], "2 of 3 will change");
    EXPECT_EQ(namesIn(tree.root()), (QList<QByteArray>{"alpha-beta.txt", "one-two.md", "plain.txt"}));
}

TEST_F(CliRenameTest, NumberRenamesInTheOrderGiven)
{
    for (int i = 0; i < 10; ++i)
        tree.file(QStringLiteral("scan%1.png").arg(i));
    QList<QByteArray> arguments{"rename"};
    for (int i = 9; i >= 0; --i)
        arguments.append(at(QStringLiteral("scan%1.png").arg(i).toUtf8().constData()));
    arguments += {"--number", "Page", "--start", "95"};
    const CliRun run = runCli(arguments);
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.outLines().last(), "Renamed 10 items");
    const QList<QByteArray> names = namesIn(tree.root());
    ASSERT_EQ(names.size(), 10);
    EXPECT_EQ(names.first(), "Page 095.png");
    EXPECT_EQ(names.last(), "Page 104.png");
}

TEST_F(CliRenameTest, SwapOfTwoNames)
{
    tree.file("1-2.txt", "first");
    tree.file("2-1.txt", "second");
    const CliRun run = runCli({"rename", at("1-2.txt"), at("2-1.txt"), "--replace", "(\\w+)-(\\w+)", "--with", "$2-$1",
                               "--regex"});
    EXPECT_EQ(run.status, 0) << run.out.toStdString() << run.err.toStdString();
    EXPECT_EQ(run.outLines().value(2), "2 of 2 will change");
    EXPECT_EQ(run.outLines().value(3), "Renamed 2 items");
    EXPECT_EQ(readAll(tree.path("2-1.txt")), "first");
    EXPECT_EQ(readAll(tree.path("1-2.txt")), "second");
    EXPECT_EQ(namesIn(tree.root()).size(), 2) << "no temporary name is left behind";
}

TEST_F(CliRenameTest, TakenNameIsAProblemAndTheRestGoOn)
{
    tree.file("c.txt", "C");
    tree.file("d.txt", "D");
    tree.file("x.txt", "not being renamed");
    const CliRun run = runCli({"rename", at("c.txt"), at("d.txt"), "--replace", "c", "--with", "x"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.outLines().value(0), at("c.txt") + " → x.txt  (“x.txt” already exists in this folder.)");
    EXPECT_EQ(run.outLines().value(1), "0 of 2 will change, 1 can't be renamed");
    EXPECT_EQ(readAll(tree.path("x.txt")), "not being renamed");

    const CliRun slash = runCli({"rename", at("d.txt"), "--add", "a/", "--dry-run"});
    EXPECT_EQ(slash.status, 1);
    EXPECT_TRUE(slash.outLines().value(0).endsWith("(Can't contain “/”)")) << slash.out.toStdString();
}

TEST_F(CliRenameTest, BadPatternIsAUsageErrorAndAMissingFileIsSaidWhileTheOthersAreRenamed)
{
    tree.file("a.txt");
    const CliRun run = runCli({"rename", at("a.txt"), "--replace", "(a", "--with", "b", "--regex"});
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.err.contains("That isn't a valid regular expression")) << run.err.toStdString();
    EXPECT_EQ(namesIn(tree.root()), QList<QByteArray>{"a.txt"});
    EXPECT_EQ(runCli({"rename", at("a.txt"), "--add", "x", "--number", "y"}).status, 2);
    EXPECT_EQ(runCli({"rename", at("a.txt"), "--replace", "a"}).status, 2);
    EXPECT_EQ(runCli({"rename", at("a.txt"), "--case", "sideways"}).status, 2);
    // A missing file is said and the others renamed.
    const CliRun missing = runCli({"rename", at("gone.txt"), at("a.txt"), "--add", "new "});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.err.contains("isn’t there")) << missing.err.toStdString();
    EXPECT_EQ(namesIn(tree.root()), QList<QByteArray>{"new a.txt"});
}

TEST_F(CliRenameTest, OtherRulesAndNamesThatAreNotUtf8)
{
    const FilePath latin = tree.file(QByteArray("caf\xe9 menu.TXT"), "x");
    const CliRun run = runCli({"rename", latin.native(), "--case", "upper"});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.outLines().value(0), QByteArray(latin.native()).replace("caf\xe9 menu.TXT", "caf\xef\xbf\xbd menu.TXT")
                                           + " → CAF\xef\xbf\xbd MENU.TXT");
    EXPECT_EQ(namesIn(tree.root()), QList<QByteArray>{"CAF\xe9 MENU.TXT"});
    const CliRun removed = runCli({"rename", tree.root().native() + "/CAF\xe9 MENU.TXT", "--remove", " "});
    EXPECT_EQ(removed.status, 0);
    EXPECT_EQ(namesIn(tree.root()), QList<QByteArray>{"CAF\xe9MENU.TXT"});
}

TEST_F(CliRenameTest, ManyItemsInOneFolderAreCheckedTogether)
{
    // Enough items for their folder to be read once instead of a stat for each: a missing one
    // and a taken new name are still said, and the rest renamed.
    QList<QByteArray> arguments{"rename"};
    for (int i = 0; i < 300; ++i)
        arguments.append(tree.file(QStringLiteral("IMG_%1.jpg").arg(i, 3, 10, QLatin1Char('0'))).native());
    tree.file("photo-007.jpg", "someone else's");
    arguments.append(at("IMG_999.jpg"));
    arguments += {"--replace", "IMG_(\\d+)", "--with", "photo-$1", "--regex"};
    const CliRun run = runCli(arguments);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errLines().value(0), "“" + at("IMG_999.jpg") + "” isn’t there.") << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(at("IMG_007.jpg") + " → photo-007.jpg  (“photo-007.jpg” already exists in this folder.)"))
        << run.out.toStdString();
    EXPECT_TRUE(run.out.contains("299 of 300 will change, 1 can't be renamed")) << run.out.toStdString();
    const QList<QByteArray> names = namesIn(tree.root());
    EXPECT_EQ(names.size(), 301);
    EXPECT_TRUE(names.contains("IMG_007.jpg"));
    EXPECT_TRUE(names.contains("photo-299.jpg"));
    EXPECT_EQ(readAll(tree.path(QStringLiteral("photo-007.jpg"))), "someone else's");
}

TEST_F(CliRenameTest, RelativeArgumentsNameItemsOfTheWorkingFolder)
{
    // As a shell's "./*.txt" gives them, and other relative forms; each line shows the argument
    // as it was given.
    tree.file("a.txt", "a");
    tree.file("b.txt", "b");
    tree.file("sub/c.txt", "c");
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(tree.root().text()));
    const CliRun run = runCli({"rename", "./a.txt", "././b.txt", "sub/../sub/c.txt", "./missing.txt", "--replace", ".txt",
                               "--with", ".text"});
    QDir::setCurrent(before);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errLines().value(0), "“./missing.txt” isn’t there.") << run.err.toStdString();
    EXPECT_EQ(run.outLines().mid(0, 4), (QList<QByteArray>{"./a.txt → a.text", "././b.txt → b.text",
                                                           "sub/../sub/c.txt → c.text", "3 of 3 will change"}))
        << run.out.toStdString();
    EXPECT_EQ(namesIn(tree.root()), (QList<QByteArray>{"a.text", "b.text", "sub"}));
    EXPECT_EQ(readAll(tree.path(QStringLiteral("sub/c.text"))), "c");
}

} // namespace
} // namespace orwick::test
