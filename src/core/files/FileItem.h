#pragma once
// FileItem: one directory entry as a pane shows it — an immutable snapshot taken when the
// listing loads. Its identity is `url`; selections, cursors and histories hold paths, not items.

#include "base/FilePath.h"
#include "base/Timestamp.h"
#include "files/FileCategory.h"

#include <QList>
#include <QString>
#include <limits>
#include <optional>

namespace orwick {

struct FileItem {
    // Present for files a cloud-storage provider manages; Linux has no such provider, so it is
    // always absent here, but the rest of the system keeps the field.
    enum class CloudState { cloudOnly, downloading, uploading, downloaded };

    FilePath url;             // the entry as listed
    FilePath destination;     // a link's resolved target; else equal to url
    QString name;             // display name (the last component as text)
    bool isFolder = false;    // the destination is a folder and not a package
    bool isPackage = false;   // a folder shown and opened as one file
    bool isHidden = false;    // dot-name, or listed in the folder's .hidden file
    std::optional<qint64> size; // bytes; absent for folders and when unreadable
    Timestamp modified = kDistantPast;
    QString kind;             // type description; "Broken link" for a link whose target is gone
    FileCategory category = FileCategory::other;
    std::optional<CloudState> cloud;
    std::optional<QString> brokenTarget; // a broken link's stored target
    // In the Trash listing, what the Trash recorded: where the item was deleted from (empty when
    // unknown) and when (kDistantPast when unknown). Elsewhere empty and kDistantPast.
    FilePath trashedFrom;
    Timestamp deleted = kDistantPast;

    bool isSymlink() const { return destination != url || brokenTarget.has_value(); }

    // Reads one entry by path. Never fails: unreadable values take their defaults.
    static FileItem make(const FilePath& url);

    bool operator==(const FileItem&) const = default;
};

using FileItems = QList<FileItem>;

inline const QString kBrokenLinkKind = QStringLiteral("Broken link");

// The message shown when a broken link is opened: “name” is a broken link.
QString brokenLinkMessage(const FileItem& item);

} // namespace orwick
