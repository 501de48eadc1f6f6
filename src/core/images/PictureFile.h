#pragma once
// PictureFile: a picture's bytes read whole, or the sentence why not, for the image tools that
// work on a file in memory and hand new bytes to the engine. Any thread.

#include "base/FilePath.h"
#include "base/Result.h"

#include <QByteArray>

namespace orwick::images {

// Whether `file` can be read as a regular file: "“x” is no longer there.", "“x” isn’t a file.",
// "Couldn’t read “x”: permission denied."
[[nodiscard]] Status checkPictureFile(const FilePath& file);
// The file's bytes, with the same sentences when it can't be read.
[[nodiscard]] Result<QByteArray> readPictureFile(const FilePath& file);

} // namespace orwick::images
