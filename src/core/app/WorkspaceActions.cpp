#include "app/WorkspaceActions.h"

namespace orwick::workspaceActions {

bool save(WindowState& window, const QString& name, Workspaces& workspaces)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return false;
    if (const Status saved = workspaces.save({trimmed, window.session()}); !saved) {
        Q_EMIT window.messageRequested(QStringLiteral("Couldn’t save workspace “%1”. %2").arg(trimmed, saved.error()));
        return false;
    }
    Q_EMIT window.messageRequested(QStringLiteral("Saved workspace “%1”").arg(trimmed));
    return true;
}

void open(WindowState& window, const Workspace& workspace) { window.restore(workspace.session); }

bool remove(WindowState& window, const QString& name, Workspaces& workspaces)
{
    if (const Status removed = workspaces.remove(name); !removed) {
        Q_EMIT window.messageRequested(QStringLiteral("Couldn’t delete workspace “%1”. %2").arg(name, removed.error()));
        return false;
    }
    Q_EMIT window.messageRequested(QStringLiteral("Deleted workspace “%1”").arg(name));
    return true;
}

} // namespace orwick::workspaceActions
