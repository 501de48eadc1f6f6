#pragma once
// Property changes written into a real file the way FileProperties has the file operations
// engine write them (ChangeRunner::rewrite with notefile::changedNoteBytes, or
// rewriteAttribute with changedAttribute), run right here on the calling thread, so that a test
// can run it as another user. The first failure sentence, or success.

#include "fileops/FileChange.h"
#include "notes/NoteFile.h"
#include "platform/Xattr.h"

namespace orwick::test {

inline Status writeProperties(const FilePath& path, bool isFolder, const QList<notefile::Change>& changes)
{
    CopyProgress progress;
    ChangeRunner runner(progress);
    if (isFolder || !notefile::isNote(path))
        runner.rewriteAttribute(path, xattr::properties,
                                [&](const QByteArray& value) { return notefile::changedAttribute(value, changes, path); });
    else
        runner.rewrite(path, [&](const QByteArray& bytes) { return notefile::changedNoteBytes(bytes, changes, path); });
    if (!runner.report().errors.isEmpty())
        return failure(runner.report().errors.first());
    if (runner.report().skipped > 0)
        return failure(QStringLiteral("gone"));
    return {};
}

} // namespace orwick::test
