#pragma once
// NoteExport: a note as a file to share — a standalone HTML page or a PDF — made beside it by
// the "Export Note as HTML" and "Export Note as PDF" commands.
//
// The page is the preview's rendering (cmark-gfm with tables, task lists, strikethrough and
// autolinks; fenced code coloured by the syntax highlighter, whose style sheet is written into
// the page), under a small table of the note's front matter, with a light style sheet of its own
// and nothing fetched from elsewhere: every local picture the note shows is embedded (a data:
// address in the HTML, a document resource in the PDF). A picture that can't be read becomes a
// visible placeholder naming it, and is counted, so the caller can say so. Remote pictures keep
// their address in the HTML; the PDF names them.
//
// The PDF is the same page laid out by Qt's rich text (QTextDocument) and printed by QPdfWriter
// on A4 pages; no browser engine.
//
// Pure apart from reading the note and its pictures; safe on any thread. Writing the file is the
// file operations engine's (FileOperations::createFile).

#include "base/FilePath.h"
#include "base/Result.h"

#include <QByteArray>
#include <QString>

namespace orwick::NoteExport {

enum class Format { html, pdf };

// Pictures larger than this are not embedded (they count as missing).
inline constexpr qint64 kLargestPicture = 32 << 20;

struct Exported {
    QByteArray bytes;
    int missingPictures = 0;
};

// The HTML page of note text `text` (the whole note, front matter included) whose pictures are
// found from `folder`, titled `title`.
struct Page {
    QString html;
    int missingPictures = 0;
};
Page htmlPage(const QString& text, const FilePath& folder, const QString& title);

// The PDF of note text, laid out as htmlPage() is.
Exported pdfOf(const QString& text, const FilePath& folder, const QString& title);

// Reads the note at `note` and makes its export; a sentence when the note can't be read or isn't
// UTF-8 ("Couldn’t export “a.md”: it isn’t UTF-8 text.").
[[nodiscard]] Result<Exported> exportNote(const FilePath& note, Format format);

// Where the export of `note` goes: beside it, "name.html" or "name.pdf", or the first free name
// after it ("name 2.html").
FilePath exportPath(const FilePath& note, Format format);

// The note for the toast when pictures were missing: "1 picture was missing", "2 pictures were
// missing"; empty when none.
QString missingPicturesNote(int missing);

} // namespace orwick::NoteExport
