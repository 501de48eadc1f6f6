#include "app/Workspaces.h"

#include "platform/XdgPaths.h"

#include <QJsonArray>
#include <algorithm>

namespace orwick {

namespace {

bool sameName(const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

void sortByName(QList<Workspace>& list)
{
    std::stable_sort(list.begin(), list.end(), [](const Workspace& a, const Workspace& b) {
        return a.name.compare(b.name, Qt::CaseInsensitive) < 0;
    });
}

StoreFile storeAt(FilePath file)
{
    return StoreFile(std::move(file), {QStringLiteral("its saved workspaces"), QStringLiteral("the workspace list starts empty")},
                     [](const QJsonDocument& document) { return Workspaces::fromJson(document).has_value(); });
}

} // namespace

QJsonObject Workspace::toJson() const { return {{"name", name}, {"session", session.toJson()}}; }

std::optional<Workspace> Workspace::fromJson(const QJsonValue& value)
{
    const QJsonObject object = value.toObject();
    const QJsonValue name = object.value("name");
    const QJsonValue session = object.value("session");
    if (!value.isObject() || !name.isString() || !session.isObject())
        return std::nullopt;
    const auto decoded = Session::fromJson(session.toObject());
    if (!decoded)
        return std::nullopt;
    return Workspace{name.toString(), *decoded};
}

Workspaces& Workspaces::shared()
{
    static Workspaces instance(xdg::orwickDataDir().child(QByteArrayView("workspaces.json")));
    return instance;
}

Workspaces::Workspaces(FilePath file) : m_store(storeAt(std::move(file))) {}

const QList<Workspace>& Workspaces::all()
{
    if (!m_list) {
        const auto document = m_store.read();
        m_list = document ? fromJson(*document).value_or(QList<Workspace>{}) : QList<Workspace>{};
        sortByName(*m_list);
    }
    return *m_list;
}

Status Workspaces::save(const Workspace& workspace)
{
    return apply([&workspace](QList<Workspace>& list) {
        list.removeIf([&workspace](const Workspace& kept) { return sameName(kept.name, workspace.name); });
        list.append(workspace);
    });
}

Status Workspaces::remove(const QString& name)
{
    return apply([&name](QList<Workspace>& list) { list.removeIf([&name](const Workspace& kept) { return sameName(kept.name, name); }); });
}

Status Workspaces::apply(const Change& change)
{
    all();
    const auto written = m_store.update([this, &change](const std::optional<QJsonDocument>& onDisk) {
        // What another Orwick saved meanwhile counts; with no file (or a damaged one) this one's list does.
        QList<Workspace> list = onDisk ? fromJson(*onDisk).value_or(*m_list) : *m_list;
        change(list);
        sortByName(list);
        return toJson(list);
    });
    if (!written)
        return failure(written.error());
    m_list = fromJson(*written).value_or(QList<Workspace>{});
    return {};
}

QJsonDocument Workspaces::toJson(const QList<Workspace>& list)
{
    QJsonArray array;
    for (const Workspace& workspace : list)
        array.append(workspace.toJson());
    return QJsonDocument(array);
}

std::optional<QList<Workspace>> Workspaces::fromJson(const QJsonDocument& document)
{
    if (!document.isArray())
        return std::nullopt;
    QList<Workspace> list;
    for (const QJsonValue& value : document.array()) {
        const auto workspace = Workspace::fromJson(value);
        if (!workspace)
            return std::nullopt;
        list.append(*workspace);
    }
    sortByName(list);
    return list;
}

} // namespace orwick
