#include "WindowFixture.h"
#include "files/Listing.h"
#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/pane/PaneWidget.h"
#include "ui/pane/StatusLine.h"
#include "ui/views/DrivesView.h"
#include "ui/views/FileListView.h"
#include "ui/window/MainWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QStackedWidget>
#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {

// Keys go straight to the pane's view here (not through the window's shortcuts).
struct WindowFixture : test::WindowTest {
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {})
    {
        QWidget* target = window->activePaneWidget()->focusTarget();
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        QApplication::sendEvent(target, &event);
    }
    void settle()
    {
        QApplication::processEvents();
        ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading(); }));
        QApplication::processEvents();
    }
};

} // namespace

TEST_F(WindowFixture, KeysDriveTheListLikeAFileManager)
{
    tree.folder("Inside");
    tree.file("Inside/deep.txt");
    tree.file("alpha.txt", "12345");
    tree.file("beta.txt", "123");
    open(tree.root());

    press(Qt::Key_Down);
    EXPECT_EQ(pane()->cursor(), tree.path("Inside"));
    press(Qt::Key_Down);
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(pane()->selection().size(), 2);
    EXPECT_EQ(window->activePaneWidget()->statusLine()->text(), "2 of 3 selected, 8 bytes");

    press(Qt::Key_B, Qt::NoModifier, "b"); // type-select
    EXPECT_EQ(pane()->cursor(), tree.path("beta.txt"));

    press(Qt::Key_Home);
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(pane()->url(), tree.path("Inside"));
    press(Qt::Key_Backspace);
    settle();
    EXPECT_EQ(pane()->url(), tree.root());
    EXPECT_EQ(pane()->cursor(), tree.path("Inside"));
    press(Qt::Key_Left, Qt::AltModifier); // Up was a step of its own: Back returns inside
    settle();
    EXPECT_EQ(pane()->url(), tree.path("Inside"));
    press(Qt::Key_BracketRight, Qt::ControlModifier);
    settle();
    EXPECT_EQ(pane()->url(), tree.root());

    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(pane()->selection().size(), 3);
    EXPECT_TRUE(window->windowTitle().startsWith(tree.root().fileName()));
}

TEST_F(WindowFixture, EmptyAndUnreadableFoldersSayWhyAndKeysStillWork)
{
    tree.folder("Empty");
    tree.file("Empty/.only-hidden");
    open(tree.path("Empty"));
    auto* message = window->activePaneWidget()->findChild<QStackedWidget*>()->currentWidget();
    ASSERT_NE(qobject_cast<QLabel*>(message), nullptr);
    EXPECT_EQ(qobject_cast<QLabel*>(message)->text(), "This folder is empty");

    press(Qt::Key_H, Qt::ControlModifier); // hidden files on: the list comes back
    settle();
    EXPECT_EQ(pane()->items().size(), 1);

    pane()->navigate(tree.path("missing"));
    settle();
    message = window->activePaneWidget()->findChild<QStackedWidget*>()->currentWidget();
    ASSERT_NE(qobject_cast<QLabel*>(message), nullptr);
    EXPECT_EQ(qobject_cast<QLabel*>(message)->text(), "Can't open this folder");
    press(Qt::Key_Left, Qt::AltModifier);
    settle();
    EXPECT_EQ(pane()->url(), tree.path("Empty"));
}

// This Computer lists the drives in the background, startup drive first, and Return opens one.
TEST_F(WindowFixture, ThisComputerListsTheDrivesAndOpensOne)
{
    open(tree.root());
    EXPECT_EQ(window->activePaneWidget()->findChild<DrivesView*>(), nullptr) << "made when This Computer is first shown";
    pane()->show(*Listing::fromName(QStringLiteral("drives")));
    QApplication::processEvents();
    auto* drives = window->activePaneWidget()->findChild<DrivesView*>();
    ASSERT_TRUE(drives);
    ASSERT_TRUE(waitUntil([&] { return drives->topLevelItemCount() > 0; }));
    EXPECT_EQ(drives->topLevelItem(0)->text(0), QStringLiteral("System"));
    EXPECT_EQ(drives->currentItem(), drives->topLevelItem(0));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(drives, &enter);
    settle();
    EXPECT_EQ(pane()->url(), FilePath::fromNative("/"));
}
