#pragma once
// MarkdownRender: a note as HTML for the preview, through cmark-gfm with GitHub's extensions
// (tables, task lists, strikethrough, autolinks) and fenced code. Raw HTML in the note is left
// out and unsafe link schemes are dropped, as cmark-gfm does by default.
//
// What the preview needs beyond plain HTML:
// - each task's checkbox is a link "task:LINE" (LINE the 1-based line of the task in the note,
//   front matter counted), drawn as ☐ or ☑, so a click or Space can toggle it;
// - each picture's address is replaced by "image:N", and `pictures` lists what they named
//   (resolved against the note's folder), for the caller to decode off the GUI thread;
// - front matter is not rendered (its lines still count for the task lines).
// Pure; safe on any thread.

#include "base/FilePath.h"

#include <QList>
#include <QString>

namespace orwick::preview {

struct RenderedNote {
    QString html;
    struct Picture {
        QString url;       // "image:N", as the HTML names it
        FilePath file;     // a local picture; empty for remote ones
        QString source;    // the address as the note wrote it
    };
    QList<Picture> pictures;
    QList<int> taskLines; // in document order
};

// `folder` resolves relative picture paths.
RenderedNote renderMarkdown(const QString& text, const FilePath& folder);

// The line of a "task:LINE" link, or 0.
int taskLineOfLink(const QString& link);

} // namespace orwick::preview
