// Fuzzes photo metadata reading and removal (exiv2 underneath) on any bytes, which any camera,
// phone or program may have written. Nothing may throw or crash; a picture whose location was
// removed reads back without one, and one stripped of everything carries at most its colour
// profile and its orientation.

#include "FuzzCheck.h"
#include "images/ImageMetadata.h"

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // exiv2 reads every segment whole: keep inputs at sizes a picture's metadata has.
    if (size > (1 << 20))
        return 0;
    const QByteArray bytes = fuzz::bytesOf(data, size);
    const QString name = QStringLiteral("photo.jpg");
    const auto facts = photoFactsOf(bytes, name);
    check(facts.has_value() || !facts.error().isEmpty(), "a failure says why");

    const CancelFlag cancel;
    if (const auto located = strippedBytesOf(bytes, MetadataStrip::location, name, cancel)) {
        const auto after = photoFactsOf(*located, name);
        check(after.has_value(), "a picture written with its location removed reads back");
        check(!after->location.has_value(), "no location is left");
    } else {
        check(!located.error().isEmpty(), "a failed removal says why");
    }
    if (const auto bare = strippedBytesOf(bytes, MetadataStrip::everything, name, cancel)) {
        const auto after = photoFactsOf(*bare, name);
        check(after.has_value(), "a picture stripped of everything reads back");
        check(after->camera.isEmpty() && !after->location && !after->taken.isValid(), "no camera, date or place is left");
        for (const QString& group : after->groups)
            check(group == u"EXIF" || group == u"ICC", "only the orientation and the colour profile are left");
    }
    return 0;
}
