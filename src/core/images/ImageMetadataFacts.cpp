// readPhotoFacts: camera, date taken and place from EXIF, else from XMP.

#include "images/Exiv2Access.h"
#include "images/ImageMetadata.h"
#include "images/PictureFile.h"

#include <QRegularExpression>
#include <cmath>
#include <exiv2/exiv2.hpp>

namespace orwick {
namespace {

QString textOf(const Exiv2::Metadatum& datum)
{
    // EXIF strings are padded with NULs and spaces by many cameras.
    QString text = QString::fromStdString(datum.toString());
    while (!text.isEmpty() && (text.back().isSpace() || text.back() == QChar(0)))
        text.chop(1);
    return text.trimmed();
}

template <class Data>
QString valueOf(const Data& data, const char* key)
{
    for (const auto& datum : data)
        if (datum.key() == key)
            return textOf(datum);
    return {};
}

// "Canon" + "Canon EOS R5" is "Canon EOS R5"; "NIKON CORPORATION" + "NIKON D750" is "NIKON D750".
QString cameraName(QString make, const QString& model)
{
    if (model.isEmpty())
        return make;
    const QString firstWord = make.section(u' ', 0, 0);
    if (make.isEmpty() || model.startsWith(firstWord, Qt::CaseInsensitive))
        return model;
    return make + u' ' + model;
}

QDateTime exifDate(const QString& text, const QString& offset)
{
    QDateTime date = QDateTime::fromString(text.left(19), QStringLiteral("yyyy:MM:dd HH:mm:ss"));
    static const QRegularExpression offsetPattern(QStringLiteral("^([+-])(\\d\\d):(\\d\\d)$"));
    const auto match = offsetPattern.match(offset);
    if (date.isValid() && match.hasMatch()) {
        const int seconds = (match.captured(2).toInt() * 60 + match.captured(3).toInt()) * 60;
        date.setOffsetFromUtc(match.captured(1) == u'-' ? -seconds : seconds);
    }
    return date;
}

// Degrees, minutes, seconds as EXIF's three rationals.
std::optional<double> exifDegrees(const Exiv2::ExifData& exif, const char* key)
{
    const auto it = exif.findKey(Exiv2::ExifKey(key));
    if (it == exif.end() || it->count() < 1)
        return std::nullopt;
    double degrees = 0;
    double scale = 1;
    for (long i = 0; i < std::min(it->count(), 3L); ++i, scale *= 60) {
        const Exiv2::Rational part = it->toRational(i);
        if (part.second == 0)
            return std::nullopt;
        degrees += double(uint32_t(part.first)) / double(uint32_t(part.second)) / scale;
    }
    return degrees;
}

// XMP's "51,30.25N" or "51,30,15N".
std::optional<double> xmpDegrees(const QString& text)
{
    if (text.size() < 2)
        return std::nullopt;
    const QChar direction = text.back().toUpper();
    const QStringList parts = text.chopped(1).split(u',');
    double degrees = 0;
    double scale = 1;
    for (qsizetype i = 0; i < std::min<qsizetype>(parts.size(), 3); ++i, scale *= 60) {
        bool ok = false;
        const double part = parts[i].toDouble(&ok);
        if (!ok)
            return std::nullopt;
        degrees += part / scale;
    }
    if (direction == u'S' || direction == u'W')
        return -degrees;
    if (direction == u'N' || direction == u'E')
        return degrees;
    return std::nullopt;
}

std::optional<QPointF> checkedPlace(std::optional<double> latitude, std::optional<double> longitude)
{
    if (!latitude || !longitude || !std::isfinite(*latitude) || !std::isfinite(*longitude)
        || std::abs(*latitude) > 90 || std::abs(*longitude) > 180)
        return std::nullopt;
    return QPointF(*latitude, *longitude);
}

std::optional<QPointF> exifPlace(const Exiv2::ExifData& exif)
{
    auto latitude = exifDegrees(exif, "Exif.GPSInfo.GPSLatitude");
    auto longitude = exifDegrees(exif, "Exif.GPSInfo.GPSLongitude");
    if (latitude && valueOf(exif, "Exif.GPSInfo.GPSLatitudeRef").startsWith(u'S', Qt::CaseInsensitive))
        *latitude = -*latitude;
    if (longitude && valueOf(exif, "Exif.GPSInfo.GPSLongitudeRef").startsWith(u'W', Qt::CaseInsensitive))
        *longitude = -*longitude;
    return checkedPlace(latitude, longitude);
}

PhotoFacts factsOf(Exiv2::Image& image)
{
    image.readMetadata();
    const Exiv2::ExifData& exif = image.exifData();
    const Exiv2::XmpData& xmp = image.xmpData();
    PhotoFacts facts;

    facts.camera = cameraName(valueOf(exif, "Exif.Image.Make"), valueOf(exif, "Exif.Image.Model"));
    if (facts.camera.isEmpty())
        facts.camera = cameraName(valueOf(xmp, "Xmp.tiff.Make"), valueOf(xmp, "Xmp.tiff.Model"));

    facts.taken = exifDate(valueOf(exif, "Exif.Photo.DateTimeOriginal"), valueOf(exif, "Exif.Photo.OffsetTimeOriginal"));
    for (const char* key : {"Xmp.exif.DateTimeOriginal", "Xmp.photoshop.DateCreated"}) {
        if (!facts.taken.isValid())
            facts.taken = QDateTime::fromString(valueOf(xmp, key), Qt::ISODate);
    }

    facts.location = exifPlace(exif);
    if (!facts.location)
        facts.location = checkedPlace(xmpDegrees(valueOf(xmp, "Xmp.exif.GPSLatitude")),
                                      xmpDegrees(valueOf(xmp, "Xmp.exif.GPSLongitude")));

    if (!exif.empty())
        facts.groups.append(QStringLiteral("EXIF"));
    if (!xmp.empty() || !image.xmpPacket().empty())
        facts.groups.append(QStringLiteral("XMP"));
    if (!image.iptcData().empty())
        facts.groups.append(QStringLiteral("IPTC"));
    if (image.iccProfileDefined())
        facts.groups.append(QStringLiteral("ICC"));
    if (!image.comment().empty())
        facts.groups.append(QStringLiteral("Comment"));
    return facts;
}

const QString kReadVerb = QStringLiteral("read the metadata of");

} // namespace

Result<PhotoFacts> readPhotoFacts(const FilePath& file)
{
    const QString name = file.fileName();
    // exiv2 reads just the metadata segments from the file, not the whole picture.
    if (const Status readable = images::checkPictureFile(file); !readable)
        return failure(readable.error());
    if (exiv2::typeOfFile(file.native()) == Exiv2::ImageType::none)
        return failure(exiv2::notAPictureText(name));
    return exiv2::guarded<PhotoFacts>(kReadVerb, name, [&] { return factsOf(*exiv2::openFile(file.native())); });
}

Result<PhotoFacts> photoFactsOf(const QByteArray& bytes, const QString& name)
{
    return exiv2::guarded<PhotoFacts>(kReadVerb, name, [&] { return factsOf(*exiv2::openBytes(bytes)); });
}

} // namespace orwick
