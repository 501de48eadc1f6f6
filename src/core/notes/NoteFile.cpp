#include "notes/NoteFile.h"

#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"
#include "platform/Xattr.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringDecoder>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <ctime>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::notefile {

Fingerprint versionOf(const struct stat& st)
{
    return {qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec, qint64(st.st_size), quint64(st.st_ino)};
}

namespace {

// The UTF-8 byte-order mark some editors put at the start of a file.
constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");
// A note modified this recently is read again whatever its version says (see readAll).
constexpr time_t kRecentSeconds = 2;

// Reads up to `limit` bytes (all when negative).
bool readUpTo(int fd, QByteArray& out, qsizetype limit)
{
    qsizetype chunk = limit >= 0 ? limit : 65536;
    for (;;) {
        const qsizetype at = out.size();
        out.resize(at + chunk);
        const ssize_t n = ::read(fd, out.data() + at, size_t(chunk));
        if (n < 0 && errno == EINTR) {
            out.resize(at);
            continue;
        }
        if (n <= 0) {
            out.resize(at);
            return n == 0;
        }
        out.resize(at + n);
        if (limit >= 0) {
            if (out.size() >= limit)
                return true;
            chunk = limit - out.size();
        }
    }
}

// Drops a multi-byte UTF-8 sequence that the head cut short.
QByteArrayView withoutCutCharacter(QByteArrayView bytes)
{
    qsizetype end = bytes.size();
    qsizetype back = 0;
    while (back < 3 && end - back > 0 && (uchar(bytes[end - back - 1]) & 0xC0) == 0x80)
        ++back;
    if (end - back == 0)
        return bytes;
    const uchar lead = uchar(bytes[end - back - 1]);
    const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    if (length > 1 && length > back + 1)
        return bytes.first(end - back - 1);
    return bytes;
}

std::optional<QString> decodeUtf8(QByteArrayView bytes)
{
    // A byte-order mark is taken off by the caller; one anywhere else is text and stays.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

PropertyMap toMap(const QList<FrontMatter::Property>& properties)
{
    PropertyMap map;
    for (const FrontMatter::Property& property : properties)
        if (!map.contains(property.key)) // the first of a repeated key counts
            map.insert(property.key, PropertyValue::fromYaml(property));
    return map;
}

// "---" directly followed by "---": a front matter with nothing in it.
bool startsWithEmptyBlock(const QString& text)
{
    const QList<QStringView> lines = QStringView(text).split(u'\n');
    auto bare = [](QStringView line) { return line.endsWith(u'\r') ? line.chopped(1) : line; };
    return lines.size() >= 2 && bare(lines[0]) == u"---" && bare(lines[1]) == u"---";
}

// The properties of a whole note; nothing when it opens a front matter that can't be read.
std::optional<PropertyMap> frontMatterOf(const QString& text)
{
    const qsizetype firstEnd = text.indexOf(u'\n');
    QStringView firstLine = QStringView(text).first(firstEnd < 0 ? text.size() : firstEnd);
    if (firstLine.endsWith(u'\r'))
        firstLine.chop(1);
    if (propertytext::trimmed(firstLine) != u"---")
        return PropertyMap();
    const auto properties = FrontMatter::read(text);
    if (!properties)
        return std::nullopt;
    return toMap(*properties);
}

QString unreadableMessage(const QString& noteName)
{
    return QStringLiteral("The front matter of “%1” is written in a way Orwick doesn’t change, so the note was left as it is.")
        .arg(noteName);
}

QString name(const FilePath& path) { return path.fileName(); }

QString quotedName(const FilePath& path) { return u'“' + path.fileName() + u'”'; }

} // namespace

Status checkWritable(const FilePath& path)
{
    const QString name = quotedName(path);
    auto refused = [&](const QString& reason) { return failure(QStringLiteral("Couldn’t change %1: %2.").arg(name, reason)); };
    struct stat st;
    if (::stat(path.c_str(), &st) != 0)
        return refused(errno == ENOENT ? QStringLiteral("it is no longer there") : errorReason(errno));
    if ((st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
        return refused(QStringLiteral("it is read-only"));
    if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) {
        if (errno == EROFS)
            return refused(QStringLiteral("the disk is read-only"));
        if (errno == EACCES || errno == EPERM)
            return refused(QStringLiteral("it is read-only"));
        return refused(errorReason(errno));
    }
    return {};
}

bool isNote(const FilePath& path)
{
    const QString extension = path.extension();
    return extension == u"md" || extension == u"markdown" || extension == u"mdown" || extension == u"mkd"
        || extension == u"mdx";
}

QString changedOnDiskMessage(const FilePath& path)
{
    return QStringLiteral("Couldn’t change %1: it changed on disk since it was read.").arg(quotedName(path));
}

QString notUtf8Message(const FilePath& path)
{
    return QStringLiteral("Couldn’t change %1: it isn’t UTF-8 text.").arg(quotedName(path));
}

PropertyMap propertiesOfNoteText(QByteArrayView bytes)
{
    if (bytes.startsWith(kByteOrderMark))
        bytes = bytes.sliced(kByteOrderMark.size());
    if (!bytes.startsWith("---"))
        return {};
    const auto text = decodeUtf8(withoutCutCharacter(bytes));
    if (!text)
        return {};
    const auto properties = FrontMatter::read(*text);
    return properties ? toMap(*properties) : PropertyMap();
}

Loaded read(const FilePath& path, bool isFolder)
{
    Loaded loaded{path, {}, std::nullopt};
    if (isFolder || !isNote(path)) {
        if (const auto stored = xattr::get(path, xattr::properties)) {
            const QJsonDocument document = QJsonDocument::fromJson(*stored);
            if (document.isObject())
                loaded.values = propertyMapFromJson(document.object());
        }
        return loaded;
    }
    // Non-blocking, so a pipe named like a note can't hold the reader up; files ignore the flag.
    UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat st;
    if (!fd.ok() || ::fstat(fd.get(), &st) != 0 || !S_ISREG(st.st_mode))
        return loaded;
    loaded.fingerprint = versionOf(st);
    QByteArray head;
    head.reserve(st.st_size < kHeadBytes ? qsizetype(st.st_size) + 1 : kHeadBytes);
    if (readUpTo(fd.get(), head, kHeadBytes))
        loaded.values = propertiesOfNoteText(head);
    return loaded;
}

std::optional<QList<Loaded>> readAll(const QList<Target>& targets, const CancelFlag* cancel)
{
    QList<Loaded> results;
    results.reserve(targets.size());
    const time_t settledBefore = ::time(nullptr) - kRecentSeconds;
    for (const Target& target : targets) {
        if (cancel && cancel->isCancelled())
            return std::nullopt;
        if (target.known && !target.isFolder) {
            struct stat st;
            if (::stat(target.path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && st.st_mtim.tv_sec < settledBefore
                && versionOf(st) == *target.known)
                continue; // as last read
        }
        results.append(read(target.path, target.isFolder));
    }
    return results;
}

std::optional<Fingerprint> fingerprint(const FilePath& path)
{
    struct stat st;
    if (::stat(path.c_str(), &st) != 0)
        return std::nullopt;
    return versionOf(st);
}

Result<FileBytes> readFile(const FilePath& path)
{
    UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat st;
    if (!fd.ok() || ::fstat(fd.get(), &st) != 0) {
        if (errno == ENOENT)
            return failure(QStringLiteral("“%1” is no longer there.").arg(name(path)));
        return failure(QStringLiteral("Couldn’t read “%1”.").arg(name(path)));
    }
    if (!S_ISREG(st.st_mode))
        return failure(QStringLiteral("“%1” isn’t a file.").arg(name(path)));
    FileBytes file{{}, versionOf(st), unsigned(st.st_mode)};
    file.bytes.reserve(qsizetype(st.st_size));
    if (!readUpTo(fd.get(), file.bytes, -1))
        return failure(QStringLiteral("Couldn’t read “%1”.").arg(name(path)));
    return file;
}

Result<NoteText> readNoteText(const FilePath& path)
{
    auto file = readFile(path);
    if (!file)
        return failure(file.error());
    const bool byteOrderMark = file->bytes.startsWith(kByteOrderMark);
    auto text = decodeUtf8(QByteArrayView(file->bytes).sliced(byteOrderMark ? kByteOrderMark.size() : 0));
    if (!text)
        return failure(notUtf8Message(path));
    return NoteText{std::move(*file), std::move(*text), byteOrderMark};
}

QByteArray noteBytes(const QString& text, bool byteOrderMark)
{
    return byteOrderMark ? kByteOrderMark.toByteArray() + text.toUtf8() : text.toUtf8();
}

Result<QString> applyToNoteText(const QString& text, const QList<Change>& changes, const QString& noteName)
{
    const auto before = frontMatterOf(text);
    if (!before)
        return failure(unreadableMessage(noteName));
    PropertyMap expected = *before;
    QString result = text;
    for (const Change& change : changes) {
        const QString& key = change.renameTo ? *change.renameTo : change.key;
        if (!FrontMatter::isWritableKey(key))
            return failure(QStringLiteral("“%1” can’t be used as a property name in a note.").arg(key));
        if (change.renameTo) {
            if (expected.contains(change.key)) {
                expected.insert(*change.renameTo, expected.take(change.key));
                result = FrontMatter::renaming(change.key, *change.renameTo, result);
            }
            continue;
        }
        if (!change.value) {
            expected.remove(change.key);
            result = FrontMatter::setting(change.key, std::nullopt, result);
            continue;
        }
        const QString yaml = FrontMatter::yaml(*change.value);
        // What the line will read back as: backslash escapes stay, "12" reads as a number.
        const auto line = FrontMatter::parse(change.key + QStringLiteral(": ") + yaml);
        if (yaml.contains(u'\n') || !line || line->size() != 1)
            return failure(QStringLiteral("The value of “%1” can’t be kept in a note’s front matter (it spans lines).").arg(change.key));
        expected.insert(change.key, PropertyValue::fromYaml(line->first()));
        result = FrontMatter::setting(change.key, yaml, result);
    }
    // Removing the last property takes the then empty front matter with it.
    if (expected.isEmpty() && !before->isEmpty() && startsWithEmptyBlock(result)) {
        const qsizetype secondEnd = result.indexOf(u'\n', result.indexOf(u'\n') + 1);
        result = secondEnd < 0 ? QString() : result.sliced(secondEnd + 1);
    }
    if (frontMatterOf(result) != expected)
        return failure(unreadableMessage(noteName));
    return result;
}

Result<QByteArray> changedNoteBytes(const QByteArray& bytes, const QList<Change>& changes, const FilePath& path)
{
    const bool byteOrderMark = bytes.startsWith(kByteOrderMark);
    const auto text = decodeUtf8(QByteArrayView(bytes).sliced(byteOrderMark ? kByteOrderMark.size() : 0));
    if (!text)
        return failure(notUtf8Message(path));
    const auto changed = applyToNoteText(*text, changes, path.fileName());
    if (!changed)
        return failure(changed.error());
    return noteBytes(*changed, byteOrderMark);
}

Result<QByteArray> changedAttribute(const QByteArray& value, const QList<Change>& changes, const FilePath& path)
{
    QJsonObject object;
    if (!value.isEmpty()) {
        const QJsonDocument document = QJsonDocument::fromJson(value);
        if (!document.isObject())
            return failure(QStringLiteral("Couldn’t change %1: the properties stored on it can’t be read.").arg(quotedName(path)));
        object = document.object();
    }
    const QJsonObject before = object;
    for (const Change& change : changes) {
        if (change.key.isEmpty() || (change.renameTo && change.renameTo->isEmpty()))
            return failure(QStringLiteral("A property needs a name."));
        if (change.renameTo) {
            if (object.contains(change.key))
                object.insert(*change.renameTo, object.take(change.key));
        } else if (change.value)
            object.insert(change.key, change.value->toJson());
        else
            object.remove(change.key);
    }
    if (object == before)
        return value;
    return object.isEmpty() ? QByteArray() : QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace orwick::notefile
