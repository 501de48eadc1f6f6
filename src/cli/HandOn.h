#pragma once
// The command line is orwick-cli, which needs no Qt and answers the plain `status DIR` itself
// (StatusReport.h); its commands library, which holds the commands whose code needs only QtCore
// (CommandsLibrary.h), so a script that calls it often (status, match, list, grep…) does not wait
// for Qt Gui, the PDF, photo-metadata and terminal libraries to load: it starts in about a third
// of the time; and orwick-cli-full, which holds every command. Every command line the library
// doesn't hold it hands, unchanged, to orwick-cli-full; so does the overview of all commands and
// any unknown command, whose message the full program gives.
//
// Both are decided before Qt starts, so a handed-on command costs this program only its own load.

namespace orwick::cli {

// Whether this program runs the command line itself.
bool runsHere(int argc, char** argv);

// Replaces this process with orwick-cli-full, found beside this program (the build folder) or in
// ../libexec/orwick (an installation), with the same arguments. Returns only when it can't, after
// saying why, with the exit status to use.
int handOn(char** argv);

} // namespace orwick::cli
