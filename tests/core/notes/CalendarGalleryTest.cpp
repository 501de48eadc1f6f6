// The calendar's month grid over real notes (placement by the date property, undated and
// malformed dates counted, a moved date keeping its time, a wrong `calendarBy` said), and the
// gallery's layout and covers (a picture itself, a note's first local image).

#include "PropertyStoreFixture.h"
#include "notes/CalendarView.h"
#include "notes/GalleryView.h"
#include "support/TempHome.h"

#include <unistd.h>
#include <gtest/gtest.h>

using namespace orwick;
using orwick::test::readAll;
using orwick::test::TempTree;

namespace {

using CalendarViewTest = test::PropertyStoreTest;

TEST_F(CalendarViewTest, PlacesItemsOnTheirDayAndCountsTheUndated)
{
    const FilePath a = tree.file(QString("n/a.md"), "---\ndue: 2024-05-17\n---\n");
    const FileItems items = load({a, tree.file(QString("n/b.md"), "---\ndue: 2024-05-17T09:30\n---\n"),
                                           tree.file(QString("n/c.md"), "---\ndue: 2024-5-3\n---\n"),
                                           tree.file(QString("n/d.md"), "plain\n"),
                                           tree.file(QString("n/e.md"), "---\ndue: 2024-06-02\n---\n")});
    const FilePath folder = tree.path("n");
    FolderColumns settings; // "2024-5-3" makes the guess a text: the folder says it's a date
    settings.types.insert("due", PropertyType::date);
    ASSERT_TRUE(store.setColumns(folder, settings));
    const CalendarView view = CalendarView::make(DatabaseColumns::of(store, folder, items), items, QDate(2024, 5, 20));
    ASSERT_TRUE(view.problem.isEmpty()) << view.problem.toStdString();
    EXPECT_EQ(view.key, "due"); // the only date property, without a calendarBy
    EXPECT_EQ(view.month, QDate(2024, 5, 1));
    ASSERT_EQ(view.days.size(), 42);
    EXPECT_EQ(view.days.first(), QDate(2024, 4, 29)); // the Monday before
    EXPECT_EQ(view.placed.value(QDate(2024, 5, 17)), (QList<int>{0, 1}));
    EXPECT_EQ(view.placed.value(QDate(2024, 6, 2)), QList<int>{4}); // shown in the grid's last week
    EXPECT_EQ(view.undated, 2); // "2024-5-3" isn't a date; d has none
    EXPECT_EQ(view.newItemValues(QDate(2024, 5, 9)), (PropertyMap{{"due", PropertyValue::ofText("2024-05-09")}}));

    // Moving an item to another day: one undoable change that keeps a time after the date.
    EXPECT_EQ(CalendarView::movedValue(PropertyValue::ofText("2024-05-17T09:30"), QDate(2024, 5, 18)),
              PropertyValue::ofText("2024-05-18T09:30"));
    QUndoStack stack;
    ASSERT_TRUE(store.set(view.key, CalendarView::movedValue(store.value(a, "due"), QDate(2024, 5, 24)), {a}, &stack));
    settle();
    EXPECT_EQ(readAll(a), "---\ndue: 2024-05-24\n---\n");
    undo(stack);
    EXPECT_EQ(readAll(a), "---\ndue: 2024-05-17\n---\n");
}

TEST_F(CalendarViewTest, AWrongPropertyIsSaidWithTheChoices)
{
    const FileItems items = load({tree.file(QString("n/a.md"), "---\ndue: 2024-05-17\nstart: 2024-05-01\nowner: me\n---\n")});
    const FilePath folder = tree.path("n");
    CalendarView view = CalendarView::make(DatabaseColumns::of(store, folder, items), items, QDate(2024, 5, 1));
    EXPECT_EQ(view.problem, "Choose the date property the calendar places items by.");
    EXPECT_EQ(view.choices, (QStringList{"due", "start"}));
    FolderColumns settings;
    settings.calendarBy = "owner";
    ASSERT_TRUE(store.setColumns(folder, settings));
    view = CalendarView::make(DatabaseColumns::of(store, folder, items), items, QDate(2024, 5, 1));
    EXPECT_EQ(view.problem, "The calendar places items by “owner”, which is a text property, not a date.");
    EXPECT_TRUE(view.placed.isEmpty());
    EXPECT_TRUE(view.newItemValues(QDate(2024, 5, 2)).isEmpty());
}

TEST(GalleryView, LaysCardsOutByMinimumWidthSpacingAndPadding)
{
    GalleryView gallery;
    gallery.width = 1000;
    gallery.minCardWidth = 200;
    gallery.spacing = 10;
    gallery.padding = 20;
    gallery.cardHeight = 100;
    // 960 inside: four cards of at least 200 with three gaps of 10 fit, five don't.
    EXPECT_EQ(gallery.columns(), 4);
    EXPECT_EQ(gallery.cardWidth(), 232);
    EXPECT_EQ(gallery.cardRect(5), QRect(20 + 242, 20 + 110, 232, 100));
    EXPECT_EQ(gallery.contentHeight(5), 20 + 100 + 10 + 100 + 20);
    EXPECT_EQ(gallery.indexAt(QPoint(20 + 242 + 5, 20 + 110 + 5), 6), 5);
    EXPECT_EQ(gallery.indexAt(QPoint(20 + 235, 25), 6), -1); // in the spacing
    EXPECT_EQ(gallery.indexAt(QPoint(20 + 242 + 5, 20 + 110 + 5), 5), -1); // past the last card
    EXPECT_EQ(gallery.moved(1, 1, 0, 6), 5);
    EXPECT_EQ(gallery.moved(2, 1, 0, 6), 5); // no card below: the last one
    EXPECT_EQ(gallery.moved(5, -1, 0, 6), 1);
    EXPECT_EQ(gallery.moved(0, 0, -1, 6), 0);
    gallery.width = 100; // narrower than one card: still one column
    EXPECT_EQ(gallery.columns(), 1);
}

TEST(GalleryView, CoversArePicturesOrANotesFirstLocalImage)
{
    TempTree tree;
    const FilePath picture = tree.file(QString("n/pics/cat 1.png"), "png");
    tree.file(QString("n/inline.jpg"), "jpg");
    const FilePath note = tree.file(QString("n/a.md"), "# A\n![web](https://example.org/x.png)\n![gone](missing.png)\n"
                                                       "![cat](pics/cat%201.png \"title\")\n");
    EXPECT_EQ(coverOf(FileItem::make(note)), picture);
    EXPECT_EQ(coverOf(FileItem::make(picture)), picture);
    const FilePath wiki = tree.file(QString("n/b.md"), "text ![[inline.jpg|200]]\n");
    EXPECT_EQ(coverOf(FileItem::make(wiki)), tree.path("n/inline.jpg"));
    EXPECT_FALSE(coverOf(FileItem::make(tree.file(QString("n/c.md"), "no images\n"))).has_value());
    // Not UTF-8: read as far as it goes, nothing guessed.
    const FilePath notUtf8 = tree.file(QByteArray("n/\xff.md"), "\xff\xfe ![x](nothing.png)\n");
    EXPECT_FALSE(coverOf(FileItem::make(notUtf8)).has_value());
    ::unlink(notUtf8.c_str()); // a name Qt's clean-up can't spell
}

} // namespace
