#include "images/ImageFormats.h"

#include "images/ImageRead.h"

#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <QSet>

namespace orwick {

QByteArray formatOfSuffix(const QString& suffix)
{
    // Picture suffixes that name a format other than their own; the rest name themselves.
    if (suffix == u"jpg" || suffix == u"jpe" || suffix == u"jfif")
        return "jpeg";
    if (suffix == u"tif")
        return "tiff";
    return suffix.toLatin1();
}

QList<QByteArray> writableImageFormats()
{
    // The plugins can't change while the process runs: ask Qt once.
    static const QList<QByteArray> formats = [] {
        const QList<QByteArray> supported = QImageWriter::supportedImageFormats();
        QList<QByteArray> writable;
        for (const QByteArray format : {"png", "jpeg", "webp", "avif"}) {
            if (supported.contains(format))
                writable.append(format);
        }
        return writable;
    }();
    return formats;
}

bool isWritableImageFormat(const QByteArray& format) { return writableImageFormats().contains(format); }

QString formatTitle(const QByteArray& format)
{
    if (format == "webp")
        return QStringLiteral("WebP");
    if (format == "jpg")
        return QStringLiteral("JPEG");
    return QString::fromLatin1(format).toUpper();
}

QByteArray formatSuffix(const QByteArray& format) { return format == "jpeg" ? QByteArray("jpg") : format; }

bool isPicture(const FilePath& file)
{
    static const QSet<QByteArray> readable = [] {
        const QList<QByteArray> formats = QImageReader::supportedImageFormats();
        return QSet<QByteArray>(formats.begin(), formats.end());
    }();
    const QByteArray format = formatOfSuffix(file.extension());
    if (!readable.contains(format))
        return false;
    QFile handle;
    if (!openPictureFile(handle, file))
        return false;
    // canRead() looks at the first bytes only; the format's name lets it ask just that plugin
    // first, and a file whose bytes are another picture format still counts.
    QImageReader reader(&handle);
    return reader.canRead();
}

} // namespace orwick
