#include "servers/ServerAddress.h"

#include <QDir>
#include <QUrl>

namespace orwick {

namespace {

int defaultPort(const QString& scheme)
{
    if (scheme == QLatin1StringView("sftp"))
        return 22;
    if (scheme == QLatin1StringView("ftp"))
        return 21;
    if (scheme == QLatin1StringView("dav"))
        return 80;
    if (scheme == QLatin1StringView("davs"))
        return 443;
    if (scheme == QLatin1StringView("smb"))
        return 445;
    return -1;
}

QString canonicalScheme(const QString& typed)
{
    const QString scheme = typed.toLower();
    if (scheme == QLatin1StringView("ssh"))
        return QStringLiteral("sftp");
    if (scheme == QLatin1StringView("webdav"))
        return QStringLiteral("dav");
    if (scheme == QLatin1StringView("webdavs"))
        return QStringLiteral("davs");
    if (scheme == QLatin1StringView("cifs"))
        return QStringLiteral("smb");
    return scheme;
}

QString cleanPath(const QString& path)
{
    if (path.isEmpty())
        return QStringLiteral("/");
    const QString clean = QDir::cleanPath(path.startsWith(QLatin1Char('/')) ? path : QLatin1Char('/') + path);
    return clean.isEmpty() ? QStringLiteral("/") : clean;
}

bool samePort(const ServerAddress& a, const ServerAddress& b)
{
    const int first = a.port > 0 ? a.port : defaultPort(a.scheme);
    const int second = b.port > 0 ? b.port : defaultPort(b.scheme);
    return first == second;
}

} // namespace

const QStringList& ServerAddress::schemes()
{
    static const QStringList list{QStringLiteral("sftp"), QStringLiteral("smb"), QStringLiteral("dav"), QStringLiteral("davs"),
                                  QStringLiteral("ftp")};
    return list;
}

Result<ServerAddress> ServerAddress::parse(const QString& typed)
{
    QString text = typed.trimmed();
    if (text.isEmpty())
        return failure(QStringLiteral("Type a server address, such as sftp://example.com/folder."));
    if (text.startsWith(QLatin1StringView("\\\\"))) // a Windows share: \\server\share\folder
        text = QStringLiteral("smb://") + text.mid(2).replace(QLatin1Char('\\'), QLatin1Char('/'));
    const qsizetype separator = text.indexOf(QLatin1StringView("://"));
    if (separator <= 0)
        return failure(QStringLiteral("Start the address with sftp://, smb://, dav://, davs:// or ftp://."));
    const QString scheme = canonicalScheme(text.left(separator));
    if (!schemes().contains(scheme))
        return failure(QStringLiteral("Orwick connects to sftp, smb, dav, davs and ftp servers; “%1://” isn’t one of them.")
                           .arg(text.left(separator)));
    const QUrl url(scheme + text.mid(separator), QUrl::TolerantMode);
    if (!url.isValid())
        return failure(QStringLiteral("That isn’t a server address: check it for spaces or stray characters."));
    if (!url.password().isEmpty())
        return failure(QStringLiteral("Leave the password out of the address: Orwick asks for it when the server wants it."));
    if (url.host().isEmpty())
        return failure(QStringLiteral("The address has no server name."));
    if (url.port() == 0)
        return failure(QStringLiteral("The port must be a number from 1 to 65535."));
    if (url.hasQuery() || url.hasFragment())
        return failure(QStringLiteral("A server address can’t hold “?” or “#”."));
    ServerAddress address;
    address.scheme = scheme;
    address.user = url.userName(QUrl::FullyDecoded);
    address.host = url.host(QUrl::FullyDecoded).toLower();
    address.port = url.port() == defaultPort(scheme) ? -1 : url.port();
    address.path = cleanPath(url.path(QUrl::FullyDecoded));
    return address;
}

std::optional<ServerAddress> ServerAddress::fromGvfsName(QByteArrayView name)
{
    const qsizetype colon = name.indexOf(':');
    if (colon <= 0)
        return std::nullopt;
    const QByteArray type = name.first(colon).toByteArray();
    QHash<QByteArray, QString> keys;
    for (const QByteArray& pair : name.sliced(colon + 1).toByteArray().split(',')) {
        const qsizetype equals = pair.indexOf('=');
        if (equals > 0)
            keys.insert(pair.left(equals), QString::fromUtf8(QByteArray::fromPercentEncoding(pair.mid(equals + 1))));
    }
    ServerAddress address;
    address.user = keys.value("user");
    address.port = keys.value("port").toInt() > 0 ? keys.value("port").toInt() : -1;
    if (type == "sftp" || type == "ftp") {
        address.scheme = QString::fromLatin1(type);
        address.host = keys.value("host");
    } else if (type == "smb-share") {
        address.scheme = QStringLiteral("smb");
        address.host = keys.value("server");
        address.path = QLatin1Char('/') + keys.value("share");
    } else if (type == "dav") {
        address.scheme = keys.value("ssl") == QLatin1StringView("true") ? QStringLiteral("davs") : QStringLiteral("dav");
        address.host = keys.value("host");
        address.path = cleanPath(keys.value("prefix"));
    } else {
        return std::nullopt;
    }
    if (address.host.isEmpty())
        return std::nullopt;
    address.host = address.host.toLower();
    if (address.port == defaultPort(address.scheme))
        address.port = -1;
    return address;
}

QString ServerAddress::toString() const
{
    QUrl url;
    url.setScheme(scheme);
    url.setUserName(user);
    url.setHost(host);
    url.setPort(port > 0 ? port : -1);
    url.setPath(path.isEmpty() ? QStringLiteral("/") : path);
    return url.toString(QUrl::FullyEncoded);
}

QString ServerAddress::displayName() const
{
    const QString what = !share().isEmpty() ? share() : !user.isEmpty() ? user : QString();
    return what.isEmpty() ? host : QStringLiteral("%1 on %2").arg(what, host);
}

QString ServerAddress::share() const
{
    if (scheme != QLatin1StringView("smb"))
        return {};
    return path.section(QLatin1Char('/'), 1, 1);
}

QString ServerAddress::folderBelowMount(const ServerAddress& mount) const
{
    QString below = path;
    if (scheme == QLatin1StringView("smb"))
        below = path.section(QLatin1Char('/'), 2);
    else if (scheme.startsWith(QLatin1StringView("dav")) && mount.path != QLatin1StringView("/"))
        below = path.mid(mount.path.size());
    below = cleanPath(below);
    return below == QLatin1StringView("/") ? QString() : below;
}

bool ServerAddress::isServedBy(const ServerAddress& mount) const
{
    if (scheme != mount.scheme || host.compare(mount.host, Qt::CaseInsensitive) != 0 || !samePort(*this, mount))
        return false;
    if (!user.isEmpty() && user != mount.user)
        return false;
    if (scheme == QLatin1StringView("smb"))
        return share().compare(mount.share(), Qt::CaseInsensitive) == 0;
    if (scheme.startsWith(QLatin1StringView("dav")))
        return mount.path == QLatin1StringView("/") || path == mount.path || path.startsWith(mount.path + QLatin1Char('/'));
    return true;
}

} // namespace orwick
