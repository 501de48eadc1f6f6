#include "places/FinderTags.h"

#include "async/Background.h"
#include "fileops/FileOperations.h"
#include "places/KnownTags.h"
#include "platform/Xattr.h"
#include "platform/XdgPaths.h"
#include "search/SearchWalker.h"

#include <QCoreApplication>
#include <QMutex>
#include <QPointer>
#include <algorithm>

namespace orwick {

namespace {

QPointer<FinderTags>& sharedInstance()
{
    static QPointer<FinderTags> instance;
    return instance;
}

// Reads the tags of a folder's entries (one level) or of a whole tree, with the search walker.
FinderTags::FolderTags readTags(const FilePath& root, bool recursive, bool showHidden, const CancelFlag& cancel)
{
    FinderTags::FolderTags found;
    QMutex lock;
    SearchWalker::Options walk;
    walk.roots = {root};
    walk.recursive = recursive;
    walk.showHidden = showHidden;
    walk.makeItems = false;
    walk.threads = recursive ? 2 : 1;
    SearchWalker::run(walk, [&](const SearchCandidate& candidate) {
        const auto value = xattr::get(candidate.path(), xattr::tags);
        if (!value)
            return false;
        TagList tags = TagList::parse(*value);
        if (tags.isEmpty())
            return false;
        QMutexLocker locked(&lock);
        found.insert(candidate.path(), std::move(tags));
        return false;
    }, [](SearchBatch&&) {}, cancel);
    return found;
}

} // namespace

FinderTags::FinderTags(QObject* parent) : QObject(parent)
{
    if (QCoreApplication::instance())
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] { m_stop->cancel(); });
}

FinderTags::~FinderTags() { m_stop->cancel(); }

FinderTags& FinderTags::shared()
{
    QPointer<FinderTags>& instance = sharedInstance();
    if (!instance)
        instance = new FinderTags(QCoreApplication::instance());
    return *instance;
}

void FinderTags::publish() const
{
    if (sharedInstance() != this)
        return;
    KnownTags::publish(m_cache, m_complete);
}

TagList FinderTags::tagsOf(const FilePath& file) const
{
    const auto folder = m_cache.constFind(file.parent());
    return folder == m_cache.constEnd() ? TagList() : folder->value(file);
}

QList<FinderTag> FinderTags::inUse() const
{
    if (m_inUse)
        return *m_inUse;
    QSet<int> colors;
    QMap<QString, QString> others; // folded name → the first spelling met
    for (const FolderTags& folder : m_cache)
        for (const TagList& tags : folder)
            for (const QString& name : tags.names()) {
                if (const auto color = FinderTag::colorIndex(name))
                    colors.insert(*color);
                else if (!others.contains(name.toCaseFolded()))
                    others.insert(name.toCaseFolded(), name);
            }
    QList<FinderTag> list;
    for (const FinderTag& tag : FinderTag::colors())
        if (colors.contains(tag.color))
            list.append(tag);
    for (const QString& name : others)
        list.append({name, 0});
    m_inUse = list;
    return list;
}

void FinderTags::scanHome()
{
    if (std::exchange(m_scanned, true))
        return;
    const FilePath home = xdg::home();
    runInBackground(this, [home, stop = m_stop] { return readTags(home, true, false, *stop); }, [this](FolderTags found) {
        QHash<FilePath, FolderTags> byFolder;
        for (auto it = found.begin(); it != found.end(); ++it)
            byFolder[it.key().parent()].insert(it.key(), it.value());
        bool changed = false;
        for (auto it = byFolder.begin(); it != byFolder.end(); ++it)
            changed |= putFolder(it.key(), std::move(it.value()), true);
        // A walk cut short knows only part of the home.
        m_complete = !m_stop->isCancelled() && m_files <= kMaxFiles;
        // One change for the whole walk; a walk that found no tags changes no row's dots, and
        // the tag listing only needs to hear that the home is known now.
        if (changed)
            bump();
        else
            publish();
    });
}

void FinderTags::refreshFolder(const FilePath& folder)
{
    if (folder.isEmpty())
        return;
    runInBackground(this, [folder] { return readTags(folder, false, true, CancelFlag()); },
                    [this, folder](FolderTags found) { storeFolder(folder, std::move(found)); });
}

void FinderTags::refreshItems(const QList<FilePath>& files)
{
    if (files.isEmpty())
        return;
    runInBackground(this, [files] {
        FolderTags found;
        for (const FilePath& file : files) {
            const auto value = xattr::get(file, xattr::tags);
            found.insert(file, value ? TagList::parse(*value) : TagList());
        }
        return found;
    }, [this](FolderTags found) { storeFiles(found); });
}

void FinderTags::follow(FileOperations* operations)
{
    connect(operations, &FileOperations::tagsChanged, this, &FinderTags::refreshItems);
    connect(operations, &FileOperations::itemsMoved, this, [this](const QList<FileMove>& moves) {
        QList<FilePath> files;
        for (const FileMove& move : moves)
            if (!tagsOf(move.from).isEmpty())
                files << move.from << move.to;
        refreshItems(files);
    });
}

void FinderTags::storeFolder(const FilePath& folder, FolderTags tagged, bool keepNewer)
{
    if (putFolder(folder, std::move(tagged), keepNewer))
        bump();
}

bool FinderTags::putFolder(const FilePath& folder, FolderTags tagged, bool keepNewer)
{
    const auto existing = m_cache.find(folder);
    if (existing != m_cache.end()) {
        if (keepNewer || *existing == tagged)
            return false;
        m_files += tagged.size() - existing->size();
        *existing = std::move(tagged);
        touch(folder);
        trim();
        return true;
    }
    if (tagged.isEmpty() && keepNewer)
        return false;
    // A folder read for the first time without tagged files is remembered as read, but no file's
    // tags change: its rows were drawn without dots and stay so.
    const bool tagsChanged = !tagged.isEmpty();
    m_files += tagged.size();
    m_cache.insert(folder, std::move(tagged));
    touch(folder);
    return trim() || tagsChanged;
}

void FinderTags::storeFiles(const FolderTags& files)
{
    bool changed = false;
    for (auto it = files.begin(); it != files.end(); ++it) {
        const FilePath folder = it.key().parent();
        auto entry = m_cache.find(folder);
        if (it.value().isEmpty()) {
            if (entry != m_cache.end() && entry->remove(it.key())) {
                --m_files;
                changed = true;
            }
            continue;
        }
        if (entry == m_cache.end()) {
            entry = m_cache.insert(folder, {});
            m_folderOrder.append(folder);
        }
        if (entry->value(it.key()) == it.value())
            continue;
        if (!entry->contains(it.key()))
            ++m_files;
        entry->insert(it.key(), it.value());
        changed = true;
    }
    if (!changed)
        return;
    trim();
    bump();
}

void FinderTags::touch(const FilePath& folder)
{
    m_folderOrder.removeOne(folder);
    m_folderOrder.append(folder);
}

bool FinderTags::trim()
{
    bool droppedTags = false;
    const auto over = [this] { return m_folderOrder.size() > kMaxFolders || m_files > kMaxFiles; };
    // Folders read without tags go first: dropping them loses nothing the tag listing needs.
    for (qsizetype i = 0; i < m_folderOrder.size() && m_folderOrder.size() > kMaxFolders;)
        if (m_cache.value(m_folderOrder.at(i)).isEmpty())
            m_cache.remove(m_folderOrder.takeAt(i));
        else
            ++i;
    while (!m_folderOrder.isEmpty() && over()) {
        const FilePath oldest = m_folderOrder.takeFirst();
        const qsizetype files = m_cache.take(oldest).size();
        m_files -= files;
        droppedTags |= files > 0;
        m_complete = false;
    }
    return droppedTags;
}

void FinderTags::bump()
{
    m_inUse.reset();
    ++m_revision;
    publish();
    Q_EMIT changed();
}

} // namespace orwick

#include "moc_FinderTags.cpp"
