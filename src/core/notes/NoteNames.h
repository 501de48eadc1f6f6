#pragma once
// NoteNames: the notes of one vault by name, to find the note a [[wikilink]] means the way
// Obsidian does. Names compare without letter case and without the note's extension
// ("[[Plan]]", "[[plan.md]]" and "plan.md" are one). A bare name reaches the note of that name:
// when several notes share it, the one in the linking note's own folder, else the one nearest
// the vault's top (fewest folders on the way, then path order). A name with folders
// ("[[projects/Plan]]") reaches the note at that path from the vault's top, else from the
// linking note's folder, else the note whose path ends so.
//
// A plain value; not shared across threads while changed.

#include "base/FilePath.h"

#include <QHash>
#include <QList>
#include <optional>

namespace orwick {

class NoteNames {
public:
    explicit NoteNames(FilePath vault = {}) : m_vault(std::move(vault)) {}

    const FilePath& vault() const { return m_vault; }
    void add(const FilePath& note);
    void remove(const FilePath& note);
    qsizetype size() const { return m_count; }

    // The note `name` (a wikilink's name, alias and heading left out) means when written in
    // `from`; nothing when no note has that name.
    std::optional<FilePath> resolve(const QByteArray& name, const FilePath& from) const;

    // The key a note is found by: its file name without a note extension, lower case.
    static QString keyOfNote(const FilePath& note);
    // The key of a wikilink name: its last part, without a note extension, lower case.
    static QString keyOfName(const QByteArray& name);

private:
    FilePath m_vault;
    QHash<QString, QList<FilePath>> m_byKey;
    qsizetype m_count = 0;
};

} // namespace orwick
