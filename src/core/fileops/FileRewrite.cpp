// ChangeRunner's rewrites: a file's contents replaced by an edit of them (a task ticked in a
// note, a property changed), the file itself kept (owner, mode, attributes, links; see
// FileReplace.h), and the exact old contents put back on undo while the file still holds what
// the rewrite wrote. A file that is gone is skipped; one that isn't a regular file, is larger
// than FileOperations::kLargestRewrite or is read-only is refused before it is read.

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

bool ChangeRunner::rewrite(const FilePath& file, const Rewrite& edit)
{
    // A link is followed, so it stays a link to the rewritten file.
    char resolved[PATH_MAX];
    const FilePath target = ::realpath(file.c_str(), resolved) ? FilePath::fromNative(resolved) : file;
    struct stat st {};
    if (::stat(target.c_str(), &st) != 0 && errno == ENOENT) {
        ++m_report.skipped;
        return false;
    }
    if (S_ISREG(st.st_mode) && st.st_size > FileOperations::kLargestRewrite) {
        fail(refusal(file, QStringLiteral("it is larger than %1 MB").arg(FileOperations::kLargestRewrite >> 20)));
        return false;
    }
    if (const Status writable = notefile::checkWritable(target); !writable) {
        fail(writable.error());
        return false;
    }
    const auto read = notefile::readFile(target);
    if (!read) {
        fail(read.error());
        return false;
    }
    const auto edited = edit(read->bytes);
    if (!edited) {
        fail(edited.error());
        return false;
    }
    if (*edited == read->bytes)
        return true;
    if (const auto written = filereplace::replaceFile(target, read->bytes, read->version, *edited); !written) {
        fail(written.error());
        return false;
    }
    FileChange change{FileChange::Kind::rewritten, target, {}, {}};
    change.contentsBefore = read->bytes;
    change.contentsAfter = *edited;
    m_report.changes.push_back(std::move(change));
    return true;
}

void ChangeRunner::rewriteContents(const FileChange& change, bool forward)
{
    const QByteArray& expected = forward ? change.contentsBefore : change.contentsAfter;
    const QByteArray& wanted = forward ? change.contentsAfter : change.contentsBefore;
    if (const auto swapped = filereplace::swapBytes(change.from, expected, wanted); !swapped)
        fail(swapped.error());
}

} // namespace orwick
