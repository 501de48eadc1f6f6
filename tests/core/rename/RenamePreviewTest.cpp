// The preview of a batch rename: problems marked on their rows, the summary, and what a commit
// would rename, over real files in a temporary folder.

#include "rename/RenamePreview.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }

namespace orwick::test {
namespace {

class RenamePreviewTest : public ::testing::Test {
protected:
    RenamePreview preview(const BatchRename& rule, const QList<FilePath>& items) const
    {
        return previewRenames(BatchRenamer(rule), items);
    }
    static BatchRename replacing(const QString& find, const QString& with)
    {
        BatchRename rule;
        rule.find = find;
        rule.replacement = with;
        return rule;
    }
    TempTree tree;
};

TEST_F(RenamePreviewTest, SummaryCountsWhatChangesAndWhatCantAndSwapsAreFine)
{
    const QList<FilePath> items{tree.file("a.txt"), tree.file("b.txt"), tree.file("c.md"), tree.file("taken.txt")};
    tree.file("x.md");
    const RenamePreview result = preview(replacing(QStringLiteral("c"), QStringLiteral("x")), items);
    // c.md → x.md is taken by a file not being renamed; the others don't change.
    EXPECT_EQ(result.entries[2].problem, QStringLiteral("“x.md” already exists in this folder."));
    EXPECT_EQ(result.summary(), QStringLiteral("0 of 4 will change, 1 can't be renamed"));
    EXPECT_TRUE(result.renames().isEmpty());

    const RenamePreview some = preview(replacing(QStringLiteral(".txt"), QStringLiteral(".text")), items);
    EXPECT_EQ(some.summary(), QStringLiteral("3 of 4 will change"));
    EXPECT_EQ(some.renames().size(), 3);
    EXPECT_TRUE(some.entries[2].problem.isEmpty());
    EXPECT_FALSE(some.entries[2].changes());
    // Swaps among the items are fine.
    BatchRename rule = replacing(QStringLiteral("^(\\w)(\\w)$"), QStringLiteral("$2$1"));
    rule.usesRegex = true;
    const RenamePreview swapped = preview(rule, {tree.file("ab"), tree.file("ba")});
    EXPECT_EQ(swapped.summary(), QStringLiteral("2 of 2 will change"));
}

TEST_F(RenamePreviewTest, NothingChangesUntilTheRuleDoesSomethingAndARuleWithAProblemRenamesNothing)
{
    const RenamePreview result = preview(BatchRename{}, {tree.file("a"), tree.file("b")});
    EXPECT_EQ(result.summary(), QStringLiteral("Nothing changes yet"));
    EXPECT_TRUE(result.renames().isEmpty());
    // A rule with a problem renames nothing.
    BatchRename rule = replacing(QStringLiteral("[a-"), QStringLiteral("x"));
    rule.usesRegex = true;
    const RenamePreview broken = preview(rule, {tree.file("a"), tree.file("b")});
    EXPECT_EQ(broken.ruleProblem, QStringLiteral("That isn't a valid regular expression"));
    EXPECT_TRUE(broken.renames().isEmpty());
    EXPECT_EQ(broken.summary(), QStringLiteral("Nothing changes yet"));
}

TEST_F(RenamePreviewTest, TwoItemsEndingWithOneNameBothHaveTheProblem)
{
    const RenamePreview result = preview(replacing(QStringLiteral("1"), QString()),
                                         {tree.file("a1"), tree.file("a"), tree.file("b1"), tree.file("sub/a1")});
    EXPECT_EQ(result.entries[0].problem, QStringLiteral("Same name as another"));
    EXPECT_TRUE(result.entries[1].problem.isEmpty()) << "an unchanged item keeps its name without a problem";
    EXPECT_TRUE(result.entries[2].problem.isEmpty());
    EXPECT_TRUE(result.entries[3].problem.isEmpty()) << "another folder is another place";
    EXPECT_EQ(result.summary(), QStringLiteral("2 of 4 will change, 1 can't be renamed"));
    EXPECT_TRUE(result.entries[0].target.isEmpty()) << "an item with a problem goes nowhere";
    EXPECT_TRUE(result.entries[1].target.isEmpty());
    EXPECT_EQ(result.renames(), (QList<FileMove>{{tree.path("b1"), tree.path("b")}, {tree.path("sub/a1"), tree.path("sub/a")}}));
}

TEST_F(RenamePreviewTest, NamesTheSystemWontTakeAreProblems)
{
    const QList<FilePath> items{tree.file("slash"), tree.file("blank"), tree.file("dots"), tree.file("long"), tree.file("nul")};
    BatchRename rule = replacing(QStringLiteral("^slash$|^blank$|^dots$|^long$|^nul$"), QString());
    rule.usesRegex = true;
    // One rule can't give all the bad names, so each row is checked on its own too.
    EXPECT_EQ(nameProblem("a/b"), QStringLiteral("Can't contain “/”"));
    EXPECT_EQ(nameProblem(QByteArray("a\0b", 3)), QStringLiteral("Can't contain a NUL character"));
    EXPECT_EQ(nameProblem("   "), QStringLiteral("Needs a name: this one is empty or only blanks"));
    EXPECT_EQ(nameProblem(""), QStringLiteral("Needs a name: this one is empty or only blanks"));
    EXPECT_EQ(nameProblem("\t \xe3\x80\x80"), QStringLiteral("Needs a name: this one is empty or only blanks"));
    EXPECT_TRUE(nameProblem(" \xe3\x80\x80x").isEmpty());
    EXPECT_TRUE(nameProblem("\xc3\xa9").isEmpty());
    EXPECT_EQ(nameProblem(".."), QStringLiteral("Can't be “.” or “..”"));
    EXPECT_EQ(nameProblem(QByteArray(256, 'x')), QStringLiteral("Too long: 256 bytes, a name can have at most 255"));
    EXPECT_TRUE(nameProblem(QByteArray(255, 'x')).isEmpty());
    const RenamePreview emptied = preview(rule, items);
    EXPECT_EQ(emptied.problems, 5);
    EXPECT_EQ(emptied.entries[0].problem, QStringLiteral("Needs a name: this one is empty or only blanks"));

    BatchRename add;
    add.mode = BatchRename::Mode::add;
    add.text = QStringLiteral("x/");
    EXPECT_EQ(preview(add, {items[0]}).entries[0].problem, QStringLiteral("Can't contain “/”"));
    add.text = QString(300, u'é');
    EXPECT_TRUE(preview(add, {items[0]}).entries[0].problem.startsWith(QStringLiteral("Too long: 605 bytes")));
}

TEST_F(RenamePreviewTest, NameThatIsNotUtf8IsShownVisiblyAndKeepsItsBytes)
{
    const FilePath item = tree.file(QByteArray("caf\xe9.txt"), "x");
    BatchRename rule;
    rule.mode = BatchRename::Mode::add;
    rule.text = QStringLiteral("old ");
    const RenamePreview result = preview(rule, {item});
    ASSERT_EQ(result.renames().size(), 1);
    EXPECT_EQ(result.entries[0].newName, QByteArray("old caf\xe9.txt"));
    EXPECT_EQ(visibleName(result.entries[0].newName), QStringLiteral("old caf\uFFFD.txt"));
}

TEST_F(RenamePreviewTest, TemplateDatesComeFromTheFiles)
{
    const FilePath item = tree.file("scan.pdf");
    tree.touch(item, QDateTime(QDate(2023, 5, 17), QTime(10, 0)).toSecsSinceEpoch());
    BatchRename rule;
    rule.mode = BatchRename::Mode::fromTemplate;
    rule.templateText = QStringLiteral("{date:yyyy-MM-dd} {name}");
    EXPECT_EQ(preview(rule, {item}).entries[0].newName, QByteArray("2023-05-17 scan.pdf"));
}

TEST_F(RenamePreviewTest, CancelStopsTheWalk)
{
    const CancelToken cancel = makeCancelToken();
    cancel->cancel();
    const RenamePreview result = previewRenames(BatchRenamer(BatchRename{}), {tree.file("a")}, cancel);
    EXPECT_TRUE(result.cancelled);
    EXPECT_TRUE(result.entries.empty());
}

} // namespace
} // namespace orwick::test
