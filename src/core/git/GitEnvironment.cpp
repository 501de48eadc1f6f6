#include "git/GitEnvironment.h"

#include <string_view>

namespace orwick {

namespace {

// Sets NAME to `value`, replacing an entry of that name; `keep` leaves one that is there.
void set(std::vector<std::string>& environment, std::string_view name, std::string_view value, bool keep = false)
{
    for (std::string& entry : environment) {
        if (entry.size() > name.size() && entry[name.size()] == '=' && entry.starts_with(name)) {
            if (!keep)
                entry.replace(name.size() + 1, std::string::npos, value);
            return;
        }
    }
    environment.push_back(std::string(name) + '=' + std::string(value));
}

} // namespace

std::vector<std::string> withGitSettings(std::vector<std::string> environment)
{
    set(environment, "GIT_OPTIONAL_LOCKS", "0");
    set(environment, "GIT_TERMINAL_PROMPT", "0");
    set(environment, "GIT_EDITOR", "true");
    // A remote that wants a password fails at once: no password program pops up (an empty
    // GIT_ASKPASS also hides core.askPass and SSH_ASKPASS from git) and no credential manager asks.
    set(environment, "GIT_ASKPASS", "");
    set(environment, "SSH_ASKPASS_REQUIRE", "never");
    set(environment, "GCM_INTERACTIVE", "never");
    set(environment, "GIT_SSH_COMMAND", "ssh -o BatchMode=yes -o ConnectTimeout=20", true);
    return environment;
}

} // namespace orwick
