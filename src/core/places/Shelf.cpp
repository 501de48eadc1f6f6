#include "places/Shelf.h"

#include "async/Background.h"
#include "files/DirectoryWatcher.h"
#include "files/StoredPath.h"
#include "platform/XdgPaths.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <mutex>

namespace orwick {

namespace {

constexpr auto kItemsKey = "items";

bool hasShelfShape(const QJsonDocument& document)
{
    return document.isObject() && document.object().value(QLatin1StringView(kItemsKey)).isArray();
}

} // namespace

struct Shelf::WriteOrder {
    std::mutex mutex;
    quint64 written = 0;
};

StoreFile Shelf::storeAt(const FilePath& file)
{
    return StoreFile(file, {QStringLiteral("its shelf"), QStringLiteral("the shelf starts empty")}, &hasShelfShape);
}

FilePath Shelf::defaultFile() { return xdg::orwickDataDir().child(QByteArrayView("shelf.json")); }

QList<FilePath> Shelf::apply(QList<FilePath> items, const Change& change)
{
    switch (change.kind) {
    case Change::Kind::add:
        for (const FilePath& item : change.items)
            if (!item.isEmpty() && !items.contains(item))
                items.append(item);
        break;
    case Change::Kind::remove:
        items.removeIf([&change](const FilePath& item) { return change.items.contains(item); });
        break;
    case Change::Kind::clear:
        items.clear();
        break;
    }
    return items;
}

QList<FilePath> Shelf::fromJson(const QJsonDocument& document)
{
    QList<FilePath> items;
    if (!hasShelfShape(document))
        return items;
    QSet<FilePath> seen;
    for (const QJsonValue& value : document.object().value(QLatin1StringView(kItemsKey)).toArray()) {
        const FilePath path = pathFromStoredText(value.toString());
        if (path.isEmpty() || seen.contains(path))
            continue;
        seen.insert(path);
        items.append(path);
    }
    return items;
}

QJsonDocument Shelf::toJson(const QList<FilePath>& items)
{
    QJsonArray list;
    for (const FilePath& item : items)
        list.append(storedPathText(item));
    QJsonObject root;
    root.insert(QLatin1StringView(kItemsKey), list);
    return QJsonDocument(root);
}

Result<QList<FilePath>> Shelf::update(const StoreFile& store, const QList<Change>& changes, QList<FilePath>* before)
{
    QList<FilePath> merged;
    const auto written = store.update([&](const std::optional<QJsonDocument>& onDisk) {
        merged = onDisk ? fromJson(*onDisk) : QList<FilePath>();
        if (before)
            *before = merged;
        for (const Change& change : changes)
            merged = apply(std::move(merged), change);
        return toJson(merged);
    });
    if (!written)
        return failure(written.error());
    return merged;
}

Shelf::Shelf(const FilePath& file, QObject* parent)
    : QObject(parent), m_writes(std::make_shared<WriteOrder>()), m_store(storeAt(file.isEmpty() ? defaultFile() : file))
{
    if (const auto document = m_store.read())
        m_items = fromJson(*document);
    watchFolder();
}

Shelf::~Shelf()
{
    if (!hasUnsavedChanges())
        return;
    // The batch in flight is written again with the rest: adding, removing and clearing twice
    // changes nothing, and a queued write that starts after this one is skipped.
    const QList<Change> rest = m_inFlight + m_unsaved;
    std::lock_guard lock(m_writes->mutex);
    m_writes->written = ++m_lastWrite;
    if (!update(m_store, rest))
        qWarning("Shelf: the shelf could not be written to %s", m_store.path().c_str());
}

Shelf& Shelf::shared()
{
    static Shelf* shelf = new Shelf(); // lives to the end of the process
    return *shelf;
}

QList<FilePath> Shelf::add(const QList<FilePath>& items)
{
    QList<FilePath> added;
    for (const FilePath& item : items)
        if (!item.isEmpty() && !m_items.contains(item) && !added.contains(item))
            added.append(item);
    if (!added.isEmpty())
        change({Change::Kind::add, added});
    return added;
}

void Shelf::remove(const QList<FilePath>& items)
{
    QList<FilePath> present;
    for (const FilePath& item : items)
        if (m_items.contains(item))
            present.append(item);
    if (!present.isEmpty())
        change({Change::Kind::remove, present});
}

void Shelf::clear()
{
    if (!m_items.isEmpty())
        change({Change::Kind::clear, {}});
}

void Shelf::change(Change change)
{
    setItems(apply(m_items, change));
    m_unsaved.append(std::move(change));
    startSave();
}

void Shelf::setItems(QList<FilePath> items)
{
    if (items == m_items)
        return;
    m_items = std::move(items);
    Q_EMIT itemsChanged();
}

void Shelf::startSave()
{
    if (m_saving || m_unsaved.isEmpty())
        return;
    m_saving = true;
    m_inFlight = std::exchange(m_unsaved, {});
    const quint64 sequence = ++m_lastWrite;
    auto work = [order = m_writes, store = m_store, batch = m_inFlight, sequence]() -> std::optional<Result<QList<FilePath>>> {
        std::lock_guard lock(order->mutex);
        if (sequence <= order->written)
            return std::nullopt; // the destructor wrote it already
        order->written = sequence;
        return update(store, batch);
    };
    runInBackground(this, std::move(work), [this](std::optional<Result<QList<FilePath>>> result) {
        m_saving = false;
        const QList<Change> batch = std::exchange(m_inFlight, {});
        if (!result || !*result) {
            m_unsaved = batch + m_unsaved; // written with the next change
            if (result)
                Q_EMIT saveFailed(result->error());
            return;
        }
        // What is on disk now, other processes' changes included, and what changed since.
        QList<FilePath> items = std::move(**result);
        for (const Change& change : std::as_const(m_unsaved))
            items = apply(std::move(items), change);
        setItems(std::move(items));
        if (!m_watcher || !m_watcher->isWatching())
            watchFolder(); // the data folder may have been made by this write
        Q_EMIT saved();
        startSave();
    });
}

void Shelf::reload()
{
    if (hasUnsavedChanges())
        return;
    const auto document = m_store.read();
    setItems(document ? fromJson(*document) : QList<FilePath>());
}

void Shelf::watchFolder()
{
    delete m_watcher;
    m_watcher = new DirectoryWatcher(m_store.path().parent(), this);
    connect(m_watcher, &DirectoryWatcher::changed, this, &Shelf::reload);
}

} // namespace orwick

#include "moc_Shelf.cpp"
