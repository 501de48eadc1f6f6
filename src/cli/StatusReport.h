#pragma once
// orwick-cli status DIR: the branch line, a line for a rebase, merge or cherry-pick under way,
// one line per changed file in git's order ("modified<TAB>staged<TAB>unstaged<TAB>path", "-" for
// a side that doesn't differ, the path's bytes as on disk) and a summary:
//   branch main, ahead 0, behind 0
//   modified	-	unstaged	a.txt
//   3 changed (2 modified, 1 untracked), 1 ignored
//
// Scripts call it often, on big repositories, and it should cost little more than git's own
// status. So it needs no Qt: orwick-cli answers the plain `status DIR` itself before it would
// load Qt (runStatusBeforeQt), and hands anything else (a question, a folder that isn't there,
// a git that fails) to the status command of the programs with Qt, which says what is wrong and
// writes its report with the same reportStatus().

#include <optional>
#include <string>

namespace orwick::cli {

// Why git's status read failed.
struct StatusFailure {
    int status = -1;     // git's exit status; -1 when git could not be started
    int startError = 0;  // the errno of a start that failed
    std::string errors;  // git's standard error
};

// Reads the status of the repository at `root` (absolute) with `git` and writes the report to
// standard output in one write; when git fails, writes nothing and returns why.
std::optional<StatusFailure> reportStatus(const std::string& git, const std::string& root);

// Runs `orwick-cli status DIR` without Qt when the command line is exactly that, DIR is a folder
// in a repository and git reads it: returns the exit status then. Nothing, and nothing written,
// in every other case.
std::optional<int> runStatusBeforeQt(int argc, char** argv);

} // namespace orwick::cli
