#include "app/SettingsSheet.h"

#include "app/Services.h"
#include "app/ShowInFolderService.h"
#include "app/ThemeSettingRows.h"
#include "commands/ExternalPrograms.h"
#include "fileops/LinkUpdater.h"
#include "git/Git.h"
#include "places/SidebarStore.h"
#include "state/ViewPreferences.h"
#include "terminal/TerminalSettingRows.h"
#include "theme/ThemeStore.h"

#include <QPointer>

namespace orwick {

namespace {

const char* kVimKeysHelp =
    "With Vim keys on, letters move instead of jumping to a name: j and k down and up (J and K extend the selection), h and l out "
    "of and into a folder (left and right in the grid), gg and G to the first and last, / to filter. Arrows and everything else "
    "work as before.";

SettingRow toggle(const char* key, const char* label, const char* help)
{
    SettingRow row;
    row.key = QString::fromUtf8(key);
    row.label = QString::fromUtf8(label);
    row.help = QString::fromUtf8(help);
    row.kind = SettingRow::Kind::toggle;
    return row;
}

SettingRow choice(const char* key, const char* label, const char* help)
{
    SettingRow row = toggle(key, label, help);
    row.kind = SettingRow::Kind::choice;
    return row;
}

// A row whose owner is absent: listed, unavailable, saying why.
SettingRow unavailable(SettingRow row, const QString& why)
{
    row.isOn = [] { return false; };
    row.chosen = [] { return QString(); };
    row.note = [why] { return why; };
    return row;
}

QList<SettingRow> viewRows(ViewPreferences* owner)
{
    SettingRow mode = choice("defaultViewMode", "Default view",
                             "How a folder opens until you choose a view for it. A view chosen in a folder (Ctrl+1 to Ctrl+4) "
                             "is remembered for that folder.");
    mode.choices = {{viewModeName(ViewMode::list), QStringLiteral("List")},
                    {viewModeName(ViewMode::grid), QStringLiteral("Grid")},
                    {viewModeName(ViewMode::columns), QStringLiteral("Columns")},
                    {viewModeName(ViewMode::table), QStringLiteral("Table")}};
    SettingRow media = toggle("gridForMedia", "Grid for image and video folders",
                              "A folder that is mostly pictures and videos opens as a grid, unless you chose a view for it.");
    SettingRow vim = toggle("vimKeys", "Vim keys in the file list", kVimKeysHelp);
    if (!owner) {
        const QString why = QStringLiteral("Not available in this window");
        return {unavailable(mode, why), unavailable(media, why), unavailable(vim, why)};
    }
    const QPointer<ViewPreferences> views(owner);
    mode.chosen = [views] { return views ? viewModeName(views->defaultViewMode()) : QString(); };
    mode.choose = [views](const QString& value) {
        if (const auto chosen = viewModeFromName(value); views && chosen && *chosen != views->defaultViewMode())
            views->setDefaultViewMode(*chosen);
    };
    media.isOn = [views] { return views && views->gridForMedia(); };
    media.setOn = [views](bool on) {
        if (views && on != views->gridForMedia())
            views->setGridForMedia(on);
    };
    vim.isOn = [views] { return views && views->vimKeys(); };
    vim.setOn = [views](bool on) {
        if (views && on != views->vimKeys())
            views->setVimKeys(on);
    };
    return {mode, media, vim};
}

SettingRow hideIgnoredRow(Git* owner)
{
    SettingRow row = toggle("hideIgnored", "Hide Git-Ignored Files",
                            "Files and folders that git ignores (build output, node_modules…) are left out of the list instead "
                            "of being dimmed. The View menu has the same switch.");
    if (!owner)
        return unavailable(row, QStringLiteral("Not available: git isn’t set up in this window"));
    const QPointer<Git> git(owner);
    row.isOn = [git] { return git && git->hidesIgnored(); };
    row.setOn = [git](bool on) {
        if (git)
            git->setHidesIgnored(on);
    };
    row.note = [git] { return git && !git->isAvailable() ? QStringLiteral("git isn’t installed, so nothing is hidden for now") : QString(); };
    return row;
}

SettingRow updateLinksRow()
{
    SettingRow row = toggle("updateLinksOnMove", "Update links when notes move",
                            "Moving or renaming a note, a picture or a folder of notes rewrites the Markdown links and "
                            "[[wikilinks]] that point at it, as its own step that Undo takes back.");
    row.isOn = [] { return LinkUpdater::isEnabled(); };
    row.setOn = [](bool on) { LinkUpdater::setEnabled(on); };
    return row;
}

// A choice among the installed programs, "Automatic" (the first found) first.
SettingRow programRow(SettingRow row, const QList<ExternalPrograms::Program>& installed, const QString& none)
{
    const QString automatic = installed.isEmpty() ? QStringLiteral("Automatic")
                                                  : QStringLiteral("Automatic (%1)").arg(installed.first().name);
    row.choices = {{QString(), automatic}};
    for (const ExternalPrograms::Program& program : installed)
        row.choices.append({program.id, program.name});
    if (installed.isEmpty())
        row.note = [none] { return none; };
    return row;
}

QList<SettingRow> programRows(ExternalPrograms* owner)
{
    SettingRow editor = choice(ExternalPrograms::editorKey, "Code editor",
                               "What “Open in …” opens files and folders with. Automatic takes $VISUAL or $EDITOR, else the first "
                               "editor found; an editor that runs in a terminal opens in the terminal chosen below.");
    SettingRow terminal = choice(ExternalPrograms::terminalKey, "Terminal",
                                 "What “Open in …” opens a folder in. Automatic takes $TERMINAL, else the first terminal found.");
    if (!owner) {
        const QString why = QStringLiteral("Not available in this window");
        return {unavailable(editor, why), unavailable(terminal, why)};
    }
    editor = programRow(editor, owner->editors(), QStringLiteral("No code editor was found on PATH"));
    terminal = programRow(terminal, owner->terminals(), QStringLiteral("No terminal was found on PATH"));
    const QPointer<ExternalPrograms> programs(owner);
    editor.chosen = [programs] { return programs ? programs->preferredEditor() : QString(); };
    editor.choose = [programs](const QString& id) {
        if (programs)
            programs->setPreferredEditor(id);
    };
    terminal.chosen = [programs] { return programs ? programs->preferredTerminal() : QString(); };
    terminal.choose = [programs](const QString& id) {
        if (programs)
            programs->setPreferredTerminal(id);
    };
    return {editor, terminal};
}

SettingRow showInFolderRow(ShowInFolderService* owner)
{
    SettingRow row = toggle(ShowInFolderService::settingKey, "Use Orwick for other programs’ “Show in folder”", "");
    row.help = ShowInFolderService::helpText();
    if (!owner)
        return unavailable(row, QStringLiteral("Not available: Orwick is running without its desktop service"));
    const QPointer<ShowInFolderService> service(owner);
    row.isOn = [service] { return service && service->isOn(); };
    row.setOn = [service](bool on) {
        if (service && on != service->isOn())
            service->setOn(on);
    };
    row.note = [service] { return service ? service->problem() : QString(); };
    return row;
}

// One switch per sidebar section, under the section's own title.
QList<SettingRow> sidebarRows(SidebarStore* owner)
{
    struct Shown {
        const QString& section;
        const char* key;
        const char* label;
        const char* help;
    };
    const Shown sections[] = {
        {section::favorites, "showFavorites", "Favorites",
         "Home, Desktop and the rest, plus folders you add. Drag favorites in the sidebar to reorder them, and right-click one to "
         "rename it. Drop a folder on the Favorites title to add it."},
        {section::recent, "showRecent", "Recent", "The folders you visit most"},
        {section::locations, "showLocations", "Locations", "Disks and mounted volumes"},
        {section::tags, "showTags", "Tags",
         "Color tags; click one to list every file under your home folder that carries it. Tag files from their context menu or the "
         "palette (type the tag’s name)."},
    };
    QList<SettingRow> rows;
    const QPointer<SidebarStore> store(owner);
    for (const Shown& shown : sections) {
        SettingRow row = toggle(shown.key, shown.label, shown.help);
        if (!owner) {
            rows.append(unavailable(row, QStringLiteral("Not available in this window")));
            continue;
        }
        const QString id = shown.section;
        row.isOn = [store, id] { return store && store->isShown(id); };
        row.setOn = [store, id](bool on) {
            if (store && on != store->isShown(id))
                store->setShown(id, on);
        };
        rows.append(row);
    }
    return rows;
}

} // namespace

SettingsSheet::Owners SettingsSheet::programOwners(ViewPreferences* views)
{
    return {views, services().git, services().programs, ShowInFolderService::instance(), &SidebarStore::shared(),
            &ThemeStore::shared()};
}

SettingsSheet::SettingsSheet(const Owners& owners, QObject* parent) : QObject(parent)
{
    m_sections.append(themeSettingsSection(owners.themes)); // first: "Choose Theme…" opens the sheet on it
    m_sections.append({QStringLiteral("File List"), viewRows(owners.views) << hideIgnoredRow(owners.git) << updateLinksRow(), {}});
    m_sections.append({QStringLiteral("Other Programs"), programRows(owners.programs) << showInFolderRow(owners.showInFolder), {}});
    m_sections.append(terminalSettingsSection());
    m_sections.append({QStringLiteral("Sidebar"), sidebarRows(owners.sidebar),
                       QStringLiteral("Click a section’s title in the sidebar to fold it away.")});

    if (owners.views)
        connect(owners.views, &ViewPreferences::changed, this, &SettingsSheet::changed);
    if (owners.git)
        connect(owners.git, &Git::hidesIgnoredChanged, this, &SettingsSheet::changed);
    if (owners.programs)
        connect(owners.programs, &ExternalPrograms::changed, this, &SettingsSheet::changed);
    if (owners.showInFolder)
        connect(owners.showInFolder, &ShowInFolderService::stateChanged, this, &SettingsSheet::changed);
    if (owners.sidebar)
        connect(owners.sidebar, &SidebarStore::sectionsChanged, this, &SettingsSheet::changed);
    if (owners.themes)
        connect(owners.themes, &ThemeStore::changed, this, &SettingsSheet::changed);
}

const SettingRow* SettingsSheet::row(const QString& key) const
{
    for (const SettingsSection& section : m_sections)
        for (const SettingRow& row : section.rows)
            if (row.key == key)
                return &row;
    return nullptr;
}

} // namespace orwick

#include "moc_SettingsSheet.cpp"
