// A tab's terminals: kept in the saved session, following the active pane's folder, leaving
// when their shell ends.

#include "TerminalRun.h"

#include "app/Session.h"
#include "app/Settings.h"
#include "state/TabState.h"
#include "state/ViewPreferences.h"
#include "terminal/TabTerminals.h"
#include "terminal/TerminalActions.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::waitUntil;

struct TabTerminalsTest : ::testing::Test {
    void SetUp() override
    {
        m_shell = qgetenv("SHELL");
        qputenv("SHELL", "/bin/sh");
    }
    void TearDown() override { qputenv("SHELL", m_shell); }
    ViewPreferences preferences;
    test::TempTree tree;
    QByteArray m_shell;
};

TEST_F(TabTerminalsTest, TheSessionKeepsTheTerminalsAndTheirFolders)
{
    const FilePath first = tree.folder(QStringLiteral("first")), second = tree.folder(QStringLiteral("second"));
    TabState tab(first, &preferences);
    TabTerminals* terminals = TabTerminals::of(&tab);
    terminals->newTerminal(first);
    terminals->newTerminal(second);
    ASSERT_TRUE(terminals->isShown());

    const Session::Tab saved = tab.saved();
    EXPECT_EQ(saved.terminals, (QList<FilePath>{first, second}));
    EXPECT_TRUE(saved.showTerminal);
    const auto decoded = Session::Tab::fromJson(saved.toJson());
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(*decoded, saved);

    TabState restored(*decoded, &preferences);
    TabTerminals* back = TabTerminals::existing(&restored);
    ASSERT_NE(back, nullptr);
    ASSERT_EQ(back->sessions().size(), 2);
    EXPECT_TRUE(back->isShown());
    EXPECT_EQ(back->sessions()[1]->folder(), second);
    back->sessions()[1]->write("pwd\r");
    EXPECT_TRUE(waitUntil([&] { return back->sessions()[1]->screen().screenText().contains(second.text()); }));
}

TEST_F(TabTerminalsTest, AnOldSessionWithoutTerminalsStillReads)
{
    const auto decoded = Session::Tab::fromJson(QJsonObject{{"left", "/tmp"}, {"rightIsActive", false}, {"terminals", 7}});
    ASSERT_TRUE(decoded.has_value());
    EXPECT_TRUE(decoded->terminals.isEmpty());
    EXPECT_FALSE(decoded->showTerminal);
}

TEST_F(TabTerminalsTest, TheShellFollowsThePaneOnlyAtItsPrompt)
{
    const FilePath inner = tree.folder(QStringLiteral("inner"));
    TabState tab(tree.root(), &preferences);
    TerminalSession* session = TabTerminals::of(&tab)->newTerminal(tree.root());
    ASSERT_TRUE(waitUntil([&] { return session->isIdleAtPrompt() && !session->screen().screenText().trimmed().isEmpty(); }));
    tab.activePane()->navigate(inner);
    EXPECT_EQ(session->folder(), inner);
    session->write("pwd\r");
    // The shell runs the cd and then the pwd: on a loaded machine that takes more than a moment,
    // and "pwd" typed ahead may be echoed before the prompt, its output then following the
    // prompt on one line. The cd line ends in a quote, so only pwd's output ends in the path.
    EXPECT_TRUE(waitUntil([&] { return session->screen().screenText().contains(inner.text() + QLatin1Char('\n')); }, 20000))
        << session->screen().screenText().toStdString();

    openSettings()->setValue(QLatin1StringView(settingsKey::terminalFollowsPane), false);
    tab.activePane()->navigate(tree.root());
    EXPECT_EQ(session->folder(), inner); // turned off: the shell stays
    openSettings()->remove(QLatin1StringView(settingsKey::terminalFollowsPane));
}

TEST_F(TabTerminalsTest, AnEndedShellLeavesAndTheLastClosesThePanel)
{
    TabState tab(tree.root(), &preferences);
    TabTerminals* terminals = TabTerminals::of(&tab);
    TerminalSession* session = terminals->newTerminal(tree.root());
    session->write("exit 0\r");
    ASSERT_TRUE(waitUntil([&] { return terminals->sessions().isEmpty(); }));
    EXPECT_FALSE(terminals->isShown());
    EXPECT_EQ(terminals->selected(), nullptr);
}

} // namespace
} // namespace orwick
