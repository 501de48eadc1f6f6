#pragma once
// isNoteName: whether a name is a Markdown note's, by its extension (notefile::isNote's rule:
// md, markdown, mdown, mkd, mdx, in any letter case), looked at in the name's own bytes. The
// link updater asks it of every entry of a folder and every item of a batch: thousands of names
// that should cost no path or text each.

#include "notes/NoteFile.h"

#include <QByteArrayView>

namespace orwick {

inline bool isNoteName(QByteArrayView name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || dot == name.size() - 1)
        return false;
    const QByteArrayView extension = name.sliced(dot + 1);
    char lower[8];
    for (qsizetype i = 0; i < extension.size(); ++i) {
        const char c = extension[i];
        if (static_cast<unsigned char>(c) >= 0x80) // letter case beyond ASCII: the full rule
            return notefile::isNote(FilePath::fromNative(QByteArray("/") + name.toByteArray()));
        if (i >= qsizetype(sizeof lower))
            return false;
        lower[i] = c >= 'A' && c <= 'Z' ? char(c | 0x20) : c;
    }
    const QByteArrayView lowered(lower, extension.size());
    return lowered == "md" || lowered == "markdown" || lowered == "mdown" || lowered == "mkd" || lowered == "mdx";
}

} // namespace orwick
