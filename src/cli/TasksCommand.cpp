// orwick-cli tasks DIR [--open]: every task in the notes under a folder, read as the Tasks view
// reads them (TaskList), one tab-separated line each: the note (relative to DIR), the line, "done"
// or "open", the due, scheduled and start dates, the priority, the recurrence (each "-" when
// absent) and the title without markers. Notes that can't be read are said on standard error,
// then how many notes the tasks are in and how many notes were read.

#include "cli/CliCommand.h"
#include "cli/CliPaths.h"
#include "notes/NoteFile.h"
#include "notes/TaskList.h"

#include <QElapsedTimer>
#include <cstdio>

namespace orwick::cli {
namespace {

QString priorityName(TaskDates::Priority priority)
{
    switch (priority) {
    case TaskDates::Priority::lowest: return QStringLiteral("lowest");
    case TaskDates::Priority::low: return QStringLiteral("low");
    case TaskDates::Priority::normal: return QStringLiteral("normal");
    case TaskDates::Priority::medium: return QStringLiteral("medium");
    case TaskDates::Priority::high: return QStringLiteral("high");
    case TaskDates::Priority::highest: return QStringLiteral("highest");
    }
    return {};
}

QString field(const std::optional<QDate>& date) { return date ? propertytext::formatDate(*date) : QStringLiteral("-"); }

// Tabs and line breaks in a title would break the line's columns.
QString flat(QString text) { return text.replace(u'\t', u' ').replace(u'\r', u' '); }

int tasks(const Arguments& arguments)
{
    std::optional<QByteArray> folderArgument;
    bool openOnly = false;
    for (const QByteArray& argument : arguments) {
        if (argument == "--open")
            openOnly = true;
        else if (!folderArgument)
            folderArgument = argument;
        else
            return usageError(QStringLiteral("tasks takes one folder; usage: orwick-cli tasks DIR [--open]"));
    }
    if (!folderArgument)
        return usageError(QStringLiteral("usage: orwick-cli tasks DIR [--open]"));
    if (const auto problem = problemWith(*folderArgument, Expect::folder)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    const FilePath folder = pathArgument(*folderArgument);
    QElapsedTimer timer;
    timer.start();
    const TaskList list = *TaskList::collect(folder, openOnly);
    const qint64 elapsed = timer.elapsed();

    const QByteArray prefix = folder.native().endsWith('/') ? folder.native() : folder.native() + '/';
    QByteArray buffer;
    for (const ListedTask& entry : list.tasks) {
        QByteArray note = entry.task.note.native();
        if (note.startsWith(prefix))
            note.remove(0, prefix.size());
        buffer += note; // the name's own bytes, UTF-8 or not
        const QStringList fields{QString::number(entry.task.line), entry.task.isDone ? QStringLiteral("done") : QStringLiteral("open"),
                                 field(entry.dates.due), field(entry.dates.scheduled), field(entry.dates.start),
                                 priorityName(entry.dates.priority), entry.dates.recurrence ? flat(*entry.dates.recurrence) : QStringLiteral("-"),
                                 flat(entry.dates.title)};
        buffer += '\t' + fields.join(u'\t').toUtf8() + '\n';
        if (buffer.size() > (1 << 20)) {
            fwrite(buffer.constData(), 1, size_t(buffer.size()), stdout);
            buffer.clear();
        }
    }
    fwrite(buffer.constData(), 1, size_t(buffer.size()), stdout);
    fflush(stdout);
    for (const QString& problem : list.problems)
        err() << problem << Qt::endl;
    // The notes the printed tasks are in, then every note read (most notes hold no task).
    err() << counted(list.tasks.size(), "task") << " in " << counted(list.notesWithTasks(), "note") << "; "
          << counted(list.notes, "note") << " read in " << elapsed << " ms" << Qt::endl;
    return list.problems.isEmpty() ? 0 : 1;
}

const CliRegistration registration({QStringLiteral("tasks"), QStringLiteral("tasks DIR [--open]"),
                                    QStringLiteral("every task in the notes under a folder"), tasks,
                                    QStringLiteral("One line a task, fields split by tabs: note, line, done or open, due,\n"
                                                   "scheduled and start dates, priority, recurrence (\"-\" when absent), title.\n"
                                                   "--open leaves out the tasks that are done. Exit code 1 when a note\n"
                                                   "couldn't be read (said on standard error; the other tasks are printed).\n"
                                                   "Standard error ends with how many notes hold the tasks and how many\n"
                                                   "notes were read.")});

} // namespace
} // namespace orwick::cli
