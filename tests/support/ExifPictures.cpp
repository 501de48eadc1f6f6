#include "support/ExifPictures.h"

#include <QBuffer>
#include <QImageReader>
#include <QSize>
#include <QtEndian>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

quint32 crc32(QByteArrayView bytes)
{
    quint32 crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 1 ? (crc >> 1) ^ 0xEDB88320 : crc >> 1;
    }
    return ~crc;
}

QByteArray littleEndian(quint32 value, int bytes)
{
    QByteArray out;
    for (int i = 0; i < bytes; ++i)
        out += char((value >> (8 * i)) & 0xFF);
    return out;
}

QByteArray jpegWithExif(const QByteArray& jpeg, const QByteArray& exif)
{
    const QByteArray payload = QByteArray("Exif\0\0", 6) + exif;
    const int length = int(payload.size()) + 2;
    const QByteArray segment = QByteArray("\xFF\xE1", 2) + char(length >> 8) + char(length & 0xFF) + payload;
    return jpeg.left(2) + segment + jpeg.mid(2);
}

// After the signature and the header chunk (IHDR, always first and 25 bytes long).
QByteArray pngWithExif(const QByteArray& png, const QByteArray& exif)
{
    const qsizetype afterHeader = 8 + 25;
    return png.left(afterHeader) + pngChunk("eXIf", exif) + png.mid(afterHeader);
}

QByteArray riffChunk(const QByteArray& fourcc, const QByteArray& data)
{
    return fourcc + littleEndian(quint32(data.size()), 4) + data + (data.size() % 2 ? QByteArray(1, '\0') : QByteArray());
}

// A simple WebP ("VP8 " or "VP8L" alone) made extended: a "VP8X" header saying EXIF is there,
// the picture's chunk, then the "EXIF" chunk.
QByteArray webpWithExif(const QByteArray& webp, const QByteArray& exif)
{
    QBuffer buffer;
    buffer.setData(webp);
    buffer.open(QIODevice::ReadOnly);
    const QSize size = QImageReader(&buffer).size();
    const QByteArray picture = webp.mid(12);
    EXPECT_TRUE(size.isValid() && (picture.startsWith("VP8 ") || picture.startsWith("VP8L"))) << "not a simple WebP";
    const QByteArray header = QByteArray(1, '\x08') + QByteArray(3, '\0') + littleEndian(quint32(size.width() - 1), 3)
        + littleEndian(quint32(size.height() - 1), 3);
    const QByteArray body = "WEBP" + riffChunk("VP8X", header) + picture + riffChunk("EXIF", exif);
    return "RIFF" + littleEndian(quint32(body.size()), 4) + body;
}

} // namespace

QByteArray bigEndian32(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray pngChunk(const QByteArray& type, const QByteArray& data)
{
    return bigEndian32(quint32(data.size())) + type + data + bigEndian32(crc32(type + data));
}

QByteArray exifOrientationBlock(int orientation)
{
    // The TIFF header, then one directory of one entry: Orientation (0x0112), SHORT, 1 value;
    // no next directory.
    return QByteArray("MM\x00\x2A\x00\x00\x00\x08", 8) + QByteArray("\x00\x01", 2)
        + QByteArray("\x01\x12\x00\x03\x00\x00\x00\x01", 8) + char(orientation >> 8) + char(orientation & 0xFF)
        + QByteArray(2, '\0') + QByteArray(4, '\0');
}

QByteArray withExif(const QByteArray& picture, const QByteArray& exif)
{
    if (picture.startsWith("\xFF\xD8"))
        return jpegWithExif(picture, exif);
    if (picture.startsWith("\x89PNG\r\n\x1a\n"))
        return pngWithExif(picture, exif);
    if (picture.startsWith("RIFF") && picture.mid(8, 4) == "WEBP")
        return webpWithExif(picture, exif);
    ADD_FAILURE() << "withExif: neither a JPEG, a PNG nor a WebP";
    return picture;
}

} // namespace orwick::test
