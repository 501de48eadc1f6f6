#include "ui/panels/DiskToolKeys.h"

#include "state/PaneState.h"
#include "state/WindowState.h"
#include "ui/panels/CleanUpPanel.h"
#include "ui/panels/ComparePanel.h"
#include "ui/panels/DuplicatesPanel.h"
#include "ui/panels/FindInFilesPanel.h"
#include "ui/panels/InfoPanel.h"
#include "ui/panels/SpacePanel.h"
#include "ui/git/BranchPanel.h"
#include "ui/git/GitReviewPanel.h"
#include "ui/git/HistoryPanel.h"
#include "ui/git/StashPanel.h"
#include "ui/rename/BatchRenamePanel.h"

#include <QMainWindow>

namespace orwick::DiskToolKeys {

namespace {

bool showsFolder(PaneState* pane) { return pane && !pane->url().isEmpty() && !pane->listing(); }

// The folder a disk-tool sheet was opened on (its walk may have gone below it since).
constexpr char kOpenedFor[] = "orwickOpenedFor";

// The sheet of this kind already shown for `folder`, if any.
template <class Panel>
Panel* shownFor(QMainWindow* window, const FilePath& folder)
{
    for (Panel* sheet : window->findChildren<Panel*>(Qt::FindDirectChildrenOnly))
        if (!sheet->isHidden() && sheet->property(kOpenedFor).toByteArray() == folder.native())
            return sheet;
    return nullptr;
}

// Opens the panel on the pane's folder. Asked again for the folder it shows, the open sheet stays
// as it is — its results, scroll position and ticks — instead of walking the folder again.
template <class Panel>
PanelSheet* open(QMainWindow* window, PaneState* pane)
{
    if (!showsFolder(pane))
        return nullptr;
    if (Panel* shown = shownFor<Panel>(window, pane->url())) {
        shown->bringBack();
        return shown;
    }
    PanelSheet::closeOpenSheet(window);
    auto* sheet = new Panel(pane, window);
    sheet->setProperty(kOpenedFor, pane->url().native());
    return sheet;
}

} // namespace

void follow(WindowState& state, QMainWindow* window)
{
    QObject::connect(&state, &WindowState::panelChanged, window, [&state, window] {
        const WindowState::Panel shown = state.panel();
        if (shown == WindowState::Panel::settings)
            return; // SettingsPanel::follow draws it
        // A sheet that closes because another takes its place leaves the new panel standing; the
        // sheet shown (new, or kept) is connected again below.
        for (PanelSheet* open : window->findChildren<PanelSheet*>(Qt::FindDirectChildrenOnly))
            QObject::disconnect(open, &PanelSheet::closed, &state, nullptr);
        PanelSheet* sheet = nullptr;
        switch (shown) {
        case WindowState::Panel::duplicates: sheet = open<DuplicatesPanel>(window, state.activePane()); break;
        case WindowState::Panel::space: sheet = open<SpacePanel>(window, state.activePane()); break;
        case WindowState::Panel::cleanUp: sheet = open<CleanUpPanel>(window, state.activePane()); break;
        case WindowState::Panel::none: PanelSheet::closeOpenSheet(window); break;
        case WindowState::Panel::settings: break;
        case WindowState::Panel::batchRename: sheet = BatchRenamePanel::open(state, window); break;
        case WindowState::Panel::info: sheet = InfoPanel::open(state, window); break;
        case WindowState::Panel::compare: sheet = ComparePanel::open(state, window); break;
        case WindowState::Panel::findInFiles: sheet = open<FindInFilesPanel>(window, state.activePane()); break;
        case WindowState::Panel::gitReview: sheet = GitReviewPanel::open(state, window); break;
        case WindowState::Panel::gitSwitchBranch: sheet = BranchPanel::open(state, window, BranchPanel::Mode::switchBranch); break;
        case WindowState::Panel::gitNewBranch: sheet = BranchPanel::open(state, window, BranchPanel::Mode::newBranch); break;
        case WindowState::Panel::gitHistory: sheet = HistoryPanel::open(state, window); break;
        case WindowState::Panel::gitStashes: sheet = StashPanel::open(state, window); break;
        }
        if (!sheet) {
            if (shown != WindowState::Panel::none)
                state.closePanel(); // nothing to show it on
            return;
        }
        QObject::connect(sheet, &PanelSheet::closed, &state, [&state, shown] {
            if (state.panel() == shown) // not when another panel took its place
                state.closePanel();
        });
    });
}

void openDuplicates(QMainWindow* window, PaneState* pane) { open<DuplicatesPanel>(window, pane); }
void openSpace(QMainWindow* window, PaneState* pane) { open<SpacePanel>(window, pane); }
void openCleanUp(QMainWindow* window, PaneState* pane) { open<CleanUpPanel>(window, pane); }

} // namespace orwick::DiskToolKeys
