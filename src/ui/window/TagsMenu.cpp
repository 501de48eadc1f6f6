#include "ui/window/TagsMenu.h"

#include "commands/CommandCatalog.h"
#include "commands/TagCommands.h"
#include "places/FinderTags.h"
#include "state/FileActions.h"
#include "state/WindowState.h"
#include "ui/text/LiteralText.h"
#include "ui/window/CommandMenus.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>

namespace orwick::TagsMenu {

namespace {

const char* kShortcutProperty = "orwickTagShortcut";

// Runs the command, or says why it is dimmed.
void runOrExplain(const QString& id, WindowState* state)
{
    const AppCommand* command = CommandCatalog::find(id);
    if (!command)
        return;
    const QString title = command->title;
    const QString note = command->disabledNote;
    if (!CommandCatalog::run(*command, *state) && !note.isEmpty() && !state->files().isRenaming())
        Q_EMIT state->messageRequested(title + QStringLiteral(": ") + note);
}

QAction* shortcutAction(QMainWindow* window, const QString& id)
{
    for (QAction* action : window->actions())
        if (action->property(kShortcutProperty).toString() == id)
            return action;
    return nullptr;
}

// `opening`: the rows show whether they can run now; else (a closed menu) they stay enabled, so
// the keys reach their commands.
void fill(QMenu* submenu, QMainWindow* window, WindowState* state, bool opening)
{
    submenu->clear();
    const QList<FilePath> selection = state->selectedURLs();
    const bool enabled = !opening || state->files().canChangeSelection();
    for (const AppCommand& command : TagCommands::family(FinderTags::shared())) {
        const QString name = command.title;
        // The colour tags' rows are their key's actions, so the menu shows the key.
        QAction* action = shortcutAction(window, command.id);
        if (!action) {
            action = new QAction(submenu);
            QObject::connect(action, &QAction::triggered, submenu, [state, id = command.id] { runOrExplain(id, state); });
        }
        action->setText(literalText(name));
        action->setIcon(commandIcon(command.symbol));
        action->setCheckable(true);
        action->setChecked(TagCommands::allCarry(FinderTags::shared(), selection, name));
        action->setEnabled(enabled);
        submenu->addAction(action);
    }
}

} // namespace

void addShortcuts(QMainWindow* window, WindowState* state)
{
    for (const AppCommand& command : TagCommands::family(FinderTags::shared())) {
        if (command.shortcut.isEmpty())
            continue;
        auto* action = new QAction(literalText(command.title), window);
        action->setShortcut(command.shortcut);
        action->setShortcutContext(Qt::WindowShortcut);
        action->setProperty(kShortcutProperty, command.id);
        QObject::connect(action, &QAction::triggered, window, [state, id = command.id] { runOrExplain(id, state); });
        window->addAction(action);
    }
}

QMenu* addTo(QMenu* menu, QMainWindow* window, WindowState* state)
{
    QMenu* submenu = menu->addMenu(QStringLiteral("Tags"));
    QObject::connect(submenu, &QMenu::aboutToShow, submenu, [submenu, window, state] { fill(submenu, window, state, true); });
    QObject::connect(submenu, &QMenu::aboutToHide, submenu, [window] {
        // Closed, the keys reach their commands, which check for themselves.
        for (QAction* action : window->actions())
            if (!action->property(kShortcutProperty).isNull())
                action->setEnabled(true);
    });
    fill(submenu, window, state, false); // a submenu opens only with rows in it
    return submenu;
}

} // namespace orwick::TagsMenu
