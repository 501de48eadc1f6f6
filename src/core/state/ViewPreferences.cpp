#include "state/ViewPreferences.h"

#include "app/Settings.h"

#include <algorithm>

namespace orwick {

namespace {
const QString kDefaultViewMode = QStringLiteral("defaultViewMode");
const QString kOlderViewMode = QStringLiteral("viewMode");
const QString kGridForMedia = QStringLiteral("gridForMedia");
const QString kFolderViewModes = QStringLiteral("folderViewModes");
const QString kVimKeys = QStringLiteral("vimKeys");
const QString kIconSize = QStringLiteral("iconSize");

} // namespace

QString viewModeName(ViewMode mode)
{
    switch (mode) {
    case ViewMode::grid: return QStringLiteral("grid");
    case ViewMode::list: return QStringLiteral("list");
    case ViewMode::columns: return QStringLiteral("columns");
    case ViewMode::table: return QStringLiteral("table");
    }
    return QStringLiteral("list");
}

std::optional<ViewMode> viewModeFromName(const QString& name)
{
    for (ViewMode mode : {ViewMode::grid, ViewMode::list, ViewMode::columns, ViewMode::table})
        if (viewModeName(mode) == name)
            return mode;
    return std::nullopt;
}

ViewPreferences::ViewPreferences(QObject* parent) : QObject(parent)
{
    const auto settings = openSettings();
    const QVariant stored = settings->contains(kDefaultViewMode) ? settings->value(kDefaultViewMode) : settings->value(kOlderViewMode);
    m_defaultViewMode = viewModeFromName(stored.toString()).value_or(ViewMode::list);
    m_gridForMedia = readSettingsBool(*settings, kGridForMedia, true);
    m_vimKeys = readSettingsBool(*settings, kVimKeys, false);
    bool isNumber = false;
    const double iconSize = settings->value(kIconSize).toDouble(&isNumber);
    if (isNumber && iconSize >= kMinIconSize && iconSize <= kMaxIconSize)
        m_iconSize = iconSize;
    const QVariantMap modes = settings->value(kFolderViewModes).toMap();
    for (auto it = modes.begin(); it != modes.end(); ++it)
        if (const auto mode = viewModeFromName(it.value().toString()))
            m_folderViewModes.insert(it.key(), *mode);
}

void ViewPreferences::save() const
{
    const auto settings = openSettings();
    settings->setValue(kDefaultViewMode, viewModeName(m_defaultViewMode));
    settings->setValue(kGridForMedia, m_gridForMedia);
    settings->setValue(kVimKeys, m_vimKeys);
    settings->setValue(kIconSize, m_iconSize);
    QVariantMap modes;
    for (auto it = m_folderViewModes.begin(); it != m_folderViewModes.end(); ++it)
        modes.insert(it.key(), viewModeName(it.value()));
    settings->setValue(kFolderViewModes, modes);
}

void ViewPreferences::setDefaultViewMode(ViewMode mode)
{
    m_defaultViewMode = mode;
    save();
    Q_EMIT changed();
}

void ViewPreferences::setGridForMedia(bool on)
{
    m_gridForMedia = on;
    save();
    Q_EMIT changed();
}

void ViewPreferences::setVimKeys(bool on)
{
    m_vimKeys = on;
    save();
    Q_EMIT changed();
}

void ViewPreferences::setIconSize(double size)
{
    size = std::clamp(size, kMinIconSize, kMaxIconSize);
    if (size == m_iconSize)
        return;
    m_iconSize = size;
    save();
    Q_EMIT changed();
}

std::pair<ViewMode, ViewPreferences::Reason> ViewPreferences::mode(const FilePath& folder, bool isMostlyMedia) const
{
    const auto remembered = m_folderViewModes.constFind(folder.text());
    if (remembered != m_folderViewModes.constEnd())
        return {*remembered, Reason::saved};
    if (m_gridForMedia && isMostlyMedia)
        return {ViewMode::grid, Reason::media};
    return {m_defaultViewMode, Reason::defaultMode};
}

void ViewPreferences::remember(ViewMode mode, const FilePath& folder)
{
    m_folderViewModes.insert(folder.text(), mode);
    save();
    Q_EMIT changed();
}

bool ViewPreferences::isMostlyMedia(const FileItems& items)
{
    int files = 0, media = 0;
    for (const FileItem& item : items) {
        if (item.isFolder)
            continue;
        ++files;
        if (item.category == FileCategory::image || item.category == FileCategory::video)
            ++media;
    }
    return files >= 3 && media >= 0.6 * files;
}

} // namespace orwick

#include "moc_ViewPreferences.cpp"
