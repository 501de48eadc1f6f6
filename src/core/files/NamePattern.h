#pragma once
// NamePattern: the wildcard patterns of "Select by Pattern" and "Deselect by Pattern", as
// two-pane file managers take them: "*.txt", "IMG_????.jpg", "[ab]*", several at once separated
// by ";" ("*.jpg; *.png"), and after a "|" the ones to leave out ("*.txt | draft*").
//
// Names and patterns are compared folded (case and accents, as search compares names), so
// "*.JPG" takes "photo.jpg" and "resume*" takes "Résumé.pdf". "*" is any run of characters, "?"
// one character, "[…]" one of a set ("[!…]" or "[^…]" none of it, "a-z" a range), and "\" makes
// the next character plain. A pattern without any wildcard takes the names that contain it
// ("report" takes "2024 report.pdf"). An unclosed "[" is a plain "[". A pure value: copy it,
// match from any thread.

#include <QList>
#include <QString>
#include <QStringView>

namespace orwick {

class NamePattern {
public:
    NamePattern() = default;
    // Reads the typed text; blank parts are skipped.
    explicit NamePattern(QStringView typed);

    // True when nothing to include was typed (blank, or only exclusions).
    bool isEmpty() const { return m_include.isEmpty(); }
    // Whether a name (the last component, not a path) is taken by the pattern.
    bool matches(QStringView name) const;

    // The message for text that names nothing to select, in the window's words.
    static QString emptyMessage() { return QStringLiteral("Type a pattern, such as *.txt"); }

private:
    QList<QString> m_include; // folded
    QList<QString> m_exclude; // folded
};

} // namespace orwick
