#include "terminal/TerminalSession.h"

#include "terminal/LoginShell.h"
#include "terminal/PtyProcess.h"
#include "terminal/ShellText.h"

#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace orwick {

namespace {
constexpr qsizetype kReadChunk = 64 * 1024;
constexpr qint64 kSliceMs = 8;                    // output read per wake-up, then the event loop runs
constexpr qsizetype kSliceBytes = 4 * 1024 * 1024;
constexpr qsizetype kWriteChunk = 16 * 1024;      // a paste goes in pieces of this
constexpr int kReapPollMs = 50;                   // where the kernel gives no pidfd

// The folder with its links resolved, as the kernel gives a working folder; empty when it is gone.
QByteArray resolved(const FilePath& folder)
{
    char* path = folder.isEmpty() ? nullptr : ::realpath(folder.c_str(), nullptr);
    const QByteArray bytes(path);
    ::free(path);
    return bytes;
}
} // namespace

TerminalSession::TerminalSession(const Options& options, QObject* parent)
    : QObject(parent), m_folder(options.folder), m_workingFolder(resolved(options.folder))
{
    m_screen = std::make_unique<TerminalScreen>(options.rows, options.cols, [this](QByteArrayView bytes) { write(bytes); },
                                                options.scrollbackLines);
    m_announcedTitle = title();
    m_announcedFolder = m_folder;
    PtyProcess::Launch launch;
    if (options.command && !options.command->isEmpty()) {
        launch.program = options.command->first();
        launch.arguments = options.command->mid(1);
    } else {
        launch.program = loginShell::program();
        const qsizetype slash = launch.program.lastIndexOf('/');
        launch.argv0 = launch.program.mid(slash + 1);
    }
    launch.folder = options.folder.native();
    launch.environment = loginShell::environment(launch.folder);
    launch.rows = m_screen->rows();
    launch.cols = m_screen->cols();
    auto started = PtyProcess::start(launch);
    if (!started) {
        m_failure = started.error();
        QMetaObject::invokeMethod(this, [this] { finish(127); }, Qt::QueuedConnection);
        return;
    }
    m_process = std::move(*started);
    m_readNotifier = new QSocketNotifier(qintptr(m_process->masterFd()), QSocketNotifier::Read, this);
    connect(m_readNotifier, &QSocketNotifier::activated, this, &TerminalSession::readOutput);
    m_writeNotifier = new QSocketNotifier(qintptr(m_process->masterFd()), QSocketNotifier::Write, this);
    m_writeNotifier->setEnabled(false);
    connect(m_writeNotifier, &QSocketNotifier::activated, this, &TerminalSession::writePending);
    if (m_process->exitFd() >= 0) {
        m_exitNotifier = new QSocketNotifier(qintptr(m_process->exitFd()), QSocketNotifier::Read, this);
        connect(m_exitNotifier, &QSocketNotifier::activated, this, &TerminalSession::shellEnded);
    } else {
        auto* poll = new QTimer(this);
        connect(poll, &QTimer::timeout, this, [this] {
            if (isRunning())
                shellEnded(); // reads what is there and finishes once the shell has ended
        });
        poll->start(kReapPollMs);
    }
}

TerminalSession::~TerminalSession() = default; // the PtyProcess hangs up and hands the child on

pid_t TerminalSession::pid() const { return m_process ? m_process->pid() : -1; }

QString TerminalSession::title() const
{
    if (!m_screen->title().isEmpty())
        return m_screen->title();
    return m_folder.isEmpty() ? QStringLiteral("Terminal") : m_folder.isRoot() ? QStringLiteral("/") : m_folder.fileName();
}

void TerminalSession::readOutput()
{
    if (!m_process || m_outputClosed)
        return;
    QElapsedTimer slice;
    slice.start();
    qsizetype total = 0;
    char buffer[kReadChunk];
    while (true) {
        const ssize_t got = ::read(m_process->masterFd(), buffer, sizeof buffer);
        if (got > 0) {
            const QByteArrayView bytes(buffer, qsizetype(got));
            const QList<FilePath> folders = m_reports.scan(bytes);
            m_screen->feed(bytes);
            for (const FilePath& folder : folders) {
                m_folder = folder;
                Q_EMIT folderReported(folder);
            }
            total += got;
            if (total >= kSliceBytes || slice.elapsed() >= kSliceMs)
                break; // the notifier wakes us again for the rest
            continue;
        }
        if (got < 0 && errno == EINTR)
            continue;
        if (got == 0 || (got < 0 && errno != EAGAIN)) {
            // EIO: every holder of the terminal's other side closed it.
            m_outputClosed = true;
            m_readNotifier->setEnabled(false);
        }
        break;
    }
    if (total > 0) {
        followWorkingFolder();
        Q_EMIT outputArrived();
        announceTitle();
    }
}

void TerminalSession::followWorkingFolder()
{
    const QByteArray now = m_process ? m_process->workingFolder() : QByteArray();
    if (now.isEmpty() || now == m_workingFolder)
        return; // no `cd` since: what was reported or sent stays
    m_workingFolder = now;
    if (resolved(m_folder) == now)
        return; // the reported folder itself, maybe through a link
    m_folder = FilePath::fromNative(now);
    Q_EMIT folderReported(m_folder);
}

void TerminalSession::announceTitle()
{
    const QString now = title();
    if (now == m_announcedTitle && m_folder == m_announcedFolder)
        return;
    m_announcedTitle = now;
    m_announcedFolder = m_folder;
    Q_EMIT titleChanged();
}

void TerminalSession::write(QByteArrayView bytes)
{
    if (!m_process || !isRunning() || bytes.isEmpty())
        return;
    if (m_pendingOffset > 0 && m_pendingOffset == m_pending.size()) {
        m_pending.clear();
        m_pendingOffset = 0;
    }
    m_pending.append(bytes);
    writePending();
}

void TerminalSession::writePending()
{
    while (m_process && m_pendingOffset < m_pending.size()) {
        const qsizetype piece = std::min(kWriteChunk, m_pending.size() - m_pendingOffset);
        const ssize_t written = ::write(m_process->masterFd(), m_pending.constData() + m_pendingOffset, size_t(piece));
        if (written > 0) {
            m_pendingOffset += written;
            continue;
        }
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0 && errno != EAGAIN) {
            m_pending.clear(); // the program is gone; its input with it
            m_pendingOffset = 0;
        }
        break;
    }
    const bool more = m_pendingOffset < m_pending.size();
    if (!more) {
        m_pending.clear();
        m_pendingOffset = 0;
    } else if (m_pendingOffset > 1024 * 1024) {
        m_pending.remove(0, m_pendingOffset);
        m_pendingOffset = 0;
    }
    if (m_writeNotifier)
        m_writeNotifier->setEnabled(more && isRunning());
}

void TerminalSession::resize(int rows, int cols)
{
    m_screen->resize(rows, cols);
    if (m_process && isRunning())
        m_process->resize(m_screen->rows(), m_screen->cols());
    Q_EMIT outputArrived(); // the screen changed shape
}

bool TerminalSession::isIdleAtPrompt() const
{
    if (!m_process || !isRunning())
        return false;
    const pid_t foreground = m_process->foregroundGroup();
    return foreground > 0 && foreground == m_process->pid();
}

bool TerminalSession::changeDirectory(const FilePath& folder)
{
    if (folder.isEmpty() || folder == m_folder || !isIdleAtPrompt())
        return false;
    const auto command = shellText::changeDirectory(folder);
    if (!command)
        return false;
    write(*command);
    m_folder = folder;
    announceTitle();
    return true;
}

void TerminalSession::hangUp()
{
    if (m_process && isRunning())
        m_process->hangUp();
}

void TerminalSession::shellEnded()
{
    if (!m_process || !isRunning())
        return;
    // The last words of the shell are still in the terminal: read them first.
    for (int slice = 0; slice < 64 && !m_outputClosed; ++slice) {
        readOutput();
        int available = 0;
        if (::ioctl(m_process->masterFd(), FIONREAD, &available) != 0 || available <= 0)
            break;
    }
    if (const auto status = m_process->reap())
        finish(*status);
}

void TerminalSession::finish(int status)
{
    if (m_status)
        return;
    m_status = status;
    for (QSocketNotifier* notifier : {m_readNotifier, m_writeNotifier, m_exitNotifier})
        if (notifier)
            notifier->setEnabled(false);
    m_pending.clear();
    m_pendingOffset = 0;
    Q_EMIT outputArrived();
    Q_EMIT finished(status);
}

} // namespace orwick

#include "moc_TerminalSession.cpp"
