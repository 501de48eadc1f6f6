#include "notes/TaskList.h"

#include "notes/DateGroup.h"
#include "notes/NoteFile.h"
#include "platform/DirectoryReader.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringDecoder>
#include <QTimeZone>
#include <algorithm>
#include <numeric>
#include <dirent.h>

namespace orwick {

namespace {

// Every note under `folder`, in path order; hidden entries skipped, links not followed.
bool findNotes(const FilePath& folder, QList<FilePath>& notes, const CancelFlag* cancel)
{
    const auto handle = DirectoryHandle::open(folder, FollowLinks::yes);
    if (!handle)
        return true;
    std::vector<DirEntry> entries;
    if (!handle->readEntries(entries, cancel) && cancel && cancel->isCancelled())
        return false;
    std::sort(entries.begin(), entries.end(), [](const DirEntry& a, const DirEntry& b) { return a.name < b.name; });
    for (const DirEntry& entry : entries) {
        if (entry.name.startsWith('.'))
            continue;
        const FilePath path = folder.child(QByteArrayView(entry.name));
        unsigned char type = entry.type;
        if (type == DT_UNKNOWN)
            if (const auto st = statAt(handle->fd(), entry.name.constData()))
                type = st->isDirectory() ? DT_DIR : st->isRegular() ? DT_REG : DT_LNK;
        if (type == DT_DIR) {
            if (!findNotes(path, notes, cancel))
                return false;
        } else if (type == DT_REG && notefile::isNote(path)) {
            notes.append(path);
        }
    }
    return true;
}

int groupRank(const QString& title)
{
    static const QStringList order{QStringLiteral("Overdue"), QStringLiteral("Today"), QStringLiteral("Upcoming"),
                                   QStringLiteral("Yesterday"), QStringLiteral("Earlier this week"), QStringLiteral("Last week"),
                                   QStringLiteral("Earlier this month"), QStringLiteral("Last month"),
                                   QStringLiteral("Earlier this year")};
    if (const qsizetype at = order.indexOf(title); at >= 0)
        return int(at);
    if (title == QStringLiteral("No due date"))
        return 1 << 20;
    return 100 + (10000 - title.toInt()); // years, newest first
}

} // namespace

std::optional<TaskList> TaskList::collect(const FilePath& folder, bool openOnly, const CancelFlag* cancel)
{
    TaskList list;
    list.folder = folder;
    QList<FilePath> notes;
    if (!findNotes(folder, notes, cancel))
        return std::nullopt;
    for (const FilePath& note : notes) {
        if (cancel && cancel->isCancelled())
            return std::nullopt;
        const auto parsed = NoteParser::read(note);
        if (!parsed) {
            list.problems.append(parsed.error());
            continue;
        }
        ++list.notes;
        for (const NoteTask& task : parsed->tasks)
            if (!openOnly || !task.isDone)
                list.tasks.append({task, TaskDates::parse(task.text)});
    }
    return list;
}

int TaskList::notesWithTasks() const
{
    QSet<FilePath> notes;
    for (const ListedTask& entry : tasks)
        notes.insert(entry.task.note);
    return int(notes.size());
}

QString TaskList::groupTitle(const ListedTask& task, QDate today)
{
    if (!task.dates.due)
        return QStringLiteral("No due date");
    if (!task.task.isDone && *task.dates.due < today)
        return QStringLiteral("Overdue");
    const QTimeZone zone = QTimeZone::systemTimeZone();
    return DateGroup::title(QDateTime(*task.dates.due, QTime(12, 0), zone), QDateTime(today, QTime(0, 0), zone));
}

QList<TaskList::Group> TaskList::groups(QDate today) const
{
    QList<Group> result;
    QHash<QString, int> byTitle;
    QList<int> order(tasks.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [this](int a, int b) {
        const auto& da = tasks.at(a).dates.due;
        const auto& db = tasks.at(b).dates.due;
        if (da && db)
            return *da < *db;
        return da.has_value() && !db.has_value();
    });
    for (int index : order) {
        const QString title = groupTitle(tasks.at(index), today);
        auto found = byTitle.constFind(title);
        if (found == byTitle.constEnd()) {
            found = byTitle.insert(title, int(result.size()));
            result.append({title, {}});
        }
        result[*found].tasks.append(index);
    }
    std::stable_sort(result.begin(), result.end(),
                     [](const Group& a, const Group& b) { return groupRank(a.title) < groupRank(b.title); });
    return result;
}

Result<QByteArray> toggleListedTask(const QByteArray& noteBytes, const NoteTask& task, QDate today)
{
    static const QByteArray byteOrderMark("\xEF\xBB\xBF");
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(QByteArrayView(noteBytes).sliced(noteBytes.startsWith(byteOrderMark) ? 3 : 0));
    if (decoder.hasError())
        return failure(notefile::notUtf8Message(task.note));
    const QStringList lines = text.split(u'\n');
    bool same = task.line >= 1 && task.line <= lines.size();
    if (same) {
        static const QRegularExpression pattern(QStringLiteral("^\\s*[-*+]\\s+\\[([ xX])\\]\\s+(.*)$"));
        QString line = lines.at(task.line - 1);
        if (line.endsWith(u'\r'))
            line.chop(1);
        const auto match = pattern.match(line);
        same = match.hasMatch() && match.captured(2) == task.text && (match.captured(1) != u" ") == task.isDone;
    }
    if (!same)
        return failure(notefile::changedOnDiskMessage(task.note));
    return toggleTaskInBytes(noteBytes, task.line, today, task.note);
}

} // namespace orwick
