#include "theme/ThemeStore.h"

#include "app/Settings.h"
#include "platform/StoreNotices.h"
#include "theme/BuiltInThemes.h"
#include "theme/SystemColorScheme.h"
#include "theme/ThemeFolder.h"
#include "theme/ThemeResolver.h"

#include <QDir>

namespace orwick {

namespace {

ThemeStore* g_shared = nullptr;
// Editors save in bursts (write, rename, chmod): one reload after the burst.
constexpr int kReloadDelayMs = 120;

} // namespace

QString appearanceModeName(AppearanceMode mode)
{
    switch (mode) {
    case AppearanceMode::light: return QStringLiteral("light");
    case AppearanceMode::dark: return QStringLiteral("dark");
    case AppearanceMode::system: break;
    }
    return QStringLiteral("system");
}

std::optional<AppearanceMode> appearanceModeFromName(QStringView name)
{
    for (const AppearanceMode mode : {AppearanceMode::system, AppearanceMode::light, AppearanceMode::dark})
        if (name == appearanceModeName(mode))
            return mode;
    return std::nullopt;
}

ThemeStore::ThemeStore(const FilePath& folder, SystemColorScheme* system, QObject* parent)
    : QObject(parent), m_folder(folder.isEmpty() ? themesFolder() : folder), m_system(system)
{
    const auto settings = openSettings();
    m_selectedName = settings->value(QLatin1StringView(themeKey), kDefaultThemeName).toString();
    m_mode = appearanceModeFromName(settings->value(QLatin1StringView(appearanceKey)).toString()).value_or(AppearanceMode::system);
    m_accent = parseThemeColor(settings->value(QLatin1StringView(accentKey)).toString());

    m_reloadSoon.setSingleShot(true);
    m_reloadSoon.setInterval(kReloadDelayMs);
    connect(&m_reloadSoon, &QTimer::timeout, this, [this] {
        const QStringList before = m_errors;
        reload();
        for (const QString& error : std::as_const(m_errors))
            if (!before.contains(error)) // a file just saved with a mistake says so at once
                StoreNotices::post(QStringLiteral("Theme file ") + error);
    });
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_reloadSoon, qOverload<>(&QTimer::start));
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_reloadSoon, qOverload<>(&QTimer::start));
    if (m_system)
        connect(m_system, &SystemColorScheme::changed, this, [this] {
            if (m_mode == AppearanceMode::system)
                apply();
        });
    loadFolder();
    m_current = resolveTheme(m_themes, m_selectedName, m_accent);
}

ThemeStore::~ThemeStore()
{
    if (g_shared == this)
        g_shared = nullptr;
}

ThemeStore& ThemeStore::shared()
{
    if (!g_shared)
        g_shared = new ThemeStore(); // lives as long as the process
    return *g_shared;
}

void ThemeStore::setShared(ThemeStore* store) { g_shared = store; }

std::optional<ResolvedTheme> ThemeStore::resolve(const QString& name, const std::optional<QColor>& accent) const
{
    if (!findTheme(m_themes, name))
        return std::nullopt;
    return resolveTheme(m_themes, name, accent);
}

Appearance ThemeStore::appearance() const
{
    if (m_current.appearance)
        return *m_current.appearance;
    switch (m_mode) {
    case AppearanceMode::light: return Appearance::light;
    case AppearanceMode::dark: return Appearance::dark;
    case AppearanceMode::system: break;
    }
    return m_system ? m_system->appearance() : Appearance::light;
}

void ThemeStore::setSelectedName(const QString& name)
{
    openSettings()->setValue(QLatin1StringView(themeKey), name);
    m_selectedName = name;
    apply();
}

void ThemeStore::setAppearanceMode(AppearanceMode mode)
{
    openSettings()->setValue(QLatin1StringView(appearanceKey), appearanceModeName(mode));
    m_mode = mode;
    apply();
}

void ThemeStore::setAccent(const std::optional<QColor>& accent)
{
    if (accent)
        openSettings()->setValue(QLatin1StringView(accentKey), themeColorText(*accent));
    else
        openSettings()->remove(QLatin1StringView(accentKey));
    m_accent = accent ? std::optional<QColor>(accent->toRgb()) : std::nullopt;
    apply();
}

void ThemeStore::reload()
{
    loadFolder();
    apply();
}

void ThemeStore::loadFolder()
{
    if (const Status made = prepareThemesFolder(m_folder); !made)
        qWarning("%s", qPrintable(made.error()));
    LoadedThemes loaded = loadThemesFolder(m_folder, builtInThemes());
    m_themes = builtInThemes() + loaded.themes;
    m_errors = loaded.errors;
    rewatch();
}

void ThemeStore::rewatch()
{
    // A file saved by renaming a new one over it is a new file: watch what is there now.
    if (const QStringList old = m_watcher.files() + m_watcher.directories(); !old.isEmpty())
        m_watcher.removePaths(old);
    QStringList paths{m_folder.text()};
    const QDir dir(m_folder.text());
    for (const QFileInfo& file : dir.entryInfoList(QDir::Files | QDir::Hidden))
        if (file.suffix().toLower() == QLatin1StringView("json"))
            paths.append(file.filePath());
    if (QDir(m_folder.text()).exists())
        m_watcher.addPaths(paths);
}

void ThemeStore::apply()
{
    m_current = resolveTheme(m_themes, m_selectedName, m_accent);
    ++m_revision;
    Q_EMIT changed();
}

} // namespace orwick

#include "moc_ThemeStore.cpp"
