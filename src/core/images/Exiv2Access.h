#pragma once
// Exiv2Access: the one door to exiv2 for the image tools. It makes exiv2 ready once, whatever
// thread comes first (its XMP toolkit initialized with a lock so that workers may read and write
// different pictures at once, its log routed to the "orwick.images.exiv2" category instead of
// standard error, HEIF and AVIF reading turned on), opens pictures, and turns what exiv2 throws
// into a sentence naming the file. Internal to src/core/images; nothing here throws on.

#include "base/Result.h"

#include <QByteArray>
#include <QString>
#include <exception>
#include <stdexcept>
#include <memory>

namespace Exiv2 {
class ExifData;
class Image;
}

namespace orwick::exiv2 {

// Call before any other use of exiv2; cheap after the first time.
void prepare();

// A picture opened on a copy of `bytes` held by exiv2 (its MemIo), metadata not yet read.
// These throw as exiv2 does: call them inside `guarded`.
std::unique_ptr<Exiv2::Image> openBytes(const QByteArray& bytes);
// A picture opened on the file at `path` (native bytes), read as needed.
std::unique_ptr<Exiv2::Image> openFile(const QByteArray& path);
// The image type exiv2 sees in `bytes` (Exiv2::ImageType::…), 0 for none.
int typeOf(const QByteArray& bytes);
// The same for the file at `path`; 0 also when it can't be read.
int typeOfFile(const QByteArray& path);
// The bytes exiv2 holds for `image` now (after writeMetadata on a picture from openBytes).
QByteArray contentsOf(Exiv2::Image& image);

// The EXIF orientation, 1–8 (1 upright, 6 a quarter clockwise…); 0 when it says none or a value
// outside them.
int orientationIn(const Exiv2::ExifData& exif);

// "“name” isn’t a picture whose metadata Orwick can read."
QString notAPictureText(const QString& name);
// A picture exiv2 doesn't know is notAPictureText; else
// "Couldn’t read the metadata of “name”: " + exiv2's reason, lower-cased, without its full stop.
QString failureText(const QString& verb, const QString& name, const std::exception& error);

// Runs `work`, turning anything it throws into a failure worded by failureText with `verb`
// ("read the metadata of").
template <class T, class Work>
Result<T> guarded(const QString& verb, const QString& name, Work&& work)
{
    try {
        return work();
    } catch (const std::exception& error) {
        return failure(failureText(verb, name, error));
    } catch (...) {
        return failure(failureText(verb, name, std::runtime_error("unknown error")));
    }
}

} // namespace orwick::exiv2
