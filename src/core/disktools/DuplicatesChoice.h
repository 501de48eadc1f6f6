#pragma once
// DuplicatesChoice: what the duplicates panel holds after a search — the groups shown and the
// files ticked for removal — and every rule that changes them: ticking extra copies, toggling a
// row, what the ticked files free, and taking out the files the Trash took. Plain data, owned
// by the panel on the GUI thread; the move to the Trash itself belongs to the file operations
// engine, which gets `toTrash()` and reports back which files it moved.

#include "disktools/Duplicates.h"

#include <QSet>

namespace orwick {

class DuplicatesChoice {
public:
    DuplicatesChoice() = default;
    explicit DuplicatesChoice(Duplicates::Scan scan) : m_scan(std::move(scan)) {}

    const Duplicates::Scan& scan() const { return m_scan; }
    const std::vector<Duplicates::Group>& groups() const { return m_scan.groups; }
    const QSet<FilePath>& chosen() const { return m_chosen; }
    bool isChosen(const FilePath& file) const { return m_chosen.contains(file); }

    // Every member of every shown group but the one the keep rule keeps; other ticks stay.
    void tickExtraCopies();
    void toggle(const FilePath& file);
    void clear() { m_chosen.clear(); }

    // Ticked files that belong to shown groups, in group order: what the Trash step gets.
    std::vector<FilePath> toTrash() const;
    // Bytes that removing the ticked files frees (each at its group's size).
    qint64 chosenBytes() const;
    int chosenCount() const { return int(toTrash().size()); }

    // After the Trash step: the files it moved leave their groups and the ticks; a group left
    // with fewer than two members goes. Files it could not move stay as they were.
    void removeMoved(const std::vector<FilePath>& moved);

private:
    Duplicates::Scan m_scan;
    QSet<FilePath> m_chosen;
};

} // namespace orwick
