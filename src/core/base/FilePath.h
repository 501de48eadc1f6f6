#pragma once
// FilePath: a file's path as the kernel knows it — raw bytes, never re-encoded.
//
// Linux names may be any bytes but "/" and NUL, so a path read from the system travels as its
// bytes to the call that acts on it. Text (for showing, sorting, matching) is made on demand.
// Paths are always absolute and standardized: no ".", "..", doubled or trailing slashes.

#include <QByteArray>
#include <QHash>
#include <QMetaType>
#include <QString>
#include <QUrl>
#include <compare>

namespace orwick {

class FilePath {
public:
    FilePath() = default;

    // From bytes as read from the system. A relative path is taken relative to the working folder.
    static FilePath fromNative(QByteArrayView bytes);
    // From text a person typed or a program passed: "~" and "~/..." expand to the home folder.
    static FilePath fromText(const QString& text);
    // From a file:// URL (percent-encoded bytes); an empty path for any other scheme.
    static FilePath fromUrl(const QUrl& url);

    bool isEmpty() const { return m_bytes.isEmpty(); }
    bool isRoot() const { return m_bytes == "/"; }

    const QByteArray& native() const { return m_bytes; }
    const char* c_str() const { return m_bytes.constData(); }

    // Display text; bytes that are not UTF-8 show as U+FFFD.
    QString text() const;
    // Display text with the home folder shortened to "~".
    QString abbreviated() const;
    QUrl toUrl() const;

    QByteArray fileNameBytes() const;
    QString fileName() const;
    // The lower-cased extension of the last component ("" for none, ".bashrc" has none).
    QString extension() const;

    FilePath parent() const;        // the root's parent is the root
    FilePath child(QByteArrayView name) const;
    FilePath child(const QString& name) const;

    // True when this path is `other` or one of its ancestors.
    bool contains(const FilePath& other) const;
    bool isAncestorOf(const FilePath& other) const { return *this != other && contains(other); }

    bool operator==(const FilePath&) const = default;
    std::strong_ordering operator<=>(const FilePath& other) const;

private:
    explicit FilePath(QByteArray standardized) : m_bytes(std::move(standardized)) {}
    QByteArray m_bytes;
};

inline size_t qHash(const FilePath& path, size_t seed = 0) { return qHash(path.native(), seed); }

// Text for a name's bytes (U+FFFD for bytes that are not UTF-8). Faithful for valid UTF-8, so it
// may be handed to Qt's file classes.
QString displayName(QByteArrayView bytes);
// The name as a row shows it: like displayName, with control characters drawn as their visible
// pictures (a newline shows as ␊, a tab as ␉) so that a name never breaks a row, and
// bidirectional formatting characters (overrides, embeddings, isolates, marks) shown as U+FFFD
// so that a name never reorders what is drawn around it.
QString visibleName(QByteArrayView bytes);
// True when the bytes are valid UTF-8.
bool isValidUtf8(QByteArrayView bytes);

} // namespace orwick

template <>
struct std::hash<orwick::FilePath> {
    size_t operator()(const orwick::FilePath& p) const noexcept { return qHash(p.native()); }
};

Q_DECLARE_METATYPE(orwick::FilePath)
