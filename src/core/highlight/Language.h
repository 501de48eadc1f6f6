#pragma once
// One language description of the syntax highlighter: its word lists, comment openers, quotes
// and the few switches the scanner reads. The twenty descriptions are built once into a static
// table (LanguageTable.cpp) and never change, so a `const Language*` is valid for the whole
// process and may be read from any thread.

#include "highlight/SyntaxHighlighter.h"
#include "highlight/WordTable.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <optional>

namespace orwick::SyntaxHighlighter {

// How the scanner treats the text beyond comments, strings, numbers and words.
enum class Family : std::uint8_t {
    code,   // words, strings, numbers
    markup, // tags and attributes inside "<…>", the text between them stays plain
    json,   // a string directly followed by ":" is a property
    css,    // words may hold "-"
};

struct BlockComment {
    QString open;
    QString close;
};

struct Language {
    QString key; // "swift", "js", …

    QSet<QString> keywords;
    QSet<QString> builtins; // coloured as `type`
    QList<QString> lineComments;
    std::optional<BlockComment> blockComment;
    QString quotes; // each character a quote

    bool tripleQuotes = false;     // a quote tripled opens a string closed by the same triple
    bool capitalizedTypes = false; // a word of two or more characters starting with A–Z is a `type`
    bool variables = false;        // "$name" is a variable (coloured as `property`)
    bool lineKeys = false;         // "- ", "[section]" and "key:" at a line's start (as `property`)
    bool caseInsensitive = false;  // words are compared in lower case
    Family family = Family::code;

    // Made from the lists above when the table is built: the scanner's lookups.
    WordTable words;            // keywords (as `keyword`) and builtins (as `type`)
    QString wordPrefixes;       // characters that start listed words but not ordinary words: "#@!.~"
    bool hashComment = false;   // "#" is a line-comment opener (counts only after a blank)
};

// The table entry with this key ("swift", …), nullptr for none.
const Language* languageWithKey(QStringView key);
// Extension or fence name (lower case) → table key; a table key maps to itself without an entry.
const QHash<QString, QString>& aliases();

} // namespace orwick::SyntaxHighlighter
