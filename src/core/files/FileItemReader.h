#pragma once
// Builds FileItems for the entries of one open folder: statx relative to the folder descriptor,
// links resolved, hidden names known. Shared by every listing so items are made one way.

#include "files/FileItem.h"
#include "platform/DirectoryReader.h"

#include <QSet>

namespace orwick {

class FileItemReader {
public:
    // `folderFd` must stay open while the reader is used; `hiddenNames` comes from .hidden.
    FileItemReader(const FilePath& folder, int folderFd, QSet<QByteArray> hiddenNames = {});

    FileItem read(const DirEntry& entry) const;
    FileItem read(const QByteArray& name) const { return read(DirEntry{name, 0, 0}); }

private:
    FilePath m_folder;
    int m_fd;
    QSet<QByteArray> m_hidden;
};

// Names listed in a folder's .hidden file (one per line), which desktops treat as hidden.
QSet<QByteArray> readHiddenFile(int folderFd);

} // namespace orwick
