#pragma once
// ThemeStore: the themes (built in, then the files of the themes folder), the chosen one, the
// appearance and the accent, and the resolved theme the interface draws with. One per process
// (shared()), on the GUI thread; tests make their own over a folder of their choosing.
//
// Kept in the settings store: "theme" (the chosen theme's name), "appearanceMode" ("system",
// "light" or "dark") and "accentColor" ("#RRGGBB", absent for the theme's own).
//
// The folder is watched: adding, removing or saving a theme file reloads the themes shortly
// after (saves come in bursts), and the chosen theme is resolved again, so open windows restyle
// at once. Problems with the files are listed in errors(), each naming its file; the files that
// can be read still load.
//
// Signals: changed() follows every change of what current() or appearance() give (a reload, a
// new choice, the desktop turning dark); revision() is bumped just before it.

#include "base/FilePath.h"
#include "theme/ResolvedTheme.h"
#include "theme/ThemeDefinition.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <optional>

namespace orwick {

class SystemColorScheme;

enum class AppearanceMode { system, light, dark };
QString appearanceModeName(AppearanceMode mode);
std::optional<AppearanceMode> appearanceModeFromName(QStringView name);

class ThemeStore : public QObject {
    Q_OBJECT
public:
    static constexpr const char* themeKey = "theme";
    static constexpr const char* appearanceKey = "appearanceMode";
    static constexpr const char* accentKey = "accentColor";

    // Loads the themes of `folder` (themesFolder() when empty); `system` (may be null: light)
    // answers for "system".
    explicit ThemeStore(const FilePath& folder = {}, SystemColorScheme* system = nullptr, QObject* parent = nullptr);
    ~ThemeStore() override;
    // The process's store. The program makes it first with the desktop's colour scheme
    // (setShared); otherwise it is made on first use, following light for "system".
    static ThemeStore& shared();
    static void setShared(ThemeStore* store);

    const QList<ThemeDefinition>& themes() const { return m_themes; }
    const QString& selectedName() const { return m_selectedName; }
    int revision() const { return m_revision; }
    const QStringList& errors() const { return m_errors; }
    const FilePath& folder() const { return m_folder; }
    AppearanceMode appearanceMode() const { return m_mode; }
    const std::optional<QColor>& accentOverride() const { return m_accent; }

    // The theme named `name` resolved with `accent`; nothing when no theme has that name.
    std::optional<ResolvedTheme> resolve(const QString& name, const std::optional<QColor>& accent) const;
    // The chosen theme (or "Orwick" when it is gone) with the accent override.
    const ResolvedTheme& current() const { return m_current; }
    // The appearance shown: the theme's own when it is made for one, else the mode's choice.
    Appearance appearance() const;
    const ThemeColors& colors() const { return m_current.colors(appearance()); }
    // A syntax colour of the text preview ("keyword", "string", "comment", "number", "type",
    // "function", "property", "attribute") for the appearance shown.
    QColor syntaxColor(const QString& key) const { return colors().color(key); }

    // Each stores the choice, resolves again and announces the change.
    void setSelectedName(const QString& name);
    void setAppearanceMode(AppearanceMode mode);
    void setAccent(const std::optional<QColor>& accent);
    // Reads the folder again.
    void reload();

Q_SIGNALS:
    void changed();

private:
    void loadFolder();
    void rewatch();
    void apply();

    FilePath m_folder;
    SystemColorScheme* m_system;
    QList<ThemeDefinition> m_themes;
    QString m_selectedName;
    int m_revision = 0;
    QStringList m_errors;
    AppearanceMode m_mode = AppearanceMode::system;
    std::optional<QColor> m_accent;
    ResolvedTheme m_current;
    QFileSystemWatcher m_watcher;
    QTimer m_reloadSoon;
};

} // namespace orwick
