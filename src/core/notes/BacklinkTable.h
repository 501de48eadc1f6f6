#pragma once
// BacklinkTable: which notes of a vault link to which. It holds each note's links (NoteLinks)
// and, turned around, the notes that name each path (Markdown links) and each name (wikilinks),
// so that "who links to X" reads only the few notes that may, and a changed note costs only its
// own links. Wikilinks are resolved when asked (NoteNames), so a note that appears, goes or is
// renamed changes what "[[its name]]" reaches without reading any other note again.
//
// build() reads a whole vault — every Markdown note under it, hidden folders (".obsidian",
// ".git", ".trash") and "node_modules" left out — on a bounded pool of threads. Notes that
// aren't UTF-8 or are larger than kLargestNote are still notes (they can be linked to) but give
// no links; they are counted in skipped().
//
// A plain value: built off the interface thread, then handed over whole; never shared while
// changed.

#include "base/CancelFlag.h"
#include "notes/NoteLinks.h"
#include "notes/NoteNames.h"

#include <QHash>
#include <QSet>
#include <optional>

namespace orwick {

// One place where a note links to another: the linking note, its line and that line's text.
struct Backlink {
    FilePath note;
    int line = 0;
    QString text;
    bool operator==(const Backlink&) const = default;
};

class BacklinkTable {
public:
    static constexpr qsizetype kLargestNote = 16 << 20;
    static constexpr qsizetype kMostNotes = 200'000; // a walk stops there (partial())

    explicit BacklinkTable(FilePath vault = {}) : m_vault(vault), m_names(std::move(vault)) {}

    // The notes under `vault`, read and indexed; nothing when cancelled. `threads` 0: one per core.
    static std::optional<BacklinkTable> build(const FilePath& vault, const CancelFlag* cancel = nullptr, int threads = 0);

    // The Markdown notes and the folders under `folder` (itself included), hidden entries and
    // "node_modules" left out, at most kMostNotes notes.
    struct Walk {
        QList<FilePath> notes;
        QList<FilePath> folders;
        bool partial = false;
    };
    static Walk walk(const FilePath& folder, const CancelFlag* cancel = nullptr);
    // A note's links read from disk: nothing when it can't be read, isn't UTF-8 or is too large.
    static std::optional<QList<NoteLink>> readLinks(const FilePath& note);

    const FilePath& vault() const { return m_vault; }
    qsizetype noteCount() const { return m_names.size(); }
    qsizetype skipped() const { return m_skipped.size(); }
    bool isPartial() const { return m_partial; }
    const QList<FilePath>& folders() const { return m_folders; } // as the build walked them
    bool hasNote(const FilePath& note) const { return m_links.contains(note) || m_skipped.contains(note); }

    // Adds or replaces a note; `links` absent marks it unreadable (a note without links).
    void setNote(const FilePath& note, std::optional<QList<NoteLink>> links);
    // Forgets a note, or every note under a folder that went.
    void remove(const FilePath& path);

    // The places that link to `note`, by linking note path then line; one per line, the note's
    // links to itself left out.
    QList<Backlink> backlinksOf(const FilePath& note) const;
    // The notes that link to `note`, counted once each.
    qsizetype linkingNoteCount(const FilePath& note) const;

private:
    struct Entry {
        QList<NoteLink> links;
        QList<FilePath> paths; // each Markdown link's file, in `links` order (empty for wikilinks)
    };
    void index(const FilePath& note, const Entry& entry, bool add);

    FilePath m_vault;
    NoteNames m_names;
    QHash<FilePath, Entry> m_links;
    QSet<FilePath> m_skipped;
    QHash<FilePath, QSet<FilePath>> m_byPath; // a Markdown link's file → the notes linking so
    QHash<QString, QSet<FilePath>> m_byName;  // a wikilink's key → the notes linking so
    QList<FilePath> m_folders;
    bool m_partial = false;
};

} // namespace orwick
