// The terminal panel in a real window: F4 opens a shell in the pane's folder with the keyboard
// in it, the shell and the pane follow each other's folder, several terminals live in a tab
// and survive switching tabs, dropped files arrive as quoted paths.

#include "WindowFixture.h"

#include "app/Settings.h"
#include "commands/CommandCatalog.h"
#include "terminal/TabTerminals.h"
#include "terminal/TerminalSession.h"
#include "ui/terminal/TerminalPanel.h"
#include "ui/terminal/TerminalView.h"

#include <QElapsedTimer>
#include <QMouseEvent>
#include <QMimeData>
#include <QTabBar>
#include <QTimer>

namespace orwick {
namespace {

struct TerminalPanelTest : test::WindowTest {
    void SetUp() override
    {
        // A plain, known shell whatever the machine's user has.
        m_shell = qgetenv("SHELL");
        qputenv("SHELL", "/bin/sh");
    }
    void TearDown() override
    {
        qputenv("SHELL", m_shell);
        if (auto* settings = openSettings().release()) {
            settings->remove(QLatin1StringView(settingsKey::paneFollowsTerminal));
            delete settings;
        }
    }
    TabTerminals* terminals() { return TabTerminals::existing(state->selectedTab()); }
    TerminalSession* shown() { return terminals() ? terminals()->selected() : nullptr; }
    TerminalView* focusedView() { return qobject_cast<TerminalView*>(QApplication::focusWidget()); }
    bool shows(const QString& text)
    {
        return test::waitUntil([&] { return shown() && shown()->screen().screenText().contains(text); }, 10000);
    }
    void typeLine(const QString& text)
    {
        type(text);
        press(Qt::Key_Return);
    }
    // Opens the window on the tree and its terminal with F4; the shell waits at its prompt.
    void openTerminal()
    {
        open(tree.root());
        press(Qt::Key_F4);
        ASSERT_TRUE(test::waitUntil([&] { return focusedView() != nullptr && shown()->isIdleAtPrompt(); }));
    }
    QByteArray m_shell;
};

TEST_F(TerminalPanelTest, F4OpensAShellInThePanesFolderWithTheKeyboard)
{
    const FilePath folder = tree.folder(QStringLiteral("work place"));
    open(folder);
    press(Qt::Key_F4);
    ASSERT_NE(terminals(), nullptr);
    EXPECT_TRUE(terminals()->isShown());
    ASSERT_TRUE(test::waitUntil([&] { return focusedView() != nullptr; }));
    EXPECT_EQ(focusedView()->session(), shown());
    typeLine(QStringLiteral("echo \"[$PWD]\""));
    EXPECT_TRUE(shows(QLatin1Char('[') + folder.text() + QLatin1Char(']'))) << shown()->screen().screenText().toStdString();

    // F4 again hides the panel and gives the keyboard back to the pane; the shell lives on.
    press(Qt::Key_F4);
    EXPECT_FALSE(terminals()->isShown());
    EXPECT_TRUE(test::waitUntil([&] { return window->activePaneWidget()->isAncestorOf(QApplication::focusWidget()); }));
    EXPECT_TRUE(shown()->isRunning());
}

TEST_F(TerminalPanelTest, CtrlBacktickMovesTheKeyboardBetweenPaneAndTerminal)
{
    open(tree.root());
    press(Qt::Key_QuoteLeft, Qt::ControlModifier);
    ASSERT_TRUE(test::waitUntil([&] { return focusedView() != nullptr; }));
    press(Qt::Key_QuoteLeft, Qt::ControlModifier);
    EXPECT_TRUE(test::waitUntil([&] { return window->activePaneWidget()->isAncestorOf(QApplication::focusWidget()); }));
    EXPECT_TRUE(terminals()->isShown());
    press(Qt::Key_QuoteLeft, Qt::ControlModifier);
    EXPECT_TRUE(test::waitUntil([&] { return focusedView() != nullptr; }));
}

TEST_F(TerminalPanelTest, TheShellAndThePaneFollowEachOther)
{
    const FilePath inner = tree.folder(QStringLiteral("it's inner"));
    open(tree.root());
    press(Qt::Key_F4);
    ASSERT_TRUE(test::waitUntil([&] { return shown() && shown()->isIdleAtPrompt() && !shown()->screen().screenText().trimmed().isEmpty(); }));
    // The pane goes somewhere: the shell, waiting at its prompt, goes too.
    pane()->navigate(inner);
    typeLine(QStringLiteral("echo \"<$PWD>\""));
    EXPECT_TRUE(shows(QLatin1Char('<') + inner.text() + QLatin1Char('>'))) << shown()->screen().screenText().toStdString();

    // The shell reports a folder (OSC 7): the pane follows once that is turned on.
    openSettings()->setValue(QLatin1StringView(settingsKey::paneFollowsTerminal), true);
    typeLine(QStringLiteral("printf '\\033]7;file://%s\\007' ") + QString::fromUtf8(tree.root().native()));
    EXPECT_TRUE(test::waitUntil([&] { return pane()->url() == tree.root(); })) << pane()->url().text().toStdString();
}

TEST_F(TerminalPanelTest, TheTerminalsTabIsNamedForTheFolderTheShellWentTo)
{
    const FilePath inner = tree.folder(QStringLiteral("deeper in"));
    openTerminal();
    auto* tabs = window->findChild<TerminalPanel*>()->findChild<QTabBar*>();
    ASSERT_NE(tabs, nullptr);
    EXPECT_EQ(tabs->tabText(0), tree.root().fileName());
    // A shell that reports no folder of its own (sh has no OSC 7).
    typeLine(QStringLiteral("cd 'deeper in'"));
    EXPECT_TRUE(test::waitUntil([&] { return tabs->tabText(0) == QStringLiteral("deeper in"); })) << tabs->tabText(0).toStdString();
    EXPECT_EQ(tabs->tabToolTip(0), inner.abbreviated());
}

TEST_F(TerminalPanelTest, SeveralTerminalsLiveInATabAndSurviveSwitchingTabs)
{
    open(tree.root());
    press(Qt::Key_F4);
    ASSERT_TRUE(test::waitUntil([&] { return shown() != nullptr; }));
    TerminalSession* first = shown();
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("newTerminal"), *state));
    ASSERT_EQ(terminals()->sessions().size(), 2);
    TerminalSession* second = shown();
    EXPECT_NE(first, second);

    TabState* tab = state->selectedTab();
    state->newTab(); // another tab, without a terminal (Ctrl+T would be the shell's now)
    ASSERT_NE(state->selectedTab(), tab);
    EXPECT_TRUE(terminals()->sessions().isEmpty());
    state->selectTab(-1);
    ASSERT_EQ(state->selectedTab(), tab);
    EXPECT_EQ(terminals()->sessions(), (QList<TerminalSession*>{first, second}));
    EXPECT_TRUE(first->isRunning() && second->isRunning());

    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("closeTerminal"), *state));
    EXPECT_EQ(terminals()->sessions(), QList<TerminalSession*>{first});
    // A shell that exits takes its terminal with it; the last one closes the panel.
    shown()->write("exit\r");
    EXPECT_TRUE(test::waitUntil([&] { return terminals()->sessions().isEmpty(); }));
    EXPECT_FALSE(terminals()->isShown());
}

TEST_F(TerminalPanelTest, DroppedFilesAreTypedAsQuotedPaths)
{
    const FilePath file = tree.file("a 'quoted' name.txt", "x");
    openTerminal();
    TerminalView* view = focusedView();
    ASSERT_EQ(FilePath::fromUrl(file.toUrl()), file);
    ASSERT_EQ(view->session(), shown());
    QMimeData data;
    data.setUrls({file.toUrl()});
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDragMoveEvent move(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &move);
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_TRUE(shows(QStringLiteral("'") + tree.root().text() + QStringLiteral("/a '\\''quoted'\\'' name.txt'")))
        << shown()->screen().screenText().toStdString();
}

TEST_F(TerminalPanelTest, AProgramGetsTheClickedCellEvenAtItsEdges)
{
    // A program that asks for mouse clicks and prints the bytes of the first two (press and
    // release each: ESC [ M, the button, then column and row, each plus 33). It asks only once
    // the echo is off, so the clicks are never echoed ahead of its output, and the view is wide
    // enough for that output to stay on one row.
    TerminalSession::Options options;
    options.folder = tree.root();
    options.command = QList<QByteArray>{"/bin/sh", "-c",
                                        "stty raw -echo; printf '\\033[?1000h'; head -c 24 | od -An -tu1 | tr -s ' \\n' '  '; "
                                        "printf '|done'; sleep 5"};
    TerminalSession session(options);
    TerminalView view(&session);
    view.resize(900, 240);
    view.show();
    ASSERT_TRUE(test::waitUntil([&] { return session.screen().wantsMouse() && session.screen().cols() > 6; }));
    const auto click = [&](const QPoint& at) {
        const QPointF global = view.viewport()->mapToGlobal(QPointF(at));
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(at), global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view.viewport(), &press);
        QMouseEvent release(QEvent::MouseButtonRelease, QPointF(at), global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view.viewport(), &release);
    };
    const QRect cell = view.cellRect(2, 5);
    EXPECT_EQ(view.cellAt(cell.topLeft()), QPoint(5, 2));
    EXPECT_EQ(view.cellAt(cell.bottomRight()), QPoint(5, 2));
    click(cell.topLeft());
    click(cell.bottomRight());
    ASSERT_TRUE(test::waitUntil([&] { return session.screen().screenText().contains(QStringLiteral("|done")); }))
        << session.screen().screenText().toStdString();
    // Column 5 and row 2 travel as 38 and 35, for both clicks.
    const QString press = QStringLiteral("27 91 77 32 38 35 27 91 77 35 38 35");
    EXPECT_TRUE(session.screen().screenText().simplified().contains(press + u' ' + press))
        << session.screen().screenText().toStdString();
}

TEST_F(TerminalPanelTest, AnEchoAfterAQuietFrameIsDrawnWithoutWaitingForTheNextFrame)
{
    TerminalSession::Options options;
    options.folder = tree.root();
    options.command = QList<QByteArray>{"/bin/sh", "-c", "cat >/dev/null"}; // the terminal echoes what is typed
    TerminalSession session(options);
    TerminalView view(&session);
    view.resize(400, 240);
    view.show();
    // The view's frame timer: a frame waiting on it is drawn up to a frame late.
    const auto frameWaits = [&] {
        for (const QTimer* timer : view.findChildren<QTimer*>(Qt::FindDirectChildrenOnly))
            if (timer->isActive())
                return true;
        return false;
    };
    ASSERT_TRUE(test::waitUntil([&] { return view.paintCount() > 0 && !frameWaits(); }));
    for (int i = 0; i < 3; ++i) {
        test::waitUntil([] { return false; }, 50); // the view is quiet for a few frames
        const int paintsBefore = view.paintCount();
        const QString typed = QStringLiteral("echoed%1").arg(i);
        session.write(typed.toUtf8());
        ASSERT_TRUE(test::waitUntil([&] { return session.screen().screenText().contains(typed); }));
        EXPECT_FALSE(frameWaits()) << i;
        EXPECT_TRUE(test::waitUntil([&] { return view.paintCount() > paintsBefore; })) << i;
    }
}

TEST_F(TerminalPanelTest, AFloodOfOutputPaintsAtMostOncePerFrame)
{
    openTerminal();
    TerminalView* view = focusedView();
    QApplication::processEvents();
    const int paintsBefore = view->paintCount();
    QElapsedTimer clock;
    clock.start();
    typeLine(QStringLiteral("seq 1 200000; echo fin''ished"));
    ASSERT_TRUE(shows(QStringLiteral("finished")));
    const qint64 elapsed = clock.elapsed();
    const int paints = view->paintCount() - paintsBefore;
    EXPECT_GT(paints, 0);
    EXPECT_LE(paints, elapsed / 16 + 3) << paints << " paints in " << elapsed << " ms";
    EXPECT_EQ(shown()->screen().scrollback().size(), Scrollback::kDefaultCapacity);
}

} // namespace
} // namespace orwick
