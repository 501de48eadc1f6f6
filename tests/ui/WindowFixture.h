#pragma once
// A real window over a temporary folder, driven by keys as the window system delivers them
// (shortcuts included), for the tests of the window, its panes and its commands.

#include "fileops/FileOperations.h"
#include "state/WindowState.h"
#include "support/KeyPress.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/pane/PaneWidget.h"
#include "ui/window/MainWindow.h"
#include "ui/window/PaletteController.h"
#include "commands/PaletteState.h"
#include "ui/window/ToastHost.h"

#include <QApplication>
#include <gtest/gtest.h>

namespace orwick::test {

struct WindowTest : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<WindowState> state;
    std::unique_ptr<MainWindow> window;

    void open(const FilePath& folder)
    {
        state = std::make_unique<WindowState>(folder, &preferences);
        window = std::make_unique<MainWindow>(state.get());
        window->show();
        window->activateWindow();
        ASSERT_TRUE(test::waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
        ASSERT_TRUE(test::waitUntil([&] { return !pane()->isLoading(); }));
        QApplication::processEvents();
    }
    PaneState* pane() { return state->activePane(); }
    FileOperations& ops() { return FileOperations::shared(); }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : window->activePaneWidget()->focusTarget();
        pressKey(target, key, modifiers);
    }
    void select(const FilePath& item)
    {
        ASSERT_TRUE(test::waitUntil([&] { return pane()->row(item) >= 0; })) << item.text().toStdString();
        pane()->click(item, Qt::NoModifier);
    }
    void settle() { ASSERT_TRUE(test::waitUntil([&] { return ops().isIdle(); }, 20000)); }
    QString toast() const { return window->toasts()->currentMessage(); }
    PaletteState* palette() { return window->palette()->palette(); }
    // The palette's row of the command `id`, or -1.
    int paletteRow(const QString& id)
    {
        for (int i = 0; i < palette()->rows().size(); ++i)
            if (palette()->rows()[i].id == id)
                return i;
        return -1;
    }
    // Types `text` into the focused widget, one key at a time.
    void type(const QString& text)
    {
        for (const QChar c : text)
            pressKey(QApplication::focusWidget(), c.toUpper().unicode(), Qt::NoModifier, QString(c));
    }
};

} // namespace orwick::test
