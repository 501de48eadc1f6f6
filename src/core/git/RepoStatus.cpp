#include "git/RepoStatus.h"

#include "git/StatusParser.h"

#include <algorithm>
#include <climits>
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

namespace {

// The number after the first "<word> " that has digits right after it ("ahead 2"), like the
// pattern "ahead (\d+)"; 0 when there is none. A plain scan: a regular expression costs a
// compile on a program's first status read.
int countAfter(const QString& line, QLatin1StringView word)
{
    for (qsizetype at = line.indexOf(word); at >= 0; at = line.indexOf(word, at + 1)) {
        qsizetype end = at + word.size();
        qint64 value = 0;
        while (end < line.size() && line[end] >= u'0' && line[end] <= u'9') {
            value = std::min<qint64>(value * 10 + (line[end++].unicode() - u'0'), qint64(INT_MAX) + 1);
        }
        if (end > at + word.size())
            return value > INT_MAX ? 0 : int(value); // too big to be a count: none
    }
    return 0;
}

} // namespace

BranchLine parseBranch(const QString& line)
{
    BranchLine result;
    QString rest = line;
    rest.remove(QStringLiteral("No commits yet on "));
    if (rest.startsWith(QLatin1StringView("## ")))
        rest = rest.mid(3);
    const QString word = rest.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
    const qsizetype dots = word.indexOf(QLatin1StringView("..."));
    result.branch = dots < 0 ? word : word.left(dots);
    result.ahead = countAfter(line, QLatin1StringView("ahead "));
    result.behind = countAfter(line, QLatin1StringView("behind "));
    return result;
}

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
    StatusParser parser(root);
    parser.feed(output);
    return parser.finish();
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
