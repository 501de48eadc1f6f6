#pragma once
// OperationOutcome: what one file operation did, in counts and sentences, and the words a toast
// or the command line says for it.
//
// The words never call an operation done when part of it was not: a failure says how many items
// it hit and names the first few ("Couldn’t move 178 items: “a.txt”, “b.txt”, “c.txt” and 175
// more — you don’t have permission."); a partial success says both what was done and what
// wasn't; items that were gone by their turn are counted; a cancelled job says what it did
// before it stopped. Pure functions, no Qt objects: the window and orwick-cli share them.

#include <QString>
#include <QStringList>

namespace orwick {

struct OperationOutcome {
    QString doneText;    // the success wording for what was done ("Moved 3 items"); empty: nothing
    int done = 0;        // items acted on in full
    QStringList errors;  // every failure, one full sentence each, in the order they happened
    QString failuresText; // the operation's own summary of the failures, said instead of failureSummary(errors)
    int skipped = 0;     // items that were no longer there at their turn
    bool cancelled = false;
    bool canUndo = false; // an undo step covers what was done
    QString icon;

    bool isSuccess() const { return errors.isEmpty() && skipped == 0 && !cancelled; }
};

// How many names a summary lists before "and N more".
inline constexpr int kNamesInSummary = 3;

// One line for several failures: the sentence itself for one; for more, the count, the first few
// names and the reason when they all share it. Sentences that don't follow the usual "Couldn’t
// VERB “NAME”: REASON." shape are counted, and the first one is quoted.
QString failureSummary(const QStringList& errors);

// "1 item was no longer there" / "3 items were no longer there".
QString skippedText(int skipped);

// The toast's line for the whole outcome (the success wording when all went well).
QString outcomeText(const OperationOutcome& outcome);

} // namespace orwick
