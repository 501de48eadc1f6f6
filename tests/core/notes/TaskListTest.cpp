// Tasks gathered from a folder of real notes (sub-folders, hidden folders skipped, notes that
// aren't UTF-8 reported), grouped by due date, toggled only while their line is as listed; and
// new notes named from their title with the filters' and the view's values.

#include "notes/NewNote.h"
#include "notes/TaskList.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>
#include <unistd.h>

using namespace orwick;
using orwick::test::TempTree;

namespace {

TEST(TaskList, GathersTasksUnderAFolder)
{
    TempTree tree;
    tree.file(QString("v/a.md"), "- [ ] pay 📅 2024-05-10 ⏫\n- [x] paid ✅ 2024-05-01\n");
    tree.file(QString("v/sub/b.md"), "* [ ] read 🔁 every fortnight-ish\n");
    tree.file(QString("v/.obsidian/c.md"), "- [ ] hidden\n");
    tree.file(QString("v/notes.txt"), "- [ ] not a note\n");
    const FilePath notUtf8 = tree.file(QByteArray("v/\xff bad.md"), "- [ ] \xff\n");
    const auto list = TaskList::collect(tree.path("v"), false);
    ASSERT_TRUE(list.has_value());
    ASSERT_EQ(list->tasks.size(), 3);
    EXPECT_EQ(list->tasks[0].task.note, tree.path("v/a.md"));
    EXPECT_EQ(list->tasks[0].dates.title, "pay");
    EXPECT_EQ(list->tasks[0].dates.priority, TaskDates::Priority::high);
    EXPECT_TRUE(list->tasks[1].task.isDone);
    EXPECT_EQ(list->tasks[2].task.note, tree.path("v/sub/b.md"));
    EXPECT_EQ(list->tasks[2].dates.recurrence, "every fortnight-ish"); // unread, kept as written
    EXPECT_EQ(list->notes, 2);
    ASSERT_EQ(list->problems.size(), 1);
    EXPECT_TRUE(list->problems[0].contains("UTF-8")) << list->problems[0].toStdString();
    const auto open = TaskList::collect(tree.path("v"), true);
    EXPECT_EQ(open->tasks.size(), 2);
    ::unlink(notUtf8.c_str()); // a name Qt's clean-up can't spell
}

TEST(TaskList, GroupsByDueDate)
{
    TaskList list;
    auto task = [](bool done, std::optional<QDate> due) { return ListedTask{NoteTask{{}, 1, "t", done, {}}, TaskDates{"t", due}}; };
    const QDate today(2024, 5, 15); // a Wednesday
    list.tasks = {task(false, QDate(2024, 5, 20)), task(false, QDate(2024, 5, 1)), task(false, std::nullopt),
                  task(false, today), task(true, QDate(2024, 5, 14)), task(false, QDate(2024, 5, 16))};
    const auto groups = list.groups(today);
    QStringList titles;
    for (const auto& group : groups)
        titles.append(group.title);
    EXPECT_EQ(titles, (QStringList{"Overdue", "Today", "Upcoming", "Yesterday", "No due date"}));
    EXPECT_EQ(groups[2].tasks, (QList<int>{5, 0})); // by due date
}

TEST(TaskList, ToggleRefusesANoteChangedSinceItWasListed)
{
    const NoteTask task{FilePath::fromNative("/n/a.md"), 2, "call", false, {}};
    const QDate today(2024, 5, 15);
    EXPECT_EQ(toggleListedTask("# A\n- [ ] call\n", task, today).value(), "# A\n- [x] call ✅ 2024-05-15\n");
    EXPECT_EQ(toggleListedTask("# A\n- [ ] call\r\n", task, today).value(), "# A\n- [x] call ✅ 2024-05-15\r\n");
    const auto moved = toggleListedTask("# A\n\n- [ ] call\n", task, today);
    ASSERT_FALSE(moved.has_value());
    EXPECT_EQ(moved.error(), "Couldn’t change “a.md”: it changed on disk since it was read.");
    EXPECT_FALSE(toggleListedTask("# A\n- [x] call\n", task, today).has_value()); // already done elsewhere
    EXPECT_FALSE(toggleListedTask("# A\n- [ ] \xff\n", task, today).has_value());
}

TEST(NewNote, NamedFromItsTitleWithTheViewsValues)
{
    EXPECT_EQ(NewNote::fileName("Plan: Q3/Q4"), "Plan: Q3 Q4.md");
    EXPECT_EQ(NewNote::fileName("  ..hidden\tname "), "hidden name.md");
    EXPECT_EQ(NewNote::fileName(""), "untitled.md");
    EXPECT_LE(NewNote::fileName(QString(300, u'é')).size(), 255);

    FolderColumns settings;
    settings.filters = {PropertyFilter{QUuid::createUuid(), "status", PropertyFilter::Condition::equals, " todo "},
                        PropertyFilter{QUuid::createUuid(), "tags", PropertyFilter::Condition::contains, "work"},
                        PropertyFilter{QUuid::createUuid(), "urgent", PropertyFilter::Condition::checked, ""},
                        PropertyFilter{QUuid::createUuid(), "due", PropertyFilter::Condition::before, "2024-01-01"},
                        PropertyFilter{QUuid::createUuid(), "owner", PropertyFilter::Condition::equals, ""}};
    const PropertyMap values = NewNote::valuesFromFilters(settings, [](const QString& key) {
        return key == "tags" ? PropertyType::list : key == "urgent" ? PropertyType::checkbox : PropertyType::text;
    });
    EXPECT_EQ(values, (PropertyMap{{"status", PropertyValue::ofText("todo")}, {"tags", PropertyValue::ofList({"work"})},
                                   {"urgent", PropertyValue::ofBool(true)}}));

    TempTree tree;
    tree.file(QString("n/Plan.md"), "taken\n");
    const auto plan = NewNote::plan(tree.path("n"), "Plan", {{"status", PropertyValue::ofText("todo")}});
    ASSERT_TRUE(plan.has_value());
    EXPECT_EQ(plan->path, tree.path("n/Plan 2.md"));
    EXPECT_EQ(plan->bytes, "---\nstatus: todo\n---\n# Plan\n");
    EXPECT_EQ(NewNote::plan(tree.path("n"), "", {})->bytes, "");
}

} // namespace
