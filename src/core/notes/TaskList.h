#pragma once
// TaskList: every task in the notes under a folder (sub-folders included, hidden ones such as
// ".obsidian" and ".git" skipped), each with what its text says (TaskDates), and the headings a
// list of tasks is grouped under by due date: "Overdue" for open tasks due before today, then
// the date groups of the file list ("Today", "Upcoming", "Yesterday"…, DateGroup), and "No due
// date". Notes that can't be read or aren't UTF-8 are listed by their sentence and skipped,
// never guessed at. Toggling a listed task checks first that its line still holds the text that
// was listed, so a note changed meanwhile is refused rather than a different line flipped.
// Pure apart from reading the notes; safe on any thread.

#include "base/CancelFlag.h"
#include "notes/NoteParser.h"
#include "notes/TaskDates.h"

namespace orwick {

struct ListedTask {
    NoteTask task;
    TaskDates dates;
    bool operator==(const ListedTask&) const = default;
};

struct TaskList {
    FilePath folder;
    QList<ListedTask> tasks;     // notes in path order, tasks in line order
    QStringList problems;        // one sentence per note that couldn't be read
    int notes = 0;               // notes read, with tasks or without

    // How many notes the listed tasks are in.
    int notesWithTasks() const;

    // Nothing when cancelled.
    static std::optional<TaskList> collect(const FilePath& folder, bool openOnly, const CancelFlag* cancel = nullptr);

    // The heading of a task by its due date, relative to `today`.
    static QString groupTitle(const ListedTask& task, QDate today);
    struct Group {
        QString title;
        QList<int> tasks; // indexes into `tasks`, by due date then note order
    };
    // The groups in showing order: "Overdue", "Today", "Upcoming", the past groups from newest,
    // "No due date"; only those with tasks.
    QList<Group> groups(QDate today) const;
};

// The bytes of a note with a listed task toggled, refused with a sentence when the task's line no
// longer holds the listed text (the note changed since it was listed).
[[nodiscard]] Result<QByteArray> toggleListedTask(const QByteArray& noteBytes, const NoteTask& task, QDate today);

} // namespace orwick
