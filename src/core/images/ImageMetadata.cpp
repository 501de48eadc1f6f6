// Removing metadata: exiv2 edits the picture in its own memory copy and writes only the
// metadata segments again; the result is opened once more to be sure the removal held.

#include "images/ImageMetadata.h"

#include "images/Exiv2Access.h"
#include "images/PictureFile.h"

#include <exiv2/exiv2.hpp>
#include <exiv2/webpimage.hpp>

namespace orwick {
namespace {

// The written place: a city or a country says where as well as coordinates do.
constexpr const char* kIptcPlaceKeys[] = {
    "Iptc.Application2.City",        "Iptc.Application2.SubLocation",  "Iptc.Application2.ProvinceState",
    "Iptc.Application2.CountryCode", "Iptc.Application2.CountryName",  "Iptc.Application2.LocationCode",
    "Iptc.Application2.LocationName",
};
constexpr const char* kXmpPlaceKeys[] = {
    "Xmp.photoshop.City", "Xmp.photoshop.State", "Xmp.photoshop.Country",
    "Xmp.iptc.Location",  "Xmp.iptc.CountryCode",
};
// Structures of the IPTC extension: every field below them goes.
constexpr const char* kXmpPlacePrefixes[] = {"Xmp.exif.GPS", "Xmp.iptcExt.LocationCreated", "Xmp.iptcExt.LocationShown"};

bool isLocation(const Exiv2::Exifdatum& datum)
{
    return datum.groupName() == "GPSInfo" || datum.key() == "Exif.Image.GPSTag";
}

bool isLocation(const Exiv2::Iptcdatum& datum)
{
    return std::ranges::any_of(kIptcPlaceKeys, [&](const char* key) { return datum.key() == key; });
}

bool isLocation(const Exiv2::Xmpdatum& datum)
{
    const std::string key = datum.key();
    return std::ranges::any_of(kXmpPlaceKeys, [&](const char* place) { return key == place; })
           || std::ranges::any_of(kXmpPlacePrefixes, [&](const char* prefix) { return key.starts_with(prefix); });
}

template <class Data>
void eraseLocation(Data& data)
{
    for (auto it = data.begin(); it != data.end();) {
        if (isLocation(*it))
            it = data.erase(it);
        else
            ++it;
    }
}

template <class Data>
bool holdsLocation(const Data& data)
{
    return std::ranges::any_of(data, [](const auto& datum) { return isLocation(datum); });
}

void removeEverything(Exiv2::Image& image)
{
    const long orientation = exiv2::orientationIn(image.exifData());
    image.clearExifData();
    image.clearIptcData();
    image.clearXmpData();
    image.clearXmpPacket();
    image.clearComment();
    // The ICC profile stays (see the header); so does a turning orientation.
    if (orientation > 1)
        image.exifData()["Exif.Image.Orientation"] = uint16_t(orientation);
}

void removeLocation(Exiv2::Image& image)
{
    eraseLocation(image.exifData());
    eraseLocation(image.iptcData());
    eraseLocation(image.xmpData());
    // The XMP packet is written again from what is left, not from the packet as read.
    image.writeXmpFromPacket(false);
}

// What is there that `what` removes, in words; empty when nothing (the metadata already read).
QString leftOver(Exiv2::Image& image, MetadataStrip what)
{
    if (what == MetadataStrip::location) {
        if (holdsLocation(image.exifData()) || holdsLocation(image.iptcData()) || holdsLocation(image.xmpData()))
            return QStringLiteral("the location is still there after writing");
        return {};
    }
    const auto& exif = image.exifData();
    const bool onlyOrientation = exif.empty() || (exif.count() == 1 && exiv2::orientationIn(exif) > 1);
    // An XMP packet counts even when it doesn't parse.
    if (!onlyOrientation || !image.iptcData().empty() || !image.xmpData().empty() || !image.xmpPacket().empty()
        || !image.comment().empty())
        return QStringLiteral("some metadata is still there after writing");
    return {};
}

// Not TIFF: exiv2 0.27 writes a TIFF's XMP packet back even when it was cleared, and most camera
// raw files are TIFFs too.
bool isWritableType(int type)
{
    switch (type) {
    case Exiv2::ImageType::jpeg:
    case Exiv2::ImageType::png:
    case Exiv2::ImageType::webp:
        return true;
    default:
        return false;
    }
}

QString stripVerb(MetadataStrip what)
{
    return what == MetadataStrip::location ? QStringLiteral("remove the location from")
                                           : QStringLiteral("remove the metadata of");
}

} // namespace

bool canStripMetadata(const FilePath& file)
{
    return isWritableType(exiv2::typeOfFile(file.native()));
}

Result<QByteArray> strippedBytes(const FilePath& file, MetadataStrip what, const CancelFlag& cancel)
{
    auto bytes = images::readPictureFile(file);
    if (!bytes)
        return failure(bytes.error());
    return strippedBytesOf(*bytes, what, file.fileName(), cancel);
}

Result<QByteArray> strippedBytesOf(const QByteArray& bytes, MetadataStrip what, const QString& name, const CancelFlag& cancel)
{
    if (cancel.isCancelled())
        return failure(QString());
    const int type = exiv2::typeOf(bytes);
    if (type == Exiv2::ImageType::none)
        return failure(exiv2::notAPictureText(name));
    if (!isWritableType(type))
        return failure(QStringLiteral("Couldn’t %1 “%2”: only JPEG, PNG and WebP pictures can be changed.")
                           .arg(stripVerb(what), name));
    return exiv2::guarded<QByteArray>(stripVerb(what), name, [&]() -> Result<QByteArray> {
        const auto image = exiv2::openBytes(bytes);
        image->readMetadata();
        if (cancel.isCancelled())
            return failure(QString());
        if (leftOver(*image, what).isEmpty())
            return bytes; // nothing to remove: the file stays as it is
        if (what == MetadataStrip::everything)
            removeEverything(*image);
        else
            removeLocation(*image);
        image->writeMetadata();
        QByteArray written = exiv2::contentsOf(*image);
        if (cancel.isCancelled())
            return failure(QString());
        const auto check = exiv2::openBytes(written);
        check->readMetadata();
        if (const QString left = leftOver(*check, what); !left.isEmpty())
            return failure(QStringLiteral("Couldn’t %1 “%2”: %3.").arg(stripVerb(what), name, left));
        return written;
    });
}

Result<QByteArray> withMetadataOf(const FilePath& source, const QByteArray& converted, QSize size)
{
    if (!isWritableType(exiv2::typeOfFile(source.native())) || !isWritableType(exiv2::typeOf(converted)))
        return converted;
    return exiv2::guarded<QByteArray>(QStringLiteral("keep the metadata of"), source.fileName(), [&]() -> Result<QByteArray> {
        const auto from = exiv2::openFile(source.native());
        from->readMetadata();
        if (from->exifData().empty() && from->xmpData().empty() && from->iptcData().empty() && from->comment().empty())
            return converted;
        const auto to = exiv2::openBytes(converted);
        to->readMetadata();
        Exiv2::ExifData exif = from->exifData();
        Exiv2::ExifThumb(exif).erase();
        if (!exif.empty()) {
            exif["Exif.Image.Orientation"] = uint16_t(1); // the pixels are upright now
            for (const char* key : {"Exif.Photo.PixelXDimension", "Exif.Photo.PixelYDimension"})
                if (const auto old = exif.findKey(Exiv2::ExifKey(key)); old != exif.end())
                    exif.erase(old);
            exif["Exif.Photo.PixelXDimension"] = uint32_t(size.width());
            exif["Exif.Photo.PixelYDimension"] = uint32_t(size.height());
        }
        Exiv2::XmpData xmp = from->xmpData();
        for (const char* key : {"Xmp.tiff.Orientation", "Xmp.exif.PixelXDimension", "Xmp.exif.PixelYDimension",
                                "Xmp.tiff.ImageWidth", "Xmp.tiff.ImageLength"})
            if (const auto old = xmp.findKey(Exiv2::XmpKey(key)); old != xmp.end())
                xmp.erase(old);
        to->setExifData(exif);
        to->setXmpData(xmp);
        if (to->imageType() != Exiv2::ImageType::webp) { // exiv2 keeps no IPTC or comment in WebP
            to->setIptcData(from->iptcData());
            to->setComment(from->comment());
        }
        to->writeMetadata();
        return exiv2::contentsOf(*to);
    });
}

} // namespace orwick
