#include "base/Formatting.h"

#include <QDateTime>
#include <QLocale>

namespace orwick {

QString formatByteCount(qint64 bytes)
{
    if (bytes == 1)
        return QStringLiteral("1 byte");
    if (bytes < 1000)
        return QStringLiteral("%1 bytes").arg(bytes);
    static const char* units[] = {"kB", "MB", "GB", "TB", "PB", "EB"};
    double value = double(bytes);
    int unit = -1;
    while (value >= 1000 && unit < 5) {
        value /= 1000;
        ++unit;
    }
    // One decimal below 10 (4.2 MB), none above (12 MB); a trailing ".0" is dropped.
    QString number = value < 10 ? QString::number(value, 'f', 1) : QString::number(qRound64(value));
    if (number.endsWith(QLatin1StringView(".0")))
        number.chop(2);
    return number + QLatin1Char(' ') + QLatin1StringView(units[unit]);
}

QString formatCount(qint64 count, const QString& singular, const QString& plural)
{
    const QString noun = count == 1 ? singular : (plural.isEmpty() ? singular + QLatin1Char('s') : plural);
    return QLocale(QLocale::English).toString(count) + QLatin1Char(' ') + noun;
}

QString formatDate(Timestamp modified, Timestamp now)
{
    if (modified == kDistantPast)
        return QStringLiteral("—");
    const QDateTime when = QDateTime::fromMSecsSinceEpoch(modified);
    const QDate today = QDateTime::fromMSecsSinceEpoch(now).date();
    const QString time = when.toString(QStringLiteral("HH:mm"));
    if (when.date() == today)
        return QStringLiteral("Today ") + time;
    if (when.date() == today.addDays(-1))
        return QStringLiteral("Yesterday ") + time;
    return QLocale(QLocale::English).toString(when, QStringLiteral("d MMM yyyy HH:mm"));
}

} // namespace orwick
