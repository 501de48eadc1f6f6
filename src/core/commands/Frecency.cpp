#include "commands/Frecency.h"

#include "async/Background.h"
#include "files/StoredPath.h"
#include "platform/DirectoryReader.h"
#include "platform/XdgPaths.h"

#include <QJsonObject>
#include <algorithm>

namespace orwick {

namespace {

constexpr auto kCountKey = "count";
constexpr auto kLastVisitKey = "lastVisit";

} // namespace

QJsonDocument Frecency::toJson(const QHash<FilePath, Frecency::Entry>& entries)
{
    QJsonObject root;
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        QJsonObject entry;
        entry.insert(QLatin1StringView(kCountKey), it->count);
        entry.insert(QLatin1StringView(kLastVisitKey),
                     QDateTime::fromMSecsSinceEpoch(it->lastVisit).toUTC().toString(Qt::ISODateWithMs));
        root.insert(storedPathText(it.key()), entry);
    }
    return QJsonDocument(root);
}

// Only sound entries are taken; anything else in the file is ignored.
QHash<FilePath, Frecency::Entry> Frecency::fromJson(const QJsonDocument& document)
{
    QHash<FilePath, Frecency::Entry> entries;
    if (!document.isObject())
        return entries;
    const QJsonObject root = document.object();
    for (auto it = root.begin(); it != root.end(); ++it) {
        const FilePath path = pathFromStoredText(it.key());
        const QJsonObject value = it.value().toObject();
        const QJsonValue count = value.value(QLatin1StringView(kCountKey));
        const QDateTime lastVisit =
            QDateTime::fromString(value.value(QLatin1StringView(kLastVisitKey)).toString(), Qt::ISODateWithMs);
        if (path.isEmpty() || !count.isDouble() || !(count.toDouble() > 0.0) || !lastVisit.isValid())
            continue;
        entries.insert(path, {count.toDouble(), lastVisit.toMSecsSinceEpoch()});
    }
    return entries;
}

namespace {

// Removable and network volumes are not touched while ranking: a sleeping disk or a lost server
// would stall the palette. Folders there are kept until aging drops them.
bool isOnOtherVolume(const FilePath& path)
{
    static const FilePath roots[] = {FilePath::fromNative("/media"), FilePath::fromNative("/mnt"),
                                     FilePath::fromNative("/run/media"), FilePath::fromNative("/net")};
    if (std::any_of(std::begin(roots), std::end(roots), [&](const FilePath& root) { return root.isAncestorOf(path); }))
        return true;
    return path.native().startsWith("/run/user/") && path.native().contains("/gvfs/");
}

bool isFolder(const FilePath& path)
{
    if (isOnOtherVolume(path))
        return true;
    const auto stat = statPath(path, FollowLinks::yes);
    return stat && stat->isDirectory();
}

// One change, the same way in memory and on disk: a visit adds one and dates the entry, and
// ages the whole record when the counts grow too large.
void apply(QHash<FilePath, Frecency::Entry>& entries, const Frecency::Change& change)
{
    if (change.forget) {
        entries.remove(change.folder);
        return;
    }
    Frecency::Entry& entry = entries[change.folder];
    entry.count += 1.0;
    entry.lastVisit = change.at;

    double sum = 0.0;
    for (const Frecency::Entry& e : std::as_const(entries))
        sum += e.count;
    if (sum <= Frecency::kAgingThreshold)
        return;
    for (auto it = entries.begin(); it != entries.end();) {
        it->count *= Frecency::kAgingFactor;
        if (it->count < Frecency::kForgetBelow)
            it = entries.erase(it);
        else
            ++it;
    }
}

} // namespace

Frecency::Frecency(const FilePath& file, QObject* parent)
    : QObject(parent)
    , m_file(file.isEmpty() ? xdg::orwickDataDir().child(QStringLiteral("frecency.json")) : file)
    , m_store(m_file, {QStringLiteral("its record of the folders you visit"),
                       QStringLiteral("the palette ranks folders from scratch")})
{
    m_saveTimer.setSingleShot(true);
    m_saveTimer.setInterval(kDefaultSaveDelayMs);
    connect(&m_saveTimer, &QTimer::timeout, this, [this] { saveNow(true); });
    load();
}

Frecency::~Frecency()
{
    if (!m_unsaved.isEmpty())
        saveNow(false);
}

void Frecency::load()
{
    if (const auto document = m_store.read())
        m_entries = fromJson(*document);
}

void Frecency::record(const FilePath& folder, const QDateTime& now)
{
    if (folder.isEmpty())
        return;
    change({folder, now.toMSecsSinceEpoch(), false});
    scheduleSave();
}

void Frecency::change(Change change)
{
    apply(m_entries, change);
    m_unsaved.append(std::move(change));
}

double Frecency::ageWeight(qint64 secondsAgo)
{
    if (secondsAgo < 3600)
        return 4.0;
    if (secondsAgo < 86400)
        return 2.0;
    if (secondsAgo < 604800)
        return 0.5;
    return 0.25;
}

std::vector<FrecentFolder> Frecency::ranked(const QDateTime& now)
{
    const qint64 at = now.toMSecsSinceEpoch();
    std::vector<std::pair<FrecentFolder, qint64>> scored;
    scored.reserve(size_t(m_entries.size()));
    bool forgot = false;
    for (auto it = m_entries.begin(); it != m_entries.end();) {
        if (!isFolder(it.key())) {
            m_unsaved.append({it.key(), at, true});
            it = m_entries.erase(it);
            forgot = true;
            continue;
        }
        const qint64 secondsAgo = (at - it->lastVisit) / 1000;
        scored.push_back({{it.key(), it->count * ageWeight(secondsAgo)}, it->lastVisit});
        ++it;
    }
    if (forgot)
        scheduleSave();

    std::sort(scored.begin(), scored.end(), [](const auto& a, const auto& b) {
        if (a.first.score != b.first.score)
            return a.first.score > b.first.score;
        if (a.second != b.second)
            return a.second > b.second;
        return a.first.path < b.first.path;
    });
    std::vector<FrecentFolder> result;
    result.reserve(scored.size());
    for (auto& [folder, lastVisit] : scored)
        result.push_back(std::move(folder));
    return result;
}

void Frecency::scheduleSave()
{
    m_saveTimer.start(); // restarting replaces the pending save
}

void Frecency::saveNow(bool inBackground)
{
    m_saveTimer.stop();
    if (m_unsaved.isEmpty())
        return;
    if (inBackground && m_saving) { // one save at a time, so that they reach the disk in order
        m_saveTimer.start();
        return;
    }
    QList<Change> batch = std::exchange(m_unsaved, {});
    auto work = [store = m_store, batch]() -> Result<QHash<FilePath, Entry>> {
        QHash<FilePath, Entry> merged;
        const auto written = store.update([&](const std::optional<QJsonDocument>& onDisk) {
            merged = onDisk ? fromJson(*onDisk) : QHash<FilePath, Entry>();
            for (const Change& change : batch)
                apply(merged, change);
            return toJson(merged);
        });
        if (!written)
            return failure(written.error());
        return merged;
    };
    if (!inBackground) {
        if (!work())
            qWarning("Frecency: the visit record could not be written to %s", m_file.c_str());
        return;
    }
    m_saving = true;
    runInBackground(this, std::move(work), [this, batch](Result<QHash<FilePath, Entry>> result) {
        m_saving = false;
        if (!result) {
            m_unsaved = batch + m_unsaved; // saved with the next change
            Q_EMIT saveFailed(result.error());
            return;
        }
        // What is on disk now, other processes' visits included, and what changed since.
        m_entries = std::move(*result);
        for (const Change& change : std::as_const(m_unsaved))
            apply(m_entries, change);
        Q_EMIT saved();
    });
}

} // namespace orwick

#include "moc_Frecency.cpp"
