#pragma once
// FolderNames: the names one folder holds, read in one pass (getdents64), so that thousands of
// names can be checked against the disk without a stat for each.
//
// An answer is only as fresh as the read; whatever acts on it still relies on the kernel (a
// rename refuses a name that is taken). A folder that can't be read, or whose file system folds
// letter case ("README" and "readme" are one name there, and only a lookup by the kernel says
// which), answers `unknown` for every name, and the caller asks the disk name by name. So does a
// folder left unread because a few stats cost less than reading all of it.
//
// A plain value: read on any thread, then only looked at. FolderNamesCache keeps the folders of
// one batch, so that the steps that look at it (its items are there, their new names are free)
// share one read of each folder.

#include "base/PathParts.h"

#include <QByteArray>
#include <QHash>
#include <vector>
#include <memory>

namespace orwick {

// The hash of a name in the tables of a batch's names: a few bytes at a time, with no seed to
// set up, as thousands of short names want.
size_t nameHash(QByteArrayView name);

class FolderNames {
public:
    enum class Answer { held, free, unknown };

    FolderNames() = default; // knows nothing: every answer is unknown

    // Reads `folder` when that costs less than `lookups` stats of names in it.
    static FolderNames read(const FilePath& folder, qsizetype lookups);

    bool isKnown() const { return m_known; }
    Answer holds(QByteArrayView name) const;

private:
    // The names one after another in one buffer, each closed by a NUL, and an open-addressed
    // table of where each starts (+1; 0 is an empty slot): thousands of names cost two
    // allocations, not thousands.
    QByteArray m_bytes;
    std::vector<quint32> m_slots;
    bool m_known = false;

    qsizetype slotOf(QByteArrayView name) const;
    bool isNameAt(quint32 start, QByteArrayView name) const;
};

class FolderNamesCache {
public:
    // Counts a lookup of a name beside each of `paths` in their folders: a folder is read only
    // when that costs less than the lookups expected in it (FolderNames::read).
    void expect(const QList<FilePath>& paths);
    // The names of the folder `path` lies in, read on the first question about that folder.
    // Consecutive questions about one folder cost no lookup.
    const FolderNames& around(const FilePath& path);

private:
    // By the folder's path with its closing "/".
    QHash<QByteArray, qsizetype> m_expected;
    QHash<QByteArray, std::shared_ptr<const FolderNames>> m_folders;
    QByteArray m_lastFolder;
    const FolderNames* m_last = nullptr;
};

} // namespace orwick
