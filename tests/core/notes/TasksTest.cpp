// Tasks and links in notes, task dates and labels, toggling in the file, and daily notes.

#include "notes/DailyNotes.h"
#include "notes/NoteParser.h"
#include "notes/TaskDates.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

using namespace orwick;
using orwick::test::readAll;
using orwick::test::TempTree;

namespace {

TEST(NoteParser, FindsTasksAndLinks)
{
    const FilePath note = FilePath::fromNative("/notes/today.md");
    const QString text = "# Plan\r\n"
                         "- [ ] call [[Alice|Al]] 📅 2024-05-20\r\n"
                         "  * [X] done thing\n"
                         "-[x] not a task\n"
                         "- [x]no space after box\n"
                         "+ [ ] see [plan](../docs/plan%20v2.md#top) and [site](https://example.org)\n"
                         "Text [[Bob#Section]] and [file](<other note.md>) and [abs](/etc/x.md)\n";
    const NoteParser parsed = NoteParser::parse(note, text);
    ASSERT_EQ(parsed.tasks.size(), 3);
    EXPECT_EQ(parsed.tasks[0], (NoteTask{note, 2, "call [[Alice|Al]] 📅 2024-05-20", false, {"Alice"}}));
    EXPECT_EQ(parsed.tasks[1].line, 3);
    EXPECT_TRUE(parsed.tasks[1].isDone);
    EXPECT_EQ(parsed.tasks[1].text, "done thing");
    EXPECT_EQ(parsed.tasks[2].mentions, (QStringList{"../docs/plan%20v2.md#top", "https://example.org"}));
    EXPECT_EQ(parsed.wikiNames, (QStringList{"Alice", "Bob"}));
    EXPECT_EQ(parsed.linkedPaths, (QSet<FilePath>{FilePath::fromNative("/docs/plan v2.md"), FilePath::fromNative("/notes/other note.md"),
                                                 FilePath::fromNative("/etc/x.md")}));
}

TEST(TaskDates, ReadsMarkersAndKeepsTheTitleWithWhatItCantRead)
{
    const TaskDates dates = TaskDates::parse("Pay rent ⏫ 📅 2024-06-01 ⏳2024-05-30 🛫 2024-05-25 🔁 every month ✅ 2024-05-31");
    EXPECT_EQ(dates.title, "Pay rent");
    EXPECT_EQ(dates.due, QDate(2024, 6, 1));
    EXPECT_EQ(dates.scheduled, QDate(2024, 5, 30));
    EXPECT_EQ(dates.start, QDate(2024, 5, 25));
    EXPECT_EQ(dates.done, QDate(2024, 5, 31));
    EXPECT_EQ(dates.priority, TaskDates::Priority::high);
    EXPECT_EQ(dates.recurrence, QString("every month"));
    // Unreadable dates stay in the title.
    const TaskDates unread = TaskDates::parse("Ship 📅 2024-6-01");
    EXPECT_EQ(unread.due, std::nullopt);
    EXPECT_EQ(unread.title, "Ship 📅 2024-6-01");
    EXPECT_EQ(TaskDates::parse("x 🔽").priority, TaskDates::Priority::low);
    EXPECT_EQ(TaskDates::parse("plain").priority, TaskDates::Priority::normal);
    EXPECT_EQ(TaskDates::date(u"2024-02-30"), std::nullopt);
    EXPECT_EQ(TaskDates::date(u"2024-02-29"), QDate(2024, 2, 29));
    EXPECT_EQ(TaskDates::date(u"2024-1-001"), QDate(2024, 1, 1)); // ten characters, three numbers
    EXPECT_EQ(TaskDates::date(u"2024-01-0x"), std::nullopt);
}

TEST(TaskDates, RelativeLabels)
{
    const QDate today(2024, 5, 15);
    EXPECT_EQ(TaskDates::label(today, today), "Today");
    EXPECT_EQ(TaskDates::label(today.addDays(-1), today), "Yesterday");
    EXPECT_EQ(TaskDates::label(today.addDays(1), today), "Tomorrow");
    EXPECT_EQ(TaskDates::label(today.addDays(3), today), QLocale().toString(today.addDays(3), "dddd"));
    EXPECT_FALSE(TaskDates::label(today.addDays(-3), today).contains("2024"));
    EXPECT_TRUE(TaskDates::label(QDate(2023, 12, 1), today).contains("2023"));
}

TEST(TaskDates, Toggle)
{
    const QDate today(2024, 5, 15);
    EXPECT_EQ(TaskDates::toggle("  - [ ] write 📅 2024-05-20", today), QStringList{"  - [x] write 📅 2024-05-20 ✅ 2024-05-15"});
    EXPECT_EQ(TaskDates::toggle("* [X] write ✅ 2024-05-14 tail", today), QStringList{"* [ ] write tail"});
    EXPECT_EQ(TaskDates::toggle("- [x]done", today), std::nullopt);
    EXPECT_EQ(TaskDates::toggle("- [ ] water 🔁 every 2 weeks 📅 2024-05-15", today),
              (QStringList{"- [ ] water 🔁 every 2 weeks 📅 2024-05-29", "- [x] water 🔁 every 2 weeks 📅 2024-05-15 ✅ 2024-05-15"}));
    EXPECT_EQ(TaskDates::toggle("- [ ] odd 🔁 when it rains", today), QStringList{"- [x] odd 🔁 when it rains ✅ 2024-05-15"});
}

TEST(NoteParser, ToggleTaskInItsBytes)
{
    const FilePath note = FilePath::fromNative("/notes/n.md");
    const QByteArray bytes = "intro\r\n- [ ] one\r\n- [ ] two\r\nend";
    EXPECT_EQ(toggleTaskInBytes(bytes, 3, QDate(2024, 5, 15), note), QByteArray("intro\r\n- [ ] one\r\n- [x] two ✅ 2024-05-15\r\nend"));
    EXPECT_FALSE(toggleTaskInBytes(bytes, 1, QDate(2024, 5, 15), note)); // not a task
    EXPECT_FALSE(toggleTaskInBytes(bytes, 9, QDate(2024, 5, 15), note));
    const auto latin = toggleTaskInBytes("- [ ] caf\xe9\n", 1, QDate(2024, 5, 15), note);
    ASSERT_FALSE(latin);
    EXPECT_EQ(latin.error(), "Couldn’t change “n.md”: it isn’t UTF-8 text.");
}

TEST(DailyNotes, FormatsMomentPatterns)
{
    const QDate day(2024, 3, 5); // a Tuesday
    EXPECT_EQ(DailyNotes::format(day, "YYYY-MM-DD"), "2024-03-05");
    EXPECT_EQ(DailyNotes::format(day, "dddd, MMMM Do YYYY"), "Tuesday, March 5th 2024");
    EXPECT_EQ(DailyNotes::format(day, "YY/M/D ddd"), "24/3/5 Tue");
    EXPECT_EQ(DailyNotes::format(day, "[Week] ww [of] YYYY"), "Week 10 of 2024");
    EXPECT_EQ(DailyNotes::format(QDate(2024, 1, 11), "Do DDDD"), "11th 011");
}

TEST(DailyNotes, FollowsTheVaultSettings)
{
    TempTree tree;
    tree.file(QString("vault/.obsidian/daily-notes.json"), R"({"folder": "Journal/", "format": "YYYY/MM/YYYY-MM-DD", "template": "Templates/Day"})");
    tree.file(QString("vault/Templates/Day.md"), "# {{title}}\n");
    const FilePath inside = tree.folder("vault/Projects/x");
    const DailyNotes::Plan plan = DailyNotes::plan(inside, QDate(2024, 5, 17));
    EXPECT_EQ(plan.url, tree.path("vault/Journal/2024/05/2024-05-17.md"));
    EXPECT_EQ(plan.text, "# 2024/05/2024-05-17\n");
    EXPECT_FALSE(plan.exists);
    tree.file(QString("vault/Journal/2024/05/2024-05-17.md"), "hi");
    EXPECT_TRUE(DailyNotes::plan(inside, QDate(2024, 5, 17)).exists);
}

TEST(DailyNotes, WithoutAVaultOrWithDamagedSettings)
{
    TempTree tree;
    const FilePath plain = tree.folder("plain");
    EXPECT_EQ(DailyNotes::plan(plain, QDate(2024, 5, 17)).url, tree.path("plain/2024-05-17.md"));
    tree.file(QString("v/.obsidian/daily-notes.json"), "{ damaged");
    const DailyNotes::Plan plan = DailyNotes::plan(tree.folder("v"), QDate(2024, 5, 17));
    EXPECT_EQ(plan.url, tree.path("v/2024-05-17.md"));
    EXPECT_TRUE(plan.text.isEmpty());
}

} // namespace
