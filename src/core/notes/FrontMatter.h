#pragma once
// FrontMatter: the block of properties at the head of a Markdown note, read and written in a
// deliberately small subset of YAML — "key: value", inline lists "[a, b]", lists of "- item"
// lines, comments and blank lines. Anything else (nested maps, block scalars, flow maps) makes
// the whole block unreadable, so a note is never half-understood.
//
// Reading leaves backslashes exactly as written, while writing escapes backslashes and double
// quotes inside double-quoted values. The two sides are deliberately not inverse: a value
// written with escapes reads back with its backslashes.
//
// Pure functions on text; safe on any thread.

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace orwick {

class PropertyValue;

namespace FrontMatter {

struct Property {
    QString key;
    QStringList values;
    bool isList = false;
    bool operator==(const Property&) const = default;
};

// The text between the opening "---" line and the first closing "---" line, joined with line
// feeds (a carriage return before a line feed belongs to the line ending). Nothing when the text
// doesn't open with "---" or the block never closes.
std::optional<QString> block(const QString& text);

// The properties of a block in file order; nothing when the block is outside the subset.
std::optional<QList<Property>> parse(const QString& block);

// block() then parse(); nothing when either fails.
std::optional<QList<Property>> read(const QString& text);

// The YAML form of a value: texts quoted as needed, numbers as integers when whole, lists inline.
QString yaml(const PropertyValue& value);

// A text written bare when it is plain enough; else in double quotes with "\" doubled and "\""
// escaped.
QString quoted(const QString& text);

// Spaces and tabs trimmed, then one pair of matching surrounding quotes removed.
QString unquote(QStringView text);

// The file text with `key` set to the YAML text `value`, or removed when `value` is absent.
// Every other line — order, comments, the body, line endings — stays as it was. A note without
// front matter gets a three-line block on top (nothing to do for a removal). A block that never
// closes is left alone.
QString setting(const QString& key, const std::optional<QString>& value, const QString& text);

// The file text with the line of `from` carrying the key `to` instead; its value, any lines
// under it and everything else stay byte for byte. Unchanged when the key isn't there.
QString renaming(const QString& from, const QString& to, const QString& text);

// A key that a "key: value" line can carry and parse() gives back: not empty, no ":" or line
// break, no surrounding spaces, not starting with "-", "#", "[" or a quote.
bool isWritableKey(const QString& key);

} // namespace FrontMatter
} // namespace orwick
