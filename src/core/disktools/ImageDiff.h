#pragma once
// ImageDiff: how two pictures differ, pixel by pixel. Both are drawn as 8-bit RGBA at the left
// picture's size (the right one scaled to it); a pixel differs when any channel differs by 17 or
// more. The difference picture shows same pixels as a dim grey of the left one and differing
// pixels in red by how much they differ. Pure functions; load() reads a file (any thread).

#include "base/FilePath.h"

#include <QImage>
#include <optional>

namespace orwick::ImageDiff {

struct Result {
    QImage image;        // the difference picture
    double changed = 0;  // the share of pixels that differ, 0…1
    bool sameSize = true; // both pictures had the same pixel size
};

inline constexpr int kThreshold = 17;
inline constexpr int kPanelMaxPixels = 1600;

// The picture, scaled so that its longer side is at most `maxPixels`; a null image when it
// can't be read.
QImage load(const FilePath& file, int maxPixels = kPanelMaxPixels);

// None when either picture is null.
std::optional<Result> compare(const QImage& left, const QImage& right);

// "No pixels differ", "Under 0.1% of pixels differ", "4.2% of pixels differ", then
// " · different shapes, compared at the left one's size" when the sizes differ, then
// " · S switches view".
QString summary(const Result& result);

QString unreadableMessage(); // "Couldn't read these pictures"

} // namespace orwick::ImageDiff
