// orwick-cli: Orwick's engines on the command line. This program needs no Qt: it answers the plain
// `status DIR` itself (StatusReport.h) and runs every other command line with the commands
// library (CommandsLibrary.h), which hands what it doesn't hold to orwick-cli-full (HandOn.h).

#include "cli/CommandsLibrary.h"
#include "cli/StatusReport.h"

int main(int argc, char** argv)
{
    using namespace orwick::cli;
    if (const auto status = runStatusBeforeQt(argc, argv))
        return *status;
    return runWithCommandsLibrary(argc, argv);
}
