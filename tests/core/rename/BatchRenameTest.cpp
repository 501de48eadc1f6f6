// The batch rename's rule: the new name each mode gives, with real paths (nothing on disk needed).

#include "rename/BatchRename.h"
#include "rename/NameText.h"

#include <gtest/gtest.h>

inline void PrintTo(const QByteArray& bytes, std::ostream* out) { *out << '"' << bytes.toStdString() << '"'; }

namespace orwick::test {
namespace {

const FilePath kFolder = FilePath::fromNative("/tmp/photos");

// The new names of `names` under `rule`, in order.
QList<QByteArray> renamed(const BatchRename& rule, const QList<QByteArray>& names)
{
    const BatchRenamer renamer(rule);
    QList<QByteArray> result;
    for (int i = 0; i < names.size(); ++i)
        result.append(renamer.newName(kFolder.child(QByteArrayView(names[i])), i, int(names.size())).value_or("(none)"));
    return result;
}

QList<QByteArray> numbered(int count)
{
    QList<QByteArray> names;
    for (int i = 0; i < count; ++i)
        names.append("IMG_" + QByteArray::number(1000 + i) + ".jpg");
    return names;
}

TEST(BatchRenameTest, ExtensionIsAfterTheLastDotButNotALeadingOne)
{
    EXPECT_EQ(extensionOf("a.tar.gz"), "gz");
    EXPECT_EQ(baseOf("a.tar.gz"), "a.tar");
    EXPECT_EQ(extensionOf(".bashrc"), "");
    EXPECT_EQ(baseOf(".bashrc"), ".bashrc");
    EXPECT_EQ(extensionOf("Makefile"), "");
    EXPECT_EQ(baseOf("trailing."), "trailing.");
}

TEST(BatchRenameTest, NumberingTenFromOneUsesTwoDigits)
{
    BatchRename rule;
    rule.mode = BatchRename::Mode::number;
    rule.baseName = QStringLiteral("  Trip  ");
    const QList<QByteArray> names = renamed(rule, numbered(10));
    EXPECT_EQ(names.first(), "Trip 01.jpg");
    EXPECT_EQ(names[8], "Trip 09.jpg");
    EXPECT_EQ(names.last(), "Trip 10.jpg");
}

TEST(BatchRenameTest, NumberingFromNinetyFivePadsAllToThreeDigits)
{
    BatchRename rule;
    rule.mode = BatchRename::Mode::number;
    rule.baseName = QStringLiteral("Trip");
    rule.startAt = 95;
    const QList<QByteArray> names = renamed(rule, numbered(10));
    EXPECT_EQ(names.first(), "Trip 095.jpg");
    EXPECT_EQ(names[4], "Trip 099.jpg");
    EXPECT_EQ(names.last(), "Trip 104.jpg");
}

TEST(BatchRenameTest, NumberingWithoutANameKeepsEachOnesOwn)
{
    BatchRename rule;
    rule.mode = BatchRename::Mode::number;
    EXPECT_EQ(renamed(rule, {"beach.jpg", "notes"}), (QList<QByteArray>{"beach 01.jpg", "notes 02"}));
    EXPECT_EQ(renamed(rule, numbered(120)).last(), "IMG_1119 120.jpg");
}

TEST(BatchRenameTest, PatternSwapsTheTwoPartsOfEveryMatchingName)
{
    BatchRename rule;
    rule.usesRegex = true;
    rule.find = QStringLiteral("(\\w+)-(\\w+)");
    rule.replacement = QStringLiteral("$2-$1");
    EXPECT_EQ(renamed(rule, {"alpha-beta.txt", "one-two-three", "plain.txt"}),
              (QList<QByteArray>{"beta-alpha.txt", "two-one-three", "plain.txt"}));
}

TEST(BatchRenameTest, ReplacementTemplateTakesEscapesAndOnlyGroupsThatExist)
{
    BatchRename rule;
    rule.usesRegex = true;
    rule.find = QStringLiteral("(a)(b)");
    rule.replacement = QStringLiteral("\\$1=$1,$12,$3,\\\\");
    // "$12" is group 1 then "2" (there is no group 12); "$3" names no group and gives nothing.
    EXPECT_EQ(renamed(rule, {"ab"}), QList<QByteArray>{"$1=a,a2,,\\"});
}

TEST(BatchRenameTest, PatternReplacesEveryMatchIncludingEmptyOnes)
{
    BatchRename rule;
    rule.usesRegex = true;
    rule.find = QStringLiteral("o");
    rule.replacement = QStringLiteral("0");
    EXPECT_EQ(renamed(rule, {"foo.doc", "xyz"}), (QList<QByteArray>{"f00.d0c", "xyz"}));
    // A pattern that matches nothing at all: each gap between characters is a match.
    rule.find = QStringLiteral("x*");
    rule.replacement = QStringLiteral("-");
    EXPECT_EQ(renamed(rule, {"abc", "axxb"}), (QList<QByteArray>{"-a-b-c-", "-a--b-"}));
    rule.find = QStringLiteral("\\b");
    rule.replacement = QStringLiteral("|");
    EXPECT_EQ(renamed(rule, {"ab cd"}), QList<QByteArray>{"|ab| |cd|"});
    // Groups in a name with more than one match, and a group that took no part.
    rule.find = QStringLiteral("(\\d)(x)?");
    rule.replacement = QStringLiteral("<$1$2>");
    EXPECT_EQ(renamed(rule, {"a1b2xc"}), QList<QByteArray>{"a<1>b<2x>c"});
}

TEST(BatchRenameTest, PatternThatDoesNotCompileGivesNoNameAndSaysWhy)
{
    BatchRename rule;
    rule.usesRegex = true;
    rule.find = QStringLiteral("(unclosed");
    const BatchRenamer renamer(rule);
    EXPECT_EQ(renamer.problem(), QStringLiteral("That isn't a valid regular expression"));
    EXPECT_FALSE(renamer.newName(kFolder.child(QStringLiteral("a")), 0, 1).has_value());
}

TEST(BatchRenameTest, PlainReplaceCoversTheExtensionAndCanIgnoreCase)
{
    BatchRename rule;
    rule.find = QStringLiteral("JPG");
    rule.replacement = QStringLiteral("jpeg");
    EXPECT_EQ(renamed(rule, {"a.jpg", "JPG.JPG"}), (QList<QByteArray>{"a.jpg", "jpeg.jpeg"}));
    rule.ignoresCase = true;
    EXPECT_EQ(renamed(rule, {"a.jpg"}), QList<QByteArray>{"a.jpeg"});
    rule.find.clear();
    EXPECT_EQ(renamed(rule, {"a.jpg"}), QList<QByteArray>{"a.jpg"});
}

TEST(BatchRenameTest, PatternIgnoringCaseMatchesEitherCase)
{
    BatchRename rule;
    rule.usesRegex = true;
    rule.find = QStringLiteral("^img_");
    rule.ignoresCase = true;
    EXPECT_EQ(renamed(rule, {"IMG_1.jpg"}), QList<QByteArray>{"1.jpg"});
}

TEST(BatchRenameTest, AddPutsTextBeforeTheNameOrBeforeTheExtension)
{
    BatchRename rule;
    rule.mode = BatchRename::Mode::add;
    rule.text = QStringLiteral("old-");
    EXPECT_EQ(renamed(rule, {"a.txt", ".bashrc"}), (QList<QByteArray>{"old-a.txt", "old-.bashrc"}));
    rule.addsAtEnd = true;
    rule.text = QStringLiteral(" (draft)");
    EXPECT_EQ(renamed(rule, {"a.tar.gz", "b"}), (QList<QByteArray>{"a.tar (draft).gz", "b (draft)"}));
}

TEST(BatchRenameTest, ChangeCaseKeepsTheExtension)
{
    BatchRename rule;
    rule.mode = BatchRename::Mode::changeCase;
    rule.letterCase = BatchRename::LetterCase::upper;
    EXPECT_EQ(renamed(rule, {"straße.txt"}), QList<QByteArray>{"STRASSE.txt"});
    rule.letterCase = BatchRename::LetterCase::lower;
    EXPECT_EQ(renamed(rule, {"README.MD"}), QList<QByteArray>{"readme.MD"});
    rule.letterCase = BatchRename::LetterCase::title;
    EXPECT_EQ(renamed(rule, {"the QUICK brown_fox don't.txt"}), QList<QByteArray>{"The Quick Brown_Fox Don't.txt"});
}

TEST(BatchRenameTest, TemplateFillsItsFields)
{
    BatchRename rule;
    rule.mode = BatchRename::Mode::fromTemplate;
    rule.templateText = QStringLiteral("{parent}-{n}-{name}-{ext}-{date:yyyy}-{{x}}");
    rule.startAt = 7;
    const BatchRenamer renamer(rule);
    EXPECT_TRUE(renamer.needsDates());
    const QDateTime date(QDate(2024, 3, 9), QTime(12, 0));
    EXPECT_EQ(renamer.newName(kFolder.child(QStringLiteral("a.png")), 0, 3, date), "photos-07-a-png-2024-{x}.png");
    rule.templateText = QStringLiteral("{date}");
    EXPECT_EQ(BatchRenamer(rule).newName(kFolder.child(QStringLiteral("b")), 0, 1, date), "2024-03-09");
}

TEST(BatchRenameTest, TemplateWithAnUnknownFieldOrBraceSaysSo)
{
    BatchRename rule;
    rule.mode = BatchRename::Mode::fromTemplate;
    rule.templateText = QStringLiteral("{name}-{size}");
    EXPECT_TRUE(BatchRenamer(rule).problem().contains(QStringLiteral("There is no field “{size}”")));
    EXPECT_FALSE(BatchRenamer(rule).newName(kFolder.child(QStringLiteral("a")), 0, 1));
    rule.templateText = QStringLiteral("{name");
    EXPECT_FALSE(BatchRenamer(rule).problem().isEmpty());
    rule.templateText = QStringLiteral("name}");
    EXPECT_FALSE(BatchRenamer(rule).problem().isEmpty());
}

TEST(BatchRenameTest, RemoveTakesTheCharactersFromTheBase)
{
    BatchRename rule;
    rule.mode = BatchRename::Mode::remove;
    rule.characters = QStringLiteral("_-.");
    EXPECT_EQ(renamed(rule, {"a_b-c.d.txt"}), QList<QByteArray>{"abcd.txt"});
}

TEST(BatchRenameTest, BytesThatAreNotUtf8SurviveWhereTheRuleLeavesThem)
{
    const QByteArray latin1 = "caf\xe9 \xff-x.txt";
    BatchRename rule;
    rule.find = QStringLiteral("-x");
    rule.replacement = QStringLiteral("!");
    EXPECT_EQ(renamed(rule, {latin1}), QList<QByteArray>{"caf\xe9 \xff!.txt"});
    rule.mode = BatchRename::Mode::changeCase;
    rule.letterCase = BatchRename::LetterCase::upper;
    EXPECT_EQ(renamed(rule, {latin1}), QList<QByteArray>{"CAF\xe9 \xff-X.txt"});
    rule.mode = BatchRename::Mode::number;
    EXPECT_EQ(renamed(rule, {latin1}), QList<QByteArray>{"caf\xe9 \xff-x 01.txt"});
}

TEST(BatchRenameTest, NameTextRoundTripsAnyBytes)
{
    for (const QByteArray& bytes : {QByteArray("plain"), QByteArray("\xc3\xa9t\xc3\xa9"), QByteArray("\x80\xc3"),
                                   QByteArray("\xed\xa0\x80 surrogate"), QByteArray("\xf0\x9f\x98\x80 emoji \xfe")}) {
        const NameText text = NameText::fromBytes(bytes);
        EXPECT_EQ(NameText::toBytes(text.text, text.escaped), bytes);
    }
    EXPECT_FALSE(NameText::fromBytes("\xc3\xa9").escaped);
}

} // namespace
} // namespace orwick::test
