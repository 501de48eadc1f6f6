#pragma once
// TreeCopy: copies one item — a file, a link, a special file or a whole folder tree — to a
// free path, the way `cp -a` would and a little more carefully.
//
// - Folders are walked with an explicit stack, never the call stack; a tree deeper than
//   kMaxDepth folders stops with a message instead of running out of descriptors.
// - Kept: data with its holes, hard links between items of the copied set, every extended
//   attribute (the ones the target refuses are named in `notes`), owner and group where the
//   system allows, permissions, and access and modification times (folders' last, once filled).
// - Links are copied as links and never followed, so a link back into the source can't make
//   the walk go round. A folder that turns out to be the copy being made is left out.
// - Sockets (and devices where we may not make them) are left out with a note; the copy goes on.
// - With a manifest, every item copied is recorded (before-copy identity, size and times) in
//   pre-order, so a move can later remove exactly what was copied and nothing else.
// Not thread-safe; one copier per copy. No Qt objects are touched.

#include "base/FilePath.h"
#include "fileops/CopyProgress.h"

#include <QHash>
#include <QStringList>
#include <vector>

namespace orwick {

// What the source looked like when one item of a tree was copied.
struct CopiedEntry {
    QByteArray relative; // path below the top item; empty for the top item itself
    unsigned mode = 0;
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modifiedNs = 0;
    qint64 changedNs = 0;
    bool operator==(const CopiedEntry&) const = default;
};
using CopyManifest = std::vector<CopiedEntry>;

// The source's identity and times as statx gives them, without following a link.
struct SourceMeta {
    unsigned mode = 0;
    quint64 device = 0;
    quint64 inode = 0;
    quint32 links = 0;
    quint32 uid = 0;
    quint32 gid = 0;
    quint64 rdev = 0;
    qint64 size = 0;
    qint64 allocated = 0;
    struct timespec times[2] = {}; // access, modification
    qint64 changedNs = 0;

    // False with errno kept.
    bool read(int dirFd, const char* name);
    CopiedEntry entry(QByteArray relative) const;
};

class TreeCopy {
public:
    static constexpr int kMaxDepth = 1000;

    TreeCopy(CopyProgress& progress, CopyManifest* manifest = nullptr);
    ~TreeCopy();

    // Copies `from` (stat'ed as `meta`) to the free path `to`. False on failure or cancel;
    // what was made stays for the caller to remove.
    bool copy(const FilePath& from, const FilePath& to, const SourceMeta& meta);

    bool cancelled() const { return m_cancelled; }
    // Plain words for a failure: "the disk is full", "“a/b.txt” inside it can’t be read: …".
    const QString& reason() const { return m_reason; }
    int error() const { return m_error; }
    // Sentences on what was copied differently (left out, attributes lost), one per item.
    const QStringList& notes() const { return m_notes; }
    int leftOut() const { return m_leftOut; }
    int attributesLost() const { return m_attributesLost; }

    // Records a failure from outside the walk (syncing, the final rename).
    bool failAtTarget(int error);

private:
    struct Frame;
    bool copyEntry(int srcDir, const QByteArray& name, int dstDir, const QByteArray& relative, const SourceMeta& meta);
    bool enterFolder(int srcDir, const QByteArray& name, int dstDir, const QByteArray& relative, const SourceMeta& meta);
    bool finishFolder(Frame& frame);
    bool copyFile(int srcDir, const char* name, int dstDir, const QByteArray& relative, const SourceMeta& meta);
    bool copyLink(int srcDir, const char* name, int dstDir, const QByteArray& relative, const SourceMeta& meta);
    bool copySpecial(int dstDir, const char* name, const QByteArray& relative, const SourceMeta& meta);
    bool linkToEarlierCopy(int dstDir, const char* name, const SourceMeta& meta);
    void keepAttributes(int in, int out, const QByteArray& relative);
    // Gives the copy the source's owner, group and mode; false when the mode can't be set.
    [[nodiscard]] bool keepOwnerAndMode(int fd, const SourceMeta& meta);
    void record(const QByteArray& relative, const SourceMeta& meta);
    void leaveOut(const QByteArray& relative, const QString& what);

    bool failReading(int error, const QByteArray& relative);
    bool failWriting(int error, const QByteArray& relative);
    bool cancel();

    CopyProgress& m_progress;
    CopyManifest* m_manifest;
    std::vector<Frame> m_stack;
    FilePath m_from;
    FilePath m_to;
    quint64 m_targetDevice = 0;
    quint64 m_targetInode = 0;
    QHash<QPair<quint64, quint64>, QByteArray> m_linked; // source identity → relative path of its copy
    bool m_cancelled = false;
    int m_error = 0;
    QString m_reason;
    QStringList m_notes;
    int m_leftOut = 0;
    int m_attributesLost = 0;
};

} // namespace orwick
