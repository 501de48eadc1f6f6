#include "terminal/LoginShell.h"

#include <QProcessEnvironment>

#include <pwd.h>
#include <unistd.h>

namespace orwick::loginShell {

namespace {

bool runnable(const QByteArray& path) { return !path.isEmpty() && path.startsWith('/') && ::access(path.constData(), X_OK) == 0; }

} // namespace

QByteArray program()
{
    if (const QByteArray shell = qgetenv("SHELL"); runnable(shell))
        return shell;
    if (const passwd* entry = ::getpwuid(::getuid()); entry && entry->pw_shell && runnable(QByteArray(entry->pw_shell)))
        return QByteArray(entry->pw_shell);
    return QByteArrayLiteral("/bin/sh");
}

QList<QByteArray> environment(const QByteArray& folder)
{
    // Set by the terminal Orwick was started from, wrong for the panel's.
    static const QList<QByteArray> dropped = {"TERM", "COLORTERM", "COLUMNS", "LINES", "PWD", "OLDPWD", "TERM_PROGRAM",
                                              "TERM_PROGRAM_VERSION", "VTE_VERSION", "WINDOWID", "KONSOLE_VERSION",
                                              "KONSOLE_DBUS_SESSION", "KITTY_WINDOW_ID", "ALACRITTY_WINDOW_ID", "TMUX", "STY"};
    QList<QByteArray> out;
    for (char** entry = environ; entry && *entry; ++entry) {
        const QByteArray text(*entry);
        const qsizetype equals = text.indexOf('=');
        if (equals > 0 && !dropped.contains(text.first(equals)))
            out.append(text);
    }
    out.append("TERM=xterm-256color");
    out.append("COLORTERM=truecolor");
    if (!folder.isEmpty())
        out.append("PWD=" + folder);
    return out;
}

} // namespace orwick::loginShell
