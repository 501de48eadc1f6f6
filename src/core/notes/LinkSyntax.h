#pragma once
// LinkSyntax: where links sit in a note's Markdown text, for everything that reads or rewrites
// them — the link updater (rewriting targets after moves) and the backlinks (which notes link to
// which). One owner, so that both agree on what a link is:
//
// - a Markdown link or image target: "](target)" or "](<target with blanks>)", its first
//   capture the target as written (angle brackets included);
// - a wikilink name: "[[name", "[[name|alias]]", "[[name#heading]]", "![[embed]]", its first
//   capture the name up to "|", "#" or "]";
// - neither counts inside fenced code blocks (``` or ~~~) or inline code spans.
//
// Pure functions; the patterns are one per thread (notes are read on several at once).

#include <QList>
#include <QRegularExpression>
#include <QString>

namespace orwick::linksyntax {

// A stretch of the text in UTF-16 code units, `end` past its last.
struct Range {
    qsizetype start;
    qsizetype end;
};

// Fenced code blocks (``` or ~~~, closed by a fence of the same character at least as long, or
// the end of the text) and inline code spans (a run of backticks closed by a run as long, within
// one line), in text order.
QList<Range> codeRanges(const QString& text);
// Whether `position` lies inside one of `ranges`.
bool inCode(const QList<Range>& ranges, qsizetype position);

// The target starts with a URL scheme ("https:", "mailto:"): a letter, then letters, digits,
// "+", "." or "-", then ":".
bool hasUrlScheme(const QString& target);

// "](target": capture 1 is the target as written.
const QRegularExpression& markdownTarget();
// "[[name": capture 1 is the name up to "|", "#", "]" or the line's end.
const QRegularExpression& wikilinkName();

} // namespace orwick::linksyntax
