// WordTable: the word → kind lookup behind every language's keywords and builtins.

#include "highlight/SyntaxHighlighter.h"
#include "highlight/WordTable.h"

#include <gtest/gtest.h>

namespace orwick::test {

using SyntaxHighlighter::Kind;
using SyntaxHighlighter::WordTable;

TEST(WordTable, FindsExactlyTheWordsAdded)
{
    WordTable table;
    for (int i = 0; i < 300; ++i) // enough to grow the slots several times
        table.add(QString("w%1").arg(i), i % 2 ? Kind::type : Kind::keyword);
    EXPECT_EQ(table.size(), 300);
    for (int i = 0; i < 300; ++i)
        EXPECT_EQ(table.find(QString("w%1").arg(i)), i % 2 ? Kind::type : Kind::keyword) << i;
    EXPECT_EQ(table.find(u"w300"), std::nullopt);
    EXPECT_EQ(table.find(u"w"), std::nullopt);
    EXPECT_EQ(table.find(u"W1"), std::nullopt); // case matters
    EXPECT_EQ(table.find(u""), std::nullopt);
}

TEST(WordTable, TheFirstKindOfAWordStays)
{
    WordTable table;
    table.add(u"self", Kind::keyword);
    table.add(u"self", Kind::type);
    EXPECT_EQ(table.size(), 1);
    EXPECT_EQ(table.find(u"self"), Kind::keyword);
}

TEST(WordTable, WordsLongerThanAnyListedOneAreRefusedAtOnce)
{
    WordTable table;
    EXPECT_EQ(table.find(u"if"), std::nullopt); // empty table
    table.add(u"if", Kind::keyword);
    EXPECT_EQ(table.maxLength(), 2);
    EXPECT_EQ(table.find(u"iff"), std::nullopt);
    EXPECT_EQ(table.find(QStringView(u"if", 1)), std::nullopt);
}

} // namespace orwick::test
