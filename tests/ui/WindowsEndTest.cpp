// The end of the program closes every window through its close event: Windows::quit() (the
// end a benchmark start asks for) and the Windows destructor (an event loop that ended with
// windows still open) both save what an editor holds and keep the session, and neither waits on
// the question about a window's tabs.

#include "app/Session.h"
#include "app/SessionKeeper.h"
#include "app/Settings.h"
#include "fileops/FileOperations.h"
#include "support/KeyPress.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/notes/NoteEditor.h"
#include "ui/pane/PaneWidget.h"
#include "ui/preview/PreviewPanel.h"
#include "ui/window/MainWindow.h"
#include "ui/window/Windows.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {

constexpr const char* kNote = "# Plan\n";

struct WindowsEndTest : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<Windows> windows = std::make_unique<Windows>(&preferences);
    FilePath note;

    void SetUp() override
    {
        openSettings()->setValue(QStringLiteral("previewExpanded"), false);
        openSettings()->remove(QString::fromLatin1(Session::kSettingsKey));
        note = tree.file("note.md", kNote);
        windows->setDecorate([](MainWindow& window) { SessionKeeper::keep(window.state(), false, &window); });
    }
    void TearDown() override
    {
        ASSERT_TRUE(waitUntil([] { return FileOperations::shared().isIdle(); }, 20000));
        windows.reset();
    }
    MainWindow* openOn(const FilePath& folder)
    {
        MainWindow* window = windows->open(folder);
        window->activateWindow();
        EXPECT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window; }));
        EXPECT_TRUE(waitUntil([&] { return !window->state()->activePane()->isLoading(); }));
        return window;
    }
    // Opens the note in the window's editor with Ctrl+E and types `words` at its end, unsaved.
    static void typeIntoNote(MainWindow* window, const FilePath& note, const QString& words)
    {
        PaneState* pane = window->state()->activePane();
        ASSERT_TRUE(waitUntil([&] { return pane->row(note) >= 0; }));
        pane->click(note, Qt::NoModifier);
        test::pressKey(window->activePaneWidget()->focusTarget(), Qt::Key_E, Qt::ControlModifier);
        auto text = [window]() -> QPlainTextEdit* {
            NoteEditor* editor = window->previewPanel()->editor();
            return editor ? editor->textEdit() : nullptr;
        };
        ASSERT_TRUE(waitUntil([&] { return text() && QApplication::focusWidget() == text(); }));
        test::pressKey(text(), Qt::Key_End, Qt::ControlModifier);
        for (const QChar c : words)
            test::pressKey(text(), c.toUpper().unicode(), Qt::NoModifier, QString(c));
        ASSERT_TRUE(window->previewPanel()->editor()->isModified());
    }
    static std::optional<Session> storedSession()
    {
        return Session::decode(openSettings()->value(QString::fromLatin1(Session::kSettingsKey)).toByteArray());
    }
};

} // namespace

TEST_F(WindowsEndTest, QuitSavesTheEditorsTextAndClosesAWindowOfTabsWithoutAsking)
{
    MainWindow* window = openOn(tree.root());
    window->state()->newTab(tree.folder("B"));
    window->state()->selectTab(-1);
    typeIntoNote(window, note, QStringLiteral("Done"));
    EXPECT_EQ(test::readAll(note), kNote) << "nothing is written before the end";

    windows->quit();
    ASSERT_TRUE(waitUntil([&] { return windows->all().isEmpty(); }, 20000)) << "the window stayed (or asked about its tabs)";
    EXPECT_EQ(test::readAll(note), QByteArray(kNote) + "Done");
    const auto session = storedSession();
    ASSERT_TRUE(session.has_value()) << "the closing window kept its session";
    EXPECT_EQ(session->tabs.size(), 2);
}

TEST_F(WindowsEndTest, TheFrontWindowClosesLastSoItsSessionReopens)
{
    MainWindow* first = openOn(tree.root());
    MainWindow* second = openOn(tree.folder("B"));
    second->state()->newTab(tree.folder("C"));
    first->activateWindow();
    ASSERT_TRUE(waitUntil([&] { return windows->front() == first; }));

    windows->quit();
    ASSERT_TRUE(waitUntil([&] { return windows->all().isEmpty(); }, 20000));
    const auto session = storedSession();
    ASSERT_TRUE(session.has_value());
    ASSERT_EQ(session->tabs.size(), 1) << "the window in front was the first one";
    EXPECT_EQ(session->tabs[0].left, tree.root());
}

TEST_F(WindowsEndTest, WindowsLeftOpenAtTheEndSaveTheEditorsTextAsTheyClose)
{
    MainWindow* window = openOn(tree.root());
    window->state()->newTab(tree.folder("B"));
    window->state()->selectTab(-1);
    typeIntoNote(window, note, QStringLiteral("Kept"));

    // The event loop ended without a quit (the windows were never asked to close).
    windows.reset();
    EXPECT_EQ(test::readAll(note), QByteArray(kNote) + "Kept");
    const auto session = storedSession();
    ASSERT_TRUE(session.has_value());
    EXPECT_EQ(session->tabs.size(), 2);
}
