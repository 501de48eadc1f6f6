#pragma once
// UprightReader: the one reader picture files are decoded through for showing and for work — the
// picture tools (ImageRead: thumbnails, resizing, turning, the clipboard…), the preview and its
// window (preview/ImageDecode) and the picture comparison — so that every format is turned
// upright by its EXIF orientation, and only once.
//
// Qt's readers turn JPEG and TIFF themselves. PNG (an eXIf chunk, or the "Raw profile type exif"
// text chunk other tools write) and WebP (an EXIF chunk) carry the same orientation, which Qt 6.4
// leaves unapplied; for those the orientation is read here with exiv2 — the metadata alone, the
// pixel data skipped — and the decoded picture is turned after. Should a later Qt turn them
// itself, its turn is used and nothing is added. EXIF that is missing, damaged or says nothing
// usable counts as upright: the picture still decodes, as stored. (AVIF and HEIF hold their turn
// in boxes of their own, which their readers apply; their EXIF orientation isn't applied again.)
//
// One reader for one file, on one thread; any thread.

#include <QImage>
#include <QImageIOHandler>
#include <QImageReader>
#include <optional>

class QFile;

namespace orwick {

class UprightReader {
public:
    // A reader on `file`, already open for reading (openPictureFile); nothing is read yet.
    explicit UprightReader(QFile& file);

    // Qt's reader underneath: the stored size, the format, errors, and setScaledSize — whose
    // size is in the stored orientation (uprightSize(target, transformation()) gives it).
    QImageReader& qt() { return m_reader; }

    // What turns the stored picture upright: Qt's own turn, or the one the EXIF orientation asks
    // for where Qt applies none. Looked up once, on the first call.
    QImageIOHandler::Transformations transformation();

    // The picture decoded (scaled first when asked) and upright; null when it can't be read
    // (qt().error() says why).
    QImage read();

private:
    QFile& m_file;
    QImageReader m_reader;
    std::optional<QImageIOHandler::Transformations> m_transformation;
    bool m_turnsAfterQt = false; // the turn is ours to apply, not Qt's
};

// The turn EXIF orientation 1–8 asks for, as Qt names it (6: Rotate90); none for any other value.
QImageIOHandler::Transformations transformationOfOrientation(int orientation);

// `image` turned by `transformation` as Qt's readers turn what they read: mirrored first, then a
// quarter clockwise.
QImage transformedImage(QImage image, QImageIOHandler::Transformations transformation);

} // namespace orwick
