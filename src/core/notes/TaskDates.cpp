#include "notes/TaskDates.h"

#include <QLocale>
#include <QRegularExpression>

namespace orwick {

namespace {

const QRegularExpression& togglePattern()
{
    static const QRegularExpression pattern(QStringLiteral("^(\\s*[-*+]\\s+\\[)([ xX])(\\]\\s+)(.*)$"));
    return pattern;
}

// Where the value behind a marker starts: after the marker and any spaces.
qsizetype valueStart(const QString& text, qsizetype markerEnd)
{
    while (markerEnd < text.size() && text[markerEnd].isSpace())
        ++markerEnd;
    return markerEnd;
}

QString collapsed(const QString& text) { return text.simplified(); }

// "every 2 weeks" → (2, "week"); nothing for a rule that isn't a plain interval.
std::optional<std::pair<int, QString>> interval(const QString& rule)
{
    static const QRegularExpression pattern(QStringLiteral("^every\\s+(?:(\\d+)\\s+)?(day|week|month|year)s?$"),
                                            QRegularExpression::CaseInsensitiveOption);
    const auto match = pattern.match(rule.trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    const int count = match.captured(1).isEmpty() ? 1 : match.captured(1).toInt();
    if (count <= 0)
        return std::nullopt;
    return std::pair(count, match.captured(2).toLower());
}

QDate advance(QDate date, const std::pair<int, QString>& step)
{
    if (step.second == u"day")
        return date.addDays(step.first);
    if (step.second == u"week")
        return date.addDays(7 * step.first);
    if (step.second == u"month")
        return date.addMonths(step.first);
    return date.addYears(step.first);
}

QString iso(QDate date) { return QLocale::c().toString(date, QStringLiteral("yyyy-MM-dd")); }

} // namespace

const QList<TaskDates::Marker>& TaskDates::markers()
{
    static const QList<Marker> list{{QStringLiteral("📅"), Field::due},
                                    {QStringLiteral("⏳"), Field::scheduled},
                                    {QStringLiteral("🛫"), Field::start},
                                    {QStringLiteral("✅"), Field::done}};
    return list;
}

const QList<TaskDates::PriorityMarker>& TaskDates::priorities()
{
    static const QList<PriorityMarker> list{{QStringLiteral("🔺"), Priority::highest},
                                            {QStringLiteral("⏫"), Priority::high},
                                            {QStringLiteral("🔼"), Priority::medium},
                                            {QStringLiteral("🔽"), Priority::low},
                                            {QStringLiteral("⏬"), Priority::lowest}};
    return list;
}

const QString& TaskDates::recurrenceMarker()
{
    static const QString marker = QStringLiteral("🔁");
    return marker;
}

std::optional<QDate> TaskDates::date(QStringView text)
{
    if (text.size() != 10)
        return std::nullopt;
    const QList<QStringView> parts = text.split(u'-');
    if (parts.size() != 3)
        return std::nullopt;
    int numbers[3];
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        numbers[i] = parts[i].toInt(&ok);
        if (!ok || parts[i].isEmpty() || !std::all_of(parts[i].begin(), parts[i].end(), [](QChar c) { return c.isDigit(); }))
            return std::nullopt;
    }
    const QDate day(numbers[0], numbers[1], numbers[2]);
    return day.isValid() ? std::optional(day) : std::nullopt;
}

TaskDates TaskDates::parse(const QString& text)
{
    TaskDates result;
    QString rest = text;
    for (const Marker& marker : markers()) {
        const qsizetype at = rest.indexOf(marker.symbol);
        if (at < 0)
            continue;
        const qsizetype start = valueStart(rest, at + marker.symbol.size());
        const auto day = date(QStringView(rest).sliced(start, std::min<qsizetype>(10, rest.size() - start)));
        if (!day)
            continue;
        switch (marker.field) {
        case Field::due: result.due = day; break;
        case Field::scheduled: result.scheduled = day; break;
        case Field::start: result.start = day; break;
        case Field::done: result.done = day; break;
        }
        rest.remove(at, start + 10 - at);
    }
    for (const PriorityMarker& marker : priorities()) {
        if (!rest.contains(marker.symbol))
            continue;
        if (result.priority == Priority::normal)
            result.priority = marker.priority;
        rest.remove(marker.symbol);
    }
    if (const qsizetype at = rest.indexOf(recurrenceMarker()); at >= 0) {
        // The rule runs to the next marker or the end of the text.
        qsizetype end = rest.size();
        for (const Marker& marker : markers())
            if (const qsizetype next = rest.indexOf(marker.symbol, at + 1); next >= 0)
                end = std::min(end, next);
        const QString rule = rest.sliced(at + recurrenceMarker().size(), end - at - recurrenceMarker().size()).trimmed();
        if (!rule.isEmpty())
            result.recurrence = rule;
        rest.remove(at, end - at);
    }
    result.title = collapsed(rest);
    return result;
}

QString TaskDates::label(QDate date, QDate today)
{
    const qint64 days = today.daysTo(date);
    if (days == 0)
        return QStringLiteral("Today");
    if (days == -1)
        return QStringLiteral("Yesterday");
    if (days == 1)
        return QStringLiteral("Tomorrow");
    const QLocale locale;
    if (days >= 2 && days <= 6)
        return locale.toString(date, QStringLiteral("dddd"));
    if (date.year() != today.year())
        return locale.toString(date, QStringLiteral("d MMM yyyy"));
    return locale.toString(date, QStringLiteral("d MMM"));
}

std::optional<QStringList> TaskDates::toggle(const QString& line, QDate today)
{
    const QRegularExpressionMatch match = togglePattern().match(line);
    if (!match.hasMatch())
        return std::nullopt;
    const QString head = match.captured(1), box = match.captured(2), gap = match.captured(3);
    QString text = match.captured(4);
    const bool wasDone = box != u" ";
    static const QRegularExpression doneDate(QStringLiteral("\\s*✅\\s*\\d{4}-\\d{2}-\\d{2}"));
    if (wasDone) {
        text.remove(doneDate);
        return QStringList{head + u' ' + gap + text};
    }
    QStringList lines;
    const TaskDates dates = parse(text);
    if (dates.recurrence)
        if (const auto step = interval(*dates.recurrence)) {
            QString next = text;
            for (const Marker& marker : markers()) {
                if (marker.field == Field::done)
                    continue;
                const std::optional<QDate> day = marker.field == Field::due ? dates.due
                    : marker.field == Field::scheduled                       ? dates.scheduled
                                                                             : dates.start;
                if (day)
                    next.replace(marker.symbol + u' ' + iso(*day), marker.symbol + u' ' + iso(advance(*day, *step)));
            }
            lines.append(head + u' ' + gap + next);
        }
    if (!dates.done)
        text += QStringLiteral(" ✅ ") + iso(today);
    lines.append(head + u'x' + gap + text);
    return lines;
}

} // namespace orwick
