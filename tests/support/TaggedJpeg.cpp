#include "support/TaggedJpeg.h"

#include "images/Exiv2Access.h"

#include <QImage>
#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>

namespace orwick::test {

FilePath taggedJpeg(const FilePath& file, std::initializer_list<std::pair<const char*, const char*>> tags)
{
    QImage image(32, 24, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    EXPECT_TRUE(image.save(file.text(), "jpeg"));
    exiv2::prepare();
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    auto photo = Exiv2::ImageFactory::open(file.native().toStdString());
#pragma GCC diagnostic pop
    photo->readMetadata();
    for (const auto& [key, value] : tags)
        photo->exifData()[key] = value;
    photo->writeMetadata();
    return file;
}

FilePath cameraPhoto(const FilePath& file)
{
    return taggedJpeg(file, {{"Exif.Image.Make", "Canon"},
                             {"Exif.Image.Model", "Canon EOS R5"},
                             {"Exif.Image.Orientation", "6"},
                             {"Exif.Photo.DateTimeOriginal", "2024:05:01 10:20:30"},
                             {"Exif.GPSInfo.GPSLatitudeRef", "N"},
                             {"Exif.GPSInfo.GPSLatitude", "51/1 30/1 15/1"},
                             {"Exif.GPSInfo.GPSLongitudeRef", "W"},
                             {"Exif.GPSInfo.GPSLongitude", "0/1 7/1 30/1"}});
}

} // namespace orwick::test
