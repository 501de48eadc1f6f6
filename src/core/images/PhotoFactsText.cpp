#include "images/PhotoFactsText.h"

#include "files/FileInfo.h"

#include <cmath>

namespace orwick {
namespace {

// About a metre: as precise as a phone's fix, no more.
constexpr int kDecimals = 5;

QString degrees(double value, QChar positive, QChar negative)
{
    return QStringLiteral("%1° %2").arg(std::abs(value), 0, 'f', kDecimals).arg(value < 0 ? negative : positive);
}

} // namespace

QString placeText(const QPointF& location)
{
    return degrees(location.x(), u'N', u'S') + QStringLiteral(", ") + degrees(location.y(), u'E', u'W');
}

QList<FactRow> photoFactRows(const PhotoFacts& facts)
{
    QList<FactRow> rows;
    if (!facts.camera.isEmpty())
        rows.append({QStringLiteral("Camera"), facts.camera});
    if (facts.taken.isValid())
        rows.append({QStringLiteral("Taken"), infoDateText(facts.taken)});
    if (facts.location)
        rows.append({QStringLiteral("Location"), placeText(*facts.location)});
    rows.append({QStringLiteral("Metadata"), facts.groups.isEmpty() ? QStringLiteral("None") : facts.groups.join(QStringLiteral(", "))});
    return rows;
}

} // namespace orwick
