#pragma once
// ImageRead: a picture file read for working on — opened by its path's bytes (names needn't be
// UTF-8), turned upright by its EXIF orientation whatever its format (UprightReader), and
// decoded no larger than the work needs: JPEG and SVG decode straight at a smaller size
// (libjpeg's DCT scaling, SVG rendering), other formats decode whole and are scaled after. What
// one read may decode is bounded (kMaxDecodedPixels), so a 30,000 × 30,000 picture is refused in
// plain words, never decoded whole. A truncated JPEG, which Qt would show with a grey bottom, counts as damaged.
// The preview's decoder (preview/ImageDecode) opens files, turns pictures upright, checks JPEGs
// and raises Qt's limit through the same functions.
// Every function is safe on any thread.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"

#include <QFile>
#include <QImage>
#include <QImageIOHandler>
#include <functional>

class QIODevice;

namespace orwick {

// Opens a regular file for reading by its bytes; false when it can't be opened or isn't a
// regular file. `bytes` gets its size.
bool openPictureFile(QFile& file, const FilePath& path, qint64* bytes = nullptr);

// The size a picture stored at `stored` has once `transformation` turned it upright.
QSize uprightSize(QSize stored, QImageIOHandler::Transformations transformation);

// Largest picture one read decodes (8192 × 8192): 256 MiB of pixels.
inline constexpr qint64 kMaxDecodedPixels = 8192LL * 8192;

struct PictureHeader {
    QSize size;         // upright
    QByteArray format;  // Qt's name: "jpeg", "png", "gif", "svg"…
    bool animated = false;
};

// The picture's size and format from its header (cheap); `animated` when it holds more than
// one frame (GIF, WebP, MNG), which counts the frames.
Result<PictureHeader> readPictureHeader(const FilePath& path);

struct ReadPicture {
    QImage image;       // upright, at the size asked for
    QByteArray format;  // the source's format
    QSize size;         // the source's own size, upright
};

// Reads the picture at the size `sizeFor` answers for its own upright size (its own size
// for none). The first frame of an animation. Cancelled: an empty failure.
Result<ReadPicture> readPicture(const FilePath& path, const std::function<QSize(QSize)>& sizeFor,
                                const CancelFlag& cancel);

// A JPEG ends with its end-of-image marker after the first scan; one cut short doesn't.
// Reads `device` from its start (streamed, bounded memory) and leaves it at its start.
bool jpegLooksComplete(QIODevice& device);

// True for a JPEG (by its first bytes) that jpegLooksComplete finds cut short; false for whole
// JPEGs and other formats. Call it before a QImageReader starts on `device`: Qt's JPEG reader
// keeps its place in the file.
bool isCutShortJpeg(QIODevice& device);

// Whether a reader of `format` may be asked for a smaller size (QImageReader::setScaledSize):
// JPEG and SVG decode straight at it. Qt 6.4's other readers decode whole and then scale, which
// turns a two-colour or palette picture into noise (see smoothlyScaled), so they aren't asked.
bool readsScaled(QByteArrayView format);

// `image` scaled smoothly to `size`. Qt 6.4 loses the colour table when it smoothly scales a
// two-colour (1-bit) picture, so such pictures, and palette ones, become 32-bit first.
QImage smoothlyScaled(QImage image, QSize size, Qt::AspectRatioMode mode);

// Qt refuses to allocate more than its allocation limit (128 MiB by default) for one read; a
// read of up to kMaxDecodedPixels needs 256 MiB. Every decoder of pictures calls this before
// reading. Raises the limit when it is lower, never lowers it.
void allowBoundedPictureReads();

} // namespace orwick
