// OpenRouter's readers: orwick:// links and the program's arguments, turned into requests.

#include "app/OpenRouter.h"

#include "platform/XdgPaths.h"

#include <QFile>
#include <QUrl>

namespace orwick {

namespace {

constexpr QByteArrayView kScheme = "orwick";
constexpr QByteArrayView kHost = "open";

bool sameLetters(QByteArrayView a, QByteArrayView b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

// `path` made absolute: "~" and "~/…" from the home folder, anything relative from `base`.
FilePath absolutePath(const QByteArray& path, const FilePath& base)
{
    const QByteArray home = xdg::home().native();
    if (path == "~")
        return FilePath::fromNative(home);
    if (path.startsWith("~/"))
        return FilePath::fromNative(home + path.mid(1));
    if (path.startsWith('/'))
        return FilePath::fromNative(path);
    const QByteArray from = base.isEmpty() ? home : base.native();
    return FilePath::fromNative(from + '/' + path);
}

// The query's items, names and values percent-decoded to bytes, in order.
QList<std::pair<QByteArray, QByteArray>> queryItems(QByteArrayView query)
{
    QList<std::pair<QByteArray, QByteArray>> items;
    for (const QByteArray& item : query.toByteArray().split('&')) {
        if (item.isEmpty())
            continue;
        const qsizetype equals = item.indexOf('=');
        const QByteArray name = equals < 0 ? item : item.left(equals);
        const QByteArray value = equals < 0 ? QByteArray() : item.mid(equals + 1);
        items.append({QByteArray::fromPercentEncoding(name), QByteArray::fromPercentEncoding(value)});
    }
    return items;
}

} // namespace

bool OpenRouter::isLink(QByteArrayView argument)
{
    return argument.size() > kScheme.size() && argument[kScheme.size()] == ':'
        && sameLetters(argument.first(kScheme.size()), kScheme);
}

std::optional<OpenRequest> OpenRouter::parseLink(QByteArrayView url, const FilePath& base)
{
    if (!isLink(url))
        return std::nullopt;
    QByteArrayView rest = url.sliced(kScheme.size() + 1);
    if (!rest.startsWith("//"))
        return std::nullopt;
    rest = rest.sliced(2);
    if (const qsizetype hash = rest.indexOf('#'); hash >= 0)
        rest = rest.first(hash);
    const qsizetype question = rest.indexOf('?');
    if (question < 0)
        return std::nullopt; // no query, so no path
    QByteArrayView place = rest.first(question);
    const QByteArrayView query = rest.sliced(question + 1);
    // orwick://open?… and orwick://open/?… name the same place.
    if (place.endsWith('/'))
        place.chop(1);
    if (!sameLetters(place, kHost))
        return std::nullopt;

    std::optional<QByteArray> path;
    std::optional<QByteArray> reveal;
    for (const auto& [name, value] : queryItems(query)) {
        if (name == "path" && !path)
            path = value;
        else if (name == "reveal" && !reveal)
            reveal = value;
    }
    // A path can't hold NUL; an empty one names nothing.
    if (!path || path->isEmpty() || path->contains('\0'))
        return std::nullopt;
    return OpenRequest{absolutePath(*path, base), reveal == QByteArray("1")};
}

std::optional<OpenRequest> OpenRouter::parseLink(const QString& url, const FilePath& base)
{
    return parseLink(QByteArrayView(url.toUtf8()), base);
}

OpenRequests OpenRouter::requestsFromArguments(const QList<QByteArray>& arguments, const FilePath& cwd)
{
    OpenRequests requests;
    for (const QByteArray& argument : arguments) {
        if (argument.isEmpty() || argument.contains('\0'))
            continue;
        if (isLink(argument)) {
            if (auto request = parseLink(QByteArrayView(argument), cwd))
                requests.append(*request);
            continue;
        }
        if (argument.size() > 5 && sameLetters(QByteArrayView(argument).first(5), "file:")) {
            // Percent-encoded bytes come back as the same bytes.
            const FilePath path = FilePath::fromUrl(QUrl::fromEncoded(argument, QUrl::TolerantMode));
            if (!path.isEmpty())
                requests.append({path, false});
            continue;
        }
        requests.append({absolutePath(argument.startsWith('~') ? "./" + argument : argument, cwd), false});
    }
    return requests;
}

OpenRequests OpenRouter::requestsFromArguments(const QStringList& arguments, const FilePath& cwd)
{
    QList<QByteArray> bytes;
    for (const QString& argument : arguments)
        bytes.append(QFile::encodeName(argument));
    return requestsFromArguments(bytes, cwd);
}

} // namespace orwick
