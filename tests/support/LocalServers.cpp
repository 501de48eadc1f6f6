#include "support/LocalServers.h"

#include "servers/ServerMounts.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUuid>
#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::test {

namespace {

bool run(const QString& program, const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted(5000))
        return false;
    if (!input.isEmpty())
        process.write(input);
    process.closeWriteChannel();
    return process.waitForFinished(20000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

int freePort()
{
    QTcpServer probe;
    return probe.listen(QHostAddress::LocalHost, 0) ? probe.serverPort() : 0;
}

} // namespace

GvfsSession::GvfsSession()
{
    if (QStandardPaths::findExecutable(QStringLiteral("gio")).isEmpty()
        || QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty()) {
        m_why = QStringLiteral("gio or dbus-daemon isn't installed (libglib2.0-bin, dbus)");
        return;
    }
    if (!QFile::exists(QStringLiteral("/usr/libexec/gvfsd-sftp")) || !QFile::exists(QStringLiteral("/usr/libexec/gvfsd-fuse"))) {
        m_why = QStringLiteral("gvfs with its sftp backend and FUSE folder isn't installed (gvfs-backends, gvfs-fuse)");
        return;
    }
    if (access("/dev/fuse", R_OK | W_OK) != 0) {
        m_why = QStringLiteral("/dev/fuse can't be used here, so gvfs can't show mounts as folders");
        return;
    }
    // An ssh that keeps what it learns about hosts in the test's folder, not in ~/.ssh.
    const FilePath knownHosts = m_folder.path(QStringLiteral("known_hosts"));
    const FilePath ssh = m_folder.file(QStringLiteral("bin/ssh"),
                                       "#!/bin/sh\nexec /usr/bin/ssh -F /dev/null -o UserKnownHostsFile=" + knownHosts.native()
                                           + " -o GlobalKnownHostsFile=/dev/null -o StrictHostKeyChecking=no \"$@\"\n");
    chmod(ssh.c_str(), 0755);
    m_savedPath = qgetenv("PATH");
    m_savedBus = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("PATH", ssh.parent().native() + ':' + m_savedPath);
    m_bus.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address=1")});
    if (!m_bus.waitForStarted(5000) || !waitUntil([this] { return m_bus.canReadLine(); }, 5000)) {
        m_why = QStringLiteral("a private session bus could not be started");
        return;
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
}

GvfsSession::~GvfsSession()
{
    if (m_bus.state() == QProcess::Running) {
        for (const MountedServer& server : ServerMounts::mounted())
            run(QStringLiteral("gio"), {QStringLiteral("mount"), QStringLiteral("-u"), server.address.toString()});
        m_bus.terminate();
        m_bus.waitForFinished(5000);
    }
    // gvfs's FUSE program ends with the bus; a folder it left mounted is let go.
    const FilePath fuse = FilePath::fromNative(qgetenv("XDG_RUNTIME_DIR")).child(QByteArrayView("gvfs"));
    waitUntil([] { return ServerMounts::fuseRoot().isEmpty(); }, 3000);
    if (!ServerMounts::fuseRoot().isEmpty())
        run(QStringLiteral("fusermount"), {QStringLiteral("-u"), QStringLiteral("-z"), fuse.text()});
    qputenv("PATH", m_savedPath);
    m_savedBus.isEmpty() ? qunsetenv("DBUS_SESSION_BUS_ADDRESS") : qputenv("DBUS_SESSION_BUS_ADDRESS", m_savedBus);
}

SftpServer::SftpServer()
{
    const QString sshd = QStringLiteral("/usr/sbin/sshd");
    if (!QFile::exists(sshd)) {
        m_why = QStringLiteral("openssh-server isn't installed");
        return;
    }
    if (geteuid() != 0) {
        m_why = QStringLiteral("a test sshd with its own user needs root");
        return;
    }
    if (!run(QStringLiteral("id"), {user()})) {
        m_madeUser = run(QStringLiteral("useradd"), {QStringLiteral("-m"), QStringLiteral("-s"), QStringLiteral("/bin/sh"), user()});
        if (!m_madeUser) {
            m_why = QStringLiteral("the test user couldn't be added");
            return;
        }
    }
    m_password = QUuid::createUuid().toString(QUuid::Id128).left(16);
    const FilePath key = m_folder.path(QStringLiteral("host_key"));
    if (!run(QStringLiteral("chpasswd"), {}, (user() + QLatin1Char(':') + m_password + QLatin1Char('\n')).toUtf8())
        || !run(QStringLiteral("ssh-keygen"), {QStringLiteral("-q"), QStringLiteral("-t"), QStringLiteral("ed25519"), QStringLiteral("-N"), QString(),
                                              QStringLiteral("-f"), key.text()})) {
        m_why = QStringLiteral("the test user's password or the host key couldn't be made");
        return;
    }
    m_port = freePort();
    ::mkdir("/run/sshd", 0755);
    const FilePath config = m_folder.file(QStringLiteral("sshd_config"),
                                          "Port " + QByteArray::number(m_port) + "\nListenAddress 127.0.0.1\nHostKey " + key.native()
                                              + "\nPidFile none\nPasswordAuthentication yes\nKbdInteractiveAuthentication no\n"
                                                "UsePAM no\nStrictModes no\nAllowUsers " + user().toUtf8() + "\nSubsystem sftp internal-sftp\n");
    m_sshd.start(sshd, {QStringLiteral("-D"), QStringLiteral("-e"), QStringLiteral("-f"), config.text()});
    const bool listening = m_sshd.waitForStarted(5000) && waitUntil([this] {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, quint16(m_port));
        return socket.waitForConnected(200);
    }, 10000);
    if (!listening)
        m_why = QStringLiteral("the test sshd didn't start: ") + QString::fromUtf8(m_sshd.readAllStandardError()).trimmed();
}

SftpServer::~SftpServer()
{
    stop();
    if (m_madeUser) // the computer is left with the users it had
        run(QStringLiteral("userdel"), {QStringLiteral("-f"), QStringLiteral("-r"), user()});
}

QString SftpServer::address() const { return QStringLiteral("sftp://%1@127.0.0.1:%2/").arg(user()).arg(m_port); }

FilePath SftpServer::userHome() const { return FilePath::fromText(QStringLiteral("/home/") + user()); }

// The sshd and every process it started (the sessions serving the mounts), by id.
QList<pid_t> SftpServer::processes() const
{
    QList<pid_t> found;
    if (m_sshd.state() != QProcess::Running)
        return found;
    found.append(pid_t(m_sshd.processId()));
    for (bool grew = true; grew;) {
        grew = false;
        for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
            bool isNumber = false;
            const pid_t pid = pid_t(entry.toInt(&isNumber));
            if (!isNumber || found.contains(pid))
                continue;
            QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
            if (!stat.open(QIODevice::ReadOnly))
                continue;
            // "pid (name) state ppid …": the name may hold spaces, so read after the last ")".
            const QByteArray text = stat.readAll();
            const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
            if (fields.size() > 1 && found.contains(pid_t(fields[1].toInt()))) {
                found.append(pid);
                grew = true;
            }
        }
    }
    return found;
}

void SftpServer::pause()
{
    m_paused = processes();
    for (pid_t pid : m_paused)
        ::kill(pid, SIGSTOP);
}

void SftpServer::stop()
{
    resume();
    for (pid_t pid : processes())
        ::kill(pid, SIGTERM);
    m_sshd.waitForFinished(5000);
}

void SftpServer::resume()
{
    for (pid_t pid : std::exchange(m_paused, {}))
        ::kill(pid, SIGCONT);
}

} // namespace orwick::test
