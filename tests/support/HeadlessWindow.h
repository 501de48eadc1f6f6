#pragma once
// A window's state over a temporary folder, without widgets: the catalogue's commands run on it
// as the window runs them. openWindow() waits until the pane has read its folder.

#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>
#include <memory>

namespace orwick::test {

struct HeadlessWindowTest : ::testing::Test {
    TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<WindowState> window;

    void openWindow(const FilePath& folder)
    {
        window = std::make_unique<WindowState>(folder, &preferences);
        ASSERT_TRUE(waitUntil([&] { return !window->activePane()->isLoading(); }));
    }
};

} // namespace orwick::test
