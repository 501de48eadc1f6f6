#include "terminal/TerminalActions.h"

#include "state/WindowState.h"
#include "terminal/TabTerminals.h"
#include "terminal/TerminalSession.h"

namespace orwick::terminalActions {

namespace {

FilePath activeFolder(const WindowState& window) { return window.activePane()->url(); }

// Shows the panel, starting a first shell when it has none.
TabTerminals* showPanel(WindowState& window)
{
    TabTerminals* terminals = TabTerminals::of(window.selectedTab());
    if (terminals->sessions().isEmpty())
        terminals->newTerminal(activeFolder(window));
    terminals->setShown(true);
    return terminals;
}

} // namespace

void toggleTerminal(WindowState& window)
{
    TabTerminals* terminals = TabTerminals::of(window.selectedTab());
    if (terminals->isShown()) {
        terminals->setShown(false);
        return;
    }
    showPanel(window)->requestFocus();
}

void newTerminal(WindowState& window)
{
    TabTerminals* terminals = TabTerminals::of(window.selectedTab());
    terminals->newTerminal(activeFolder(window));
    terminals->requestFocus();
}

bool hasTerminal(const WindowState& window)
{
    const TabTerminals* terminals = TabTerminals::existing(window.selectedTab());
    return terminals && terminals->selected();
}

void closeTerminal(WindowState& window)
{
    if (TabTerminals* terminals = TabTerminals::existing(window.selectedTab()); terminals && terminals->selected())
        terminals->closeTerminal(terminals->selected());
}

void toggleTerminalFocus(WindowState& window)
{
    TabTerminals* terminals = TabTerminals::of(window.selectedTab());
    if (!terminals->isShown() || terminals->sessions().isEmpty()) {
        showPanel(window)->requestFocus();
        return;
    }
    terminals->requestFocusToggle();
}

void openInTerminal(WindowState& window, const FilePath& folder)
{
    TabTerminals* terminals = TabTerminals::of(window.selectedTab());
    TerminalSession* shown = terminals->selected();
    if (!shown || !(shown->folder() == folder || shown->changeDirectory(folder)))
        terminals->newTerminal(folder);
    terminals->setShown(true);
    terminals->requestFocus();
}

} // namespace orwick::terminalActions
