#pragma once
// A small file system of the test's own, mounted in a temporary folder and unmounted when the
// object goes: a full disk, a disk out of inodes, a read-only disk, a disk without extended
// attributes, a bind mount. Mounting needs root (CI runs as root); elsewhere `ok()` is false
// and `why()` says so, for GTEST_SKIP().

#include "base/FilePath.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace orwick::test {

class ScratchMount {
public:
    // `type` is "tmpfs" or "ramfs"; `options` as mount(8) takes them ("size=1m,nr_inodes=8").
    explicit ScratchMount(const char* type, const QByteArray& options = {});
    // A bind mount of the folder `source`.
    explicit ScratchMount(const FilePath& source);
    ~ScratchMount();
    ScratchMount(const ScratchMount&) = delete;
    ScratchMount& operator=(const ScratchMount&) = delete;

    bool ok() const { return m_mounted; }
    QString why() const { return m_why; }
    FilePath root() const { return m_root; }
    // Mounts it again read-only (the files made so far stay).
    bool makeReadOnly();

private:
    bool mount(const char* source, const char* type, unsigned long flags, const QByteArray& options);

    QTemporaryDir m_dir{QStringLiteral("/tmp/orwick-mount-XXXXXX")};
    FilePath m_root = FilePath::fromText(m_dir.path());
    bool m_mounted = false;
    QString m_why;
};

} // namespace orwick::test
