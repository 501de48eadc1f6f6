// The information panel's rows for a photo: only what the photo says, the place with its
// hemispheres, and always what metadata it carries.

#include "files/FileInfo.h"
#include "images/PhotoFactsText.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

TEST(PhotoFactsText, ShowsCameraDateAndPlaceWithHemispheres)
{
    PhotoFacts facts;
    facts.camera = QStringLiteral("Canon EOS R5");
    facts.taken = QDateTime(QDate(2024, 5, 1), QTime(10, 20, 30));
    facts.location = QPointF(-33.858333, 151.208333);
    facts.groups = {QStringLiteral("EXIF"), QStringLiteral("XMP")};
    const QList<FactRow> expected{
        {QStringLiteral("Camera"), QStringLiteral("Canon EOS R5")},
        {QStringLiteral("Taken"), infoDateText(facts.taken)},
        {QStringLiteral("Location"), QStringLiteral("33.85833° S, 151.20833° E")},
        {QStringLiteral("Metadata"), QStringLiteral("EXIF, XMP")},
    };
    EXPECT_EQ(photoFactRows(facts), expected);
    EXPECT_EQ(placeText(QPointF(51.5, -0.125)), QStringLiteral("51.50000° N, 0.12500° W"));
    // A bare picture says it carries nothing.
    EXPECT_EQ(photoFactRows(PhotoFacts{}), (QList<FactRow>{{QStringLiteral("Metadata"), QStringLiteral("None")}}));
}

} // namespace
} // namespace orwick
