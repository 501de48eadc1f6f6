#include "commands/WorkspaceCommands.h"

#include "app/WorkspaceActions.h"

namespace orwick::WorkspaceCommands {

namespace {

AppCommand command(QString id, QString title, QString keywords, std::function<void(WindowState&)> run)
{
    AppCommand made;
    made.id = std::move(id);
    made.title = std::move(title);
    made.symbol = QStringLiteral("square.stack");
    made.keywords = std::move(keywords);
    made.run = std::move(run);
    return made;
}

} // namespace

QList<AppCommand> family(Workspaces& workspaces)
{
    const QList<Workspace>& all = workspaces.all();
    QList<AppCommand> list;
    for (const Workspace& workspace : all)
        list.append(command(kOpenPrefix + workspace.name, QStringLiteral("Workspace: ") + workspace.name, {},
                            [workspace](WindowState& w) { workspaceActions::open(w, workspace); }));
    list.append(command(kSaveId, QStringLiteral("Save Workspace…"), {}, [](WindowState& w) { w.requestWorkspaceName(); }));
    for (const Workspace& workspace : all) {
        Workspaces* store = &workspaces;
        const QString name = workspace.name;
        list.append(command(kDeletePrefix + name, QStringLiteral("Delete Workspace: ") + name, QStringLiteral("remove forget"),
                            [store, name](WindowState& w) { workspaceActions::remove(w, name, *store); }));
    }
    return list;
}

} // namespace orwick::WorkspaceCommands
