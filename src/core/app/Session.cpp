#include "app/Session.h"

#include "app/Settings.h"
#include "files/StoredPath.h"
#include "platform/DirectoryReader.h"
#include "platform/XdgPaths.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <atomic>

namespace orwick {

namespace {

QJsonValue pathValue(const FilePath& path) { return storedPathText(path); }

// A saved path that isn't a path reads as empty, which Session::folder turns into home.
std::optional<FilePath> pathFrom(const QJsonValue& value)
{
    if (!value.isString())
        return std::nullopt;
    return pathFromStoredText(value.toString());
}

std::optional<int> intFrom(const QJsonValue& value)
{
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    if (number != double(int(number)))
        return std::nullopt;
    return int(number);
}

std::atomic<bool> g_firstWindowRestored{false};

} // namespace

// --- Tab

Session::Tab Session::Tab::ofGrid(const QList<QList<FilePath>>& grid, int activeIndex)
{
    QList<FilePath> panes;
    for (const auto& column : grid)
        panes += column;
    Tab tab;
    if (panes.isEmpty())
        return tab;
    tab.left = panes.first();
    if (panes.size() > 1)
        tab.right = panes[1];
    tab.rightIsActive = activeIndex == 1;
    // One pane, or two side by side, are said by "left" and "right" alone.
    const bool plain = grid.size() == 1 ? grid.first().size() == 1 : grid.size() == 2 && panes.size() == 2;
    if (!plain) {
        tab.columns = grid;
        tab.active = activeIndex;
    }
    return tab;
}

QList<QList<FilePath>> Session::Tab::grid() const
{
    if (columns) {
        QList<QList<FilePath>> grid = *columns;
        grid.removeIf([](const QList<FilePath>& column) { return column.isEmpty(); });
        if (!grid.isEmpty())
            return grid;
    }
    QList<QList<FilePath>> grid{{left}};
    if (right)
        grid.append({*right});
    return grid;
}

int Session::Tab::activeIndex() const
{
    const QList<QList<FilePath>> panes = grid();
    qsizetype count = 0;
    for (const auto& column : panes)
        count += column.size();
    // "active" speaks of the grid "columns" describe; without them, "rightIsActive" decides.
    const bool fromColumns = columns && std::any_of(columns->begin(), columns->end(), [](const auto& c) { return !c.isEmpty(); });
    const int index = fromColumns && active ? *active : (rightIsActive && right ? 1 : 0);
    return index >= 0 && index < count ? index : 0;
}

QJsonObject Session::Tab::toJson() const
{
    QJsonObject object{{"left", pathValue(left)}, {"rightIsActive", rightIsActive}};
    if (right)
        object.insert("right", pathValue(*right));
    if (columns) {
        QJsonArray grid;
        for (const auto& column : *columns) {
            QJsonArray paths;
            for (const FilePath& path : column)
                paths.append(pathValue(path));
            grid.append(paths);
        }
        object.insert("columns", grid);
    }
    if (active)
        object.insert("active", *active);
    if (!terminals.isEmpty()) {
        QJsonArray folders;
        for (const FilePath& folder : terminals)
            folders.append(pathValue(folder));
        object.insert("terminals", folders);
    }
    if (showTerminal)
        object.insert("showTerminal", true);
    return object;
}

std::optional<Session::Tab> Session::Tab::fromJson(const QJsonObject& object)
{
    Tab tab;
    const auto left = pathFrom(object.value("left"));
    const QJsonValue rightIsActive = object.value("rightIsActive");
    if (!left || !rightIsActive.isBool())
        return std::nullopt;
    tab.left = *left;
    tab.rightIsActive = rightIsActive.toBool();
    if (object.contains("right")) {
        tab.right = pathFrom(object.value("right"));
        if (!tab.right)
            return std::nullopt;
    }
    if (object.contains("columns")) {
        const QJsonValue columns = object.value("columns");
        if (!columns.isArray())
            return std::nullopt;
        QList<QList<FilePath>> grid;
        for (const QJsonValue& column : columns.toArray()) {
            if (!column.isArray())
                return std::nullopt;
            QList<FilePath> paths;
            for (const QJsonValue& value : column.toArray()) {
                const auto path = pathFrom(value);
                if (!path)
                    return std::nullopt;
                paths.append(*path);
            }
            grid.append(paths);
        }
        tab.columns = grid;
    }
    if (object.contains("active")) {
        tab.active = intFrom(object.value("active"));
        if (!tab.active)
            return std::nullopt;
    }
    // The terminal panel is a nicety: a damaged entry loses the shells, not the tab.
    for (const QJsonValue& value : object.value("terminals").toArray())
        if (const auto folder = pathFrom(value))
            tab.terminals.append(*folder);
    tab.showTerminal = object.value("showTerminal").toBool(false) && !tab.terminals.isEmpty();
    return tab;
}

// --- Session

QJsonObject Session::toJson() const
{
    QJsonArray array;
    for (const Tab& tab : tabs)
        array.append(tab.toJson());
    return {{"tabs", array}, {"selected", selected}, {"showPreview", showPreview}};
}

QByteArray Session::encoded() const { return QJsonDocument(toJson()).toJson(QJsonDocument::Compact); }

std::optional<Session> Session::fromJson(const QJsonObject& object)
{
    const QJsonValue tabs = object.value("tabs");
    const auto selected = intFrom(object.value("selected"));
    const QJsonValue showPreview = object.value("showPreview");
    if (!tabs.isArray() || !selected || !showPreview.isBool())
        return std::nullopt;
    Session session;
    for (const QJsonValue& value : tabs.toArray()) {
        const auto tab = value.isObject() ? Tab::fromJson(value.toObject()) : std::nullopt;
        if (!tab)
            return std::nullopt;
        session.tabs.append(*tab);
    }
    if (session.tabs.isEmpty())
        return std::nullopt;
    session.selected = *selected;
    session.showPreview = showPreview.toBool();
    return session;
}

std::optional<Session> Session::decode(const QByteArray& bytes)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return fromJson(document.object());
}

Status Session::save() const { return saveEncoded(encoded()); }

Status Session::saveEncoded(const QByteArray& bytes)
{
    const auto settings = openSettings();
    settings->setValue(QLatin1StringView(kSettingsKey), bytes);
    settings->sync();
    if (settings->status() != QSettings::NoError)
        return failure(QStringLiteral("Couldn’t save the window’s tabs in “%1”.").arg(xdg::orwickConfigFile().abbreviated()));
    return {};
}

std::optional<Session> Session::forNewWindow(bool wanted)
{
    if (g_firstWindowRestored.exchange(true) || !wanted)
        return std::nullopt;
    const QVariant value = openSettings()->value(QLatin1StringView(kSettingsKey));
    if (!value.isValid())
        return std::nullopt;
    return decode(value.toByteArray());
}

void Session::beginRun() { g_firstWindowRestored = false; }

FilePath Session::folder(const FilePath& path)
{
    if (!path.isEmpty())
        if (const auto st = statPath(path, FollowLinks::yes); st && st->isDirectory())
            return path;
    return xdg::home();
}

} // namespace orwick
