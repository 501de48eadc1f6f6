// Turning pictures: a JPEG through its EXIF orientation alone (exiv2 rewrites only the metadata
// segments), other pictures through their pixels, encoded again in their own format.

#include "images/ImageTurn.h"

#include "fileops/OperationTexts.h"
#include "images/Exiv2Access.h"
#include "images/ImageConvert.h"
#include "images/ImageFormats.h"
#include "images/ImageMetadata.h"
#include "images/ImageRead.h"
#include "images/PictureFile.h"

#include <QFile>
#include <QTransform>
#include <QtEndian>
#include <array>
#include <exiv2/exiv2.hpp>

namespace orwick {
namespace {

// Each orientation as the 2 × 2 matrix that takes a stored pixel's offset from the centre to
// where it is shown (x right, y down): {a, b, c, d} is [[a, b], [c, d]].
using Matrix = std::array<int, 4>;
constexpr std::array<Matrix, 8> kOrientations{{
    {1, 0, 0, 1},   // 1 upright
    {-1, 0, 0, 1},  // 2 mirrored left to right
    {-1, 0, 0, -1}, // 3 half a turn
    {1, 0, 0, -1},  // 4 mirrored top to bottom
    {0, 1, 1, 0},   // 5 mirrored along the diagonal from the top left
    {0, -1, 1, 0},  // 6 a quarter clockwise
    {0, -1, -1, 0}, // 7 mirrored along the other diagonal
    {0, 1, -1, 0},  // 8 a quarter anticlockwise
}};

Matrix times(const Matrix& m, const Matrix& n)
{
    return {m[0] * n[0] + m[1] * n[2], m[0] * n[1] + m[1] * n[3], m[2] * n[0] + m[3] * n[2], m[2] * n[1] + m[3] * n[3]};
}

// The orientation that shows a picture as `turn` turns an upright one.
int orientationOfTurn(PictureTurn turn)
{
    switch (turn) {
    case PictureTurn::left:
        return 8;
    case PictureTurn::right:
        return 6;
    case PictureTurn::flipHorizontal:
        return 2;
    case PictureTurn::flipVertical:
        return 4;
    }
    return 1;
}

// A lossless WebP holds its picture in a "VP8L" chunk, a lossy one in a "VP8 " chunk.
bool isLosslessWebp(const QByteArray& bytes)
{
    if (bytes.size() < 12 || !bytes.startsWith("RIFF") || bytes.mid(8, 4) != "WEBP")
        return false;
    for (qsizetype at = 12; at + 8 <= bytes.size();) {
        const QByteArrayView chunk(bytes.constData() + at, 4);
        if (chunk == "VP8L")
            return true;
        if (chunk == "VP8 ")
            return false;
        const quint32 length = qFromLittleEndian<quint32>(bytes.constData() + at + 4);
        at += 8 + qsizetype(length) + (length & 1);
    }
    return false;
}

// The quality the turned pixels are written at: lossless stays lossless, lossy loses little.
int qualityFor(const QByteArray& format, const QByteArray& bytes)
{
    if (format == "webp")
        return isLosslessWebp(bytes) ? 100 : 95; // Qt's WebP writer is lossless at 100
    if (format == "jpeg" || format == "avif")
        return 95;
    return -1;
}

// A JPEG turned by its metadata alone is never decoded: it must at least be whole and have a
// header Qt reads, or a damaged picture would be "turned" as if it were fine.
Status checkWholeJpeg(const FilePath& file)
{
    QFile handle;
    if (openPictureFile(handle, file) && isCutShortJpeg(handle))
        return failure(QStringLiteral("%1 can’t be read: the picture is cut short.").arg(quoted(file.fileName())));
    if (const auto header = readPictureHeader(file); !header)
        return failure(header.error());
    return {};
}

// The JPEG with its orientation turned; its compressed picture data untouched.
Result<QByteArray> turnedJpeg(const FilePath& file, const QByteArray& bytes, PictureTurn turn, const CancelFlag& cancel)
{
    return exiv2::guarded<QByteArray>(QStringLiteral("turn"), file.fileName(), [&]() -> Result<QByteArray> {
        const auto image = exiv2::openBytes(bytes);
        image->readMetadata();
        if (cancel.isCancelled())
            return failure(QString());
        const int turned = turnedOrientation(exiv2::orientationIn(image->exifData()), turn);
        image->exifData()["Exif.Image.Orientation"] = uint16_t(turned);
        Exiv2::XmpData& xmp = image->xmpData();
        if (xmp.findKey(Exiv2::XmpKey("Xmp.tiff.Orientation")) != xmp.end())
            xmp["Xmp.tiff.Orientation"] = std::to_string(turned);
        image->writeMetadata();
        QByteArray written = exiv2::contentsOf(*image);
        const auto check = exiv2::openBytes(written);
        check->readMetadata();
        if (exiv2::orientationIn(check->exifData()) != turned)
            throw std::runtime_error("the new orientation didn’t hold after writing");
        return written;
    });
}

// The picture decoded upright, turned, encoded again in `format`, its metadata kept.
Result<QByteArray> turnedPixels(const FilePath& file, const QByteArray& bytes, const QByteArray& format, PictureTurn turn,
                                const CancelFlag& cancel)
{
    auto read = readPicture(file, {}, cancel);
    if (!read)
        return failure(read.error());
    if (read->format != format)
        return failure(QStringLiteral("%1 can’t be turned in place: it holds a %2 picture under another name.")
                           .arg(quoted(file.fileName()), formatTitle(read->format)));
    if (cancel.isCancelled())
        return failure(QString());
    const QImage turned = turnedImage(read->image, turn);
    auto encoded = encodeImage(turned, format, qualityFor(format, bytes));
    if (!encoded)
        return failure(QStringLiteral("%1: %2").arg(quoted(file.fileName()), encoded.error()));
    return withMetadataOf(file, *encoded, turned.size());
}

} // namespace

QString turnTitle(PictureTurn turn)
{
    switch (turn) {
    case PictureTurn::left:
        return QStringLiteral("Rotate Left");
    case PictureTurn::right:
        return QStringLiteral("Rotate Right");
    case PictureTurn::flipHorizontal:
        return QStringLiteral("Flip Horizontal");
    case PictureTurn::flipVertical:
        return QStringLiteral("Flip Vertical");
    }
    return {};
}

QString turnSymbol(PictureTurn turn)
{
    switch (turn) {
    case PictureTurn::left:
        return QStringLiteral("rotate.left");
    case PictureTurn::right:
        return QStringLiteral("rotate.right");
    case PictureTurn::flipHorizontal:
        return QStringLiteral("arrow.left.and.right.righttriangle.left.righttriangle.right");
    case PictureTurn::flipVertical:
        return QStringLiteral("arrow.up.and.down.righttriangle.up.righttriangle.down");
    }
    return {};
}

int turnedOrientation(int orientation, PictureTurn turn)
{
    const int from = orientation >= 1 && orientation <= 8 ? orientation : 1;
    const Matrix shown = times(kOrientations[size_t(orientationOfTurn(turn) - 1)], kOrientations[size_t(from - 1)]);
    for (size_t i = 0; i < kOrientations.size(); ++i)
        if (kOrientations[i] == shown)
            return int(i) + 1;
    return 1; // unreachable: the eight orientations are closed under composition
}

QImage turnedImage(const QImage& image, PictureTurn turn)
{
    switch (turn) {
    case PictureTurn::left:
        return image.transformed(QTransform().rotate(-90));
    case PictureTurn::right:
        return image.transformed(QTransform().rotate(90));
    case PictureTurn::flipHorizontal:
        return image.mirrored(true, false);
    case PictureTurn::flipVertical:
        return image.mirrored(false, true);
    }
    return image;
}

Result<QByteArray> turnedBytes(const FilePath& file, PictureTurn turn, const CancelFlag& cancel)
{
    if (const Status readable = images::checkPictureFile(file); !readable)
        return failure(readable.error());
    if (!isPicture(file))
        return failure(QStringLiteral("%1 isn’t a picture Orwick can read.").arg(quoted(file.fileName())));
    const QByteArray format = formatOfSuffix(file.extension());
    if (!isWritableImageFormat(format))
        return failure(QStringLiteral("%1 can’t be turned: Orwick can’t write %2 pictures.")
                           .arg(quoted(file.fileName()), file.extension().toUpper()));
    auto bytes = images::readPictureFile(file);
    if (!bytes)
        return failure(bytes.error());
    if (cancel.isCancelled())
        return failure(QString());
    if (format == "jpeg" && exiv2::typeOf(*bytes) == Exiv2::ImageType::jpeg) {
        if (const Status whole = checkWholeJpeg(file); !whole)
            return failure(whole.error());
        if (auto turned = turnedJpeg(file, *bytes, turn, cancel))
            return turned;
        else if (cancel.isCancelled())
            return failure(QString());
        // Its metadata can't be written: the pixels are turned instead, encoded again.
    }
    const auto header = readPictureHeader(file);
    if (!header)
        return failure(header.error());
    if (header->animated)
        return failure(QStringLiteral("%1 can’t be turned: it is an animation, and only its first frame would remain.").arg(quoted(file.fileName())));
    return turnedPixels(file, *bytes, format, turn, cancel);
}

} // namespace orwick
