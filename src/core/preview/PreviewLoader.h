#pragma once
// PreviewLoader: the one entry point that turns an item into PreviewContent — it picks the kind
// (folder, note, table, picture, PDF, font, archive, audio or video, else text or a hex dump by
// the first bytes) and calls that kind's loader. Meant for a background task: every kind is
// bounded by PreviewLimits and returns early, with kind `none`, once `cancel` is set. A file
// that vanished or can't be read gives kind `message` with a sentence. Safe on any thread.
//
// PDF pages are drawn by the window's library (Qt PDF); here a PDF gets its details only.

#include "preview/PreviewContent.h"
#include "preview/PreviewLimits.h"

#include <QColor>

namespace orwick {

struct PreviewRequest {
    FilePath path;
    QSize box{900, 900};      // pictures are decoded to fit in this (device pixels)
    QColor ink = Qt::black;   // the colour font samples are drawn in
    PreviewLimits limits;
    int columnWidth = 800;    // a note's pictures are decoded no wider than its text column
};

PreviewContent loadPreview(const PreviewRequest& request, const CancelFlag& cancel);

namespace preview {
// The loaders behind loadPreview, one per kind; each assumes the item is of its kind.
PreviewContent loadText(const PreviewRequest& request, const CancelFlag& cancel);
PreviewContent loadMarkdown(const PreviewRequest& request, const CancelFlag& cancel);
// A note's text (the editor's, not yet saved) rendered as loadMarkdown renders the file at
// `request.path`: its pictures found beside it.
PreviewContent renderNoteText(const QString& text, const PreviewRequest& request, const CancelFlag& cancel);
PreviewContent loadTable(const PreviewRequest& request, const CancelFlag& cancel);
PreviewContent loadImage(const PreviewRequest& request, const CancelFlag& cancel);
PreviewContent loadFont(const PreviewRequest& request, const CancelFlag& cancel);
PreviewContent loadArchive(const PreviewRequest& request, const CancelFlag& cancel);
PreviewContent loadFolder(const PreviewRequest& request, const CancelFlag& cancel);
PreviewContent loadDetails(const PreviewRequest& request, PreviewContent::Kind kind);
} // namespace preview

} // namespace orwick
