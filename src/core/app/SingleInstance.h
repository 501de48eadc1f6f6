#pragma once
// SingleInstance: one running Orwick per user and display. The first `orwick` listens on a
// local socket ($XDG_RUNTIME_DIR/orwick-DISPLAY.socket, or a private folder /tmp/orwick-UID
// when there is no runtime folder); a later `orwick` hands it its arguments and working folder,
// waits for the receipt and exits.
//
// Every wait has a time limit, so a stopped or stuck instance never hangs the later one. A
// socket left by an Orwick that ended (nothing answers) is replaced; a file at that path that
// isn't such a socket, or that belongs to someone else, is left alone and the failure says why.
// handOver() works before the application object exists (plain system calls), so a later
// `orwick` returns quickly.
//
// Signals: received() follows each complete hand-over, after its receipt was sent.

#include "base/FilePath.h"
#include "base/Result.h"

#include <QObject>

class QLocalServer;

namespace orwick {

class SingleInstance : public QObject {
    Q_OBJECT
public:
    struct Request {
        FilePath workingFolder;
        QList<QByteArray> arguments;
        bool operator==(const Request&) const = default;
    };

    // Where the socket of this user's Orwick on this display lives; a failure says why there is none.
    static Result<FilePath> socketPath();

    enum class HandOver { done, noneRunning };
    // Gives `request` to the Orwick listening at `socket`. noneRunning: no file there, or a
    // socket nothing listens on. A failure (no receipt in time, a refused connection) says why.
    static Result<HandOver> handOver(const FilePath& socket, const Request& request, int timeoutMs = 2000);

    explicit SingleInstance(QObject* parent = nullptr);
    ~SingleInstance() override; // removes the socket when it is still ours

    // Listens at `socket`, replacing a socket nothing listens on.
    Status listen(const FilePath& socket);
    bool isListening() const;

    // The bytes of a request on the wire, and back (nullopt for anything malformed).
    static QByteArray encode(const Request& request);
    static std::optional<Request> decode(QByteArrayView message);
    static constexpr qsizetype kMaxMessage = 4 * 1024 * 1024;

Q_SIGNALS:
    void received(const orwick::SingleInstance::Request& request);

private:
    void accept();

    QLocalServer* m_server = nullptr;
    FilePath m_socket;
    quint64 m_socketInode = 0;
};

} // namespace orwick
