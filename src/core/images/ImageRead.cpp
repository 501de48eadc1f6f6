#include "images/ImageRead.h"

#include "images/UprightReader.h"
#include "platform/ErrorText.h"

#include <QImageReader>
#include <QScopeGuard>
#include <QLocale>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

QString quoted(const FilePath& path) { return QStringLiteral("“%1”").arg(path.fileName()); }

// Qt's reason in the user's words.
QString reasonOf(const QImageReader& reader)
{
    switch (reader.error()) {
    case QImageReader::UnsupportedFormatError:
        return QStringLiteral("it isn’t a kind of picture Orwick can read");
    case QImageReader::InvalidDataError:
        return QStringLiteral("the picture is damaged or cut short");
    case QImageReader::DeviceError:
    case QImageReader::FileNotFoundError:
        return QStringLiteral("the file couldn’t be read");
    case QImageReader::UnknownError:
        break;
    }
    const QString qtReason = reader.errorString();
    if (qtReason.isEmpty() || qtReason == u"Unknown error")
        return QStringLiteral("the picture is damaged or cut short");
    return QStringLiteral("the picture is damaged or cut short (Qt says: %1)").arg(qtReason);
}

QString unreadable(const FilePath& path, const QString& reason)
{
    return QStringLiteral("%1 can’t be read: %2.").arg(quoted(path), reason);
}

// Opens the file for an UprightReader, or says why it can't.
Result<void> openForReading(QFile& file, const FilePath& path)
{
    if (!openPictureFile(file, path)) {
        const int error = errno;
        return failure(unreadable(path, error == 0 ? QStringLiteral("it isn’t a file") : errorReason(error)));
    }
    return {};
}

// The larger side's reduction libjpeg's DCT scaling makes for this target: 1, 2, 4 or 8, as
// Qt's JPEG reader picks it.
int jpegReduction(QSize stored, QSize target)
{
    if (target.width() <= 0 || target.height() <= 0)
        return 1;
    const int ratio = std::min(stored.width() / target.width(), stored.height() / target.height());
    return ratio >= 8 ? 8 : ratio >= 4 ? 4 : ratio >= 2 ? 2 : 1;
}

// What the read decodes before any scaling after it.
qint64 decodedPixels(const QByteArray& format, QSize stored, QSize target)
{
    if (format == "svg" || format == "svgz")
        return qint64(target.width()) * target.height();
    if (format == "jpeg") {
        const int reduction = jpegReduction(stored, target);
        const qint64 width = (stored.width() + reduction - 1) / reduction;
        const qint64 height = (stored.height() + reduction - 1) / reduction;
        return width * height;
    }
    return qint64(stored.width()) * stored.height();
}

// "30,000": counts as the messages write them, whatever the locale.
QString grouped(qint64 number) { return QLocale(QLocale::English, QLocale::UnitedStates).toString(number); }

} // namespace

bool openPictureFile(QFile& file, const FilePath& path, qint64* bytes)
{
    errno = 0;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (fd < 0)
        return false;
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || !file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        errno = 0;
        return false;
    }
    if (bytes)
        *bytes = st.st_size;
    return true;
}

QSize uprightSize(QSize stored, QImageIOHandler::Transformations transformation)
{
    return transformation & QImageIOHandler::TransformationRotate90 ? stored.transposed() : stored;
}

Result<PictureHeader> readPictureHeader(const FilePath& path)
{
    QFile file;
    if (auto opened = openForReading(file, path); !opened)
        return failure(opened.error());
    UprightReader source(file);
    QImageReader& reader = source.qt();
    const QSize stored = reader.size();
    if (!stored.isValid() || stored.isEmpty())
        return failure(unreadable(path, reasonOf(reader)));
    PictureHeader header{uprightSize(stored, source.transformation()), reader.format()};
    header.animated = reader.supportsAnimation() && reader.imageCount() > 1;
    return header;
}

Result<ReadPicture> readPicture(const FilePath& path, const std::function<QSize(QSize)>& sizeFor, const CancelFlag& cancel)
{
    QFile file;
    if (auto opened = openForReading(file, path); !opened)
        return failure(opened.error());
    const bool cutShort = isCutShortJpeg(file); // before the reader starts on the file
    UprightReader source(file);
    QImageReader& reader = source.qt();
    const QSize stored = reader.size();
    const QByteArray format = reader.format();
    if (!stored.isValid() || stored.isEmpty())
        return failure(unreadable(path, reasonOf(reader)));
    const QImageIOHandler::Transformations transformation = source.transformation();
    const QSize upright = uprightSize(stored, transformation);
    QSize target = sizeFor ? sizeFor(upright) : upright;
    if (target.isEmpty())
        target = upright;
    // The reader scales in the stored orientation, before it turns the picture upright.
    const QSize storedTarget = uprightSize(target, transformation);
    const qint64 decoded = std::max(decodedPixels(format, stored, storedTarget), qint64(target.width()) * target.height());
    if (decoded > kMaxDecodedPixels)
        return failure(QStringLiteral("%1 is too large to work on: %2 × %3 pixels (Orwick decodes at most %4 megapixels at once).")
                           .arg(quoted(path), grouped(upright.width()), grouped(upright.height()),
                                grouped(kMaxDecodedPixels / 1'000'000)));
    if (format == "jpeg" && cutShort)
        return failure(unreadable(path, QStringLiteral("the picture is cut short")));
    if (cancel.isCancelled())
        return failure(QString());
    allowBoundedPictureReads();
    if (storedTarget != stored && readsScaled(format))
        reader.setScaledSize(storedTarget);
    QImage image = source.read();
    if (image.isNull())
        return failure(unreadable(path, reasonOf(reader)));
    // Formats that ignore the scaled size hand the whole picture back: scale it now.
    if (image.size() != target)
        image = smoothlyScaled(std::move(image), target, Qt::IgnoreAspectRatio);
    return ReadPicture{std::move(image), format, upright};
}

bool readsScaled(QByteArrayView format)
{
    return format == "jpeg" || format == "jpg" || format == "svg" || format == "svgz";
}

QImage smoothlyScaled(QImage image, QSize size, Qt::AspectRatioMode mode)
{
    switch (image.format()) {
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
    case QImage::Format_Indexed8:
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
        break;
    default:
        break;
    }
    return image.scaled(size, mode, Qt::SmoothTransformation);
}

bool isCutShortJpeg(QIODevice& device)
{
    return device.peek(2) == QByteArrayView("\xFF\xD8", 2) && !jpegLooksComplete(device);
}

void allowBoundedPictureReads()
{
    // Compared under a lock so that two first reads on two threads set it once; once raised,
    // calls only read it.
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    const int megabytes = int(kMaxDecodedPixels * 4 / (1024 * 1024));
    const int limit = QImageReader::allocationLimit();
    if (limit != 0 && limit < megabytes)
        QImageReader::setAllocationLimit(megabytes);
}

bool jpegLooksComplete(QIODevice& device)
{
    const auto atStart = qScopeGuard([&] { device.seek(0); });
    const qint64 size = device.size();
    if (size < 4)
        return false;
    // Most files end with the marker itself.
    if (device.seek(size - 2) && device.read(2) == QByteArrayView("\xFF\xD9", 2))
        return true;
    // Walk the segments before the first scan by their lengths (EXIF thumbnails hold markers
    // of their own), then look for the end marker in what follows: entropy-coded data never
    // holds it (a 0xFF there is followed by 0x00 or a restart marker).
    qint64 at = 2;
    for (;;) {
        if (!device.seek(at))
            return false;
        const QByteArray head = device.read(4);
        if (head.size() < 4 || uchar(head[0]) != 0xFF)
            return false;
        const uchar marker = uchar(head[1]);
        if (marker == 0xFF) { // fill byte
            ++at;
            continue;
        }
        if (marker == 0xD9)
            return false; // ends before any scan
        const qint64 length = (uchar(head[2]) << 8) | uchar(head[3]);
        if (length < 2)
            return false;
        at += 2 + length;
        if (marker == 0xDA)
            break;
    }
    if (!device.seek(at))
        return false;
    char previous = 0;
    for (;;) {
        const QByteArray chunk = device.read(1 << 20);
        if (chunk.isEmpty())
            return false;
        if (previous == char(0xFF) && chunk[0] == char(0xD9))
            return true;
        if (memmem(chunk.constData(), size_t(chunk.size()), "\xFF\xD9", 2))
            return true;
        previous = chunk.back();
    }
}

} // namespace orwick
