// ChangeRunner's rewrites: a file's contents replaced by an edit of them (a task ticked in a
// note), the file itself kept (owner, mode, attributes, links), and the exact old contents put
// back on undo while the file still holds what the rewrite wrote.

#include "fileops/FileChange.h"
#include "notes/NoteFile.h"

#include <climits>
#include <cstdlib>

namespace orwick {

bool ChangeRunner::rewrite(const FilePath& file, const Rewrite& edit)
{
    // A link is followed, so it stays a link to the rewritten file.
    char resolved[PATH_MAX];
    const FilePath target = ::realpath(file.c_str(), resolved) ? FilePath::fromNative(resolved) : file;
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
    if (const auto written = notefile::replaceFile(target, read->bytes, read->version, *edited); !written) {
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
    if (const auto swapped = notefile::swapNoteBytes(change.from, expected, wanted); !swapped)
        fail(swapped.error());
}

} // namespace orwick
