#pragma once
// findExecutable: a program found the way a shell finds it, in the folders PATH names, in order.
// Needs no Qt: orwick-cli's status finds git with it before Qt would load.

#include <optional>
#include <string>
#include <string_view>

namespace orwick {

// The absolute path of the first executable file called `name` in PATH's folders (a relative
// folder counts from the working folder); none when there is none or PATH is unset or empty.
std::optional<std::string> findExecutable(std::string_view name);

} // namespace orwick
