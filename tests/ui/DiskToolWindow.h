#pragma once
// The fixture of the disk-tool panel tests: a real window over a temporary tree, and the panel
// sheet it shows.

#include "state/WindowState.h"
#include "support/TempHome.h"
#include "ui/window/MainWindow.h"

#include <gtest/gtest.h>
#include <memory>

namespace orwick::test {

class DiskToolWindowTest : public ::testing::Test {
protected:
    void open()
    {
        state = std::make_unique<WindowState>(tree.root(), &preferences);
        window = std::make_unique<MainWindow>(state.get());
        window->show();
    }
    PaneState* pane() { return state->activePane(); }
    template <class Panel>
    Panel* shown() { return window->findChild<Panel*>(); }

    TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<WindowState> state;
    std::unique_ptr<MainWindow> window;
};

} // namespace orwick::test
