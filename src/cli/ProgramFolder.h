#pragma once
// The folder orwick-cli was started from, where it finds its other parts: beside it in a build
// folder, or in ../lib/orwick and ../libexec/orwick of an installation. Needs no Qt.

#include <string>

namespace orwick::cli {

// The running program's folder with its final slash ("/usr/bin/"); empty when it can't be read.
std::string programFolder();

} // namespace orwick::cli
