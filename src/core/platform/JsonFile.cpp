#include "platform/JsonFile.h"

#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

std::optional<QJsonDocument> readJsonFile(const FilePath& path)
{
    QFile file(path.text());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        return std::nullopt;
    return document;
}

Status writeFileAtomically(const FilePath& path, const QByteArray& bytes)
{
    const FilePath folder = path.parent();
    QByteArray pattern = folder.child(QByteArrayView("." + path.fileNameBytes() + ".XXXXXX")).native();
    UniqueFd file(::mkostemp(pattern.data(), O_CLOEXEC));
    if (!file.ok())
        return failure(errorReason(errno));
    const auto fail = [&](int error) {
        ::unlink(pattern.constData());
        return failure(writeErrorReason(error, file.get()));
    };
    struct stat old {};
    ::fchmod(file.get(), ::stat(path.c_str(), &old) == 0 ? (old.st_mode & 07777) : 0600);
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t n = ::write(file.get(), bytes.constData() + done, size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return fail(n < 0 ? errno : ENOSPC);
        done += n;
    }
    // A full or failing disk may only say so when the data is synced or the file closed.
    if (::fsync(file.get()) != 0)
        return fail(errno);
    if (::close(file.release()) != 0)
        return fail(errno);
    if (::rename(pattern.constData(), path.c_str()) != 0)
        return fail(errno);
    // The rename itself lasts only once the folder is synced.
    if (const UniqueFd dir(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)); dir.ok())
        ::fsync(dir.get());
    return {};
}

Status writeJsonFile(const FilePath& path, const QJsonDocument& document)
{
    if (!QDir().mkpath(path.parent().text()))
        return failure(QStringLiteral("Couldn’t make the folder “%1”.").arg(path.parent().abbreviated()));
    if (const Status written = writeFileAtomically(path, document.toJson(QJsonDocument::Indented)); !written)
        return failure(QStringLiteral("Couldn’t write “%1”: %2.").arg(path.abbreviated(), written.error()));
    return {};
}

} // namespace orwick
