#include "commands/ThemeCommands.h"

#include "state/WindowState.h"
#include "theme/AccentColors.h"
#include "theme/ThemeFolder.h"
#include "theme/ThemeStore.h"

namespace orwick::ThemeCommands {

namespace {

AppCommand command(QString id, QString title, const char* symbol, QString keywords, std::function<void(WindowState&)> run)
{
    AppCommand made;
    made.id = std::move(id);
    made.title = std::move(title);
    made.symbol = QString::fromLatin1(symbol);
    made.keywords = std::move(keywords);
    made.run = std::move(run);
    return made;
}

struct Mode {
    const char *id, *title, *symbol;
    AppearanceMode mode;
};
const Mode kModes[] = {{"appearance.system", "Appearance: Match System", "circle.lefthalf.filled", AppearanceMode::system},
                       {"appearance.dark", "Appearance: Dark", "moon", AppearanceMode::dark},
                       {"appearance.light", "Appearance: Light", "sun.max", AppearanceMode::light}};

} // namespace

QList<AppCommand> family(ThemeStore& store)
{
    QList<AppCommand> list;
    ThemeStore* themes = &store; // the shared store outlives every command
    for (const ThemeDefinition& theme : store.themes()) {
        const QString name = theme.name;
        AppCommand choose = command(kThemePrefix + name, QStringLiteral("Theme: ") + name, "", QStringLiteral("appearance colors look"),
                                    [themes, name](WindowState&) { themes->setSelectedName(name); });
        choose.symbol = kThemePrefix + name; // drawn as a swatch of the theme's colours
        list.append(choose);
    }
    for (const Mode& m : kModes) {
        const AppearanceMode mode = m.mode;
        list.append(command(QString::fromLatin1(m.id), QString::fromUtf8(m.title), m.symbol, QStringLiteral("light dark mode theme night day colors"),
                            [themes, mode](WindowState&) { themes->setAppearanceMode(mode); }));
    }
    for (const AccentColor& accent : accentColors()) {
        const QColor color = accent.color;
        list.append(command(kAccentPrefix + accent.name, QStringLiteral("Accent: ") + accent.name, "paintbrush.pointed",
                            QStringLiteral("accent color highlight tint ") + accent.name,
                            [themes, color](WindowState&) { themes->setAccent(color); }));
    }
    list.append(command(kThemesOwnAccentId, QStringLiteral("Accent: Theme's Own"), "paintbrush.pointed",
                        QStringLiteral("accent color highlight tint default"), [themes](WindowState&) { themes->setAccent(std::nullopt); }));
    return list;
}

QList<AppCommand> family() { return family(ThemeStore::shared()); }

bool isChosen(const QString& id, const ThemeStore& store)
{
    if (id.startsWith(kThemePrefix))
        return id.mid(kThemePrefix.size()) == store.current().name;
    for (const Mode& m : kModes)
        if (id == QLatin1StringView(m.id))
            return store.appearanceMode() == m.mode;
    if (id == kThemesOwnAccentId)
        return !store.accentOverride();
    if (id.startsWith(kAccentPrefix))
        for (const AccentColor& accent : accentColors())
            if (id.mid(kAccentPrefix.size()) == accent.name)
                return store.accentOverride() == accent.color;
    return false;
}

void chooseTheme(WindowState& window) { window.showPanel(WindowState::Panel::settings, {}); }

void openThemesFolder(WindowState& window)
{
    const FilePath folder = ThemeStore::shared().folder();
    if (const Status made = prepareThemesFolder(folder); !made) {
        Q_EMIT window.messageRequested(made.error());
        return;
    }
    window.activePane()->navigate(folder);
}

} // namespace orwick::ThemeCommands
