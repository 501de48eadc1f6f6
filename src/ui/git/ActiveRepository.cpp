#include "ui/git/ActiveRepository.h"

#include "app/Services.h"
#include "git/Git.h"
#include "state/PaneState.h"
#include "state/WindowState.h"
#include "ui/panels/PanelSheet.h"

namespace orwick {

std::optional<ActiveRepository> takeActiveRepository(const WindowState& window, QWidget* parent)
{
    Git* git = services().git;
    const PaneState* pane = window.activePane();
    if (!git || !pane || pane->url().isEmpty())
        return std::nullopt;
    std::optional<FilePath> root = git->root(pane->url());
    if (!root)
        return std::nullopt;
    PanelSheet::closeOpenSheet(parent);
    return ActiveRepository{git, std::move(*root)};
}

} // namespace orwick
