#pragma once
// PtyProcess: a program running on a new pseudo-terminal (forkpty) — the master side's file
// descriptor to read its output from and write its input to, its window size, and its end.
//
// The child gets its own session and process group, the terminal as its controlling one, the
// given folder and environment, and default signal handling. Destroying a PtyProcess sends
// SIGHUP to the child's process group (as closing a terminal window does), closes the master
// and leaves the child to ChildReaper, so no zombie is left behind.

#include "base/Result.h"

#include <QByteArray>
#include <QList>
#include <memory>
#include <sys/types.h>

namespace orwick {

class PtyProcess {
public:
    struct Launch {
        QByteArray program;           // an absolute path
        QList<QByteArray> arguments;  // after argv[0]
        QByteArray argv0;             // the name the program sees as its own; the program's when empty
        QByteArray folder;            // the working folder; the home folder when it can't be entered
        QList<QByteArray> environment; // NAME=VALUE
        int rows = 24, cols = 80;
    };
    // "Couldn't start the terminal: <reason>" when no terminal could be opened or no process made.
    static Result<std::unique_ptr<PtyProcess>> start(const Launch& launch);
    ~PtyProcess();

    int masterFd() const { return m_master; }
    pid_t pid() const { return m_pid; }
    // A file descriptor that becomes readable when the child ends (a pidfd); -1 where there is none.
    int exitFd() const { return m_pidfd; }

    // Tells the terminal its new size; the kernel sends SIGWINCH to its foreground programs.
    bool resize(int rows, int cols);
    // The process group that has the terminal now (the shell's own while it waits at its prompt).
    pid_t foregroundGroup() const;
    // The folder the program works in now, as the kernel has it (links resolved); empty when it
    // can't be read or the folder was deleted.
    QByteArray workingFolder() const;
    // Reaps the child when it has ended, giving its status as a shell would (the exit code, or
    // 128 + the signal); nothing while it runs.
    std::optional<int> reap();
    void hangUp();

private:
    PtyProcess(int master, pid_t pid, int pidfd) : m_master(master), m_pid(pid), m_pidfd(pidfd) {}
    int m_master;
    pid_t m_pid;
    int m_pidfd;
    bool m_reaped = false;
    mutable bool m_becameProgram = false; // exec'd: see workingFolder()
};

} // namespace orwick
