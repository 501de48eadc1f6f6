#include "cli/CommandsLibrary.h"

#include "cli/ProgramFolder.h"

#include <cstdio>
#include <dlfcn.h>
#include <string>
#include <unistd.h>

namespace orwick::cli {

int runWithCommandsLibrary(int argc, char** argv)
{
    const std::string folder = programFolder();
    std::string reason;
    for (const char* place : {"orwick-cli-commands.so", "../lib/orwick/orwick-cli-commands.so"}) {
        const std::string library = folder + place;
        if (void* handle = dlopen(library.c_str(), RTLD_LAZY | RTLD_LOCAL)) {
            using Main = int (*)(int, char**);
            if (const auto run = reinterpret_cast<Main>(dlsym(handle, "orwickCliMain")))
                return run(argc, argv);
            std::fprintf(stderr, "orwick-cli: %s has no commands in it. Install Orwick again.\n", library.c_str());
            return 127;
        }
        // The reason worth saying: why a library that is there didn't load, else that none is.
        const char* error = dlerror();
        if (error && (reason.empty() || access(library.c_str(), F_OK) == 0))
            reason = error;
    }
    std::fprintf(stderr, "orwick-cli: orwick-cli-commands.so isn't beside orwick-cli or in ../lib/orwick (%s); "
                         "it runs this command. Install Orwick again.\n", reason.c_str());
    return 127;
}

} // namespace orwick::cli
