#include "images/UprightReader.h"

#include "images/Exiv2Access.h"

#include <QFile>
#include <QTransform>
#include <exiv2/exiv2.hpp>

namespace orwick {
namespace {

// Formats whose files carry an EXIF orientation that Qt 6.4's readers don't apply.
bool carriesExifQtLeaves(const QByteArray& format) { return format == "png" || format == "webp"; }

// The EXIF orientation of the open `file`, read by exiv2 from its metadata alone; 0 when there is
// none or it can't be read. Through /proc/self/fd: the same file the reader has open, whatever
// bytes its name holds.
int orientationOf(const QFile& file)
{
    if (file.handle() < 0)
        return 0;
    try {
        const auto image = exiv2::openFile("/proc/self/fd/" + QByteArray::number(file.handle()));
        image->readMetadata();
        return exiv2::orientationIn(image->exifData());
    } catch (const std::exception&) {
        return 0; // damaged metadata: the picture shows as stored (exiv2 has logged why)
    }
}

} // namespace

UprightReader::UprightReader(QFile& file) : m_file(file), m_reader(&file)
{
    m_reader.setAutoTransform(true);
}

QImageIOHandler::Transformations UprightReader::transformation()
{
    if (!m_transformation) {
        m_transformation = m_reader.transformation();
        if (*m_transformation == QImageIOHandler::TransformationNone
            && !m_reader.supportsOption(QImageIOHandler::ImageTransformation) && carriesExifQtLeaves(m_reader.format())) {
            m_transformation = transformationOfOrientation(orientationOf(m_file));
            m_turnsAfterQt = true;
        }
    }
    return *m_transformation;
}

QImage UprightReader::read()
{
    const QImageIOHandler::Transformations turn = transformation();
    QImage image = m_reader.read();
    if (m_turnsAfterQt && !image.isNull())
        image = transformedImage(std::move(image), turn);
    return image;
}

QImageIOHandler::Transformations transformationOfOrientation(int orientation)
{
    switch (orientation) {
    case 2:
        return QImageIOHandler::TransformationMirror;
    case 3:
        return QImageIOHandler::TransformationRotate180;
    case 4:
        return QImageIOHandler::TransformationFlip;
    case 5:
        return QImageIOHandler::TransformationFlipAndRotate90;
    case 6:
        return QImageIOHandler::TransformationRotate90;
    case 7:
        return QImageIOHandler::TransformationMirrorAndRotate90;
    case 8:
        return QImageIOHandler::TransformationRotate270;
    default:
        return QImageIOHandler::TransformationNone;
    }
}

QImage transformedImage(QImage image, QImageIOHandler::Transformations transformation)
{
    const bool mirror = transformation.testFlag(QImageIOHandler::TransformationMirror);
    const bool flip = transformation.testFlag(QImageIOHandler::TransformationFlip);
    if (mirror || flip)
        image = std::move(image).mirrored(mirror, flip);
    if (transformation.testFlag(QImageIOHandler::TransformationRotate90))
        image = image.transformed(QTransform().rotate(90)); // exact: Qt turns quarter turns pixel by pixel
    return image;
}

} // namespace orwick
