#include "git/RepoStatus.h"

#include "files/NaturalCompare.h"

#include <QRegularExpression>
#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

QString changeLetter(Change change)
{
    switch (change) {
    case Change::modified: return QStringLiteral("M");
    case Change::added: return QStringLiteral("A");
    case Change::deleted: return QStringLiteral("D");
    case Change::renamed: return QStringLiteral("R");
    case Change::untracked: return QStringLiteral("U");
    case Change::conflicted: return QStringLiteral("!");
    }
    return {};
}

QString changeTooltip(Change change)
{
    switch (change) {
    case Change::modified: return QStringLiteral("Modified since the last commit");
    case Change::added: return QStringLiteral("Added (staged)");
    case Change::deleted: return QStringLiteral("Deleted");
    case Change::renamed: return QStringLiteral("Renamed");
    case Change::untracked: return QStringLiteral("New, not yet tracked by git");
    case Change::conflicted: return QStringLiteral("Merge conflict");
    }
    return {};
}

QString changeName(Change change)
{
    switch (change) {
    case Change::modified: return QStringLiteral("modified");
    case Change::added: return QStringLiteral("added");
    case Change::deleted: return QStringLiteral("deleted");
    case Change::renamed: return QStringLiteral("renamed");
    case Change::untracked: return QStringLiteral("untracked");
    case Change::conflicted: return QStringLiteral("conflicted");
    }
    return {};
}

QString changesBelowTooltip() { return QStringLiteral("Has changes since the last commit"); }

bool IgnoredPaths::contains(const FilePath& path) const
{
    const qsizetype rootLength = root.native().size();
    if (paths->isEmpty() || path.native().size() <= rootLength)
        return false;
    for (FilePath candidate = path; candidate.native().size() > rootLength; candidate = candidate.parent()) {
        if (paths->contains(candidate))
            return true;
    }
    return false;
}

BranchLine parseBranch(const QString& line)
{
    static const QRegularExpression aheadPattern(QStringLiteral("ahead (\\d+)"));
    static const QRegularExpression behindPattern(QStringLiteral("behind (\\d+)"));
    BranchLine result;
    QString rest = line;
    rest.remove(QStringLiteral("No commits yet on "));
    if (rest.startsWith(QLatin1StringView("## ")))
        rest = rest.mid(3);
    const QString word = rest.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
    const qsizetype dots = word.indexOf(QLatin1StringView("..."));
    result.branch = dots < 0 ? word : word.left(dots);
    if (const auto match = aheadPattern.match(line); match.hasMatch())
        result.ahead = match.captured(1).toInt();
    if (const auto match = behindPattern.match(line); match.hasMatch())
        result.behind = match.captured(1).toInt();
    return result;
}

namespace {

Change changeOf(QChar x, QChar y)
{
    if (x == u'?' && y == u'?')
        return Change::untracked;
    if (x == u'U' || y == u'U' || (x == u'A' && y == u'A') || (x == u'D' && y == u'D'))
        return Change::conflicted;
    if (x == u'A')
        return Change::added;
    if (x == u'R' || x == u'C')
        return Change::renamed;
    if (x == u'D' || y == u'D')
        return Change::deleted;
    return Change::modified;
}

} // namespace

RepoStatus parseStatus(const QString& output, const FilePath& root) { return parseStatus(output.toUtf8(), root); }

FilePath RepoStatus::pathOf(const File& file) const
{
    return root.child(QByteArrayView(file.nativePath.isEmpty() ? file.path.toUtf8() : file.nativePath));
}

QList<FilePath> RepoStatus::pathsToDiscard(const File& file) const
{
    QList<FilePath> paths{pathOf(file)};
    if (!file.renamedFrom.isEmpty())
        paths.append(root.child(QByteArrayView(file.renamedFrom)));
    return paths;
}

RepoStatus parseStatus(const QByteArray& output, const FilePath& root)
{
    RepoStatus status;
    status.root = root;
    status.ignored.root = root;
    auto ignored = std::make_shared<QSet<FilePath>>();
    const QByteArray prefix = root.isRoot() ? root.native() : root.native() + '/';
    const qsizetype rootLength = root.native().size();

    const QList<QByteArrayView> records = [&] {
        QList<QByteArrayView> list;
        for (qsizetype start = 0; start < output.size();) {
            qsizetype end = output.indexOf('\0', start);
            if (end < 0)
                end = output.size();
            if (end > start)
                list.append(QByteArrayView(output.constData() + start, end - start));
            start = end + 1;
        }
        return list;
    }();
    // Sized once: a QHash computes every key's hash again each time it grows.
    status.files.reserve(records.size());
    status.changedPaths.reserve(records.size());
    for (qsizetype i = 0; i < records.size(); ++i) {
        const QByteArrayView record = records[i];
        if (record.startsWith("## ")) {
            const BranchLine branch = parseBranch(QString::fromUtf8(record));
            status.branch = branch.branch;
            status.ahead = branch.ahead;
            status.behind = branch.behind;
            continue;
        }
        if (record.size() < 4)
            continue;
        const QChar x = QLatin1Char(record[0]);
        const QChar y = QLatin1Char(record[1]);
        const QByteArrayView path = record.sliced(3);
        QByteArray renamedFrom;
        if (x == u'R' || x == u'C') {
            ++i; // the source of the rename or copy
            if (x == u'R' && i < records.size())
                renamedFrom = records[i].toByteArray();
        }
        const FilePath file = FilePath::fromNative(QByteArray(prefix).append(path));
        if (!root.isAncestorOf(file))
            continue; // git names paths below the root; a mark never goes above it
        if (x == u'!' && y == u'!') {
            ignored->insert(file);
            continue;
        }
        const Change change = changeOf(x, y);
        status.files.append({QString::fromUtf8(path), change, x != u' ' && x != u'?', y != u' ', path.toByteArray(), renamedFrom});
        status.changedPaths.insert(file, change);
        // A folder already recorded has all its ancestors recorded too.
        for (FilePath folder = file.parent(); folder.native().size() > rootLength; folder = folder.parent()) {
            if (status.foldersWithChanges.contains(folder))
                break;
            status.foldersWithChanges.insert(folder);
        }
    }
    status.ignored.paths = std::move(ignored);

    // Sort by the natural order of the paths, with each key made once.
    std::vector<std::pair<NaturalKey, qsizetype>> keys;
    keys.reserve(size_t(status.files.size()));
    for (qsizetype i = 0; i < status.files.size(); ++i)
        keys.emplace_back(naturalKey(status.files[i].path), i);
    std::stable_sort(keys.begin(), keys.end(), [](const auto& a, const auto& b) { return naturalCompare(a.first, b.first) < 0; });
    QList<RepoStatus::File> sorted;
    sorted.reserve(status.files.size());
    for (const auto& key : keys)
        sorted.append(std::move(status.files[key.second]));
    status.files = std::move(sorted);
    return status;
}

FilePath gitFolder(const FilePath& root)
{
    const FilePath dotGit = root.child(QByteArrayView(".git"));
    struct stat info;
    if (stat(dotGit.c_str(), &info) != 0 || S_ISDIR(info.st_mode))
        return dotGit;
    // A worktree or submodule: ".git" is a file reading "gitdir: <path>".
    char buffer[4096 + 16];
    const int fd = open(dotGit.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return dotGit;
    const ssize_t n = read(fd, buffer, sizeof buffer);
    close(fd);
    const QByteArray line = QByteArray(buffer, n > 0 ? n : 0).split('\n').value(0).trimmed();
    if (!line.startsWith("gitdir: ") || line.size() == 8)
        return dotGit;
    const QByteArray target = line.mid(8);
    return target.startsWith('/') ? FilePath::fromNative(target) : FilePath::fromNative(root.native() + '/' + target);
}

std::optional<QString> operationInProgress(const FilePath& root)
{
    const FilePath folder = gitFolder(root);
    const auto exists = [&](const char* name) { return access(folder.child(QByteArrayView(name)).c_str(), F_OK) == 0; };
    if (exists("rebase-merge") || exists("rebase-apply"))
        return QStringLiteral("Rebasing");
    if (exists("MERGE_HEAD"))
        return QStringLiteral("Merging");
    if (exists("CHERRY_PICK_HEAD"))
        return QStringLiteral("Cherry-picking");
    return std::nullopt;
}

} // namespace orwick
