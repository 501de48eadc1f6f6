#pragma once
// LoginShell: which program a new terminal runs and with what environment. The shell is the
// user's own: $SHELL when it names a program that can run, else the one in the user's passwd
// entry, else /bin/sh. The environment is this process's with TERM=xterm-256color and
// COLORTERM=truecolor, and without the variables that belong to the terminal Orwick itself was
// started from (its size, its own identity).

#include <QByteArray>
#include <QList>

namespace orwick::loginShell {

QByteArray program();
// NAME=VALUE entries for a child's environment, with PWD set to `folder`.
QList<QByteArray> environment(const QByteArray& folder);

} // namespace orwick::loginShell
