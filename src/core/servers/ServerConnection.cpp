#include "servers/ServerConnection.h"

#include "async/TimeLimited.h"
#include "servers/ServerMounts.h"

#include <QProcessEnvironment>
#include <QRegularExpression>

namespace orwick {

namespace {

// gio's prompts: "User [guest]: ", "Domain [WORKGROUP]: ", "Password: ", "Choice: ".
const QRegularExpression kPrompt(QStringLiteral("^(User|Domain|Password|Choice)(?: \\[(.*)\\])?: $"));
const QRegularExpression kChoice(QStringLiteral("^\\[(\\d+)\\] (.*)$"));

QString quotedHost(const ServerAddress& address) { return QStringLiteral("“%1”").arg(address.host); }

} // namespace

ServerConnection::ServerConnection(QObject* parent) : QObject(parent)
{
    m_limit.setSingleShot(true);
    m_limit.setInterval(kAnswerLimitMs);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        fail(QStringLiteral("%1 didn’t answer within %2 seconds. Check the address, and that the server is running and reachable.")
                 .arg(quotedHost(m_address))
                 .arg(m_limit.interval() / 1000));
    });
}

ServerConnection::~ServerConnection()
{
    m_cancelled = true;
    endProcess();
}

void ServerConnection::start(const ServerAddress& address)
{
    cancel();
    m_cancelled = false;
    m_address = address;
    m_output.clear();
    m_message.clear();
    m_choices.clear();
    m_pendingPrompt.clear();
    m_credentials.reset();
    m_passwordSent = false;
    ++m_attempt;

    auto* process = new QProcess(this);
    m_process = process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8")); // prompts in the words parsed here
    process->setProcessEnvironment(environment);
    connect(process, &QProcess::readyReadStandardOutput, this, [this, process] {
        if (process == m_process)
            readOutput();
    });
    connect(process, &QProcess::finished, this, [this, process](int code, QProcess::ExitStatus status) {
        if (process == m_process)
            finished(code, status);
    });
    connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError error) {
        if (process == m_process && error == QProcess::FailedToStart)
            fail(QStringLiteral("Connecting to servers needs the gio program (package libglib2.0-bin)."));
    });
    m_limit.start();
    process->start(QStringLiteral("gio"), {QStringLiteral("mount"), address.toString()});
}

void ServerConnection::readOutput()
{
    m_output += m_process->readAllStandardOutput();
    m_limit.start(); // the server is answering
    const qsizetype lastNewline = m_output.lastIndexOf('\n');
    if (lastNewline >= 0) {
        for (const QByteArray& raw : m_output.left(lastNewline).split('\n')) {
            const QString line = QString::fromUtf8(raw).trimmed();
            if (line.isEmpty() || line == QLatin1StringView("Authentication Required"))
                continue;
            if (const auto choice = kChoice.match(line); choice.hasMatch())
                m_choices.append(choice.captured(2));
            else
                m_message.append(line);
        }
        m_output = m_output.mid(lastNewline + 1);
    }
    const auto prompt = kPrompt.match(QString::fromUtf8(m_output));
    if (prompt.hasMatch()) {
        m_output.clear();
        handlePrompt(prompt.captured(1), prompt.captured(2));
    }
}

void ServerConnection::handlePrompt(const QString& kind, const QString& defaultValue)
{
    QString message = m_message.join(QLatin1Char(' '));
    if (message.endsWith(QLatin1Char(':')))
        message.chop(1);
    m_message.clear();
    if (kind == QLatin1StringView("Choice")) {
        m_limit.stop(); // waiting for the person, not the server
        const QStringList choices = std::exchange(m_choices, {});
        Q_EMIT questionAsked(message, choices);
        return;
    }
    const bool askedAgain = m_passwordSent && (kind == QLatin1StringView("User") || kind == QLatin1StringView("Password"));
    if (askedAgain) {
        m_passwordSent = false;
        m_credentials.reset();
    }
    m_pendingPrompt = kind;
    m_pendingDefault = defaultValue;
    if (m_credentials) {
        answerPrompt();
        return;
    }
    m_limit.stop();
    PasswordRequest request;
    request.message = message;
    request.asksUser = kind == QLatin1StringView("User");
    request.asksDomain = kind == QLatin1StringView("Domain") || (request.asksUser && m_address.scheme == QLatin1StringView("smb"));
    request.defaultUser = request.asksUser ? defaultValue : m_address.user;
    request.defaultDomain = kind == QLatin1StringView("Domain") ? defaultValue : QString();
    request.refused = askedAgain;
    Q_EMIT passwordRequested(request);
}

void ServerConnection::answerPassword(const Credentials& credentials)
{
    if (!m_process || m_pendingPrompt.isEmpty())
        return;
    m_credentials = credentials;
    answerPrompt();
}

void ServerConnection::answerPrompt()
{
    const QString kind = std::exchange(m_pendingPrompt, {});
    const QString fallback = m_pendingDefault;
    if (kind == QLatin1StringView("User")) {
        write(m_credentials->user.isEmpty() ? fallback : m_credentials->user);
    } else if (kind == QLatin1StringView("Domain")) {
        write(m_credentials->domain.isEmpty() ? fallback : m_credentials->domain);
    } else {
        write(m_credentials->password);
        m_passwordSent = true;
    }
    m_limit.start();
}

void ServerConnection::answerChoice(int index)
{
    if (!m_process)
        return;
    write(QString::number(index + 1));
    m_limit.start();
}

void ServerConnection::write(const QString& line)
{
    if (m_process)
        m_process->write(line.toUtf8() + '\n');
}

void ServerConnection::cancel()
{
    m_cancelled = true;
    ++m_attempt; // a lookup on its way is dropped
    m_lookingUp = false;
    m_limit.stop();
    endProcess();
}

void ServerConnection::endProcess()
{
    if (!m_process)
        return;
    QProcess* process = m_process;
    m_process = nullptr;
    process->disconnect(this);
    if (process->state() != QProcess::NotRunning) {
        process->closeWriteChannel();
        process->kill();
        // A killed helper ends at once, unless the kernel holds it; then it is reaped when it
        // ends, even after this object is gone, and nothing waits for it longer. (Deleted later
        // or with this object: this may run inside one of the process's own signals.)
        if (process->waitForFinished(100)) {
            process->deleteLater();
            return;
        }
        process->setParent(nullptr);
        connect(process, &QProcess::finished, process, &QObject::deleteLater);
    } else {
        process->deleteLater();
    }
}

void ServerConnection::finished(int code, QProcess::ExitStatus status)
{
    m_limit.stop();
    const QString errorText = QString::fromUtf8(m_process->readAllStandardError());
    endProcess();
    if (m_cancelled)
        return;
    QString gioMessage;
    for (const QString& line : errorText.split(QLatin1Char('\n')))
        if (line.startsWith(QLatin1StringView("gio: ")))
            gioMessage = line.mid(line.indexOf(QLatin1StringView(": "), 5) + 2).trimmed();
    const bool alreadyMounted = gioMessage.contains(QLatin1StringView("already mounted"), Qt::CaseInsensitive);
    if ((status == QProcess::NormalExit && code == 0) || alreadyMounted)
        lookUpLocalPath();
    else
        fail(reasonFor(gioMessage));
}

QString ServerConnection::reasonFor(const QString& gioMessage) const
{
    const QString host = quotedHost(m_address);
    auto says = [&gioMessage](const char* words) { return gioMessage.contains(QLatin1StringView(words), Qt::CaseInsensitive); };
    if (says("refused"))
        return QStringLiteral("%1 refused the connection. Check the address and port, and that the server is running.").arg(host);
    if (says("resolv") || says("not known") || says("no such host") || says("unknown host"))
        return QStringLiteral("There’s no server called %1. Check the address.").arg(host);
    if (says("timed out") || says("timeout"))
        return QStringLiteral("%1 didn’t answer in time. Check the address, and that the server is running and reachable.").arg(host);
    if (says("permission denied") || says("password") || says("login") || says("authentication") || m_passwordSent)
        return QStringLiteral("%1 didn’t accept the user name or password.").arg(host);
    if (says("not mountable") || says("not supported"))
        return QStringLiteral("Orwick can’t reach %1 servers here: gvfs and its backends aren’t installed (packages gvfs, gvfs-backends).")
            .arg(m_address.scheme);
    if (gioMessage.isEmpty())
        return QStringLiteral("Couldn’t connect to %1.").arg(host);
    return QStringLiteral("Couldn’t connect to %1: %2.").arg(host, gioMessage.endsWith(QLatin1Char('.')) ? gioMessage.chopped(1) : gioMessage);
}

void ServerConnection::lookUpLocalPath()
{
    m_lookingUp = true;
    const quint64 attempt = m_attempt;
    const ServerAddress address = m_address;
    runWithTimeLimit(this, kLookupLimitMs, [] { return ServerMounts::mounted(); },
        [this, attempt, address](const QList<MountedServer>& mounts) {
            if (attempt != m_attempt)
                return;
            m_lookingUp = false;
            if (const auto local = ServerMounts::localPathFor(address, mounts))
                Q_EMIT connected(*local);
            else
                fail(QStringLiteral("Connected to %1, but its files can’t be shown here: gvfs’s FUSE folder isn’t there (package gvfs-fuse).")
                         .arg(quotedHost(address)));
        },
        [this, attempt, address] {
            if (attempt != m_attempt)
                return;
            m_lookingUp = false;
            fail(QStringLiteral("Connected to %1, but its files didn’t show up in time. Try again in a moment.").arg(quotedHost(address)));
        });
}

void ServerConnection::fail(const QString& message)
{
    m_limit.stop();
    m_lookingUp = false;
    ++m_attempt;
    endProcess();
    Q_EMIT failed(message);
}

} // namespace orwick

#include "moc_ServerConnection.cpp"
