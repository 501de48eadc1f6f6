#include "app/SingleInstance.h"

#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"

#include <QDeadlineTimer>
#include <QtEndian>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QTimer>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace orwick {

namespace {

constexpr QByteArrayView kMagic = "orwick1";
constexpr QByteArrayView kReceipt = "ok\n";

QString quotedPath(const FilePath& path) { return QStringLiteral("“") + path.text() + QStringLiteral("”"); }

bool fillAddress(const FilePath& socket, sockaddr_un& address)
{
    address = {};
    address.sun_family = AF_UNIX;
    if (socket.native().size() >= qsizetype(sizeof address.sun_path))
        return false;
    memcpy(address.sun_path, socket.c_str(), socket.native().size());
    return true;
}

// The user's runtime folder: $XDG_RUNTIME_DIR when it is a folder of theirs, else a private
// folder in /tmp, made when missing and refused when anyone else could reach into it.
Result<FilePath> runtimeFolder()
{
    const char* runtime = getenv("XDG_RUNTIME_DIR");
    struct stat st {};
    if (runtime && *runtime == '/' && stat(runtime, &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == getuid())
        return FilePath::fromNative(runtime);
    const FilePath fallback = FilePath::fromNative("/tmp/orwick-" + QByteArray::number(getuid()));
    if (mkdir(fallback.c_str(), 0700) != 0 && errno != EEXIST)
        return failure(QStringLiteral("%1 can't be made: %2").arg(quotedPath(fallback), errorReason(errno)));
    if (lstat(fallback.c_str(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != getuid() || (st.st_mode & 077) != 0)
        return failure(QStringLiteral("%1 isn't a private folder of yours").arg(quotedPath(fallback)));
    return fallback;
}

// Waits for `events` on `fd` until `deadline`; false when the time ran out.
bool waitFor(int fd, short events, const QDeadlineTimer& deadline)
{
    pollfd entry{fd, events, 0};
    for (;;) {
        const int ready = poll(&entry, 1, int(std::max<qint64>(0, deadline.remainingTime())));
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

// True when something listens at the address (a connection is accepted or queued).
bool isAnswered(const sockaddr_un& address)
{
    UniqueFd fd(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    return fd.ok() && (::connect(fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 || errno == EAGAIN);
}

QString notAnswering(int timeoutMs)
{
    return QStringLiteral("the running Orwick didn't answer within %1 seconds").arg(timeoutMs / 1000.0, 0, 'g', 2);
}

} // namespace

Result<FilePath> SingleInstance::socketPath()
{
    const Result<FilePath> folder = runtimeFolder();
    if (!folder)
        return failure(folder.error());
    QByteArray display = qgetenv("WAYLAND_DISPLAY");
    if (display.isEmpty())
        display = qgetenv("DISPLAY");
    for (char& c : display)
        if (!(isalnum(static_cast<unsigned char>(c)) || c == '.' || c == '-' || c == '_' || c == ':'))
            c = '_';
    const QByteArray name = display.isEmpty() ? QByteArray("orwick.socket") : "orwick-" + display + ".socket";
    const FilePath socket = folder->child(QByteArrayView(name));
    sockaddr_un address;
    if (!fillAddress(socket, address))
        return failure(QStringLiteral("the socket's path %1 is too long").arg(quotedPath(socket)));
    return socket;
}

QByteArray SingleInstance::encode(const Request& request)
{
    QByteArray payload = kMagic.toByteArray();
    payload += '\0';
    payload += request.workingFolder.native();
    for (const QByteArray& argument : request.arguments) {
        payload += '\0';
        payload += argument;
    }
    QByteArray message(4, '\0');
    qToBigEndian(quint32(payload.size()), message.data());
    return message + payload;
}

std::optional<SingleInstance::Request> SingleInstance::decode(QByteArrayView message)
{
    if (message.size() < 4)
        return std::nullopt;
    const quint32 length = qFromBigEndian<quint32>(message.data());
    if (length > quint32(kMaxMessage) || qsizetype(length) != message.size() - 4)
        return std::nullopt;
    QList<QByteArray> parts = message.sliced(4).toByteArray().split('\0');
    if (parts.size() < 2 || parts[0] != kMagic || !parts[1].startsWith('/'))
        return std::nullopt;
    Request request;
    request.workingFolder = FilePath::fromNative(parts[1]);
    request.arguments = parts.mid(2);
    return request;
}

Result<SingleInstance::HandOver> SingleInstance::handOver(const FilePath& socket, const Request& request, int timeoutMs)
{
    sockaddr_un address;
    if (!fillAddress(socket, address))
        return failure(QStringLiteral("the socket's path %1 is too long").arg(quotedPath(socket)));
    // Requests go only to this user's own Orwick; a file that is no socket is listen()'s to refuse.
    struct stat st {};
    if (lstat(socket.c_str(), &st) != 0 || !S_ISSOCK(st.st_mode))
        return HandOver::noneRunning;
    if (st.st_uid != getuid())
        return failure(QStringLiteral("%1 belongs to another user").arg(quotedPath(socket)));
    UniqueFd fd(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!fd.ok())
        return failure(QStringLiteral("no socket could be made: ") + errorReason(errno));
    if (::connect(fd.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        // Nothing there, or a socket left by an Orwick that ended.
        if (errno == ENOENT || errno == ECONNREFUSED)
            return HandOver::noneRunning;
        if (errno == EAGAIN)
            return failure(notAnswering(timeoutMs));
        return failure(QStringLiteral("%1 can't be reached: %2").arg(quotedPath(socket), errorReason(errno)));
    }
    const QDeadlineTimer deadline(timeoutMs);
    const QByteArray message = encode(request);
    for (qsizetype sent = 0; sent < message.size();) {
        if (!waitFor(fd.get(), POLLOUT, deadline))
            return failure(notAnswering(timeoutMs));
        const ssize_t n = ::send(fd.get(), message.constData() + sent, size_t(message.size() - sent), MSG_NOSIGNAL);
        if (n < 0 && errno != EAGAIN && errno != EINTR)
            return failure(QStringLiteral("the running Orwick went away: ") + errorReason(errno));
        sent += std::max<ssize_t>(n, 0);
    }
    QByteArray receipt;
    while (receipt.size() < kReceipt.size()) {
        if (!waitFor(fd.get(), POLLIN, deadline))
            return failure(notAnswering(timeoutMs));
        char buffer[8];
        const ssize_t n = ::recv(fd.get(), buffer, sizeof buffer, 0);
        if (n == 0)
            return failure(QStringLiteral("the running Orwick closed the connection"));
        if (n < 0 && errno != EAGAIN && errno != EINTR)
            return failure(QStringLiteral("the running Orwick went away: ") + errorReason(errno));
        receipt.append(buffer, std::max<ssize_t>(n, 0));
    }
    if (!receipt.startsWith(kReceipt))
        return failure(QStringLiteral("something other than Orwick answers at ") + quotedPath(socket));
    return HandOver::done;
}

SingleInstance::SingleInstance(QObject* parent) : QObject(parent) {}

SingleInstance::~SingleInstance()
{
    if (!m_server)
        return;
    m_server->close();
    // Only our own socket goes: another Orwick may have replaced it since.
    struct stat st {};
    if (lstat(m_socket.c_str(), &st) == 0 && S_ISSOCK(st.st_mode) && st.st_ino == m_socketInode)
        unlink(m_socket.c_str());
}

bool SingleInstance::isListening() const { return m_server && m_server->isListening(); }

Status SingleInstance::listen(const FilePath& socket)
{
    sockaddr_un address;
    if (!fillAddress(socket, address))
        return failure(QStringLiteral("the socket's path %1 is too long").arg(quotedPath(socket)));
    struct stat st {};
    if (lstat(socket.c_str(), &st) == 0) {
        if (!S_ISSOCK(st.st_mode))
            return failure(QStringLiteral("%1 is in the way and isn't Orwick's socket").arg(quotedPath(socket)));
        if (st.st_uid != getuid())
            return failure(QStringLiteral("%1 belongs to another user").arg(quotedPath(socket)));
        if (isAnswered(address))
            return failure(QStringLiteral("another Orwick listens at %1 but didn't take this start's request").arg(quotedPath(socket)));
        // Ours, and nothing listens: left by an Orwick that ended.
        if (unlink(socket.c_str()) != 0 && errno != ENOENT)
            return failure(QStringLiteral("%1 can't be replaced: %2").arg(quotedPath(socket), errorReason(errno)));
    }
    UniqueFd fd(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!fd.ok())
        return failure(QStringLiteral("no socket could be made: ") + errorReason(errno));
    const mode_t previous = umask(077); // only this user may connect
    const int bound = ::bind(fd.get(), reinterpret_cast<sockaddr*>(&address), sizeof address);
    const int bindError = errno;
    umask(previous);
    if (bound != 0)
        return failure(QStringLiteral("%1 can't be made: %2").arg(quotedPath(socket), errorReason(bindError)));
    if (::listen(fd.get(), 16) != 0 || lstat(socket.c_str(), &st) != 0)
        return failure(QStringLiteral("%1 can't be listened on: %2").arg(quotedPath(socket), errorReason(errno)));
    m_server = new QLocalServer(this);
    if (!m_server->listen(qintptr(fd.get())))
        return failure(QStringLiteral("%1 can't be listened on: %2").arg(quotedPath(socket), m_server->errorString()));
    fd.release();
    m_socket = socket;
    m_socketInode = st.st_ino;
    connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::accept);
    return {};
}

void SingleInstance::accept()
{
    while (QLocalSocket* connection = m_server->nextPendingConnection()) {
        connection->setParent(this);
        // A sender that stops half-way is dropped rather than kept.
        auto* limit = new QTimer(connection);
        limit->setSingleShot(true);
        connect(limit, &QTimer::timeout, connection, &QLocalSocket::abort);
        limit->start(3000);
        connect(connection, &QLocalSocket::disconnected, connection, &QObject::deleteLater);
        auto buffer = std::make_shared<QByteArray>();
        connect(connection, &QLocalSocket::readyRead, this, [this, connection, buffer] {
            buffer->append(connection->readAll());
            if (buffer->size() < 4)
                return;
            const quint32 length = qFromBigEndian<quint32>(buffer->constData());
            if (length > quint32(kMaxMessage)) {
                connection->abort();
                return;
            }
            if (buffer->size() < 4 + qsizetype(length))
                return;
            const std::optional<Request> request = decode(QByteArrayView(*buffer).first(4 + length));
            if (!request) {
                connection->abort();
                return;
            }
            connection->write(kReceipt.data(), kReceipt.size());
            connection->flush();
            connection->disconnectFromServer();
            Q_EMIT received(*request);
        });
    }
}

} // namespace orwick

#include "moc_SingleInstance.cpp"
