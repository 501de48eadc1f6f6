// The words for an operation's outcome: a summary of many failures, partial successes, skipped
// items and cancels, never a plain success when something was left undone.

#include "FileOpsFixture.h" // readable failure messages for Qt's strings
#include "fileops/OperationOutcome.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

QStringList moveFailures(int count, const QString& reason = QStringLiteral("you don’t have permission"))
{
    QStringList errors;
    for (int i = 0; i < count; ++i)
        errors.append(QStringLiteral("Couldn’t move “f%1.txt”: %2.").arg(i).arg(reason));
    return errors;
}

TEST(OperationOutcomeTest, FailureSummaries)
{
    const QStringList mixed{QStringLiteral("Couldn’t move “a”: you don’t have permission."),
                            QStringLiteral("Couldn’t copy “a”: you don’t have permission.")};
    const QStringList unknownVerb{QStringLiteral("Couldn’t make the folder “x”: the disk is full."),
                                  QStringLiteral("Couldn’t make the folder “y”: the disk is full.")};
    const struct {
        QStringList errors;
        QString expected;
    } rows[] = {
        // One failure is its own sentence.
        {moveFailures(1), QStringLiteral("Couldn’t move “f0.txt”: you don’t have permission.")},
        // A few are all named; many give the count, the first names and the shared reason.
        {moveFailures(2), QStringLiteral("Couldn’t move 2 items: “f0.txt” and “f1.txt” — you don’t have permission.")},
        {moveFailures(3), QStringLiteral("Couldn’t move 3 items: “f0.txt”, “f1.txt” and “f2.txt” — you don’t have permission.")},
        {moveFailures(178),
         QStringLiteral("Couldn’t move 178 items: “f0.txt”, “f1.txt”, “f2.txt” and 175 more — you don’t have permission.")},
        // A shared reason speaks of them all.
        {moveFailures(2, QStringLiteral("it can’t go to the Trash: you don’t have permission")),
         QStringLiteral("Couldn’t move 2 items: “f0.txt” and “f1.txt” — they can’t go to the Trash: you don’t have permission.")},
        {moveFailures(2, QStringLiteral("it isn’t there any more")),
         QStringLiteral("Couldn’t move 2 items: “f0.txt” and “f1.txt” — they aren’t there any more.")},
        // Different reasons are left to the full list.
        {moveFailures(4) << QStringLiteral("Couldn’t move “g.txt”: the disk is full."),
         QStringLiteral("Couldn’t move 5 items: “f0.txt”, “f1.txt”, “f2.txt” and 2 more.")},
        // Mixed sentences are counted and the first quoted.
        {mixed, QStringLiteral("2 things couldn’t be done. The first: Couldn’t move “a”: you don’t have permission.")},
        {unknownVerb, QStringLiteral("2 things couldn’t be done. The first: Couldn’t make the folder “x”: the disk is full.")},
    };
    for (const auto& row : rows)
        EXPECT_EQ(failureSummary(row.errors), row.expected) << row.errors.first().toStdString();
}

// An outcome's words: never a plain success when something was left undone.
TEST(OperationOutcomeTest, OutcomeTexts)
{
    const struct {
        const char* doneText;
        int done, skipped;
        QStringList errors;
        bool cancelled;
        QString expected;
    } rows[] = {
        {"Copied 3 items", 3, 0, {}, false, QStringLiteral("Copied 3 items")},
        {"Moved 3 items", 3, 0, moveFailures(1), false,
         QStringLiteral("Moved 3 items; couldn’t move “f0.txt”: you don’t have permission.")},
        {"Moved 3 items", 3, 0, moveFailures(5), false,
         QStringLiteral("Moved 3 items; couldn’t move 5 items: “f0.txt”, “f1.txt”, “f2.txt” and 2 more — you don’t have permission.")},
        {"", 0, 0, {QStringLiteral("Couldn't create a file in “missing”")}, false, QStringLiteral("Couldn't create a file in “missing”")},
        {"Moved 2 items to the Trash", 2, 1, {}, false, QStringLiteral("Moved 2 items to the Trash; 1 item was no longer there")},
        {"", 0, 3, {}, false, QStringLiteral("3 items were no longer there")},
        {"Copied 12 items", 12, 0, {}, true, QStringLiteral("Cancelled; copied 12 items before stopping")},
        {"", 0, 0, {}, true, QStringLiteral("Cancelled; nothing was changed")},
        {"", 0, 0, moveFailures(1), true,
         QStringLiteral("Cancelled; nothing was changed; couldn’t move “f0.txt”: you don’t have permission.")},
        {"Copied “a.txt”", 1, 2, moveFailures(2, QStringLiteral("the disk is full")), false,
         QStringLiteral("Copied “a.txt”; couldn’t move 2 items: “f0.txt” and “f1.txt” — the disk is full; 2 items were no longer there.")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expected.toStdString());
        OperationOutcome outcome;
        outcome.doneText = QString::fromUtf8(row.doneText);
        outcome.done = row.done;
        outcome.skipped = row.skipped;
        outcome.errors = row.errors;
        outcome.cancelled = row.cancelled;
        EXPECT_EQ(outcomeText(outcome), row.expected);
        EXPECT_EQ(outcome.isSuccess(), &row == &rows[0]) << "only the first row is a success";
    }
}

} // namespace
} // namespace orwick::test
