#include "git/Git.h"

#include "app/Settings.h"
#include "git/RepositoryRoot.h"
#include "git/StatusReader.h"

#include <QThread>

namespace orwick {

namespace {
const QString hideIgnoredKey = QStringLiteral("hideIgnored");
}

#define ORWICK_ASSERT_GUI_THREAD() Q_ASSERT(QThread::currentThread() == thread())

Git::Git(QObject* parent) : Git(gitExecutable(), parent) {}

Git::Git(std::optional<FilePath> executable, QObject* parent) : QObject(parent), m_executable(std::move(executable))
{
    m_hidesIgnored = readSettingsBool(*openSettings(), hideIgnoredKey, false);
}

Git::~Git() = default;

std::optional<FilePath> Git::root(const FilePath& folder)
{
    ORWICK_ASSERT_GUI_THREAD();
    auto found = m_roots.constFind(folder);
    if (found == m_roots.cend())
        found = m_roots.insert(folder, findRepositoryRoot(folder));
    return *found;
}

const RepoStatus* Git::status(const FilePath& folder)
{
    const auto repoRoot = root(folder);
    if (!repoRoot)
        return nullptr;
    const auto found = m_repos.constFind(*repoRoot);
    return found == m_repos.cend() ? nullptr : &*found;
}

void Git::refresh(const FilePath& folder)
{
    ORWICK_ASSERT_GUI_THREAD();
    if (!m_executable)
        return;
    const auto repoRoot = root(folder);
    if (!repoRoot)
        return;
    const FilePath repository = *repoRoot;
    const TaskSlot::Ticket ticket = m_running[repository].start();
    runInBackground(
        this, [executable = *m_executable, repository, token = ticket.token] { return readStatus(executable, repository, token.get()); },
        [this, repository, ticket](Result<RepoStatus> status) {
            const auto slot = m_running.find(repository);
            if (slot == m_running.end() || !slot->second.isCurrent(ticket))
                return;
            slot->second.finish(ticket);
            apply(repository, std::move(status));
        });
}

bool Git::isRefreshing(const FilePath& root) const
{
    const auto slot = m_running.find(root);
    return slot != m_running.end() && slot->second.isRunning();
}

QString Git::statusFailure(const FilePath& folder)
{
    const auto repoRoot = root(folder);
    return repoRoot ? m_failures.value(*repoRoot) : QString();
}

void Git::apply(const FilePath& root, Result<RepoStatus> status)
{
    const QString failure = status ? QString() : status.error();
    const bool failureChanged = m_failures.value(root) != failure;
    if (failure.isEmpty())
        m_failures.remove(root);
    else
        m_failures.insert(root, failure);

    const auto kept = m_repos.find(root);
    bool repoChanged = true;
    if (status) {
        if (kept != m_repos.end() && *kept == *status)
            repoChanged = false;
        else
            m_repos.insert(root, std::move(*status));
    } else if (kept == m_repos.end()) {
        repoChanged = false;
    } else {
        m_repos.erase(kept);
    }
    if (repoChanged || failureChanged)
        Q_EMIT statusChanged(root);
}

Git::RowMark Git::rowMark(const FilePath& path) const
{
    ORWICK_ASSERT_GUI_THREAD();
    // The statuses are read as they are (no table of every repository's marks is made when one
    // arrives: that would cost the GUI thread a hash of thousands of paths per status).
    RowMark mark;
    for (const RepoStatus& status : m_repos) {
        if (!status.root.isAncestorOf(path))
            continue;
        if (!mark.change) {
            if (const auto change = status.changedPaths.constFind(path); change != status.changedPaths.cend())
                mark.change = *change;
        }
        mark.changesBelow = mark.changesBelow || status.foldersWithChanges.contains(path);
    }
    return mark;
}

IgnoredPaths Git::ignoredPaths(const FilePath& folder)
{
    if (const RepoStatus* kept = status(folder))
        return kept->ignored;
    return {};
}

bool Git::isIgnored(const FilePath& path)
{
    if (m_repos.isEmpty())
        return false;
    return ignoredPaths(path.parent()).contains(path);
}

void Git::setHidesIgnored(bool hides)
{
    ORWICK_ASSERT_GUI_THREAD();
    if (hides == m_hidesIgnored)
        return;
    m_hidesIgnored = hides;
    openSettings()->setValue(hideIgnoredKey, hides);
    Q_EMIT hidesIgnoredChanged(hides);
}

void Git::setBusy(const FilePath& root, const QString& label)
{
    ORWICK_ASSERT_GUI_THREAD();
    if (m_busy.value(root) == label && m_busy.contains(root))
        return;
    m_busy.insert(root, label);
    Q_EMIT busyChanged(root);
}

void Git::clearBusy(const FilePath& root)
{
    ORWICK_ASSERT_GUI_THREAD();
    if (m_busy.remove(root))
        Q_EMIT busyChanged(root);
}

} // namespace orwick

#include "moc_Git.cpp"
