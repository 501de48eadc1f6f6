#include "preview/ImageDecode.h"

#include "images/ImageRead.h"
#include "images/UprightReader.h"

#include <QFile>

namespace orwick::preview {

namespace {

QString damaged(const FilePath& path)
{
    return QStringLiteral("“%1” can’t be shown: the picture is damaged or in a format Orwick can’t read.").arg(path.fileName());
}

// A picture the preview allows decodes within the bounded read the limit is raised for.
static_assert(PreviewLimits{}.maxPixels <= kMaxDecodedPixels);

} // namespace

std::optional<std::pair<QSize, QString>> imageSize(const FilePath& path)
{
    QFile file;
    qint64 bytes = 0;
    if (!openPictureFile(file, path, &bytes))
        return std::nullopt;
    UprightReader source(file);
    const QSize size = source.qt().size();
    if (!size.isValid())
        return std::nullopt;
    return std::pair{uprightSize(size, source.transformation()), QString::fromLatin1(source.qt().format())};
}

std::expected<DecodedImage, ImageFailure> decodeImage(const FilePath& path, QSize box, const PreviewLimits& limits,
                                                      const CancelFlag& cancel)
{
    QFile file;
    qint64 bytes = 0;
    if (!openPictureFile(file, path, &bytes))
        return std::unexpected(ImageFailure{QStringLiteral("Can’t read “%1”.").arg(path.fileName()), {}, {}});
    // Qt would show a JPEG cut short with a grey bottom.
    const bool cutShort = bytes <= limits.imageFileBytes && isCutShortJpeg(file);
    UprightReader source(file);
    QImageReader& reader = source.qt();
    const QSize stored = reader.size();
    const QString format = QString::fromLatin1(reader.format());
    if (!stored.isValid() || stored.isEmpty())
        return std::unexpected(ImageFailure{damaged(path), {}, format});
    const QImageIOHandler::Transformations transformation = source.transformation();
    const QSize size = uprightSize(stored, transformation);
    if (bytes > limits.imageFileBytes)
        return std::unexpected(ImageFailure{QStringLiteral("Too large to preview"), size, format});
    // The size to decode at, before the reader turns the picture upright.
    QSize target = stored;
    const QSize storedBox = uprightSize(box, transformation);
    if (stored.width() > storedBox.width() || stored.height() > storedBox.height())
        target = stored.scaled(storedBox, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    // JPEG and SVG really decode at the smaller size; other formats decode whole, then scale.
    const bool scalesWhileReading = readsScaled(format.toLatin1());
    if (!scalesWhileReading && qint64(stored.width()) * stored.height() > limits.maxPixels)
        return std::unexpected(ImageFailure{QStringLiteral("Too large to preview"), size, format});
    if (cutShort)
        return std::unexpected(ImageFailure{damaged(path), size, format});
    if (cancel.isCancelled())
        return DecodedImage{{}, size, format};
    allowBoundedPictureReads();
    if (target != stored && scalesWhileReading)
        reader.setScaledSize(target);
    QImage image = source.read();
    if (image.isNull())
        return std::unexpected(ImageFailure{damaged(path), size, format});
    // Formats that ignore the scaled size hand the whole picture back: fit it now.
    const QSize fitted = uprightSize(target, transformation);
    if (image.width() > fitted.width() || image.height() > fitted.height())
        image = smoothlyScaled(std::move(image), fitted, Qt::KeepAspectRatio);
    return DecodedImage{std::move(image), size, format};
}

} // namespace orwick::preview
