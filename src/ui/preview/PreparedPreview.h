#pragma once
// PreparedPreview: an item's preview made ready to show, entirely off the GUI thread — the
// core's PreviewContent plus, for text and notes, the QTextDocument the view shows (built and
// coloured in the background, then handed to the GUI thread), for a PDF its first page, and for
// every picture a copy at the size it is shown.
// Showing it is then a swap of documents or pictures: no parsing or decoding on the GUI thread.

#include "highlight/SyntaxHighlighter.h"
#include "preview/PreviewLoader.h"

#include <QColor>
#include <QFont>
#include <QTextDocument>
#include <memory>

namespace orwick {

// What the documents are drawn with, read from the application on the GUI thread.
struct PreviewStyle {
    QFont textFont;
    QFont fixedFont;
    QColor text, dimText, link, codeBackground, border;
    SyntaxHighlighter::SyntaxPalette syntax; // the theme's colours of source text
    bool dark = false;
    QSize pictureRoom; // device pixels a picture has in the view: pictures are fitted to it here


    static PreviewStyle fromApplication();
};

struct PreparedPreview {
    PreviewContent content;
    // Text, hex and notes: the document to show, living on the GUI thread once handed over.
    std::shared_ptr<QTextDocument> document;
    // Pictures, PDF pages and font samples: `content.image` at the size the view shows it in
    // `pictureRoom` (none when that is its own size), so the view only copies it to the screen.
    QImage fitted;
};

// Loads `request` and prepares it to show. A cancelled load gives kind `none`.
PreparedPreview preparePreview(const PreviewRequest& request, const PreviewStyle& style, const CancelFlag& cancel);
// Renders a note's `text` (the editor's) as the note at `request.path` and prepares it to show.
PreparedPreview prepareNoteText(const QString& text, const PreviewRequest& request, const PreviewStyle& style,
                                const CancelFlag& cancel);

} // namespace orwick
