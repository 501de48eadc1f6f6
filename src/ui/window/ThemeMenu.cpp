#include "ui/window/ThemeMenu.h"

#include "commands/CommandCatalog.h"
#include "ui/text/LiteralText.h"
#include "commands/ThemeCommands.h"
#include "theme/ThemeStore.h"
#include "ui/theme/ThemeSwatch.h"

#include <QActionGroup>
#include <QMenu>

namespace orwick::ThemeMenu {

namespace {

// `title` without the family's prefix ("Theme: Nord" lists as "Nord").
QString shortTitle(const QString& title)
{
    const qsizetype colon = title.indexOf(QStringLiteral(": "));
    return colon < 0 ? title : title.mid(colon + 2);
}

QAction* addCommand(QMenu* menu, QActionGroup* group, const AppCommand& command, WindowState* state, const QString& text)
{
    QAction* action = menu->addAction(literalText(text));
    action->setCheckable(group != nullptr);
    if (group)
        group->addAction(action);
    action->setChecked(group && ThemeCommands::isChosen(command.id, ThemeStore::shared()));
    if (command.id.startsWith(ThemeCommands::kThemePrefix))
        action->setIcon(theme::themeSwatchIcon(command.id.mid(ThemeCommands::kThemePrefix.size())));
    QObject::connect(action, &QAction::triggered, menu, [state, id = command.id] { CommandCatalog::run(id, *state); });
    return action;
}

void fill(QMenu* menu, QMenu* accents, WindowState* state)
{
    menu->clear();
    accents->clear();
    qDeleteAll(menu->findChildren<QActionGroup*>()); // last opening's
    auto* themes = new QActionGroup(menu);
    auto* modes = new QActionGroup(menu);
    auto* tints = new QActionGroup(accents);
    const QList<AppCommand> family = ThemeCommands::family();
    for (const AppCommand& command : family)
        if (command.id.startsWith(ThemeCommands::kThemePrefix))
            addCommand(menu, themes, command, state, shortTitle(command.title));
    menu->addSeparator();
    for (const AppCommand& command : family)
        if (command.id.startsWith(QLatin1StringView("appearance.")))
            addCommand(menu, modes, command, state, command.title.startsWith(QStringLiteral("Appearance: Match"))
                                                        ? QStringLiteral("Match System") : shortTitle(command.title));
    menu->addMenu(accents);
    for (const AppCommand& command : family)
        if (command.id == ThemeCommands::kThemesOwnAccentId)
            addCommand(accents, tints, command, state, shortTitle(command.title));
    accents->addSeparator();
    for (const AppCommand& command : family)
        if (command.id.startsWith(ThemeCommands::kAccentPrefix) && command.id != ThemeCommands::kThemesOwnAccentId)
            addCommand(accents, tints, command, state, shortTitle(command.title));
    menu->addSeparator();
    for (const char* id : {"chooseTheme", "openThemesFolder"})
        if (const AppCommand* command = CommandCatalog::find(QString::fromLatin1(id)))
            addCommand(menu, nullptr, *command, state, command->title);
}

} // namespace

QMenu* addTo(QMenu* menu, WindowState* state)
{
    QMenu* theme = menu->addMenu(QStringLiteral("&Theme"));
    auto* accents = new QMenu(QStringLiteral("Accent"), theme);
    QObject::connect(theme, &QMenu::aboutToShow, theme, [theme, accents, state] { fill(theme, accents, state); });
    fill(theme, accents, state); // a submenu opens only with entries in it
    return theme;
}

} // namespace orwick::ThemeMenu
