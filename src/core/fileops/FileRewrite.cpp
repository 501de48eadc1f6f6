// ChangeRunner's rewrites: a file's contents replaced by an edit of them (a task ticked in a
// note, a property changed), the file itself kept (owner, mode, attributes, links; see
// FileReplace.h), and the exact old contents put back on undo while the file still holds what
// the rewrite wrote. A file that is gone is skipped; one that isn't a regular file, is larger
// than FileOperations::kLargestRewrite or is read-only is refused before it is read.

#include "base/Formatting.h"
#include "fileops/FileChange.h"
#include "fileops/FileOperations.h"
#include "fileops/FileReplace.h"
#include "fileops/OperationTexts.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <sys/stat.h>

namespace orwick {

namespace {

QString refusal(const FilePath& file, const QString& reason)
{
    return QStringLiteral("Couldn’t change %1: %2.").arg(quoted(file.fileName()), reason);
}

} // namespace

// One file read and edited for a rewrite, not yet written.
struct ChangeRunner::ReadEdit {
    FilePath target;          // where the file really lives (a link is followed)
    notefile::FileBytes read; // what it holds
    QByteArray edited;        // what it is to hold
};

std::optional<ChangeRunner::ReadEdit> ChangeRunner::readAndEdit(const FilePath& file, const Rewrite& edit, bool* done)
{
    *done = false;
    // A link is followed, so it stays a link to the rewritten file.
    char resolved[PATH_MAX];
    const FilePath target = ::realpath(file.c_str(), resolved) ? FilePath::fromNative(resolved) : file;
    struct stat st {};
    if (::stat(target.c_str(), &st) != 0 && errno == ENOENT) {
        ++m_report.skipped;
        return std::nullopt;
    }
    if (S_ISREG(st.st_mode) && st.st_size > FileOperations::kLargestRewrite) {
        fail(refusal(file, QStringLiteral("it is larger than %1").arg(formatByteCount(FileOperations::kLargestRewrite))));
        return std::nullopt;
    }
    if (const Status writable = notefile::checkWritable(target); !writable) {
        fail(writable.error());
        return std::nullopt;
    }
    auto read = notefile::readFile(target);
    if (!read) {
        fail(read.error());
        return std::nullopt;
    }
    auto edited = edit(read->bytes);
    if (!edited) {
        fail(edited.error());
        return std::nullopt;
    }
    if (*edited == read->bytes) {
        *done = true; // nothing to write
        return std::nullopt;
    }
    return ReadEdit{target, std::move(*read), std::move(*edited)};
}

void ChangeRunner::recordRewrite(ReadEdit&& made)
{
    FileChange change{FileChange::Kind::rewritten, made.target, {}, {}};
    change.contentsBefore = std::move(made.read.bytes);
    change.contentsAfter = std::move(made.edited);
    m_report.changes.push_back(std::move(change));
}

bool ChangeRunner::rewrite(const FilePath& file, const Rewrite& edit)
{
    bool done = false;
    std::optional<ReadEdit> made = readAndEdit(file, edit, &done);
    if (!made)
        return done;
    if (const auto written = filereplace::replaceFile(made->target, made->read.bytes, made->read.version, made->edited);
        !written) {
        fail(written.error());
        return false;
    }
    recordRewrite(std::move(*made));
    return true;
}

QList<bool> ChangeRunner::rewriteMany(const QList<FileEdit>& edits)
{
    QList<bool> done(edits.size(), false);
    QList<std::pair<qsizetype, ReadEdit>> pending;
    for (qsizetype i = 0; i < edits.size(); ++i) {
        if (isCancelled())
            break;
        m_progress.addFinished(1);
        bool unchanged = false;
        if (std::optional<ReadEdit> made = readAndEdit(edits[i].file, edits[i].edit, &unchanged))
            pending.append({i, std::move(*made)});
        else
            done[i] = unchanged;
    }
    QList<filereplace::Replacement> replacements;
    replacements.reserve(pending.size());
    for (const auto& [i, made] : pending)
        replacements.append({made.target, made.read.bytes, made.read.version, made.edited});
    const QList<Result<notefile::Fingerprint>> written = filereplace::replaceFiles(replacements);
    for (qsizetype k = 0; k < pending.size(); ++k) {
        if (!written[k]) {
            fail(written[k].error());
            continue;
        }
        done[pending[k].first] = true;
        recordRewrite(std::move(pending[k].second));
    }
    return done;
}

void ChangeRunner::rewriteContents(const FileChange& change, bool forward)
{
    const QByteArray& expected = forward ? change.contentsBefore : change.contentsAfter;
    const QByteArray& wanted = forward ? change.contentsAfter : change.contentsBefore;
    if (const auto swapped = filereplace::swapBytes(change.from, expected, wanted); !swapped)
        fail(swapped.error());
}

} // namespace orwick
