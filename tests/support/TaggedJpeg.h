#pragma once
// taggedJpeg: a small real JPEG (32 × 24, written by Qt) given EXIF tags with exiv2, for the
// tests of what the program reads from or strips off a photo's metadata.

#include "base/FilePath.h"

#include <initializer_list>
#include <utility>

namespace orwick::test {

// Writes the JPEG at `file` with each (key, value) of `tags` set ("Exif.Image.Model", "Canon
// EOS R5"), and returns `file`. A picture that can't be written fails the test.
FilePath taggedJpeg(const FilePath& file, std::initializer_list<std::pair<const char*, const char*>> tags);

// A photo as a camera leaves it: make and model ("Canon EOS R5"), orientation 6 (stored 32 × 24,
// upright 24 × 32), taken 2024-05-01 10:20:30, at 51°30'15" N 0°7'30" W.
FilePath cameraPhoto(const FilePath& file);

} // namespace orwick::test
