#include "app/ThemeSettingRows.h"

#include "theme/AccentColors.h"
#include "theme/ThemeStore.h"

#include <QPointer>

namespace orwick {

namespace {

SettingRow choiceRow(const char* key, const char* label, QString help)
{
    SettingRow row;
    row.key = QString::fromLatin1(key);
    row.label = QString::fromUtf8(label);
    row.help = std::move(help);
    row.kind = SettingRow::Kind::choice;
    return row;
}

} // namespace

SettingsSection themeSettingsSection(ThemeStore* owner)
{
    SettingRow theme = choiceRow(ThemeStore::themeKey, "Theme",
                                 QStringLiteral("Colours, row height, corners and text size. A theme file (JSON) dropped into the "
                                                "themes folder shows here at once, and saving it restyles every window; "
                                                "“Open Themes Folder” goes there."));
    SettingRow mode = choiceRow(ThemeStore::appearanceKey, "Appearance",
                                QStringLiteral("Match System follows the desktop's light or dark setting as it changes."));
    mode.choices = {{appearanceModeName(AppearanceMode::system), QStringLiteral("Match System")},
                    {appearanceModeName(AppearanceMode::light), QStringLiteral("Light")},
                    {appearanceModeName(AppearanceMode::dark), QStringLiteral("Dark")}};
    SettingRow accent = choiceRow(ThemeStore::accentKey, "Accent colour",
                                  QStringLiteral("The colour of selections, the active pane and the keyboard's place."));
    accent.choices = {{QString(), QStringLiteral("Theme's Own")}};
    for (const AccentColor& named : accentColors())
        accent.choices.append({themeColorText(named.color), named.name});
    const QString title = QStringLiteral("Appearance");
    if (!owner) {
        for (SettingRow* row : {&theme, &mode, &accent}) {
            row->chosen = [] { return QString(); };
            row->note = [] { return QStringLiteral("Not available in this window"); };
        }
        return {title, {theme, mode, accent}};
    }
    const QPointer<ThemeStore> store(owner);
    theme.liveChoices = [store] {
        QList<SettingChoice> choices;
        if (store)
            for (const ThemeDefinition& definition : store->themes())
                choices.append({definition.name, definition.name});
        return choices;
    };
    theme.choices = theme.liveChoices();
    theme.chosen = [store] { return store ? store->current().name : QString(); };
    theme.choose = [store](const QString& name) {
        if (store && name != store->current().name)
            store->setSelectedName(name);
    };
    theme.note = [store] {
        if (!store || store->errors().isEmpty())
            return QString();
        return QStringLiteral("Some theme files have problems:\n") + store->errors().join(QLatin1Char('\n'));
    };
    mode.chosen = [store] { return store ? appearanceModeName(store->appearanceMode()) : QString(); };
    mode.choose = [store](const QString& value) {
        if (const auto chosen = appearanceModeFromName(value); store && chosen && *chosen != store->appearanceMode())
            store->setAppearanceMode(*chosen);
    };
    accent.chosen = [store] { return store && store->accentOverride() ? themeColorText(*store->accentOverride()) : QString(); };
    accent.choose = [store](const QString& value) {
        if (!store)
            return;
        const std::optional<QColor> chosen = parseThemeColor(value);
        if (chosen != store->accentOverride())
            store->setAccent(chosen);
    };
    return {title, {theme, mode, accent}};
}

} // namespace orwick
