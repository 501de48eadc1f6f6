#pragma once
// FileInfo: everything the information panel shows about one item, read in one go off the GUI
// thread — name, kind, size, dates (creation where the file system keeps it), owner, group and
// permissions, a link's target, the MIME type, tags and the extended attributes. A plain value.
// measureFolder() adds up a folder's contents for the panel's size line, stoppable and with a
// running count.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "fileops/FileAccess.h"

#include <QDateTime>
#include <QList>
#include <QStringList>
#include <functional>
#include <optional>

namespace orwick {

struct FileInfo {
    struct Attribute {
        QByteArray name;
        QString value; // shortened, bytes that aren't text shown as hex
        bool operator==(const Attribute&) const = default;
    };

    FilePath path;
    QString name;
    QString kind;     // "Folder", "Symbolic link", else the MIME type's description
    QString mimeType; // "text/plain", "inode/directory", "inode/symlink"
    bool isFolder = false;
    bool isLink = false;
    QString linkTarget;            // links only, as written in the link
    std::optional<qint64> size;    // files (and links): bytes; folders: measured apart
    std::optional<QDateTime> created; // absent where the file system doesn't keep it
    std::optional<QDateTime> modified;
    std::optional<QDateTime> accessed;
    FileAccess access;
    QString ownerName; // the user's name, else the number
    QString groupName;
    QStringList tags;
    QList<Attribute> attributes;
    QString error; // why the item couldn't be read; the rest is then empty
};

// Reads `path` without following a link.
FileInfo loadFileInfo(const FilePath& path);

// The contents of a folder: items inside it (at any depth, the folder itself not counted) and
// their bytes. Links are counted, never followed; folders on other disks are not entered.
struct FolderSize {
    qint64 items = 0;
    qint64 bytes = 0;
    bool complete = true; // false when stopped or some folder couldn't be read
};
// `progress` is called every few hundred items with the counts so far.
FolderSize measureFolder(const FilePath& folder, const CancelFlag& cancel,
                         const std::function<void(const FolderSize&)>& progress = {});

// "—" for an unknown date, else the date and time as the panel shows it.
QString infoDateText(const std::optional<QDateTime>& date);

} // namespace orwick
