#include "commands/NoteActions.h"

#include "notes/DailyNotes.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace orwick::actions {

namespace {

// Writes a new file; refuses to replace one that appeared meanwhile.
Status createFile(const FilePath& path, const QByteArray& bytes)
{
    if (!QDir().mkpath(QFile::decodeName(path.parent().native())))
        return failure(QStringLiteral("Couldn’t make the folder “%1”.").arg(path.parent().abbreviated()));
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0)
        return errno == EEXIST ? Status() : failure(QStringLiteral("Couldn’t create “%1”: %2.").arg(path.fileName(), QString::fromLocal8Bit(std::strerror(errno))));
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + written, size_t(bytes.size() - written));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            const int error = n < 0 ? errno : ENOSPC;
            ::close(fd);
            ::unlink(path.c_str());
            return failure(QStringLiteral("Couldn’t create “%1”: %2.").arg(path.fileName(), QString::fromLocal8Bit(std::strerror(error))));
        }
        written += n;
    }
    ::close(fd);
    return {};
}

} // namespace

Result<FilePath> ensureDailyNote(const FilePath& folder, QDate date)
{
    const DailyNotes::Plan plan = DailyNotes::plan(folder, date);
    if (!plan.exists)
        if (const Status created = createFile(plan.url, plan.text.toUtf8()); !created)
            return failure(created.error());
    return plan.url;
}

void openTodaysNote(WindowState& window)
{
    PaneState* pane = window.activePane();
    if (pane->listing())
        return;
    const auto note = ensureDailyNote(pane->url(), QDate::currentDate());
    if (!note) {
        Q_EMIT window.messageRequested(note.error());
        return;
    }
    pane->reveal({*note});
}

} // namespace orwick::actions
