// TagList: the user.xdg.tags attribute read as other programs write it, and written back so
// that nothing another program put there is lost.

#include "places/TagList.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

QStringList names(const char* attribute) { return TagList::parse(QByteArray(attribute)).names(); }

TEST(TagList, ReadsWhatOtherProgramsWriteAndColoursFollowTheAttributesOrder)
{
    struct Row {
        const char* name;
        const char* attribute;
        QStringList expected;
    };
    const Row rows[] = {
        {"commas", "Red,work", {"Red", "work"}},
        {"spaces around names", "  Red ,  work in progress  ", {"Red", "work in progress"}},
        {"semicolons", "Red;Blue", {"Red", "Blue"}},
        {"newlines", "Red\nBlue\r\n", {"Red", "Blue"}},
        {"empty items", ",,Red,,,Blue,", {"Red", "Blue"}},
        {"the same tag twice keeps the first spelling", "work,Red,WORK,red", {"work", "Red"}},
        {"Grey is the Gray tag", "Grey,Gray", {"Grey"}},
        {"nothing but separators", " , ;", {}},
        {"empty", "", {}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(names(row.attribute), row.expected) << row.name;
    // Colours follow the attribute's order.
    EXPECT_EQ(TagList::parse("Blue,work,Red,grey").colors(), (QList<int>{4, 6, 1}));
}

TEST(TagList, KeepsNamesThatAreNotUtf8AsTheirBytesAndNewNamesWhole)
{
    const QByteArray attribute("caf\xe9,Red");
    TagList tags = TagList::parse(attribute);
    ASSERT_EQ(tags.size(), 2);
    EXPECT_EQ(tags.items().first(), QByteArray("caf\xe9"));
    EXPECT_TRUE(tags.add(QStringLiteral("Blue")));
    EXPECT_EQ(tags.toAttribute(), QByteArray("caf\xe9,Red,Blue"));
    EXPECT_TRUE(tags.remove(QStringLiteral("Red")));
    EXPECT_EQ(tags.toAttribute(), QByteArray("caf\xe9,Blue"));
    // A separator in a new name does not split it on the next read.
    TagList fresh;
    EXPECT_TRUE(fresh.add(QStringLiteral("to do, later")));
    EXPECT_EQ(TagList::parse(*fresh.toAttribute()).names(), QStringList{QStringLiteral("to do later")});
    EXPECT_FALSE(fresh.add(QStringLiteral(" ,; ")));
}

TEST(TagList, AddingKeepsEveryOtherTagAndRemovingTakesEverySpelling)
{
    TagList tags = TagList::parse("project-x; Draft");
    EXPECT_TRUE(tags.add(QStringLiteral("red")));
    EXPECT_EQ(tags.toAttribute(), QByteArray("project-x,Draft,Red"));
    EXPECT_FALSE(tags.add(QStringLiteral("RED"))) << "already there";
    EXPECT_FALSE(tags.add(QStringLiteral("draft")));
    EXPECT_EQ(tags.size(), 3);
    // Removing takes every spelling, and the last tag takes the attribute.
    TagList grey = TagList::parse("grey");
    EXPECT_FALSE(grey.remove(QStringLiteral("Red")));
    EXPECT_TRUE(grey.remove(QStringLiteral("Gray")));
    EXPECT_TRUE(grey.isEmpty());
    EXPECT_EQ(grey.toAttribute(), std::nullopt);
}

TEST(FinderTag, ColourTagsHaveTheirIndicesAndOtherNamesNone)
{
    EXPECT_EQ(FinderTag::named(QStringLiteral(" orange ")), (FinderTag{QStringLiteral("Orange"), 7}));
    EXPECT_EQ(FinderTag::named(QStringLiteral("Grey")), (FinderTag{QStringLiteral("Gray"), 1}));
    EXPECT_EQ(FinderTag::named(QStringLiteral("Reddish")), (FinderTag{QStringLiteral("Reddish"), 0}));
    QStringList order;
    for (const FinderTag& tag : FinderTag::colors())
        order.append(tag.name);
    EXPECT_EQ(order.join(','), QStringLiteral("Red,Orange,Yellow,Green,Blue,Purple,Gray"));
    EXPECT_TRUE(FinderTag::sameName(QStringLiteral("GREY"), QStringLiteral("gray")));
    EXPECT_FALSE(FinderTag::sameName(QStringLiteral("Red"), QStringLiteral("Redder")));
}

} // namespace
} // namespace orwick
