#include "base/TextMatch.h"

#include <gtest/gtest.h>

using namespace orwick;

TEST(TextMatch, FoldsAccentsAndCaseInNamesAndContents)
{
    const TextNeedle resume(QStringLiteral("Resume"));
    EXPECT_TRUE(resume.inName("R\xc3\xa9sum\xc3\xa9.pdf"));         // precomposed é
    EXPECT_TRUE(resume.inName("re\xcc\x81sume\xcc\x81.txt"));        // e + combining acute
    EXPECT_TRUE(resume.inName("MY-RESUME"));
    EXPECT_FALSE(resume.inName("resum"));
    EXPECT_FALSE(resume.inName("r\xc3\xa9sidence"));
    EXPECT_TRUE(resume.inContent("Dear sir,\nmy R\xc3\xa9SUM\xc3\x89 is attached"));
    EXPECT_FALSE(resume.inContent("nothing of the kind \xe6\x97\xa5\xe6\x9c\xac"));
    // Bytes that are not UTF-8 match nothing but do not stop the search.
    EXPECT_TRUE(resume.inContent("\xff\xfe resume"));
    EXPECT_TRUE(resume.inName("caf\xe9-resume"));
    // Ligatures and full-width letters fold to plain letters.
    EXPECT_TRUE(TextNeedle(QStringLiteral("file")).inName("\xef\xac\x81le")); // "ﬁle"
}

TEST(TextMatch, TextThatIsNotAsciiAfterFolding)
{
    const TextNeedle japanese(QStringLiteral("日本"));
    EXPECT_TRUE(japanese.inName("\xe6\x97\xa5\xe6\x9c\xac-notes.txt"));
    EXPECT_FALSE(japanese.inName("notes.txt"));
    EXPECT_TRUE(japanese.inContent("x \xe6\x97\xa5\xe6\x9c\xac y"));
}

TEST(TextMatch, BlankMatchesEverythingAndBinaryIsANulEarlyOn)
{
    EXPECT_TRUE(TextNeedle(QStringLiteral("  ")).inName("anything"));
    EXPECT_TRUE(looksBinary(QByteArrayView("ab\0cd", 5)));
    EXPECT_FALSE(looksBinary("plain text"));
    QByteArray late(9000, 'x');
    late[8500] = '\0';
    EXPECT_FALSE(looksBinary(late));
}
