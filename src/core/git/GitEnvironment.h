#pragma once
// The environment git runs with: the caller's, with every setting that keeps git from waiting
// for a person or from writing while it only reads. GIT_OPTIONAL_LOCKS=0, GIT_TERMINAL_PROMPT=0,
// GIT_EDITOR=true, no password helper (GIT_ASKPASS empty, SSH_ASKPASS_REQUIRE=never,
// GCM_INTERACTIVE=never) and, unless one is set already, a non-interactive GIT_SSH_COMMAND.
// Needs no Qt: orwick-cli's status starts git with it before Qt would load
// (src/cli/StatusReport.h); GitRunner.h gives it for every other git.

#include <string>
#include <vector>

namespace orwick {

// `environment` ("NAME=value" entries) with git's settings put in.
std::vector<std::string> withGitSettings(std::vector<std::string> environment);

} // namespace orwick
