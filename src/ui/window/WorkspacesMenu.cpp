#include "ui/window/WorkspacesMenu.h"

#include "commands/CommandCatalog.h"
#include "ui/text/LiteralText.h"
#include "commands/WorkspaceCommands.h"

#include <QMenu>

namespace orwick::WorkspacesMenu {

namespace {

void fill(QMenu* submenu, WindowState* state, QLatin1StringView prefix)
{
    submenu->clear();
    for (const AppCommand& command : WorkspaceCommands::family()) {
        if (!command.id.startsWith(prefix))
            continue;
        const QString name = command.id.mid(prefix.size());
        QAction* action = submenu->addAction(literalText(name));
        QObject::connect(action, &QAction::triggered, submenu, [state, id = command.id] { CommandCatalog::run(id, *state); });
    }
    if (submenu->isEmpty())
        submenu->addAction(QStringLiteral("No Saved Workspaces"))->setEnabled(false);
}

} // namespace

void addTo(QMenu* menu, WindowState* state)
{
    QMenu* open = menu->addMenu(QStringLiteral("Open Workspace"));
    QMenu* remove = menu->addMenu(QStringLiteral("Delete Workspace"));
    QObject::connect(open, &QMenu::aboutToShow, open, [open, state] { fill(open, state, WorkspaceCommands::kOpenPrefix); });
    QObject::connect(remove, &QMenu::aboutToShow, remove, [remove, state] { fill(remove, state, WorkspaceCommands::kDeletePrefix); });
    // A submenu opens only with an entry in it; the list is read when it opens, not at start-up.
    for (QMenu* submenu : {open, remove})
        submenu->addAction(QStringLiteral("No Saved Workspaces"))->setEnabled(false);
}

} // namespace orwick::WorkspacesMenu
