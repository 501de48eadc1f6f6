#include "disktools/SpaceBreakdown.h"

#include "app/Settings.h"
#include "disktools/DiskNames.h"
#include "disktools/SpaceScan.h"
#include "disktools/WalkPool.h"
#include "platform/XdgPaths.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace orwick {

namespace SpaceBreakdown {

namespace {

struct Place {
    const char* relative;
    const char* title;
};

constexpr Place kPlaces[] = {
    {".cache", "Caches (.cache)"},
    {".local/share", "Apps' data (.local/share)"},
    {"Downloads", "Downloads"},
    {".var", "Flatpak apps (.var)"},
    {"snap", "Snap apps (snap)"},
    {".npm", "npm cache (.npm)"},
    {".cargo", "Rust packages (.cargo)"},
    {".rustup", "Rust toolchains (.rustup)"},
    {".gradle", "Gradle (.gradle)"},
};

} // namespace

std::vector<Row> homeRows()
{
    std::vector<Row> rows;
    for (const Place& place : kPlaces)
        rows.push_back({xdg::home().child(QByteArrayView(place.relative)), std::nullopt});
    return rows;
}

QString rowTitle(const Row& row)
{
    for (const Place& place : kPlaces)
        if (row.url == xdg::home().child(QByteArrayView(place.relative)))
            return QString::fromUtf8(place.title);
    return row.url.abbreviated();
}

std::optional<std::vector<Row>> measure(std::vector<Row> rows, const CancelFlag& cancel)
{
    WalkPool pool;
    for (Row& row : rows)
        pool.post([&row, &cancel](int) { row.bytes = SpaceScan::measure(row.url, cancel).value_or(0); });
    pool.wait();
    if (cancel.isCancelled())
        return std::nullopt;
    return rows;
}

qint64 remainder(const Drive& drive, const std::vector<Row>& rows)
{
    qint64 left = drive.total - drive.free;
    for (const Row& row : rows)
        left -= row.bytes.value_or(0);
    return std::max<qint64>(0, left);
}

QJsonObject Saved::toJson() const
{
    QJsonArray list;
    for (const Row& row : rows) {
        QJsonObject item{{"url", row.url.toUrl().toString(QUrl::FullyEncoded)}};
        if (row.bytes)
            item.insert("bytes", double(*row.bytes));
        list.append(item);
    }
    return {{"at", at.toUTC().toString(Qt::ISODateWithMs)}, {"rows", list}};
}

std::optional<Saved> Saved::fromJson(const QJsonObject& json)
{
    Saved saved;
    saved.at = QDateTime::fromString(json.value("at").toString(), Qt::ISODateWithMs);
    if (!saved.at.isValid() || !json.value("rows").isArray())
        return std::nullopt;
    for (const QJsonValue& value : json.value("rows").toArray()) {
        const QJsonObject item = value.toObject();
        const FilePath url = FilePath::fromUrl(QUrl(item.value("url").toString(), QUrl::StrictMode));
        if (url.isEmpty())
            return std::nullopt;
        Row row{url, std::nullopt};
        if (item.value("bytes").isDouble())
            row.bytes = qint64(item.value("bytes").toDouble());
        saved.rows.push_back(row);
    }
    return saved;
}

void save(const Saved& saved)
{
    auto settings = openSettings();
    settings->setValue(settingsKey, QString::fromUtf8(QJsonDocument(saved.toJson()).toJson(QJsonDocument::Compact)));
}

std::optional<Saved> load()
{
    const QString text = openSettings()->value(settingsKey).toString();
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (!document.isObject())
        return std::nullopt;
    return Saved::fromJson(document.object());
}

} // namespace SpaceBreakdown
} // namespace orwick
