#include "commands/DatabaseViewActions.h"

#include "app/Services.h"
#include "notes/FileProperties.h"
#include "state/PaneState.h"
#include "state/WindowState.h"

#include <QHash>
#include <QPointer>

namespace orwick::actions {

namespace {
QHash<PaneState*, NewNoteHook>& hooks()
{
    static QHash<PaneState*, NewNoteHook> table;
    return table;
}
} // namespace

bool isDatabaseLayout(const QString& layout)
{
    return layout == QLatin1String("board") || layout == QLatin1String("calendar") || layout == QLatin1String("gallery")
        || layout == QLatin1String("tasks");
}

std::optional<QString> databaseLayout(const PaneState& pane)
{
    FileProperties* store = services().properties;
    if (!store || pane.listing() || pane.url().isEmpty())
        return std::nullopt;
    const std::optional<QString> layout = store->columns(pane.url()).layout;
    if (layout && isDatabaseLayout(*layout))
        return layout;
    return std::nullopt;
}

bool canChooseDatabaseLayout(const WindowState& window)
{
    const PaneState* pane = window.activePane();
    return services().properties && pane && !pane->listing() && !pane->url().isEmpty();
}

static void setLayout(WindowState& window, const std::optional<QString>& layout)
{
    FileProperties* store = services().properties;
    PaneState* pane = window.activePane();
    if (!store || !pane || pane->listing() || pane->url().isEmpty())
        return;
    FolderColumns settings = store->columns(pane->url());
    if (settings.layout == layout)
        return;
    settings.layout = layout;
    if (const Status saved = store->setColumns(pane->url(), settings); !saved)
        Q_EMIT window.messageRequested(saved.error());
}

void chooseDatabaseLayout(WindowState& window, const QString& layout) { setLayout(window, layout); }

void leaveDatabaseLayout(WindowState& window)
{
    if (window.activePane() && databaseLayout(*window.activePane()))
        setLayout(window, QStringLiteral("table"));
}

void setNewNoteHook(PaneState* pane, NewNoteHook hook)
{
    if (!hook) {
        hooks().remove(pane);
        return;
    }
    if (!hooks().contains(pane))
        QObject::connect(pane, &QObject::destroyed, [pane] { hooks().remove(pane); });
    hooks().insert(pane, std::move(hook));
}

std::optional<NewNoteRequest> newNoteRequest(PaneState* pane)
{
    if (const auto hook = hooks().constFind(pane); hook != hooks().constEnd() && *hook)
        return (*hook)();
    return NewNoteRequest{};
}

} // namespace orwick::actions
