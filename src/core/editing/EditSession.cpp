#include "editing/EditSession.h"

#include "base/Formatting.h"
#include "fileops/FileOperations.h"
#include "files/DirectoryWatcher.h"
#include "platform/DirectoryReader.h"
#include "preview/FileHead.h"

#include <QCryptographicHash>
#include <unistd.h>

namespace orwick {

namespace {

QByteArray hashOf(QByteArrayView bytes) { return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256); }

const QByteArray kGone = QByteArrayLiteral("gone");

// The whole file (up to the largest the engine rewrites), or the sentence why not.
Result<QByteArray> readWhole(const FilePath& file)
{
    const CancelFlag never;
    Result<preview::FileHead> head = preview::readHead(file, FileOperations::kLargestRewrite + 1, never);
    if (!head)
        return failure(head.error());
    return std::move(head->bytes);
}

} // namespace

EditSession::EditSession(const FilePath& file, FileOperations& operations, QUndoStack* undo, QObject* parent)
    : QObject(parent), m_file(file), m_operations(operations), m_undo(undo)
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(50);
    connect(&m_settle, &QTimer::timeout, this, &EditSession::checkInBackground);
    m_watcher = new DirectoryWatcher(file.parent(), this);
    connect(m_watcher, &DirectoryWatcher::changed, &m_settle, qOverload<>(&QTimer::start));
    connect(m_watcher, &DirectoryWatcher::overflowed, &m_settle, qOverload<>(&QTimer::start));
    connect(&operations, &FileOperations::contentsChanged, this, [this](const QList<FilePath>& files) {
        if (files.contains(m_file))
            checkInBackground();
    });
}

EditSession::~EditSession() = default;

Status EditSession::load()
{
    m_checking.cancel(); // a look started before is about the text before
    const auto st = statPath(m_file, FollowLinks::yes);
    if (!st)
        return failure(QStringLiteral("“%1” is no longer there.").arg(m_file.fileName()));
    if (!st->isRegular())
        return failure(QStringLiteral("“%1” isn’t a file Orwick can edit.").arg(m_file.fileName()));
    if (st->size > FileOperations::kLargestRewrite)
        return failure(QStringLiteral("“%1” is too large to edit here (over %2).").arg(m_file.fileName(), formatByteCount(FileOperations::kLargestRewrite)));
    Result<QByteArray> bytes = readWhole(m_file);
    if (!bytes)
        return failure(bytes.error());
    Result<editing::EditableText> text = editing::decodeForEditing(*bytes, m_file.fileName());
    if (!text)
        return failure(text.error());
    m_loaded = std::move(*text);
    if (m_loaded.readOnlyReason.isEmpty() && ::access(m_file.c_str(), W_OK) != 0)
        m_loaded.readOnlyReason = QStringLiteral("“%1” is read-only.").arg(m_file.fileName());
    m_version = {st->size, st->modifiedNs, st->inode, st->device, hashOf(*bytes)};
    m_disk = Disk::same;
    m_reportedHash.clear();
    m_modified = false;
    return {};
}

std::optional<EditSession::Version> EditSession::versionOf(const FilePath& file, const Version& known)
{
    const auto st = statPath(file, FollowLinks::yes);
    if (!st || !st->isRegular())
        return std::nullopt;
    Version now{st->size, st->modifiedNs, st->inode, st->device, {}};
    if (now.sameStamp(known)) {
        now.hash = known.hash;
        return now;
    }
    Result<QByteArray> bytes = readWhole(file);
    now.hash = bytes ? hashOf(*bytes) : QByteArray();
    return now;
}

EditSession::Disk EditSession::check()
{
    m_checking.cancel(); // this look is newer
    return apply(versionNow(m_version));
}

void EditSession::checkInBackground()
{
    // The stat is cheap; only a moved stamp needs the bytes read and hashed.
    const auto st = statPath(m_file, FollowLinks::yes);
    if (!st || !st->isRegular() || Version{st->size, st->modifiedNs, st->inode, st->device, {}}.sameStamp(m_version)) {
        m_checking.cancel();
        apply(versionNow(m_version));
        return;
    }
    const TaskSlot::Ticket ticket = m_checking.start();
    runInBackground(
        this, [file = m_file, known = m_version] { return versionOf(file, known); },
        [this, ticket](std::optional<Version> now) {
            if (!m_checking.isCurrent(ticket))
                return; // a newer look, a save or a load came first
            m_checking.finish(ticket);
            apply(now);
        });
}

EditSession::Disk EditSession::apply(const std::optional<Version>& now)
{
    if (now && now->hash == m_version.hash) {
        m_version = *now; // touched, or rewritten with the same bytes
        m_disk = Disk::same;
        return m_disk;
    }
    if (now && m_saving && now->hash == m_savingHash)
        return m_disk; // our own save landing
    m_disk = now ? Disk::changed : Disk::gone;
    const QByteArray seen = now ? now->hash : kGone;
    if (seen != m_reportedHash) {
        m_reportedHash = seen;
        Q_EMIT changedOnDisk();
    }
    return m_disk;
}

QString EditSession::changeText() const
{
    if (m_disk == Disk::gone)
        return QStringLiteral("“%1” was deleted or moved by another program.").arg(m_file.fileName());
    return QStringLiteral("“%1” was changed by another program.").arg(m_file.fileName());
}

void EditSession::save(const QString& text)
{
    if (m_saving)
        return refuse(QStringLiteral("“%1” is still being saved.").arg(m_file.fileName()));
    if (isReadOnly())
        return refuse(m_loaded.readOnlyReason);
    if (check() != Disk::same)
        return refuse(changeText());
    const QByteArray bytes = editing::encodeEdited(text, m_loaded.form);
    if (hashOf(bytes) == m_version.hash) {
        m_modified = false;
        m_refusal.clear();
        Q_EMIT saveFinished(true);
        return;
    }
    write(bytes, false);
}

void EditSession::overwrite(const QString& text)
{
    if (m_saving)
        return refuse(QStringLiteral("“%1” is still being saved.").arg(m_file.fileName()));
    if (isReadOnly())
        return refuse(m_loaded.readOnlyReason);
    write(editing::encodeEdited(text, m_loaded.form), true);
}

void EditSession::write(const QByteArray& bytes, bool overwriting)
{
    m_checking.cancel();
    m_saving = true;
    m_savingHash = hashOf(bytes);
    const QByteArray hash = m_savingHash;
    const QString name = m_file.fileName();
    QPointer<EditSession> self(this);
    if (overwriting && check() == Disk::gone) {
        m_operations.createFile(m_file, bytes, QStringLiteral("Save"), m_undo, [self, hash, name](const FilePath&) {
            // A file that came back meanwhile is left as it is by the engine.
            if (self) {
                const auto now = self->versionNow({});
                self->finishSave(now && now->hash == hash, hash, QStringLiteral("“%1” was changed by another program.").arg(name));
            }
        });
        return;
    }
    const QByteArray expected = m_version.hash;
    ChangeRunner::Rewrite edit = [bytes, expected, overwriting, name](const QByteArray& disk) -> Result<QByteArray> {
        if (!overwriting && hashOf(disk) != expected)
            return failure(QStringLiteral("“%1” was changed by another program.").arg(name));
        return bytes;
    };
    m_operations.rewriteFile(m_file, std::move(edit), QStringLiteral("Save"), QStringLiteral("Saved “%1”").arg(name), m_undo,
                             [self, hash, name, file = m_file](const QList<FilePath>& done) {
                                 if (self)
                                     self->finishSave(done.contains(file), hash,
                                                      QStringLiteral("Couldn’t save “%1”.").arg(name));
                             });
}

void EditSession::finishSave(bool ok, const QByteArray& hash, const QString& refusal)
{
    m_saving = false;
    m_savingHash.clear();
    if (!ok) {
        check(); // a change that beat the save is offered
        return refuse(m_disk == Disk::same ? refusal : changeText());
    }
    // The bytes are ours; their stamp is taken by the next look, which hashes them in the
    // background and so also sees another program's write right after ours.
    m_version = Version{-1, 0, 0, 0, hash};
    m_disk = Disk::same;
    m_reportedHash.clear();
    m_refusal.clear();
    Q_EMIT saveFinished(true);
    checkInBackground();
}

void EditSession::refuse(const QString& sentence)
{
    m_refusal = sentence;
    Q_EMIT saveFinished(false);
}

} // namespace orwick

#include "moc_EditSession.cpp"
