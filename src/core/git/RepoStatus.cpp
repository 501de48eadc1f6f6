#include "git/RepoStatus.h"

#include "files/KeySort.h"
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

// The files in the natural order of their paths. Each path's sort key is made once, into one
// buffer, and the keys are sorted as flat arrays (a tie keeps git's order).
QList<RepoStatus::File> naturallySorted(QList<RepoStatus::File> files)
{
    std::u16string keys;
    std::vector<size_t> offsets{0};
    offsets.reserve(size_t(files.size()) + 1);
    QString folded;
    for (const RepoStatus::File& file : files) {
        folded.clear();
        appendNaturalFold(file.path, folded);
        appendNaturalSortKey(folded, keys);
        offsets.push_back(keys.size());
    }
    std::vector<SortKeyRef> entries(size_t(files.size()));
    for (size_t i = 0; i < entries.size(); ++i)
        entries[i] = {std::u16string_view(keys).substr(offsets[i], offsets[i + 1] - offsets[i]), int(i)};
    sortKeys(entries);
    QList<RepoStatus::File> sorted;
    sorted.reserve(files.size());
    for (const SortKeyRef& entry : entries)
        sorted.append(std::move(files[entry.index]));
    return sorted;
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
    const qsizetype rootLength = root.native().size();

    // The records in place: views into the output, empty pieces dropped.
    std::vector<QByteArrayView> records;
    records.reserve(size_t(output.count('\0')) + 1);
    for (qsizetype start = 0; start < output.size();) {
        qsizetype end = output.indexOf('\0', start);
        if (end < 0)
            end = output.size();
        if (end > start)
            records.emplace_back(output.constData() + start, end - start);
        start = end + 1;
    }
    // Sized once: a QHash computes every key's hash again each time it grows.
    status.files.reserve(qsizetype(records.size()));
    status.changedPaths.reserve(qsizetype(records.size()));
    // git lists a folder's files together: when a file's folder is the last one's, its ancestors
    // are recorded already.
    FilePath lastFile;
    qsizetype lastFolderLength = 0;
    for (size_t i = 0; i < records.size(); ++i) {
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
        const char x = record[0];
        const char y = record[1];
        const QByteArrayView path = record.sliced(3);
        QByteArray renamedFrom;
        if (x == 'R' || x == 'C') {
            ++i; // the source of the rename or copy
            if (x == 'R' && i < records.size())
                renamedFrom = records[i].toByteArray();
        }
        const FilePath file = root.child(path);
        if (!root.isAncestorOf(file))
            continue; // git names paths below the root; a mark never goes above it
        if (x == '!' && y == '!') {
            ignored->insert(file);
            continue;
        }
        const Change change = changeOf(QLatin1Char(x), QLatin1Char(y));
        status.files.append({QString::fromUtf8(path), change, x != ' ' && x != '?', y != ' ', path.toByteArray(), renamedFrom});
        status.changedPaths.insert(file, change);
        const QByteArrayView folder = QByteArrayView(file.native()).first(std::max(file.native().lastIndexOf('/'), qsizetype(0)));
        if (folder == QByteArrayView(lastFile.native()).first(lastFolderLength))
            continue;
        lastFile = file; // shares the bytes
        lastFolderLength = folder.size();
        // A folder already recorded has all its ancestors recorded too.
        for (FilePath above = file.parent(); above.native().size() > rootLength; above = above.parent()) {
            if (status.foldersWithChanges.contains(above))
                break;
            status.foldersWithChanges.insert(above);
        }
    }
    status.ignored.paths = std::move(ignored);
    status.files = naturallySorted(std::move(status.files));
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
