#include "notes/BacklinkTable.h"

#include "disktools/WalkPool.h"
#include "notes/NoteFile.h"
#include "platform/ForEachEntry.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

// A Markdown link without an extension ("[a](Plan)") reaches "Plan.md" too, as Obsidian's do.
bool hasExtension(const FilePath& path) { return path.fileName().lastIndexOf(u'.') > 0; }

} // namespace

BacklinkTable::Walk BacklinkTable::walk(const FilePath& folder, const CancelFlag* cancel)
{
    Walk out;
    QList<FilePath> pending{folder};
    while (!pending.isEmpty()) {
        if (cancel && cancel->isCancelled())
            break;
        const FilePath current = pending.takeLast();
        if (!forEachEntry(current, cancel, [&](QByteArrayView name, unsigned char givenType) {
                if (name.startsWith('.') || name == "node_modules")
                    return; // hidden folders and packages' read-me files are no one's notes
                const FilePath path = current.child(name);
                const unsigned char type = entryType(path, givenType);
                if (type == DT_DIR)
                    pending.append(path);
                else if (type == DT_REG && notefile::isNote(path)) {
                    if (out.notes.size() < kMostNotes)
                        out.notes.append(path);
                    else
                        out.partial = true;
                }
            }))
            continue;
        out.folders.append(current);
    }
    return out;
}

std::optional<QList<NoteLink>> BacklinkTable::readLinks(const FilePath& note)
{
    const int fd = ::open(note.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (fd < 0)
        return std::nullopt;
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || st.st_size > kLargestNote) {
        ::close(fd);
        return std::nullopt;
    }
    QByteArray bytes(st.st_size, Qt::Uninitialized);
    qsizetype got = 0;
    while (got < bytes.size()) {
        const ssize_t n = ::read(fd, bytes.data() + got, size_t(bytes.size() - got));
        if (n <= 0)
            break;
        got += n;
    }
    ::close(fd);
    bytes.truncate(got);
    return notelinks::linksInBytes(bytes);
}

std::optional<BacklinkTable> BacklinkTable::build(const FilePath& vault, const CancelFlag* cancel, int threads)
{
    Walk found = walk(vault, cancel);
    if (cancel && cancel->isCancelled())
        return std::nullopt;
    // Notes are read and parsed in runs on the pool; the table is filled on this thread after.
    constexpr qsizetype kRun = 64;
    std::vector<std::optional<QList<NoteLink>>> links(size_t(found.notes.size()));
    WalkPool pool(found.notes.size() > kRun ? (threads > 0 ? threads : diskWalkThreads()) : 1);
    for (qsizetype first = 0; first < found.notes.size(); first += kRun) {
        pool.post([&, first](int) {
            const qsizetype end = std::min(first + kRun, found.notes.size());
            for (qsizetype i = first; i < end; ++i) {
                if (cancel && cancel->isCancelled())
                    return;
                links[size_t(i)] = readLinks(found.notes[i]);
            }
        });
    }
    pool.wait();
    if (cancel && cancel->isCancelled())
        return std::nullopt;
    BacklinkTable table(vault);
    table.m_links.reserve(found.notes.size());
    for (qsizetype i = 0; i < found.notes.size(); ++i)
        table.setNote(found.notes[i], std::move(links[size_t(i)]));
    table.m_folders = std::move(found.folders);
    table.m_partial = found.partial;
    return table;
}

void BacklinkTable::index(const FilePath& note, const Entry& entry, bool add)
{
    for (qsizetype i = 0; i < entry.links.size(); ++i) {
        const NoteLink& link = entry.links[i];
        QList<FilePath> keys;
        if (link.kind == NoteLink::Kind::markdown) {
            keys.append(entry.paths[i]);
            if (!hasExtension(entry.paths[i]))
                keys.append(FilePath::fromNative(entry.paths[i].native() + ".md"));
        }
        const auto change = [&](auto& map, const auto& key) {
            if (add) {
                map[key].insert(note);
                return;
            }
            const auto found = map.find(key);
            if (found == map.end())
                return;
            found->remove(note);
            if (found->isEmpty())
                map.erase(found);
        };
        if (link.kind == NoteLink::Kind::markdown)
            for (const FilePath& key : std::as_const(keys))
                change(m_byPath, key);
        else
            change(m_byName, NoteNames::keyOfName(link.target));
    }
}

void BacklinkTable::setNote(const FilePath& note, std::optional<QList<NoteLink>> links)
{
    if (const auto old = m_links.constFind(note); old != m_links.cend()) {
        index(note, *old, false);
        m_links.erase(old);
    }
    m_skipped.remove(note);
    m_names.add(note);
    if (!links) {
        m_skipped.insert(note);
        return;
    }
    Entry entry;
    entry.paths.reserve(links->size());
    const FilePath folder = note.parent();
    for (const NoteLink& link : std::as_const(*links))
        entry.paths.append(link.kind == NoteLink::Kind::markdown ? notelinks::markdownTargetPath(link.target, folder) : FilePath());
    entry.links = std::move(*links);
    index(note, entry, true);
    m_links.insert(note, std::move(entry));
}

void BacklinkTable::remove(const FilePath& path)
{
    QList<FilePath> gone;
    if (m_links.contains(path) || m_skipped.contains(path)) {
        gone.append(path);
    } else {
        for (auto it = m_links.cbegin(); it != m_links.cend(); ++it)
            if (path.isAncestorOf(it.key()))
                gone.append(it.key());
        for (const FilePath& note : std::as_const(m_skipped))
            if (path.isAncestorOf(note))
                gone.append(note);
    }
    for (const FilePath& note : std::as_const(gone)) {
        if (const auto entry = m_links.constFind(note); entry != m_links.cend()) {
            index(note, *entry, false);
            m_links.erase(entry);
        }
        m_skipped.remove(note);
        m_names.remove(note);
    }
}

QList<Backlink> BacklinkTable::backlinksOf(const FilePath& note) const
{
    QSet<FilePath> candidates = m_byPath.value(note);
    candidates.unite(m_byName.value(NoteNames::keyOfNote(note)));
    candidates.remove(note);
    QList<Backlink> out;
    for (const FilePath& source : std::as_const(candidates)) {
        const auto entry = m_links.constFind(source);
        if (entry == m_links.cend())
            continue;
        int lastLine = 0;
        for (qsizetype i = 0; i < entry->links.size(); ++i) {
            const NoteLink& link = entry->links[i];
            if (link.line == lastLine)
                continue;
            bool reaches = false;
            if (link.kind == NoteLink::Kind::markdown) {
                const FilePath& path = entry->paths[i];
                reaches = path == note || (!hasExtension(path) && FilePath::fromNative(path.native() + ".md") == note);
            } else {
                reaches = m_names.resolve(link.target, source) == note;
            }
            if (!reaches)
                continue;
            out.append({source, link.line, link.lineText});
            lastLine = link.line;
        }
    }
    std::sort(out.begin(), out.end(), [](const Backlink& a, const Backlink& b) {
        return a.note != b.note ? a.note < b.note : a.line < b.line;
    });
    return out;
}

qsizetype BacklinkTable::linkingNoteCount(const FilePath& note) const
{
    QSet<FilePath> notes;
    for (const Backlink& link : backlinksOf(note))
        notes.insert(link.note);
    return notes.size();
}

} // namespace orwick
