#pragma once
// PreviewContent: what the preview panel shows for one item — a plain value made off the GUI
// thread by a loader (PreviewLoader.h) and drawn by the panel. One kind per item; the fields a
// kind does not use stay empty. A loader that can't read the item says why in `message` (kind
// `message`), in the user's words; a cancelled load gives kind `none`.

#include "base/FilePath.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>

namespace orwick {

struct PreviewContent {
    enum class Kind {
        none,     // nothing to show (no item, or the load was cancelled)
        message,  // `message` only: unreadable, too large, gone
        text,     // `text` (source and plain text), `language` for colouring
        markdown, // `html` with `images` (rendered note), `text` holds the source
        image,    // `image` (scaled to fit the requested box), `pixelSize` its full size
        pdf,      // `image` of the first page once rendered; `pageCount`
        font,     // `image` with a sample drawn in the font
        table,    // `header` and `rows` (CSV, TSV)
        archive,  // `header` and `rows` (entries: name, size, note)
        hex,      // `text` holds a hex dump of the first bytes
        folder,   // `details` (items and kinds); `totalSize` measured later
        details,  // `details` only (audio, video and other kinds with nothing cheap to show)
    };

    Kind kind = Kind::none;
    FilePath path;
    QString title;         // the item's name
    QStringList details;   // short lines under the title ("1,920 × 1,080", "12 kB", "Python source")
    QString note;          // a limit that was hit ("Showing the first 512 kB of 4.2 GB")
    QString message;       // kind `message`: why there is nothing to show

    QString text;          // text, hex, markdown source
    QString language;      // a hint for colouring text: the file's name
    QString html;          // markdown
    QHash<QString, QImage> images; // markdown: decoded pictures by the URL the HTML names them by
    QImage image;          // image, pdf page, font sample
    QSize pixelSize;       // image: the picture's own size after orientation
    int pageCount = 0;     // pdf

    QStringList header;    // table, archive
    QList<QStringList> rows;
    int unsafeEntries = 0; // archive: entries whose names point outside the archive's folder

    bool measuresSize = false; // folder: a total size is on its way (FolderSummary::measure)

    bool isEmpty() const { return kind == Kind::none; }
    static PreviewContent failed(const FilePath& path, const QString& message)
    {
        PreviewContent content;
        content.kind = Kind::message;
        content.path = path;
        content.title = path.fileName();
        content.message = message;
        return content;
    }
};

} // namespace orwick
