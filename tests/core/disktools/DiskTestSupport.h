#pragma once
// Helpers for the disk-tool tests: real trees with the awkward parts real disks have —
// unreadable folders (even when the tests run as root), mounts inside the tree, hard links.

#include "base/FilePath.h"
#include "support/TempHome.h"

#include <QByteArray>

namespace orwick::test {

// While alive, the calling thread (and threads it starts) lose the root override of file
// permissions, so mode 000 really is unreadable. Does nothing for a normal user.
class WithoutPermissionOverride {
public:
    WithoutPermissionOverride();
    ~WithoutPermissionOverride();

private:
    bool m_dropped = false;
};

// A small tmpfs mounted on `folder` for the object's life; isMounted() is false where the
// test may not mount (then the test says so and skips).
class TemporaryMount {
public:
    explicit TemporaryMount(const FilePath& folder);
    ~TemporaryMount();
    bool isMounted() const { return m_mounted; }

private:
    FilePath m_folder;
    bool m_mounted = false;
};

// A file under `tree` by relative bytes (names need not be UTF-8), parents made.
inline FilePath put(const TempTree& tree, const QByteArray& relative, const QByteArray& content = {})
{
    return tree.file(relative, content);
}

void makeHardLink(const FilePath& existing, const FilePath& link);
void setMode(const FilePath& path, unsigned mode);
// A file of `size` bytes: a repeating pattern from `seed`, so equal seeds give equal files.
QByteArray patternBytes(qint64 size, int seed);

} // namespace orwick::test
