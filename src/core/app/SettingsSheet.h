#pragma once
// SettingsSheet: what "Customize…" shows — every user setting, in sections, each row with its
// label, help text and kind (a switch, or a choice among named values). A row keeps no value of
// its own: it reads and writes the setting's one owner, which stores it and tells every window:
//   ViewPreferences      "defaultViewMode", "gridForMedia", "vimKeys"
//   Git                  "hideIgnored"
//   ExternalPrograms     "preferredEditor", "preferredTerminal"
//   ShowInFolderService  "takeOverShowInFolder"
//   SidebarStore         "showFavorites", "showRecent", "showLocations", "showTags" (in sidebar.json)
//   ThemeStore           "theme", "appearanceMode", "accentColor" (ThemeSettingRows.h)
//   the settings store   "terminalFollowsPane", "paneFollowsTerminal" (TerminalSettingRows.h)
// An owner that is absent leaves its row listed but unavailable (no setter), with a note that
// says why.
//
// Lives on the GUI thread, like the owners. Signals: changed() follows every change an owner
// announces, whether it came from the sheet or from elsewhere (a command, another window).

#include <QList>
#include <QObject>
#include <QString>
#include <functional>

namespace orwick {

class ExternalPrograms;
class Git;
class ShowInFolderService;
class SidebarStore;
class ThemeStore;
class ViewPreferences;

struct SettingChoice {
    QString value; // as kept in the settings store
    QString title; // as shown
};

struct SettingRow {
    enum class Kind { toggle, choice };

    QString key; // the settings-store key; also names the row
    QString label;
    QString help;
    Kind kind = Kind::toggle;
    QList<SettingChoice> choices; // a choice's values, in the order shown
    // When set, the choices are read again at every change (themes come and go with their files).
    std::function<QList<SettingChoice>()> liveChoices;

    std::function<bool()> isOn;      // a toggle's state
    std::function<void(bool)> setOn; // absent when the owner is
    std::function<QString()> chosen; // a choice's value
    std::function<void(const QString&)> choose; // absent when the owner is
    // Shown under the help when non-empty: why the row is unavailable, or what went wrong.
    std::function<QString()> note;

    bool isAvailable() const { return kind == Kind::toggle ? bool(setOn) : bool(choose); }
    QString noteText() const { return note ? note() : QString(); }
};

struct SettingsSection {
    QString title;
    QList<SettingRow> rows;
    QString help; // under the title, when non-empty
};

class SettingsSheet : public QObject {
    Q_OBJECT
public:
    struct Owners {
        ViewPreferences* views = nullptr;
        Git* git = nullptr;
        ExternalPrograms* programs = nullptr;
        ShowInFolderService* showInFolder = nullptr;
        SidebarStore* sidebar = nullptr;
        ThemeStore* themes = nullptr;
    };
    // The program's own: `views` (one per program, made by main), services().git,
    // services().programs, ShowInFolderService::instance(), SidebarStore::shared()
    // and ThemeStore::shared().
    static Owners programOwners(ViewPreferences* views);

    explicit SettingsSheet(const Owners& owners, QObject* parent = nullptr);

    const QList<SettingsSection>& sections() const { return m_sections; }
    // The row kept under `key`, or null.
    const SettingRow* row(const QString& key) const;

Q_SIGNALS:
    void changed();

private:
    QList<SettingsSection> m_sections;
};

} // namespace orwick
