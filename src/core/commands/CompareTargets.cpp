#include "commands/CompareTargets.h"

#include "platform/DirectoryReader.h"
#include "state/PaneState.h"
#include "state/TabState.h"
#include "state/WindowState.h"

namespace orwick {

std::optional<std::pair<FilePath, FilePath>> compareTargets(const WindowState& window)
{
    const QList<FilePath> selected = window.selectedURLs();
    if (selected.size() == 2) {
        const auto a = statPath(selected[0], FollowLinks::yes);
        const auto b = statPath(selected[1], FollowLinks::yes);
        if (a && b && a->isDirectory() == b->isDirectory())
            return std::pair{selected[0], selected[1]};
        return std::nullopt;
    }
    const TabState* tab = window.selectedTab();
    PaneState* active = tab->activePane();
    PaneState* other = tab->otherPane();
    if (!active || !other || active->listing() || other->listing() || active->url() == other->url())
        return std::nullopt;
    const QList<PaneState*> panes = tab->panes();
    const bool activeFirst = panes.indexOf(active) < panes.indexOf(other);
    return activeFirst ? std::pair{active->url(), other->url()} : std::pair{other->url(), active->url()};
}

} // namespace orwick
