#pragma once
// ImageFormats: which picture formats Orwick can write here and what they are called, and
// whether a file is a picture at all. The writers are Qt's image plugins, so the list is what
// this machine's Qt can really write (WebP and AVIF come from optional plugins); a format that
// isn't here is never offered. Safe on any thread.

#include "base/FilePath.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace orwick {

// Of png, jpeg, webp, avif, those Qt's writers can write here, in that order.
QList<QByteArray> writableImageFormats();
bool isWritableImageFormat(const QByteArray& format);

// "PNG", "JPEG", "WebP", "AVIF"; other formats in capitals ("GIF").
QString formatTitle(const QByteArray& format);

// The suffix a new file of `format` gets, without the dot: "png", "jpg", "webp", "avif".
QByteArray formatSuffix(const QByteArray& format);
// The format a file's suffix names: "jpeg" for jpg, jpe and jfif, "tiff" for tif, else the
// suffix itself.
QByteArray formatOfSuffix(const QString& suffix);

// Qt can read the file as a picture: its suffix names a format Qt reads and its first bytes
// agree (a content sniff: nothing is decoded).
bool isPicture(const FilePath& file);

} // namespace orwick
