#pragma once
// FileCategory: the coarse class of an item. It picks the icon tint and symbol, the "grid for
// image and video folders" rule and the kind filters of searches.

#include "base/FilePath.h"

#include <QString>

namespace orwick {

enum class FileCategory {
    folder, app, package, image, video, audio, pdf, archive, code, data, text, diskImage, other
};

// The category of an entry, by its lower-cased extension and the two flags:
// folder first, then "app", then the fixed code extensions, then the MIME type of the extension.
FileCategory categorize(const QString& lowerExtension, bool isFolder, bool isPackage);
inline FileCategory categorize(const FilePath& path, bool isFolder, bool isPackage)
{
    return categorize(path.extension(), isFolder, isPackage);
}

// The stored and shown name of a category ("image", "diskImage"…).
QString categoryName(FileCategory category);

// What the MIME database says of an extension, cached per extension (thread-safe).
struct ExtensionType {
    bool known = false;                          // the extension has a MIME type
    FileCategory category = FileCategory::other; // conformance result for a known type
    QString kind;                                // the type's description ("PNG image", "Plain text document")
};
const ExtensionType& typeOfExtension(const QString& lowerExtension);

// A MIME type's description as a kind, in sentence case as every kind is written ("Folder",
// "Broken link"): the MIME database writes some with a small first letter ("plain text document").
QString kindOfMimeComment(const QString& comment);

// Folder extensions that make a folder one document (shown and opened as a file).
bool isPackageExtension(const QString& lowerExtension);

} // namespace orwick
