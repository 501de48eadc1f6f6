#pragma once
// GitTexts: the sentences git actions show people, in one place so the review panel, the palette
// commands and orwick-cli say the same thing. Pure; safe on any thread.

#include <QLocale>
#include <QString>

namespace orwick::gittexts {

// Failures of the actions, each followed by git's own words where it gave any.
inline QString couldNotFetch() { return QStringLiteral("Couldn’t fetch"); }
inline QString couldNotPull() { return QStringLiteral("Couldn’t pull"); }
inline QString couldNotPush() { return QStringLiteral("Couldn’t push"); }
inline QString couldNotStage() { return QStringLiteral("Couldn’t stage"); }
inline QString couldNotUnstage() { return QStringLiteral("Couldn’t unstage"); }
inline QString couldNotCommit() { return QStringLiteral("Couldn’t commit"); }
inline QString couldNotMakeBranch() { return QStringLiteral("Couldn’t make the branch"); }
inline QString couldNotSwitch(const QString& name) { return QStringLiteral("Couldn’t switch to ") + name; }
inline QString couldNotStash() { return QStringLiteral("Couldn’t stash"); }
inline QString couldNotApplyStash() { return QStringLiteral("Couldn’t apply the stash"); }
inline QString couldNotDropStash() { return QStringLiteral("Couldn’t delete the stash"); }
inline QString couldNotDiscard() { return QStringLiteral("Couldn’t discard"); }
inline QString couldNotResolve(const QString& path) { return QStringLiteral("Couldn’t resolve “") + path + QStringLiteral("”"); }
inline QString couldNotContinue() { return QStringLiteral("Couldn’t continue"); }
inline QString couldNotAbort() { return QStringLiteral("Couldn’t abort"); }
inline QString couldNotRead() { return QStringLiteral("Couldn’t read the repository"); }

// Why a commit can't be made, shown after couldNotCommit (the first also when git itself refuses).
inline QString nothingStaged() { return QStringLiteral("Nothing is staged to commit."); }
inline QString noCommitMessage() { return QStringLiteral("Write a commit message first."); }

// Notes after an action that went well.
inline QString fetchedUpToDate() { return QStringLiteral("Fetched: up to date"); }
inline QString alreadyUpToDate() { return QStringLiteral("Already up to date"); }
inline QString nothingToStash() { return QStringLiteral("Nothing to stash"); }
inline QString stashAppliedAndRemoved() { return QStringLiteral("Stash applied and removed"); }

// Pull refused because both sides moved: the title, and what the two choices do.
inline QString bothSidesMoved() { return QStringLiteral("Both sides have new commits"); }
inline QString pullChoiceExplanation()
{
    return QStringLiteral("Your branch and the remote have each moved on. Rebase puts your commits on top of theirs; "
                          "Merge joins the two with a merge commit.");
}

inline QString noRemote() { return QStringLiteral("This repository has no remote to push to. Add one with git remote add."); }

// Another git program is at work in the repository (its index.lock is there).
inline QString indexLocked()
{
    return QStringLiteral("Another git program is working in this repository");
}
inline QString indexLockedDetail()
{
    return QStringLiteral("Its lock file .git/index.lock is there. Try again once it has finished, or remove the lock "
                          "file if no git program is running.");
}

// Branch names.
inline QString branchNameRule() { return QStringLiteral("Branch names can’t have spaces, “..”, or any of ~ ^ : ? * [ \\."); }
inline QString notABranchName(const QString& name) { return QStringLiteral("“") + name + QStringLiteral("” can’t be a branch name"); }
inline QString newBranchExplanation() { return QStringLiteral("Made from where you are now, with your changes coming along."); }

// Stashes.
inline QString dropStashQuestion() { return QStringLiteral("Delete this stash?"); }
inline QString dropStashExplanation(const QString& message)
{
    return QStringLiteral("“") + message + QStringLiteral("” can’t be got back afterwards.");
}

// Discarding.
inline QString discardExplanation()
{
    return QStringLiteral("Back to the last commit. Your version goes to the Trash first, so Ctrl+Z brings it back.");
}
inline QString couldNotKeepCopy(const QString& name)
{
    return QStringLiteral("Couldn’t keep a copy of “") + name + QStringLiteral("”, so it wasn’t discarded.");
}
inline QString couldNotRemove(const QString& name) { return QStringLiteral("Couldn’t remove “") + name + QStringLiteral("”"); }

// An operation under way.
inline QString abortExplanation() { return QStringLiteral("Everything goes back to how it was before it started."); }

// Diffs.
inline QString binaryFile() { return QStringLiteral("Binary file: there are no lines to show."); }
inline QString diffCut(int shown, int total)
{
    return QStringLiteral("Only the first %1 of %2 lines are shown.").arg(QLocale().toString(shown), QLocale().toString(total));
}

} // namespace orwick::gittexts
