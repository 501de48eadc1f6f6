// The batch rename's rule: the new name each mode gives, with real paths (nothing on disk needed).

#include "rename/BatchRename.h"
#include "rename/NameText.h"

#include <gtest/gtest.h>

// Rules are written as designated initializers naming only the fields they use.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

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

// One rule over some names and the names it gives, per row.
struct Row {
    const char* what;
    BatchRename rule;
    QList<QByteArray> names, expected;
};

using Mode = BatchRename::Mode;
using Case = BatchRename::LetterCase;
const QByteArray kLatin1 = "caf\xe9 \xff-x.txt";

TEST(BatchRenameTest, EachModeGivesTheNamesOfItsRule)
{
    const Row rows[] = {
        {"numbering trims the name", {.mode = Mode::number, .baseName = "  Trip  "}, numbered(2), {"Trip 01.jpg", "Trip 02.jpg"}},
        {"numbering without a name keeps each one's own", {.mode = Mode::number}, {"beach.jpg", "notes"}, {"beach 01.jpg", "notes 02"}},
        {"pattern swaps two parts", {.find = "(\\w+)-(\\w+)", .replacement = "$2-$1", .usesRegex = true},
         {"alpha-beta.txt", "one-two-three", "plain.txt"}, {"beta-alpha.txt", "two-one-three", "plain.txt"}},
        // "$12" is group 1 then "2" (there is no group 12); "$3" names no group and gives nothing.
        {"template escapes and groups", {.find = "(a)(b)", .replacement = "\\$1=$1,$12,$3,\\\\", .usesRegex = true}, {"ab"},
         {"$1=a,a2,,\\"}},
        {"every match", {.find = "o", .replacement = "0", .usesRegex = true}, {"foo.doc", "xyz"}, {"f00.d0c", "xyz"}},
        // A pattern that matches nothing at all: each gap between characters is a match.
        {"empty matches", {.find = "x*", .replacement = "-", .usesRegex = true}, {"abc", "axxb"}, {"-a-b-c-", "-a--b-"}},
        {"word boundaries", {.find = "\\b", .replacement = "|", .usesRegex = true}, {"ab cd"}, {"|ab| |cd|"}},
        {"a group that took no part", {.find = "(\\d)(x)?", .replacement = "<$1$2>", .usesRegex = true}, {"a1b2xc"}, {"a<1>b<2x>c"}},
        {"pattern ignoring case", {.find = "^img_", .ignoresCase = true, .usesRegex = true}, {"IMG_1.jpg"}, {"1.jpg"}},
        {"plain replace covers the extension", {.find = "JPG", .replacement = "jpeg"}, {"a.jpg", "JPG.JPG"}, {"a.jpg", "jpeg.jpeg"}},
        {"plain replace ignoring case", {.find = "JPG", .replacement = "jpeg", .ignoresCase = true}, {"a.jpg"}, {"a.jpeg"}},
        {"nothing to find", {.replacement = "jpeg"}, {"a.jpg"}, {"a.jpg"}},
        {"add before the name", {.mode = Mode::add, .text = "old-"}, {"a.txt", ".bashrc"}, {"old-a.txt", "old-.bashrc"}},
        {"add before the extension", {.mode = Mode::add, .text = " (draft)", .addsAtEnd = true}, {"a.tar.gz", "b"},
         {"a.tar (draft).gz", "b (draft)"}},
        {"upper case keeps the extension", {.mode = Mode::changeCase, .letterCase = Case::upper}, {"straße.txt"}, {"STRASSE.txt"}},
        {"lower case keeps the extension", {.mode = Mode::changeCase, .letterCase = Case::lower}, {"README.MD"}, {"readme.MD"}},
        {"title case", {.mode = Mode::changeCase, .letterCase = Case::title}, {"the QUICK brown_fox don't.txt"},
         {"The Quick Brown_Fox Don't.txt"}},
        {"remove characters from the base", {.mode = Mode::remove, .characters = "_-."}, {"a_b-c.d.txt"}, {"abcd.txt"}},
        // Bytes that are not UTF-8 survive wherever the rule leaves them.
        {"bytes kept by replace", {.find = "-x", .replacement = "!"}, {kLatin1}, {"caf\xe9 \xff!.txt"}},
        {"bytes kept by case", {.mode = Mode::changeCase, .letterCase = Case::upper}, {kLatin1}, {"CAF\xe9 \xff-X.txt"}},
        {"bytes kept by numbering", {.mode = Mode::number}, {kLatin1}, {"caf\xe9 \xff-x 01.txt"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(renamed(row.rule, row.names), row.expected);
    }
    // Numbers pad to the batch's widest: 10 from one, 10 from 95, 120 without a name.
    BatchRename rule{.mode = Mode::number, .baseName = "Trip"};
    EXPECT_EQ(renamed(rule, numbered(10)).mid(8), (QList<QByteArray>{"Trip 09.jpg", "Trip 10.jpg"}));
    rule.startAt = 95;
    const QList<QByteArray> from95 = renamed(rule, numbered(10));
    EXPECT_EQ((QList<QByteArray>{from95.first(), from95[4], from95.last()}),
              (QList<QByteArray>{"Trip 095.jpg", "Trip 099.jpg", "Trip 104.jpg"}));
    EXPECT_EQ(renamed({.mode = Mode::number}, numbered(120)).last(), "IMG_1119 120.jpg");
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
