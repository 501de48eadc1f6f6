#pragma once
// ServerConnection: one attempt to connect to a server — `gio mount ADDRESS` run as a process,
// its questions answered from Orwick's own sheet, never from a terminal: when gio asks for a
// user, domain or password, passwordRequested() says so and answerPassword() writes the answers
// to gio's input (the password never appears on a command line or in a file). When gio asks a
// question with choices (an unknown host key), questionAsked() says so and answerChoice()
// replies. A password asked for again after one was given means it was refused: the new
// request says so (`refused`).
//
// Once mounted, the mount's local folder under gvfs's FUSE folder is looked up (off the GUI
// thread, with a time limit) and connected() hands it over. Otherwise failed() gives one
// sentence in plain words ("“example.com” refused the connection…"). A server that says
// nothing for kAnswerLimitMs while Orwick is not waiting for the person fails the attempt and
// ends the process. cancel() ends it quietly. Exactly one of connected() and failed() follows
// each start(), unless it was cancelled.
//
// Lives on the GUI thread; never blocks it.

#include "base/FilePath.h"
#include "servers/ServerAddress.h"

#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QTimer>
#include <optional>

namespace orwick {

class ServerConnection : public QObject {
    Q_OBJECT
public:
    static constexpr int kAnswerLimitMs = 30000;
    static constexpr int kLookupLimitMs = 5000;

    struct PasswordRequest {
        QString message;     // "Enter password for “ann” on “example.com”"
        QString defaultUser; // what gio would use when the user name is left empty
        QString defaultDomain;
        bool asksUser = false;
        bool asksDomain = false;
        bool refused = false; // the last password given was refused
    };
    struct Credentials {
        QString user;
        QString domain;
        QString password;
    };

    explicit ServerConnection(QObject* parent = nullptr);
    ~ServerConnection() override;

    const ServerAddress& address() const { return m_address; }
    bool isRunning() const { return m_process != nullptr || m_lookingUp; }
    // For tests: a shorter silence limit.
    void setAnswerLimit(int ms) { m_limit.setInterval(ms); }

    void start(const ServerAddress& address);
    void answerPassword(const Credentials& credentials);
    void answerChoice(int index);
    void cancel();

Q_SIGNALS:
    void passwordRequested(const orwick::ServerConnection::PasswordRequest& request);
    void questionAsked(const QString& message, const QStringList& choices);
    void connected(const orwick::FilePath& localPath);
    void failed(const QString& message);

private:
    void readOutput();
    void handlePrompt(const QString& kind, const QString& defaultValue);
    void answerPrompt();
    void write(const QString& line);
    void finished(int code, QProcess::ExitStatus status);
    void lookUpLocalPath();
    void fail(const QString& message);
    void endProcess();
    QString reasonFor(const QString& gioMessage) const;

    ServerAddress m_address;
    QPointer<QProcess> m_process;
    QTimer m_limit;
    QByteArray m_output;         // what gio printed that is not handled yet
    QStringList m_message;       // the lines before the current prompt
    QStringList m_choices;
    QString m_pendingPrompt;     // "User", "Domain", "Password" while waiting for the person
    QString m_pendingDefault;
    std::optional<Credentials> m_credentials;
    bool m_passwordSent = false;
    bool m_cancelled = false;
    bool m_lookingUp = false;
    quint64 m_attempt = 0;       // tells a stale lookup from the current one
};

} // namespace orwick

Q_DECLARE_METATYPE(orwick::ServerConnection::PasswordRequest)
