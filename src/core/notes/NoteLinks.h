#pragma once
// NoteLinks: the links a note's text makes to other files, read as the link updater reads them
// (LinkSyntax): relative Markdown links and images ("[a](../b.md)", "![](pic.png)") and
// wikilinks ("[[Note]]", "[[Note#Heading|alias]]", "![[Note]]"). Links inside fenced code
// and inline code, and targets with a URL scheme or only an anchor, are not links to files.
// Each link carries its line (1-based, front matter counted) and that line's text, for showing
// where one note mentions another.
//
// Pure functions; safe on any thread.

#include "base/FilePath.h"

#include <QList>
#include <QString>
#include <optional>

namespace orwick {

struct NoteLink {
    enum class Kind { markdown, wikilink };
    Kind kind = Kind::markdown;
    // markdown: the target's path as the note names it, percent-decoding undone, without anchor
    // or angle brackets (bytes: a decoded name need not be UTF-8);
    // wikilink: the name without alias or heading ("folder/Note" or "Note"), as UTF-8.
    QByteArray target;
    int line = 0;
    QString lineText; // the whole line, blanks at both ends removed, at most kLineTextLength
    bool operator==(const NoteLink&) const = default;
};

namespace notelinks {

inline constexpr qsizetype kLineTextLength = 240;

// The links of note text, in text order.
QList<NoteLink> linksIn(const QString& text);
// The same on a note's bytes (a UTF-8 byte-order mark skipped): nothing when they aren't UTF-8.
std::optional<QList<NoteLink>> linksInBytes(const QByteArray& bytes);

// The file a Markdown link of a note in `folder` reaches (absolute targets as they are).
FilePath markdownTargetPath(const QByteArray& target, const FilePath& folder);

} // namespace notelinks
} // namespace orwick
