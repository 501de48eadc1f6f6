#include "git/GitOutputParse.h"

#include "git/GitTexts.h"

namespace orwick {

namespace {

std::optional<QDateTime> unixTime(QStringView seconds)
{
    bool ok = false;
    const qint64 value = seconds.trimmed().toLongLong(&ok);
    if (!ok)
        return std::nullopt;
    return QDateTime::fromSecsSinceEpoch(value);
}

} // namespace

QList<GitCommit> parseLog(QStringView output)
{
    QList<GitCommit> commits;
    for (QStringView record : output.split(kGitRecordSeparator)) {
        // Each record after the first starts with the line feed git puts between commits.
        while (record.startsWith(u'\n'))
            record = record.sliced(1);
        if (record.isEmpty())
            continue;
        const QList<QStringView> fields = record.split(kGitFieldSeparator);
        if (fields.size() < 5)
            continue;
        GitCommit commit;
        commit.hash = fields[0].toString();
        commit.shortHash = fields[1].toString();
        commit.author = fields[2].toString();
        commit.date = unixTime(fields[3]).value_or(QDateTime());
        // A subject never holds the separators, but keep whatever follows if one did.
        commit.subject = record.sliced(fields[4].data() - record.data()).toString();
        if (commit.hash.isEmpty())
            continue;
        commits.append(std::move(commit));
    }
    return commits;
}

QList<GitBranch> parseBranches(QStringView output)
{
    QList<GitBranch> branches;
    for (QStringView line : output.split(u'\n', Qt::SkipEmptyParts)) {
        const QList<QStringView> fields = line.split(kGitFieldSeparator);
        if (fields.size() < 4 || fields[0].isEmpty())
            continue;
        GitBranch branch;
        branch.name = fields[0].toString();
        branch.isCurrent = fields[1].trimmed() == u"*";
        if (!fields[2].isEmpty())
            branch.upstream = fields[2].toString();
        branch.date = unixTime(fields[3]);
        branches.append(std::move(branch));
    }
    return branches;
}

QList<GitStash> parseStashes(QStringView output)
{
    QList<GitStash> stashes;
    for (QStringView line : output.split(u'\n', Qt::SkipEmptyParts)) {
        const QList<QStringView> fields = line.split(kGitFieldSeparator);
        if (fields.size() < 3 || fields[0].isEmpty())
            continue;
        stashes.append({fields[0].toString(), fields[1].toString(), unixTime(fields[2])});
    }
    return stashes;
}

GitDiff readDiff(const QByteArray& bytes, int maxLines)
{
    GitDiff diff;
    qsizetype cut = -1;
    bool hasHunk = false;
    bool binaryLine = false;
    qsizetype lineStart = 0;
    while (lineStart < bytes.size()) {
        qsizetype end = bytes.indexOf('\n', lineStart);
        end = end < 0 ? bytes.size() : end + 1;
        ++diff.totalLines;
        if (diff.totalLines <= maxLines) {
            const QByteArrayView line(bytes.constData() + lineStart, end - lineStart);
            if (line.startsWith("@@"))
                hasHunk = true;
            else if (line.startsWith("Binary files ") || line.startsWith("GIT binary patch"))
                binaryLine = true;
        }
        if (diff.totalLines == maxLines)
            cut = end;
        lineStart = end;
    }
    diff.truncated = diff.totalLines > maxLines;
    diff.patch = diff.truncated ? bytes.left(cut) : bytes;
    diff.text = QString::fromUtf8(diff.patch);
    diff.isBinary = binaryLine && !hasHunk;
    if (diff.isBinary)
        diff.note = gittexts::binaryFile();
    else if (diff.truncated)
        diff.note = gittexts::diffCut(maxLines, diff.totalLines);
    return diff;
}

} // namespace orwick
