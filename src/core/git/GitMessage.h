#pragma once
// GitMessage: the sentence shown when git fails, made from git's own words on standard error.
//
// The line chosen is git's first complaint: the first line that begins "fatal:" or "error:".
// Warnings and trace output (GIT_TRACE) that come before it are passed over; when git printed no
// complaint, its first non-empty line that isn't trace output is taken, and when it printed nothing at all the sentence
// names the exit status ("Git stopped with exit status 128.").
//
// Tidying the chosen line: the "fatal: ", "error: " or "warning: " prefix is removed, spaces
// around it are trimmed, the first letter is made upper case, and a full stop is added unless the
// line already ends in ".", "!" or "?". So
//   "fatal: not a git repository (or any of the parent directories): .git"
// reads "Not a git repository (or any of the parent directories): .git." Pure; safe on any thread.

#include "git/GitRunner.h"

#include <QString>

namespace orwick {

// One line of git's output made into a sentence, as above.
QString tidyGitLine(QStringView line);

// The sentence for a git run that failed (a non-zero status, or git that could not start).
QString gitFailureMessage(const GitOutput& result);

// Git's words under an action's failure: every line of `output`, trimmed, without empty lines
// and "hint:" lines, a leading "error: " or "fatal: " taken off, joined with line feeds; "git
// didn't say why." when nothing is left.
QString tidyGitOutput(QStringView output);
// The same for one run: its standard error, then its standard output (a hook's words may be on
// either).
QString tidyGitOutput(const GitOutput& result);

} // namespace orwick
