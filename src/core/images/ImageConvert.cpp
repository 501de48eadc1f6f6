#include "images/ImageConvert.h"

#include "images/ImageFormats.h"
#include "images/ImageMetadata.h"
#include "images/ImageRead.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageWriter>
#include <QPainter>
#include <cmath>

namespace orwick {

namespace {

// The format the result is written in: the one asked for, else the source's own when Qt
// writes it, else PNG.
QByteArray resultFormat(const ConvertOptions& options, const QByteArray& sourceFormat)
{
    if (!options.format.isEmpty())
        return options.format;
    return isWritableImageFormat(sourceFormat) ? sourceFormat : QByteArray("png");
}

// " (1600 px)", " (50%)", " (800x600)" or nothing.
QByteArray sizeTag(const ImageResize& resize)
{
    switch (resize.kind) {
    case ImageResize::Kind::none:
        return {};
    case ImageResize::Kind::longest:
        return " (" + QByteArray::number(resize.longest) + " px)";
    case ImageResize::Kind::percent:
        return " (" + QByteArray::number(resize.percent) + "%)";
    case ImageResize::Kind::exact:
        return " (" + QByteArray::number(resize.exact.width()) + 'x' + QByteArray::number(resize.exact.height()) + ')';
    }
    return {};
}

// The source's name without its last suffix, as bytes.
QByteArray stem(const FilePath& source)
{
    QByteArray name = source.fileNameBytes();
    const qsizetype dot = name.lastIndexOf('.');
    if (dot > 0)
        name.truncate(dot);
    return name;
}

struct Converted {
    QByteArray bytes;
    QByteArray format;
};

Result<Converted> convert(const FilePath& source, const ConvertOptions& options, const CancelFlag& cancel)
{
    if (!options.format.isEmpty() && !isWritableImageFormat(options.format))
        return failure(QStringLiteral("Orwick can’t write %1 pictures here.").arg(formatTitle(options.format)));
    const ImageResize resize = options.resize;
    auto read = readPicture(source, [&](QSize size) { return resizedSize(size, resize); }, cancel);
    if (!read)
        return failure(read.error());
    if (cancel.isCancelled())
        return failure(QString());
    const QByteArray format = resultFormat(options, read->format);
    auto bytes = encodeImage(read->image, format, options.quality);
    if (!bytes)
        return failure(QStringLiteral("“%1”: %2").arg(source.fileName(), bytes.error()));
    auto kept = withMetadataOf(source, *bytes, read->image.size()); // the camera, date and place stay with the photo
    if (!kept)
        return failure(kept.error());
    return Converted{std::move(*kept), format};
}

} // namespace

QString convertVerb(const ConvertOptions& options)
{
    if (options.format.isEmpty())
        return QStringLiteral("Resize");
    return QStringLiteral("Convert to %1").arg(formatTitle(options.format));
}

QSize resizedSize(QSize size, const ImageResize& resize)
{
    QSize result = size;
    switch (resize.kind) {
    case ImageResize::Kind::none:
        break;
    case ImageResize::Kind::longest: {
        const int longer = std::max(size.width(), size.height());
        if (resize.longest > 0 && longer > resize.longest)
            result = QSize(int(std::lround(double(size.width()) * resize.longest / longer)),
                           int(std::lround(double(size.height()) * resize.longest / longer)));
        break;
    }
    case ImageResize::Kind::percent:
        result = QSize(int(std::lround(size.width() * (resize.percent / 100.0))), int(std::lround(size.height() * (resize.percent / 100.0))));
        break;
    case ImageResize::Kind::exact:
        result = resize.exact;
        break;
    }
    return result.expandedTo(QSize(1, 1));
}

Result<QByteArray> encodeImage(const QImage& image, const QByteArray& format, int quality)
{
    QImage picture = image;
    if (format == "jpeg" && picture.hasAlphaChannel()) {
        QImage flat(picture.size(), QImage::Format_RGB32);
        flat.setColorSpace(picture.colorSpace());
        flat.fill(Qt::white);
        QPainter painter(&flat);
        painter.drawImage(0, 0, picture);
        painter.end();
        picture = std::move(flat);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    // A buffer in memory, not a file: the bytes go to disk through the engine (or the clipboard).
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    if (quality >= 0)
        writer.setQuality(std::min(quality, 100));
    if (!writer.write(picture))
        return failure(QStringLiteral("the %1 writer failed (%2).").arg(formatTitle(format), writer.errorString()));
    return bytes;
}

Result<QList<FileOperations::MadeFile>> convertImage(const FilePath& source, const ConvertOptions& options,
                                                     const CancelFlag& cancel)
{
    auto converted = convert(source, options, cancel);
    if (!converted)
        return failure(converted.error());
    const QByteArray name = stem(source) + sizeTag(options.resize) + '.' + formatSuffix(converted->format);
    return QList<FileOperations::MadeFile>{{source.parent().child(QByteArrayView(name)), std::move(converted->bytes)}};
}

Result<QByteArray> convertedBytes(const FilePath& source, const ConvertOptions& options, const CancelFlag& cancel)
{
    // Known before decoding: the format the result would have, against the one the name says.
    const QByteArray named = formatOfSuffix(source.extension());
    if (!options.format.isEmpty() && options.format != named)
        return failure(QStringLiteral("“%1” can’t become %2 in place: its name says it is %3. Convert it beside the original instead.")
                           .arg(source.fileName(), formatTitle(options.format), source.extension().toUpper()));
    if (options.format.isEmpty() && !isWritableImageFormat(named))
        return failure(QStringLiteral("“%1” can’t be resized in place: Orwick can’t write %2 pictures.")
                           .arg(source.fileName(), source.extension().toUpper()));
    auto converted = convert(source, options, cancel);
    if (!converted)
        return failure(converted.error());
    if (converted->format != named)
        return failure(QStringLiteral("“%1” can’t be changed in place: it holds a %2 picture under another name.")
                           .arg(source.fileName(), formatTitle(converted->format)));
    return std::move(converted->bytes);
}

bool isAnimated(const FilePath& file)
{
    const auto header = readPictureHeader(file);
    return header && header->animated;
}

} // namespace orwick
