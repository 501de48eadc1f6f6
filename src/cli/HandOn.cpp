#include "cli/HandOn.h"

#include "cli/CliCommand.h"
#include "cli/ProgramFolder.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <unistd.h>

namespace orwick::cli {

namespace {

bool isHelp(const char* argument)
{
    return !std::strcmp(argument, "--help") || !std::strcmp(argument, "-h") || !std::strcmp(argument, "help");
}

} // namespace

bool runsHere(int argc, char** argv)
{
    if (argc < 2)
        return false; // the overview names every command
    const char* first = argv[1];
    if (isHelp(first))
        return argc > 2 && findCommand(argumentText(argv[2]));
    if (first[0] == '-')
        return true; // --version, or an option this program refuses by name
    const CliCommand* command = findCommand(argumentText(first));
    if (!command)
        return false;
    for (int i = 2; i < argc && std::strcmp(argv[i], "--"); ++i)
        for (const QByteArray& option : command->fullProgramOptions)
            if (option == argv[i])
                return false;
    return true;
}

int handOn(char** argv)
{
    const std::string folder = programFolder();
    for (const char* place : {"orwick-cli-full", "../libexec/orwick/orwick-cli-full"}) {
        const std::string program = folder + place;
        execv(program.c_str(), argv);
        if (errno != ENOENT) {
            std::fprintf(stderr, "orwick-cli: can't start %s: %s\n", program.c_str(), std::strerror(errno));
            return 127;
        }
    }
    std::fprintf(stderr, "orwick-cli: orwick-cli-full isn't beside orwick-cli or in ../libexec/orwick; "
                         "it runs this command. Install Orwick again.\n");
    return 127;
}

} // namespace orwick::cli
