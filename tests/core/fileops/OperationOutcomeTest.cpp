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

TEST(OperationOutcomeTest, OneFailureIsItsOwnSentence)
{
    EXPECT_EQ(failureSummary(moveFailures(1)), QStringLiteral("Couldn’t move “f0.txt”: you don’t have permission."));
}

TEST(OperationOutcomeTest, ManyFailuresGiveTheCountTheFirstNamesAndTheSharedReason)
{
    EXPECT_EQ(failureSummary(moveFailures(178)),
              QStringLiteral("Couldn’t move 178 items: “f0.txt”, “f1.txt”, “f2.txt” and 175 more — you don’t have permission."));
}

TEST(OperationOutcomeTest, ASharedReasonSpeaksOfThemAll)
{
    EXPECT_EQ(failureSummary(moveFailures(2, QStringLiteral("it can’t go to the Trash: you don’t have permission"))),
              QStringLiteral("Couldn’t move 2 items: “f0.txt” and “f1.txt” — they can’t go to the Trash: you don’t have permission."));
    EXPECT_EQ(failureSummary(moveFailures(2, QStringLiteral("it isn’t there any more"))),
              QStringLiteral("Couldn’t move 2 items: “f0.txt” and “f1.txt” — they aren’t there any more."));
}

TEST(OperationOutcomeTest, AFewFailuresAreAllNamed)
{
    EXPECT_EQ(failureSummary(moveFailures(2)),
              QStringLiteral("Couldn’t move 2 items: “f0.txt” and “f1.txt” — you don’t have permission."));
    EXPECT_EQ(failureSummary(moveFailures(3)),
              QStringLiteral("Couldn’t move 3 items: “f0.txt”, “f1.txt” and “f2.txt” — you don’t have permission."));
}

TEST(OperationOutcomeTest, DifferentReasonsAreLeftToTheFullList)
{
    QStringList errors = moveFailures(4);
    errors.append(QStringLiteral("Couldn’t move “g.txt”: the disk is full."));
    EXPECT_EQ(failureSummary(errors), QStringLiteral("Couldn’t move 5 items: “f0.txt”, “f1.txt”, “f2.txt” and 2 more."));
}

TEST(OperationOutcomeTest, MixedSentencesAreCountedAndTheFirstQuoted)
{
    const QStringList errors{QStringLiteral("Couldn’t move “a”: you don’t have permission."),
                             QStringLiteral("Couldn’t copy “a”: you don’t have permission.")};
    EXPECT_EQ(failureSummary(errors),
              QStringLiteral("2 things couldn’t be done. The first: Couldn’t move “a”: you don’t have permission."));
    const QStringList odd{QStringLiteral("Couldn’t make the folder “x”: the disk is full."),
                          QStringLiteral("Couldn’t make the folder “y”: the disk is full.")};
    EXPECT_TRUE(failureSummary(odd).startsWith(QStringLiteral("2 things couldn’t be done.")));
}

TEST(OperationOutcomeTest, FullSuccessKeepsTheSuccessWording)
{
    OperationOutcome outcome;
    outcome.doneText = QStringLiteral("Copied 3 items");
    outcome.done = 3;
    EXPECT_TRUE(outcome.isSuccess());
    EXPECT_EQ(outcomeText(outcome), QStringLiteral("Copied 3 items"));
}

TEST(OperationOutcomeTest, PartialSuccessSaysWhatWasDoneAndWhatWasNot)
{
    OperationOutcome outcome;
    outcome.doneText = QStringLiteral("Moved 3 items");
    outcome.done = 3;
    outcome.errors = moveFailures(1);
    EXPECT_FALSE(outcome.isSuccess());
    EXPECT_EQ(outcomeText(outcome), QStringLiteral("Moved 3 items; couldn’t move “f0.txt”: you don’t have permission."));
    outcome.errors = moveFailures(5);
    EXPECT_EQ(outcomeText(outcome),
              QStringLiteral("Moved 3 items; couldn’t move 5 items: “f0.txt”, “f1.txt”, “f2.txt” and 2 more — you don’t have permission."));
}

TEST(OperationOutcomeTest, FailuresAloneAreTheirSummary)
{
    OperationOutcome outcome;
    outcome.errors = {QStringLiteral("Couldn't create a file in “missing”")};
    EXPECT_EQ(outcomeText(outcome), QStringLiteral("Couldn't create a file in “missing”"));
}

TEST(OperationOutcomeTest, SkippedItemsAreCountedAndSaid)
{
    OperationOutcome outcome;
    outcome.doneText = QStringLiteral("Moved 2 items to the Trash");
    outcome.done = 2;
    outcome.skipped = 1;
    EXPECT_FALSE(outcome.isSuccess());
    EXPECT_EQ(outcomeText(outcome), QStringLiteral("Moved 2 items to the Trash; 1 item was no longer there"));
    outcome.doneText.clear();
    outcome.done = 0;
    outcome.skipped = 3;
    EXPECT_EQ(outcomeText(outcome), QStringLiteral("3 items were no longer there"));
}

TEST(OperationOutcomeTest, ACancelSaysWhatWasDoneBeforeIt)
{
    OperationOutcome outcome;
    outcome.cancelled = true;
    outcome.doneText = QStringLiteral("Copied 12 items");
    outcome.done = 12;
    EXPECT_EQ(outcomeText(outcome), QStringLiteral("Cancelled; copied 12 items before stopping"));
    outcome.doneText.clear();
    outcome.done = 0;
    EXPECT_EQ(outcomeText(outcome), QStringLiteral("Cancelled; nothing was changed"));
    outcome.errors = moveFailures(1);
    EXPECT_EQ(outcomeText(outcome),
              QStringLiteral("Cancelled; nothing was changed; couldn’t move “f0.txt”: you don’t have permission."));
}

TEST(OperationOutcomeTest, EveryPartIsSaidTogether)
{
    OperationOutcome outcome;
    outcome.doneText = QStringLiteral("Copied “a.txt”");
    outcome.done = 1;
    outcome.errors = moveFailures(2, QStringLiteral("the disk is full"));
    outcome.skipped = 2;
    EXPECT_EQ(outcomeText(outcome),
              QStringLiteral("Copied “a.txt”; couldn’t move 2 items: “f0.txt” and “f1.txt” — the disk is full; 2 items were no longer there."));
}

} // namespace
} // namespace orwick::test
