#pragma once
// Real servers for the server tests, all of the test's own and on this computer only:
//
// GvfsSession — a private session bus (dbus-daemon) started with the temporary home's
// variables, so gvfs mounts into the test's runtime folder; its PATH puts a small `ssh` first
// that keeps known hosts in the test's folder, so the real home's ~/.ssh is never touched.
// The object unmounts what was mounted and ends the bus when it goes.
//
// SftpServer — an sshd on 127.0.0.1 at a free port, with its own host key and a test user
// ("orwick" and the test program's process id, so test programs running side by side don't
// share one; added for the run and removed after) with a password made for the run. Needs root
// (to add the user and let sshd switch to it) and openssh-server. pause() stops it
// answering (SIGSTOP), resume() lets it go on, stop() ends it.
//
// Where one can't run, ok() is false and why() says so, for GTEST_SKIP().

#include "base/FilePath.h"
#include "support/TempHome.h"

#include <QList>
#include <QProcess>
#include <sys/types.h>
#include <unistd.h>
#include <QString>

namespace orwick::test {

class GvfsSession {
public:
    GvfsSession();
    ~GvfsSession();
    bool ok() const { return m_why.isEmpty(); }
    QString why() const { return m_why; }

private:
    TempTree m_folder;
    QProcess m_bus;
    QByteArray m_savedBus, m_savedPath;
    QString m_why;
};

class SftpServer {
public:
    SftpServer();
    ~SftpServer();
    bool ok() const { return m_why.isEmpty(); }
    QString why() const { return m_why; }

    int port() const { return m_port; }
    QString user() const { return m_user; }
    QString password() const { return m_password; }
    // "sftp://orwick12345@127.0.0.1:PORT/"
    QString address() const;
    // The test user's home on the server (this computer).
    FilePath userHome() const;

    void pause();
    void resume();
    // Ends the sshd and every session it serves, as a server that goes away.
    void stop();

private:
    QList<pid_t> processes() const;

    TempTree m_folder;
    QProcess m_sshd;
    QList<pid_t> m_paused;
    QString m_user = QStringLiteral("orwick%1").arg(getpid());
    bool m_madeUser = false;
    int m_port = 0;
    QString m_password;
    QString m_why;
};

} // namespace orwick::test
