#pragma once
// ServerAddress: a server as "Connect to Server…" takes it — sftp://, smb://, dav://, davs:// or
// ftp://, with an optional user, port and folder — parsed from what a person typed, written back
// in one standard form (so the recent list holds each server once), and matched against the
// folders gvfs mounts under its FUSE folder ("sftp:host=example.com,port=2222,user=ann").
//
// Parsing is forgiving where the meaning is clear: "ssh://" means sftp, "webdav://" dav,
// "webdavs://" davs, and a Windows share "\\server\share" smb. A password in the address is
// refused: Orwick asks for it, and the address is remembered, so it must not hold one.
// Plain values and pure functions.

#include "base/Result.h"

#include <QString>
#include <QStringList>
#include <optional>

namespace orwick {

struct ServerAddress {
    QString scheme; // "sftp", "smb", "dav", "davs" or "ftp"
    QString user;   // empty: the server's default (the local user name for sftp)
    QString host;   // a name or an address; IPv6 without brackets
    int port = -1;  // -1: the scheme's own
    QString path = QStringLiteral("/"); // "/" or "/folder/below"; for smb the first folder is the share

    static const QStringList& schemes();

    // The error is a sentence to show under the address field.
    static Result<ServerAddress> parse(const QString& text);
    // gvfs's name for a mount: "sftp:host=h,port=22,user=u", "smb-share:server=s,share=docs",
    // "dav:host=h,ssl=true,prefix=%2Fdav", "ftp:host=h"; none for other kinds of mount.
    static std::optional<ServerAddress> fromGvfsName(QByteArrayView name);

    // "sftp://ann@example.com:2222/srv/www"
    QString toString() const;
    // How the sidebar names it: "ann on example.com", "docs on fileserver".
    QString displayName() const;
    // The smb share (the first folder of the path), else empty.
    QString share() const;
    // The folder below what gvfs mounts: the path without the share (smb), the whole path else.
    QString folderBelowMount(const ServerAddress& mount) const;

    // Whether a mount of `mount` (as fromGvfsName reads it) serves this address: same kind,
    // server, port, share, and user when this address names one.
    bool isServedBy(const ServerAddress& mount) const;

    bool operator==(const ServerAddress&) const = default;
};

} // namespace orwick
