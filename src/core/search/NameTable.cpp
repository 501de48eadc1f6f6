#include "search/NameTable.h"

#include "base/TextMatch.h"

#include <QChar>
#include <algorithm>

namespace orwick {
namespace {

enum Flag : quint8 { kFolder = 1, kRemoved = 2, kPlain = 4, kNotEntered = 8 };

struct Entry {
    quint32 parent = NameTable::kNone;
    quint32 firstChild = NameTable::kNone;
    quint32 nextSibling = NameTable::kNone;
    quint32 nameOffset = 0;
    quint16 nameLength = 0;
    quint8 flags = 0;
};

inline quint32 bitOf(char16_t folded)
{
    if (folded >= u'a' && folded <= u'z')
        return 1u << (folded - u'a');
    if (folded >= u'0' && folded <= u'9')
        return 1u << (26 + std::min(3, (folded - u'0') / 3));
    return folded < 128 ? 0u : NameTable::kNonAsciiBit;
}

} // namespace

struct NameTable::Data : QSharedData {
    std::vector<Entry> entries;
    std::vector<quint32> masks;
    QByteArray arena;
    std::vector<quint32> roots;
    qsizetype removed = 0;
    qsizetype folders = 0; // live folders
};

NameTable::NameTable() : d(new Data) {}
NameTable::NameTable(const NameTable&) = default;
NameTable& NameTable::operator=(const NameTable&) = default;
NameTable::~NameTable() = default;

NameTable::Data& NameTable::edit()
{
    d.detach();
    return *d;
}

quint32 NameTable::maskOfName(QByteArrayView name, bool* isPlain)
{
    quint32 mask = 0;
    bool plain = true;
    for (char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte > 0x7e) {
            plain = false;
            break;
        }
        mask |= bitOf(char16_t(byte >= 'A' && byte <= 'Z' ? byte + 32 : byte));
    }
    if (!plain) {
        // As the matcher sees it: the shown text, folded (accents and case).
        mask = 0;
        for (QChar c : foldForSearch(visibleName(name))) {
            const char16_t unit = c.unicode();
            mask |= c.isSurrogate() ? kNonAsciiBit : bitOf(unit);
        }
    }
    if (isPlain)
        *isPlain = plain;
    return mask;
}

qsizetype NameTable::size() const { return qsizetype(d->entries.size()); }
qsizetype NameTable::liveCount() const { return size() - d->removed; }
qsizetype NameTable::fileCount() const { return liveCount() - d->folders; }

QByteArrayView NameTable::name(quint32 entry) const
{
    const Entry& e = d->entries[entry];
    return QByteArrayView(d->arena.constData() + e.nameOffset, e.nameLength);
}

quint32 NameTable::parent(quint32 entry) const { return d->entries[entry].parent; }
bool NameTable::isFolder(quint32 entry) const { return d->entries[entry].flags & kFolder; }
bool NameTable::isRemoved(quint32 entry) const { return d->entries[entry].flags & kRemoved; }
bool NameTable::isEntered(quint32 entry) const
{
    return (d->entries[entry].flags & (kFolder | kNotEntered)) == kFolder;
}
bool NameTable::isPlain(quint32 entry) const { return d->entries[entry].flags & kPlain; }
quint32 NameTable::mask(quint32 entry) const { return d->masks[entry]; }
std::span<const quint32> NameTable::masks() const { return d->masks; }

FilePath NameTable::path(quint32 entry) const
{
    std::vector<quint32> chain;
    chain.reserve(32);
    quint32 at = entry;
    qsizetype bytes = 0;
    while (d->entries[at].parent != kNone) {
        chain.push_back(at);
        bytes += d->entries[at].nameLength + 1;
        at = d->entries[at].parent;
    }
    QByteArray text;
    text.reserve(name(at).size() + bytes);
    text.append(name(at));
    for (size_t i = chain.size(); i-- > 0;) {
        if (!text.endsWith('/'))
            text.append('/');
        text.append(name(chain[i]));
    }
    return FilePath::fromNative(text);
}

std::vector<quint32> NameTable::roots() const
{
    std::vector<quint32> live;
    for (quint32 root : d->roots)
        if (!isRemoved(root))
            live.push_back(root);
    return live;
}

std::vector<FilePath> NameTable::rootPaths() const
{
    std::vector<FilePath> paths;
    for (quint32 root : roots())
        paths.push_back(FilePath::fromNative(name(root)));
    return paths;
}

quint32 NameTable::findChild(quint32 folder, QByteArrayView wanted) const
{
    for (quint32 child = d->entries[folder].firstChild; child != kNone; child = d->entries[child].nextSibling)
        if (!(d->entries[child].flags & kRemoved) && name(child) == wanted)
            return child;
    return kNone;
}

std::vector<quint32> NameTable::children(quint32 folder) const
{
    std::vector<quint32> found;
    for (quint32 child = d->entries[folder].firstChild; child != kNone; child = d->entries[child].nextSibling)
        if (!(d->entries[child].flags & kRemoved))
            found.push_back(child);
    return found;
}

quint32 NameTable::find(const FilePath& path) const
{
    const QByteArray& bytes = path.native();
    for (quint32 root : roots()) {
        const QByteArrayView rootBytes = name(root);
        if (bytes == rootBytes)
            return root;
        const bool below = rootBytes == "/" || (bytes.startsWith(rootBytes) && bytes.size() > rootBytes.size()
                                                 && bytes[rootBytes.size()] == '/');
        if (!below)
            continue;
        quint32 at = root;
        qsizetype start = rootBytes == "/" ? 1 : rootBytes.size() + 1;
        while (at != kNone && start <= bytes.size()) {
            qsizetype end = bytes.indexOf('/', start);
            if (end < 0)
                end = bytes.size();
            at = findChild(at, QByteArrayView(bytes).sliced(start, end - start));
            start = end + 1;
        }
        if (at != kNone)
            return at;
    }
    return kNone;
}

quint32 NameTable::addRoot(const FilePath& path)
{
    for (quint32 root : roots())
        if (name(root) == path.native())
            return root;
    Data& data = edit();
    const quint32 index = quint32(data.entries.size());
    Entry entry;
    entry.nameOffset = quint32(data.arena.size());
    entry.nameLength = quint16(std::min<qsizetype>(path.native().size(), 0xffff));
    entry.flags = kFolder;
    data.arena.append(path.native().first(entry.nameLength));
    data.entries.push_back(entry);
    data.masks.push_back(0); // a root is never a query's hit
    data.roots.push_back(index);
    ++data.folders;
    return index;
}

quint32 NameTable::add(quint32 folder, QByteArrayView name, bool isFolder, bool isEntered)
{
    Data& data = edit();
    const quint32 index = quint32(data.entries.size());
    bool plain = false;
    const quint32 mask = maskOfName(name, &plain);
    Entry entry;
    entry.parent = folder;
    entry.nameOffset = quint32(data.arena.size());
    entry.nameLength = quint16(std::min<qsizetype>(name.size(), 0xffff));
    entry.flags = quint8((isFolder ? kFolder : 0) | (plain ? kPlain : 0) | (isFolder && !isEntered ? kNotEntered : 0));
    entry.nextSibling = data.entries[folder].firstChild;
    data.entries[folder].firstChild = index;
    data.arena.append(name.first(entry.nameLength));
    data.entries.push_back(entry);
    data.masks.push_back(isFolder ? mask : mask | kLiveFileBit);
    data.folders += isFolder;
    return index;
}

void NameTable::remove(quint32 entry)
{
    if (entry >= quint32(size()) || isRemoved(entry))
        return;
    Data& data = edit();
    const bool isRoot = data.entries[entry].parent == kNone;
    if (!isRoot) {
        // Unlink it from its folder's children.
        quint32* link = &data.entries[data.entries[entry].parent].firstChild;
        while (*link != kNone && *link != entry)
            link = &data.entries[*link].nextSibling;
        if (*link == entry)
            *link = data.entries[entry].nextSibling;
    }
    std::vector<quint32> pending{entry};
    while (!pending.empty()) {
        const quint32 at = pending.back();
        pending.pop_back();
        for (quint32 child = data.entries[at].firstChild; child != kNone; child = data.entries[child].nextSibling)
            if (!(data.entries[child].flags & kRemoved))
                pending.push_back(child);
        if (at == entry && isRoot)
            continue;
        data.entries[at].flags |= kRemoved;
        data.masks[at] = 0;
        data.folders -= (data.entries[at].flags & kFolder) ? 1 : 0;
        ++data.removed;
    }
    if (isRoot)
        data.entries[entry].firstChild = kNone;
}

quint32 NameTable::graft(quint32 folder, QByteArrayView name, const NameTable& subtree, quint32 subtreeRoot)
{
    const quint32 top = add(folder, name, true);
    std::vector<quint32> mapped(subtree.d->entries.size(), kNone);
    mapped[subtreeRoot] = top;
    for (quint32 i = subtreeRoot + 1; i < quint32(subtree.size()); ++i) {
        const quint32 from = subtree.parent(i);
        if (subtree.isRemoved(i) || from == kNone || mapped[from] == kNone)
            continue;
        mapped[i] = add(mapped[from], subtree.name(i), subtree.isFolder(i), subtree.isEntered(i));
    }
    return top;
}

NameTable NameTable::compacted() const
{
    const quint32 count = quint32(size());
    std::vector<quint8> depth(count, 0);
    quint8 deepest = 0;
    for (quint32 i = 0; i < count; ++i) {
        const quint32 p = d->entries[i].parent;
        depth[i] = p == kNone ? 0 : quint8(std::min(255, depth[p] + 1));
        deepest = std::max(deepest, depth[i]);
    }
    // Shallow first, stable within a level (a counting sort); a parent's level is always above
    // its children's.
    std::vector<quint32> start(size_t(deepest) + 2, 0);
    for (quint32 i = 0; i < count; ++i)
        if (!isRemoved(i))
            ++start[size_t(depth[i]) + 1];
    for (size_t level = 1; level < start.size(); ++level)
        start[level] += start[level - 1];
    std::vector<quint32> order(static_cast<size_t>(liveCount()), 0);
    for (quint32 i = 0; i < count; ++i)
        if (!isRemoved(i))
            order[start[depth[i]]++] = i;
    // (Depth is capped at 255: the deeper names share the last level, in index order, which
    // still puts every folder before its names.)

    NameTable result;
    Data& out = result.edit();
    out.entries.reserve(order.size());
    out.masks.reserve(order.size());
    out.arena.reserve(d->arena.size());
    std::vector<quint32> mapped(count, kNone);
    for (quint32 old : order) {
        const Entry& e = d->entries[old];
        Entry copy;
        copy.parent = e.parent == kNone ? kNone : mapped[e.parent];
        copy.nameOffset = quint32(out.arena.size());
        copy.nameLength = e.nameLength;
        copy.flags = e.flags;
        out.arena.append(name(old));
        mapped[old] = quint32(out.entries.size());
        if (copy.parent == kNone)
            out.roots.push_back(mapped[old]);
        out.folders += (copy.flags & kFolder) ? 1 : 0;
        out.entries.push_back(copy);
        out.masks.push_back(d->masks[old]);
    }
    for (quint32 i = quint32(out.entries.size()); i-- > 0;) {
        Entry& e = out.entries[i];
        if (e.parent != kNone) {
            e.nextSibling = out.entries[e.parent].firstChild;
            out.entries[e.parent].firstChild = i;
        }
    }
    return result;
}

size_t NameTable::memoryBytes() const
{
    return d->entries.capacity() * sizeof(Entry) + d->masks.capacity() * sizeof(quint32) + size_t(d->arena.capacity())
           + d->roots.capacity() * sizeof(quint32);
}

NameTable::Columns NameTable::columns() const
{
    Columns c;
    const size_t count = d->entries.size();
    c.parents.reserve(count);
    c.offsets.reserve(count);
    c.lengths.reserve(count);
    c.folderFlags.reserve(count);
    c.arena = d->arena;
    for (const Entry& e : d->entries) {
        c.parents.push_back(e.parent);
        c.offsets.push_back(e.nameOffset);
        c.lengths.push_back(e.nameLength);
        c.folderFlags.push_back((e.flags & kFolder) ? ((e.flags & kNotEntered) ? 2 : 1) : 0);
    }
    return c;
}

std::optional<NameTable> NameTable::fromColumns(Columns c)
{
    const size_t count = c.parents.size();
    if (c.offsets.size() != count || c.lengths.size() != count || c.folderFlags.size() != count
        || count > size_t(kMaxNames))
        return std::nullopt;
    NameTable result;
    Data& out = result.edit();
    out.arena = std::move(c.arena);
    out.entries.resize(count);
    out.masks.resize(count);
    const auto arenaSize = quint64(out.arena.size());
    for (quint32 i = 0; i < count; ++i) {
        Entry& e = out.entries[i];
        e.parent = c.parents[i];
        e.nameOffset = c.offsets[i];
        e.nameLength = c.lengths[i];
        if (c.folderFlags[i] > 2 || e.nameLength == 0 || quint64(e.nameOffset) + e.nameLength > arenaSize)
            return std::nullopt;
        const QByteArrayView name(out.arena.constData() + e.nameOffset, e.nameLength);
        if (name.contains('\0'))
            return std::nullopt;
        const bool folder = c.folderFlags[i] != 0;
        if (e.parent == kNone) {
            if (!folder || !name.startsWith('/'))
                return std::nullopt;
            out.roots.push_back(i);
        } else if (e.parent >= i || (out.entries[e.parent].flags & (kFolder | kNotEntered)) != kFolder
                   || name.contains('/') || name == "."
                   || name == "..") {
            return std::nullopt;
        }
        bool plain = false;
        const quint32 mask = maskOfName(name, &plain);
        e.flags = quint8((folder ? kFolder : 0) | (plain ? kPlain : 0) | (c.folderFlags[i] == 2 ? kNotEntered : 0));
        out.masks[i] = e.parent == kNone ? 0 : folder ? mask : mask | kLiveFileBit;
        out.folders += folder;
    }
    for (quint32 i = quint32(count); i-- > 0;) {
        Entry& e = out.entries[i];
        if (e.parent != kNone) {
            e.nextSibling = out.entries[e.parent].firstChild;
            out.entries[e.parent].firstChild = i;
        }
    }
    return result;
}

} // namespace orwick
