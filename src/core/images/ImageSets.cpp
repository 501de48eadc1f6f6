#include "images/ImageSets.h"

#include "images/ImageConvert.h"
#include "images/ImageFormats.h"
#include "images/ImageRead.h"

#include <QFile>

namespace orwick {

namespace {

struct SetName {
    QByteArray base;    // "icon"
    QByteArray suffix;  // "png" (as written)
    int scale = 0;      // 1, 2 or 3 when the name says so, else 0
};

SetName setName(const FilePath& source)
{
    SetName name;
    QByteArray stem = source.fileNameBytes();
    const qsizetype dot = stem.lastIndexOf('.');
    if (dot > 0) {
        name.suffix = stem.sliced(dot + 1);
        stem.truncate(dot);
    }
    for (int scale = 1; scale <= 3; ++scale) {
        const QByteArray tag = '@' + QByteArray::number(scale) + 'x';
        if (stem.endsWith(tag) && stem.size() > tag.size()) {
            name.scale = scale;
            stem.chop(tag.size());
        }
    }
    name.base = std::move(stem);
    return name;
}

FilePath fileOfScale(const FilePath& source, const SetName& name, int scale, const QByteArray& suffix)
{
    const QByteArray file = name.base + '@' + QByteArray::number(scale) + 'x' + (suffix.isEmpty() ? QByteArray() : '.' + suffix);
    return source.parent().child(QByteArrayView(file));
}

} // namespace

QSize scaledSetSize(QSize size, int scale, int ownScale)
{
    // Integer rounding, half up: round(w·k/s) without floating point.
    const auto scaled = [&](int side) { return int((qint64(side) * scale * 2 + ownScale) / (2 * ownScale)); };
    return QSize(scaled(size.width()), scaled(size.height())).expandedTo(QSize(1, 1));
}

Result<QList<FileOperations::MadeFile>> imageSet(const FilePath& source, const CancelFlag& cancel)
{
    const auto header = readPictureHeader(source);
    if (!header)
        return failure(header.error());
    const SetName name = setName(source);
    const bool vector = header->format == "svg" || header->format == "svgz";
    const QByteArray format = vector || !isWritableImageFormat(header->format) ? QByteArray("png") : header->format;
    const QByteArray suffix = format == header->format && !name.suffix.isEmpty() ? name.suffix : formatSuffix(format);
    // A vector picture's own size is its @1x; a raster one is the scale its name says, else @3x.
    const int ownScale = vector ? 1 : name.scale ? name.scale : 3;
    const int largest = vector ? 3 : ownScale;
    if (largest == 1 && format == header->format)
        return failure(QStringLiteral("“%1” is its smallest size already: there is nothing smaller to make.").arg(source.fileName()));

    QList<FileOperations::MadeFile> made;
    for (int scale = 1; scale <= largest; ++scale) {
        if (cancel.isCancelled())
            return failure(QString());
        if (!vector && scale == ownScale) {
            if (name.scale != 0 && format == header->format)
                continue; // the source is this scale already
            if (format == header->format) {
                // Its own size, unchanged: the source's bytes, not a second encoding.
                QFile file;
                if (!openPictureFile(file, source))
                    return failure(QStringLiteral("“%1” can’t be read.").arg(source.fileName()));
                made.append({fileOfScale(source, name, scale, suffix), file.readAll()});
                continue;
            }
        }
        const QSize size = scaledSetSize(header->size, scale, ownScale);
        auto read = readPicture(source, [&](QSize) { return size; }, cancel);
        if (!read)
            return failure(read.error());
        auto bytes = encodeImage(read->image, format, -1);
        if (!bytes)
            return failure(QStringLiteral("“%1”: %2").arg(source.fileName(), bytes.error()));
        made.append({fileOfScale(source, name, scale, suffix), std::move(*bytes)});
    }
    return made;
}

} // namespace orwick
