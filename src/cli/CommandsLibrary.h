#pragma once
// orwick-cli's commands that need Qt are a library, orwick-cli-commands.so, which orwick-cli
// loads only when it doesn't answer a command line itself (its plain status, StatusReport.h):
// so a script's status costs no Qt at all, and every other command costs what it did when the
// program linked Qt (the library brings QtCore, the command runs, or hands the command line on to
// orwick-cli-full; HandOn.h).

namespace orwick::cli {

// Loads orwick-cli-commands.so, found beside this program (a build folder) or in ../lib/orwick
// (an installation), and runs the command line there. Returns the command's exit status, or 127
// after saying why the library couldn't be loaded.
int runWithCommandsLibrary(int argc, char** argv);

} // namespace orwick::cli
