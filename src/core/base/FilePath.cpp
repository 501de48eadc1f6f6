#include "base/FilePath.h"

#include <QDir>
#include <QStringDecoder>
#include <cstring>
#include <unistd.h>

namespace orwick {

namespace {

QByteArray workingFolder()
{
    char buffer[4096];
    if (getcwd(buffer, sizeof buffer))
        return QByteArray(buffer);
    return QByteArray("/");
}

QByteArray homeBytes()
{
    const char* home = getenv("HOME");
    return (home && *home) ? QByteArray(home) : QByteArray("/");
}

// True when `path` is standardized already: absolute, no empty, "." or ".." component, no
// trailing slash. Most paths are (a folder's entries, git's and ripgrep's names).
bool isStandardized(QByteArrayView path)
{
    const qsizetype n = path.size();
    if (n == 0 || path[0] != '/')
        return false;
    if (n == 1)
        return true;
    for (qsizetype start = 1, i = 1; i <= n; ++i) {
        if (i < n && path[i] != '/')
            continue;
        const qsizetype length = i - start;
        if (length == 0 || (path[start] == '.' && (length == 1 || (length == 2 && path[start + 1] == '.'))))
            return false;
        start = i + 1;
    }
    return true;
}

// Lexical standardization: collapse "//", drop ".", resolve ".." against the components seen.
QByteArray standardize(QByteArrayView path)
{
    if (isStandardized(path))
        return path.toByteArray();
    QByteArray absolute;
    if (!path.startsWith('/')) {
        absolute = workingFolder();
        absolute += '/';
    }
    absolute += path;

    QByteArray out;
    out.reserve(absolute.size());
    qsizetype i = 0;
    const qsizetype n = absolute.size();
    while (i < n) {
        while (i < n && absolute[i] == '/')
            ++i;
        qsizetype start = i;
        while (i < n && absolute[i] != '/')
            ++i;
        QByteArrayView part(absolute.constData() + start, i - start);
        if (part.isEmpty() || part == ".")
            continue;
        if (part == "..") {
            qsizetype slash = out.lastIndexOf('/');
            out.truncate(slash < 0 ? 0 : slash);
            continue;
        }
        out += '/';
        out += part;
    }
    if (out.isEmpty())
        out = "/";
    return out;
}

} // namespace

bool isValidUtf8(QByteArrayView bytes)
{
    for (char c : bytes) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
            const QString decoded = decoder(bytes);
            return !decoder.hasError();
        }
    }
    return true;
}

QString displayName(QByteArrayView bytes)
{
    return QString::fromUtf8(bytes);
}

QString visibleName(QByteArrayView bytes)
{
    QString text = QString::fromUtf8(bytes);
    for (QChar& c : text) {
        const char16_t u = c.unicode();
        if (u < 0x20)
            c = QChar(0x2400 + u); // ␊ for a newline, ␉ for a tab
        else if (u == 0x7f)
            c = QChar(0x2421); // ␡
        else if (u >= 0x80 && u < 0xa0)
            c = QChar(0xfffd); // C1 controls (NEL breaks lines)
        else if (u == 0x2028 || u == 0x2029)
            c = QChar(0x2424); // ␤: line and paragraph separators
        else if ((u >= 0x202a && u <= 0x202e) || (u >= 0x2066 && u <= 0x2069) || u == 0x200e || u == 0x200f
                 || u == 0x061c)
            c = QChar(0xfffd); // bidirectional embeddings, overrides, isolates and marks: a name
                               // must not turn the text around it (or its own extension) round
    }
    return text;
}

FilePath FilePath::fromNative(QByteArrayView bytes)
{
    if (bytes.isEmpty())
        return {};
    return FilePath(standardize(bytes));
}

FilePath FilePath::fromText(const QString& text)
{
    QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return {};
    QByteArray bytes = trimmed.toUtf8();
    if (bytes == "~" || bytes.startsWith("~/"))
        bytes = homeBytes() + bytes.mid(1);
    return fromNative(bytes);
}

FilePath FilePath::fromUrl(const QUrl& url)
{
    if (!url.isLocalFile() && !url.scheme().isEmpty())
        return {};
    return fromNative(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()));
}

QString FilePath::text() const { return displayName(m_bytes); }

QString FilePath::abbreviated() const
{
    const FilePath home = fromNative(homeBytes());
    if (!home.isRoot() && home.contains(*this))
        return QStringLiteral("~") + displayName(QByteArrayView(m_bytes).sliced(home.m_bytes.size()));
    return text();
}

QUrl FilePath::toUrl() const
{
    QUrl url;
    url.setScheme(QStringLiteral("file"));
    url.setPath(QString::fromLatin1(m_bytes.toPercentEncoding("/")), QUrl::TolerantMode);
    return url;
}

QByteArray FilePath::fileNameBytes() const
{
    if (isRoot() || isEmpty())
        return m_bytes;
    return m_bytes.mid(m_bytes.lastIndexOf('/') + 1);
}

QString FilePath::fileName() const { return displayName(fileNameBytes()); }

QString FilePath::extension() const
{
    const QByteArray name = fileNameBytes();
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || dot == name.size() - 1)
        return {};
    return displayName(QByteArrayView(name).sliced(dot + 1)).toLower();
}

FilePath FilePath::parent() const
{
    if (isEmpty() || isRoot())
        return *this;
    const qsizetype slash = m_bytes.lastIndexOf('/');
    return FilePath(slash <= 0 ? QByteArray("/") : m_bytes.left(slash));
}

FilePath FilePath::child(QByteArrayView name) const
{
    // One allocation, however long the name, filled in place: a batch joins thousands.
    const bool root = isRoot();
    QByteArray joined(m_bytes.size() + (root ? 0 : 1) + name.size(), Qt::Uninitialized);
    char* out = joined.data();
    std::memcpy(out, m_bytes.constData(), size_t(m_bytes.size()));
    out += m_bytes.size();
    if (!root)
        *out++ = '/';
    if (!name.isEmpty())
        std::memcpy(out, name.data(), size_t(name.size()));
    if (isStandardized(joined))
        return FilePath(std::move(joined));
    return FilePath(standardize(joined));
}

FilePath FilePath::child(const QString& name) const { return child(QByteArrayView(name.toUtf8())); }

bool FilePath::contains(const FilePath& other) const
{
    if (isRoot())
        return !other.isEmpty();
    return other.m_bytes.startsWith(m_bytes)
        && (other.m_bytes.size() == m_bytes.size() || other.m_bytes[m_bytes.size()] == '/');
}

std::strong_ordering FilePath::operator<=>(const FilePath& other) const
{
    const int c = m_bytes.compare(other.m_bytes);
    return c < 0 ? std::strong_ordering::less : c > 0 ? std::strong_ordering::greater : std::strong_ordering::equal;
}

} // namespace orwick
