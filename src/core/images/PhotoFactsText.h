#pragma once
// PhotoFactsText: a picture's PhotoFacts as the rows the information panel shows, in this order
// and only those that say something: "Camera", "Taken", "Location" ("51.50417° N, 0.12500° W"),
// then always "Metadata" (the groups present, "EXIF, XMP, ICC", or "None").

#include "images/ImageMetadata.h"

#include <QList>

namespace orwick {

struct FactRow {
    QString label;
    QString text;

    bool operator==(const FactRow&) const = default;
};

QList<FactRow> photoFactRows(const PhotoFacts& facts);
// Decimal degrees with their hemispheres: "33.85833° S, 151.20833° E".
QString placeText(const QPointF& location);

} // namespace orwick
