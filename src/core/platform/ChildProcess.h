#pragma once
// runChild: runs a helper program (git) to its end and reads what it says. Its standard output is
// handed over piece by piece as it comes, its standard error is kept, and its standard input is
// /dev/null or the bytes given. Both pipes are read as data arrives, whichever first, and the
// input is written as the program takes it, so the program never blocks on a full pipe while we
// wait on another. The program starts with the signal defaults and a process group of its own
// (ChildSpawnAttributes.h). Needs no Qt: orwick-cli's status runs git through it before Qt would
// load (src/cli/StatusReport.h); GitRunner.h runs every other git through it.

#include "base/CancelFlag.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orwick {

struct ChildIo {
    bool feedsInput = false;   // write `input` to standard input; without it, /dev/null
    std::string_view input;
    // Wakes every 50 ms to look at it; once set, the program and whatever it started (its process
    // group) are stopped and reading ends.
    const CancelFlag* cancel = nullptr;
    std::function<void(std::string_view piece)> onOutput; // standard output, in order (dropped without it)
};

struct ChildEnd {
    int status = -1;     // the exit code, or the signal that ended it; -1 when it could not start
    int startError = 0;  // the errno of a start that failed
    std::string errors;  // standard error
};

// `argv` and `environment` are null-terminated arrays; argv[0] names the program, `program` is its path.
ChildEnd runChild(const char* program, char* const argv[], char* const environment[], const ChildIo& io);

// The null-terminated array of pointers into `strings` that runChild() takes (valid while they are).
std::vector<char*> nullTerminated(std::vector<std::string>& strings);

} // namespace orwick
