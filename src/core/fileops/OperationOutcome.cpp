#include "fileops/OperationOutcome.h"

#include "fileops/OperationTexts.h"

#include <QRegularExpression>

namespace orwick {

namespace {

// One failure in the shape the change runner writes: "Couldn’t VERB “NAME”: REASON."
struct Failure {
    QString verb;
    QString name;
    QString reason;
};

std::optional<Failure> parse(const QString& sentence)
{
    // The verb is one word ("copy", "move") or "put back"; longer phrases ("make the folder")
    // don't read well before a count, so those sentences are summed up the plain way.
    static const QRegularExpression shape(QStringLiteral("^Couldn[’']t ([a-z]+(?: back)?) “(.*?)”: (.+?)\\.?$"));
    const QRegularExpressionMatch match = shape.match(sentence);
    if (!match.hasMatch())
        return std::nullopt;
    return Failure{match.captured(1), match.captured(2), match.captured(3)};
}

QString withoutFullStop(QString text)
{
    if (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

// Lower-cases the first letter so that a sentence can follow a semicolon.
QString continuing(QString text)
{
    if (!text.isEmpty() && text.front().isUpper() && (text.size() < 2 || !text.at(1).isUpper()))
        text.front() = text.front().toLower();
    return text;
}

// "“a”, “b” and “c”" / "“a”, “b”, “c” and 175 more".
QString nameList(const QStringList& names)
{
    QStringList shown;
    for (qsizetype i = 0; i < names.size() && i < kNamesInSummary; ++i)
        shown.append(quoted(names[i]));
    if (names.size() > kNamesInSummary)
        return shown.join(QStringLiteral(", ")) + QStringLiteral(" and %1 more").arg(names.size() - kNamesInSummary);
    const QString last = shown.takeLast();
    return shown.isEmpty() ? last : shown.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}

// A reason shared by several items speaks of them: "it can’t go…" becomes "they can’t go…".
QString forSeveral(const QString& reason)
{
    static const std::pair<QString, QString> kPronouns[] = {
        {QStringLiteral("it can’t "), QStringLiteral("they can’t ")},
        {QStringLiteral("it isn’t "), QStringLiteral("they aren’t ")},
        {QStringLiteral("it is "), QStringLiteral("they are ")},
    };
    for (const auto& [one, many] : kPronouns)
        if (reason.startsWith(one))
            return many + reason.mid(one.size());
    return reason;
}

} // namespace

QString failureSummary(const QStringList& errors)
{
    if (errors.isEmpty())
        return {};
    if (errors.size() == 1)
        return errors.first();
    QStringList names;
    std::optional<Failure> first;
    bool sameReason = true;
    for (const QString& error : errors) {
        const auto failure = parse(error);
        if (!failure || (first && failure->verb != first->verb)) {
            return QStringLiteral("%1 things couldn’t be done. The first: %2").arg(errors.size()).arg(errors.first());
        }
        if (!first)
            first = failure;
        sameReason = sameReason && failure->reason == first->reason;
        names.append(failure->name);
    }
    QString text = QStringLiteral("Couldn’t %1 %2: %3").arg(first->verb, itemCount(errors.size()), nameList(names));
    if (sameReason)
        text += QStringLiteral(" — ") + forSeveral(first->reason);
    return text + u'.';
}

QString skippedText(int skipped)
{
    return skipped == 1 ? QStringLiteral("1 item was no longer there")
                        : QStringLiteral("%1 items were no longer there").arg(skipped);
}

QString outcomeText(const OperationOutcome& outcome)
{
    if (outcome.isSuccess())
        return outcome.doneText;
    if (!outcome.cancelled && outcome.doneText.isEmpty() && outcome.skipped == 0)
        return outcome.failuresText.isEmpty() ? failureSummary(outcome.errors) : outcome.failuresText; // their own words
    QStringList clauses;
    if (outcome.cancelled)
        clauses.append(outcome.doneText.isEmpty()
                           ? QStringLiteral("Cancelled; nothing was changed")
                           : QStringLiteral("Cancelled; ") + continuing(outcome.doneText) + QStringLiteral(" before stopping"));
    else if (!outcome.doneText.isEmpty())
        clauses.append(outcome.doneText);
    if (!outcome.errors.isEmpty()) {
        const QString failures =
            withoutFullStop(outcome.failuresText.isEmpty() ? failureSummary(outcome.errors) : outcome.failuresText);
        clauses.append(clauses.isEmpty() ? failures : continuing(failures));
    }
    if (outcome.skipped > 0)
        clauses.append(skippedText(outcome.skipped));
    QString text = clauses.join(QStringLiteral("; "));
    if (!outcome.errors.isEmpty())
        text += u'.';
    return text;
}

} // namespace orwick
