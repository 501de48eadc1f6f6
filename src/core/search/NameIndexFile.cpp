#include "search/NameIndexFile.h"

#include "platform/XdgPaths.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QSaveFile>
#include <QtEndian>
#include <cstdio>
#include <cstring>

Q_LOGGING_CATEGORY(lcNameIndex, "orwick.nameindex")

namespace orwick::NameIndexFile {
namespace {

constexpr char kMagic[8] = {'O', 'R', 'W', 'N', 'A', 'M', 'E', 'S'};
constexpr quint32 kVersion = 1;

struct Header {
    char magic[8];
    quint32 version;
    quint32 count;
    quint32 arenaSize;
    quint32 reserved;
    qint64 walkedAtMs;
    quint64 checksum;
};
static_assert(sizeof(Header) == 40);

quint64 checksumOf(const char* data, qsizetype size)
{
    quint64 hash = 1469598103934665603ull; // FNV-1a
    for (qsizetype i = 0; i < size; ++i) {
        hash ^= static_cast<unsigned char>(data[i]);
        hash *= 1099511628211ull;
    }
    return hash;
}

template <class T>
void appendColumn(QByteArray& out, const std::vector<T>& column)
{
    const qsizetype at = out.size();
    out.resize(at + qsizetype(column.size() * sizeof(T)));
    if constexpr (sizeof(T) == 1)
        std::memcpy(out.data() + at, column.data(), column.size());
    else
        qToLittleEndian<T>(column.data(), qsizetype(column.size()), out.data() + at);
}

template <class T>
std::vector<T> readColumn(const char*& at, size_t count)
{
    std::vector<T> column(count);
    if constexpr (sizeof(T) == 1)
        std::memcpy(column.data(), at, count);
    else
        qFromLittleEndian<T>(at, qsizetype(count), column.data());
    at += count * sizeof(T);
    return column;
}

std::optional<Contents> parse(const QByteArray& bytes)
{
    if (bytes.size() < qsizetype(sizeof(Header)))
        return std::nullopt;
    Header header;
    std::memcpy(&header, bytes.constData(), sizeof header);
    if (std::memcmp(header.magic, kMagic, sizeof kMagic) != 0 || qFromLittleEndian(header.version) != kVersion)
        return std::nullopt;
    const quint64 count = qFromLittleEndian(header.count);
    const quint64 arenaSize = qFromLittleEndian(header.arenaSize);
    const quint64 body = count * (4 + 4 + 2 + 1) + arenaSize;
    if (count > quint64(NameTable::kMaxNames) || quint64(bytes.size()) != sizeof(Header) + body)
        return std::nullopt;
    const char* at = bytes.constData() + sizeof(Header);
    if (checksumOf(at, qsizetype(body)) != qFromLittleEndian(header.checksum))
        return std::nullopt;
    NameTable::Columns columns;
    columns.parents = readColumn<quint32>(at, count);
    columns.offsets = readColumn<quint32>(at, count);
    columns.lengths = readColumn<quint16>(at, count);
    columns.folderFlags = readColumn<quint8>(at, count);
    columns.arena = QByteArray(at, qsizetype(arenaSize));
    auto table = NameTable::fromColumns(std::move(columns));
    if (!table)
        return std::nullopt;
    return Contents{std::move(*table), qFromLittleEndian(header.walkedAtMs)};
}

} // namespace

FilePath defaultPath() { return xdg::orwickDataDir().child(QStringLiteral("name-index.bin")); }

FilePath damagedPath(const FilePath& file)
{
    QByteArray name = file.fileNameBytes();
    const qsizetype dot = name.lastIndexOf('.');
    name.insert(dot > 0 ? dot : name.size(), ".damaged");
    return file.parent().child(QByteArrayView(name));
}

std::optional<Contents> read(const FilePath& file)
{
    QFile in(QFile::decodeName(file.native()));
    if (!in.open(QIODevice::ReadOnly))
        return std::nullopt; // missing (or unreadable): walk afresh
    // Far more than the most names a table holds (and their bytes) can take: not ours.
    constexpr qint64 kLargest = qint64(NameTable::kMaxNames) * (11 + 255) + 64;
    const QByteArray bytes = in.size() <= kLargest ? in.readAll() : QByteArray();
    in.close();
    if (auto contents = parse(bytes))
        return contents;
    const FilePath aside = damagedPath(file);
    ::rename(file.c_str(), aside.c_str());
    qCWarning(lcNameIndex).noquote() << "The name index" << file.text() << "couldn’t be read; it was set aside as"
                                     << aside.fileName() << "and the names are walked again.";
    return std::nullopt;
}

Status write(const FilePath& file, const NameTable& table, qint64 walkedAtMs)
{
    const NameTable compact = table.liveCount() == table.size() ? table : table.compacted();
    const NameTable::Columns columns = compact.columns();
    QByteArray bytes(sizeof(Header), '\0');
    appendColumn(bytes, columns.parents);
    appendColumn(bytes, columns.offsets);
    appendColumn(bytes, columns.lengths);
    appendColumn(bytes, columns.folderFlags);
    bytes.append(columns.arena);
    Header header;
    std::memcpy(header.magic, kMagic, sizeof kMagic);
    header.version = qToLittleEndian(kVersion);
    header.count = qToLittleEndian(quint32(columns.parents.size()));
    header.arenaSize = qToLittleEndian(quint32(columns.arena.size()));
    header.reserved = 0;
    header.walkedAtMs = qToLittleEndian(walkedAtMs);
    header.checksum = qToLittleEndian(checksumOf(bytes.constData() + sizeof(Header), bytes.size() - qsizetype(sizeof(Header))));
    std::memcpy(bytes.data(), &header, sizeof header);

    // Orwick's own store in its cache folder, not a user's file: written here, not by the engine.
    QDir().mkpath(QFile::decodeName(file.parent().native()));
    QSaveFile out(QFile::decodeName(file.native()));
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.commit())
        return failure(QStringLiteral("Couldn’t save the name index: ") + out.errorString());
    return {};
}

} // namespace orwick::NameIndexFile
