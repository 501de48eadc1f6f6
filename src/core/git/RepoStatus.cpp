#include "git/RepoStatus.h"

#include "git/GitFolder.h"
#include "git/StatusParser.h"
#include "git/StatusRecords.h"


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
    const std::string_view keyword = changeKeyword(change);
    return QString::fromLatin1(keyword.data(), qsizetype(keyword.size()));
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
    const QByteArray bytes = line.toUtf8();
    const BranchInfo info = parseBranchLine(std::string_view(bytes.constData(), size_t(bytes.size())));
    return {QString::fromStdString(info.branch), info.ahead, info.behind};
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
    const QByteArray& native = root.native();
    return FilePath::fromNative(QByteArray::fromStdString(gitFolderOf(std::string_view(native.constData(), size_t(native.size())))));
}

std::optional<QString> operationInProgress(const FilePath& root)
{
    const QByteArray& native = root.native();
    const std::string_view operation = operationUnderWay(std::string_view(native.constData(), size_t(native.size())));
    if (operation.empty())
        return std::nullopt;
    return QString::fromLatin1(operation.data(), qsizetype(operation.size()));
}

} // namespace orwick
