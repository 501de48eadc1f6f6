#pragma once
// One side of a folder comparison: every entry under a root with its relative path, read with
// getdents64 relative to each folder's descriptor, links never followed, stopping after `limit`
// files. Internal to FolderDiff; kept apart so the comparison reads top to bottom.
//
// The walk costs next to nothing beside reading the files, so it asks the kernel only what the
// directory entries don't say: a regular file or a folder takes no call of its own (its size is
// read when it is opened), a link its target, anything else a statx. Paths live one after
// another in one buffer, and each folder's entries are put in order as it is read (a folder
// counts as its name for its own row and as its name + "/" for what it holds), so the items come
// out in ascending byte order of their whole paths without sorting them all at the end.

#include "base/CancelFlag.h"
#include "base/FilePath.h"

#include <QByteArrayView>
#include <vector>

namespace orwick::FolderDiff {

struct SideItem {
    enum class Kind : quint8 { file, folder, link, other };
    quint32 pathStart = 0;  // in Side::paths
    quint32 pathLength = 0;
    Kind kind = Kind::file;
    bool unreadable = false; // a folder that couldn't be opened: left out with what it holds
    quint32 linkStart = 0;   // a link's target, in Side::paths
    quint32 linkLength = 0;
    qint64 size = -1;        // known for links and others; -1 for files and folders
};

struct Side {
    FilePath root;                // links in it resolved
    QByteArray paths;             // relative "/"-separated paths, each followed by a 0 byte
    std::vector<SideItem> items;  // ascending by path
    bool isPartial = false;

    QByteArrayView path(const SideItem& item) const { return {paths.constData() + item.pathStart, qsizetype(item.pathLength)}; }
    // The path as a C string (the 0 byte after it ends it).
    const char* pathText(const SideItem& item) const { return paths.constData() + item.pathStart; }
    QByteArrayView linkTarget(const SideItem& item) const { return {paths.constData() + item.linkStart, qsizetype(item.linkLength)}; }
};

Side walkSide(const FilePath& root, qint64 limit, const CancelFlag& cancel);

// Byte order of two paths (as memcmp: negative, 0, positive).
int comparePaths(QByteArrayView a, QByteArrayView b);

} // namespace orwick::FolderDiff
