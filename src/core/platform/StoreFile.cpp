#include "platform/StoreFile.h"

#include "platform/ErrorText.h"
#include "platform/JsonFile.h"
#include "platform/StoreNotices.h"
#include "platform/UniqueFd.h"

#include <cerrno>
#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

struct OnDisk {
    enum class State { missing, sound, damaged, unreadable } state = State::missing;
    QJsonDocument document;
    int error = 0;
};

OnDisk load(const FilePath& path, const StoreFile::Shape& shape)
{
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.ok()) {
        // A folder that is a file holds no store either; writing will say so.
        if (errno == ENOENT || errno == ENOTDIR)
            return {};
        return {OnDisk::State::unreadable, {}, errno};
    }
    QByteArray bytes;
    char buffer[65536];
    for (;;) {
        const ssize_t n = ::read(file.get(), buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return {OnDisk::State::unreadable, {}, errno};
        if (n == 0)
            break;
        bytes.append(buffer, n);
    }
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !shape(document))
        return {OnDisk::State::damaged, {}, 0};
    return {OnDisk::State::sound, std::move(document), 0};
}

// The part of the name before ".json" ("frecency"), which the lock and the damaged copies share.
QByteArray stemOf(const FilePath& path)
{
    QByteArray name = path.fileNameBytes();
    if (name.endsWith(".json"))
        name.chop(5);
    return name;
}

// Renames the damaged file to the first free "STEM.damaged.json", "STEM.damaged 2.json"…
// without ever replacing one. Sets errno on failure.
std::optional<FilePath> setAside(const FilePath& path)
{
    const QByteArray stem = stemOf(path);
    for (int count = 1; count < 1000; ++count) {
        const QByteArray name = stem + ".damaged" + (count > 1 ? " " + QByteArray::number(count) : QByteArray()) + ".json";
        const FilePath aside = path.parent().child(QByteArrayView(name));
        if (::renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0)
            return aside;
        if (errno == EINVAL) { // a file system without RENAME_NOREPLACE: link() never replaces either
            if (::link(path.c_str(), aside.c_str()) == 0) {
                ::unlink(path.c_str());
                return aside;
            }
        }
        if (errno != EEXIST)
            return std::nullopt;
    }
    errno = EEXIST;
    return std::nullopt;
}

// Makes the folders above `path`, private to the user. Sets errno on failure.
bool makeParents(const FilePath& path)
{
    const QByteArray folder = path.parent().native();
    int lastError = 0;
    for (qsizetype i = 1; i <= folder.size(); ++i)
        if (i == folder.size() || folder[i] == '/')
            if (::mkdir(folder.left(i).constData(), 0700) != 0 && errno != EEXIST)
                lastError = errno;
    struct stat st {};
    if (::stat(folder.constData(), &st) == 0 && S_ISDIR(st.st_mode))
        return true;
    errno = lastError ? lastError : ENOTDIR;
    return false;
}

// Takes an exclusive lock on the store's lock file; the lock holds until `fd` closes.
Status lockFile(const FilePath& lockPath, int& fd)
{
    fd = ::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return failure(errorReason(errno));
    while (::flock(fd, LOCK_EX) != 0)
        if (errno != EINTR)
            return failure(errorReason(errno));
    return {};
}

QString savingKey(const FilePath& path) { return QStringLiteral("save:") + path.text(); }

void postSetAside(const StoreFile::Words& words, const FilePath& aside)
{
    StoreNotices::post(QStringLiteral("Orwick couldn’t read %1, so %2. The damaged file was kept as “%3”.")
                           .arg(words.what, words.afresh, aside.abbreviated()));
}

} // namespace

StoreFile::StoreFile(FilePath path, Words words, Shape shape)
    : m_path(std::move(path)), m_words(std::move(words)), m_shape(std::move(shape))
{
}

FilePath StoreFile::lockPath() const { return m_path.parent().child(QByteArrayView(stemOf(m_path) + ".lock")); }

FilePath StoreFile::damagedPath() const
{
    return m_path.parent().child(QByteArrayView(stemOf(m_path) + ".damaged.json"));
}

std::optional<QJsonDocument> StoreFile::read() const
{
    OnDisk disk = load(m_path, m_shape);
    if (disk.state == OnDisk::State::damaged) {
        // Set aside under the lock, after reading again: another process may have just done it
        // and written a sound file in its place.
        int lockFd = -1;
        const Status lock = lockFile(lockPath(), lockFd);
        const UniqueFd unlock(lockFd);
        if (lock)
            disk = load(m_path, m_shape);
        if (disk.state == OnDisk::State::damaged) {
            const auto aside = lock ? setAside(m_path) : std::nullopt;
            if (aside)
                postSetAside(m_words, *aside);
            else
                StoreNotices::post(QStringLiteral("Orwick couldn’t read %1 (“%2”), so %3.")
                                       .arg(m_words.what, m_path.abbreviated(), m_words.afresh));
            return std::nullopt;
        }
    }
    if (disk.state == OnDisk::State::unreadable)
        StoreNotices::post(QStringLiteral("Orwick couldn’t read %1 (“%2”): %3, so %4.")
                               .arg(m_words.what, m_path.abbreviated(), errorReason(disk.error), m_words.afresh));
    if (disk.state != OnDisk::State::sound)
        return std::nullopt;
    return disk.document;
}

Result<QJsonDocument> StoreFile::update(const Merge& merge) const
{
    const auto fail = [this](const QString& reason) -> Result<QJsonDocument> {
        StoreNotices::postOnce(savingKey(m_path),
                               QStringLiteral("Orwick couldn’t save %1 (“%2”): %3. Nothing is lost while Orwick is "
                                              "open; it tries again with the next change.")
                                   .arg(m_words.what, m_path.abbreviated(), reason));
        return failure(QStringLiteral("Couldn’t write “%1”: %2.").arg(m_path.abbreviated(), reason));
    };
    if (!makeParents(m_path))
        return fail(errorReason(errno));
    int lockFd = -1;
    const Status lock = lockFile(lockPath(), lockFd);
    const UniqueFd unlock(lockFd);
    if (!lock)
        return fail(lock.error());

    const OnDisk disk = load(m_path, m_shape);
    if (disk.state == OnDisk::State::unreadable)
        return fail(errorReason(disk.error)); // never replace what can't be read
    if (disk.state == OnDisk::State::damaged) {
        const auto aside = setAside(m_path);
        if (!aside)
            return fail(errorReason(errno)); // nor what can't be kept
        postSetAside(m_words, *aside);
    }
    QJsonDocument document = merge(disk.state == OnDisk::State::sound ? std::optional(disk.document) : std::nullopt);
    if (const Status written = writeFileAtomically(m_path, document.toJson(QJsonDocument::Indented)); !written)
        return fail(written.error());
    StoreNotices::clearOnce(savingKey(m_path));
    return document;
}

} // namespace orwick
