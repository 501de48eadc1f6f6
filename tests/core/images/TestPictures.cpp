#include "TestPictures.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QtEndian>

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

QByteArray encoded(const QImage& image, const QByteArray& format, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(quality);
    writer.write(image);
    return bytes;
}

QImage halves(QSize size, QColor left, QColor right)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(right);
    QPainter painter(&image);
    painter.fillRect(QRect(0, 0, size.width() / 2, size.height()), left);
    return image;
}

QByteArray withExifOrientation(const QByteArray& jpeg, int orientation)
{
    // A big-endian TIFF header and one IFD entry: Orientation (0x0112), SHORT, 1 value.
    QByteArray tiff = QByteArray("MM\x00\x2A\x00\x00\x00\x08", 8) + QByteArray("\x00\x01", 2)
        + QByteArray("\x01\x12\x00\x03\x00\x00\x00\x01", 8) + char(0) + char(orientation) + QByteArray(2, '\0')
        + QByteArray(4, '\0');
    const QByteArray payload = QByteArray("Exif\0\0", 6) + tiff;
    const int length = int(payload.size()) + 2;
    const QByteArray segment = QByteArray("\xFF\xE1", 2) + char(length >> 8) + char(length & 0xFF) + payload;
    return jpeg.left(2) + segment + jpeg.mid(2);
}

QByteArray jpegScan(const QByteArray& bytes)
{
    qsizetype at = 2;
    while (at + 4 <= bytes.size() && uchar(bytes[at]) == 0xFF) {
        if (uchar(bytes[at + 1]) == 0xDA)
            return bytes.mid(at);
        at += 2 + qFromBigEndian<quint16>(bytes.constData() + at + 2);
    }
    return {};
}

QByteArray pngClaiming(QSize size)
{
    QByteArray header = bigEndian32(quint32(size.width())) + bigEndian32(quint32(size.height()));
    header += QByteArray("\x08\x02\x00\x00\x00", 5); // 8-bit RGB, no interlace
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", header) + pngChunk("IDAT", QByteArray(4, '\0'))
        + pngChunk("IEND", {});
}

QByteArray twoFrameGif()
{
    static const unsigned char gif[] = {
        0x47, 0x49, 0x46, 0x38, 0x39, 0x61, 0x04, 0x00, 0x04, 0x00, 0xf0, 0x00, 0x00, 0xff, 0x00, 0x00, 0x00, 0x00,
        0x00, 0x21, 0xf9, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, 0x21, 0xff, 0x0b, 0x4e, 0x45, 0x54, 0x53, 0x43, 0x41,
        0x50, 0x45, 0x32, 0x2e, 0x30, 0x03, 0x01, 0x00, 0x00, 0x00, 0x2c, 0x00, 0x00, 0x00, 0x00, 0x04, 0x00, 0x04,
        0x00, 0x00, 0x02, 0x04, 0x84, 0x8f, 0x09, 0x05, 0x00, 0x21, 0xf9, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, 0x2c,
        0x00, 0x00, 0x00, 0x00, 0x04, 0x00, 0x04, 0x00, 0x80, 0x00, 0x00, 0xff, 0x00, 0x00, 0x00, 0x02, 0x04, 0x84,
        0x8f, 0x09, 0x05, 0x00, 0x3b};
    return QByteArray(reinterpret_cast<const char*>(gif), sizeof gif);
}

QByteArray twoFrameWebp()
{
    static const unsigned char webp[] = {
        0x52, 0x49, 0x46, 0x46, 0x84, 0x00, 0x00, 0x00, 0x57, 0x45, 0x42, 0x50, 0x56, 0x50, 0x38, 0x58, 0x0a,
        0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x03, 0x00, 0x00, 0x41, 0x4e, 0x49, 0x4d,
        0x06, 0x00, 0x00, 0x00, 0xff, 0xff, 0xff, 0xff, 0x00, 0x00, 0x41, 0x4e, 0x4d, 0x46, 0x28, 0x00, 0x00,
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x03, 0x00, 0x00, 0x64, 0x00, 0x00, 0x02,
        0x56, 0x50, 0x38, 0x4c, 0x0f, 0x00, 0x00, 0x00, 0x2f, 0x03, 0xc0, 0x00, 0x00, 0x07, 0x10, 0xfd, 0x8f,
        0xfe, 0x07, 0x22, 0xa2, 0xff, 0x01, 0x00, 0x41, 0x4e, 0x4d, 0x46, 0x28, 0x00, 0x00, 0x00, 0x00, 0x00,
        0x00, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x03, 0x00, 0x00, 0x64, 0x00, 0x00, 0x00, 0x56, 0x50, 0x38,
        0x4c, 0x0f, 0x00, 0x00, 0x00, 0x2f, 0x03, 0xc0, 0x00, 0x00, 0x07, 0x10, 0xd1, 0xff, 0xfe, 0x07, 0x22,
        0xa2, 0xff, 0x01, 0x00};
    return QByteArray(reinterpret_cast<const char*>(webp), sizeof webp);
}

QImage decoded(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    return reader.read();
}

bool near(QColor a, QColor b, int tolerance)
{
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
        && std::abs(a.blue() - b.blue()) <= tolerance;
}

} // namespace orwick::test
