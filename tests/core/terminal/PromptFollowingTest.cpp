// The shell at its prompt takes a change of folder; a shell running a program is left alone.

#include "TerminalRun.h"

#include "support/TempHome.h"

#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::waitForText;
using test::waitUntil;

// An interactive bash in `folder`, idle at its prompt.
std::unique_ptr<TerminalSession> bashIn(const FilePath& folder)
{
    if (!QFile::exists(QStringLiteral("/bin/bash")))
        return nullptr;
    auto session = test::startIn(folder, {"/bin/bash", "--noprofile", "--norc", "-i"}, 24, 300);
    session->write("PS1='ready> '\r");
    EXPECT_TRUE(waitForText(*session, QStringLiteral("ready> ")));
    EXPECT_TRUE(waitUntil([&] { return session->isIdleAtPrompt(); }));
    return session;
}

TEST(PromptFollowingTest, AShellAtItsPromptChangesFolderEvenToAnAwkwardName)
{
    test::TempTree tree;
    const FilePath start = tree.folder(QStringLiteral("start"));
    const FilePath target = tree.folder(QStringLiteral("it's a \"test\" $HOME `x`"));
    auto session = bashIn(start);
    if (!session)
        GTEST_SKIP() << "bash is not installed";
    ASSERT_TRUE(session->changeDirectory(target));
    EXPECT_EQ(session->folder(), target);
    EXPECT_FALSE(session->changeDirectory(target)); // already there: nothing typed again
    session->write("echo \"[$PWD]\"\r");
    EXPECT_TRUE(waitForText(*session, QLatin1Char('[') + target.text() + QLatin1Char(']'))) << session->screen().screenText().toStdString();
}

TEST(PromptFollowingTest, AShellRunningAProgramIsNotTypedInto)
{
    test::TempTree tree;
    auto session = bashIn(tree.root());
    if (!session)
        GTEST_SKIP() << "bash is not installed";
    session->write("sleep 30\r");
    ASSERT_TRUE(waitUntil([&] { return !session->isIdleAtPrompt(); }));
    EXPECT_FALSE(session->changeDirectory(tree.folder(QStringLiteral("elsewhere"))));
    EXPECT_EQ(session->folder(), tree.root());
    // Ctrl+C ends the sleep; sent again if it came while the child was still becoming sleep.
    QElapsedTimer sent;
    sent.start();
    session->sendText(QStringLiteral("c"), keyModifier::ctrl);
    EXPECT_TRUE(waitUntil([&] {
        if (sent.elapsed() > 300) {
            session->sendText(QStringLiteral("c"), keyModifier::ctrl);
            sent.restart();
        }
        return session->isIdleAtPrompt();
    })) << session->screen().screenText().toStdString();
}

TEST(PromptFollowingTest, AnEndedShellIsNotIdle)
{
    auto session = test::shell("exit 0");
    ASSERT_TRUE(test::waitFinished(*session));
    EXPECT_FALSE(session->isIdleAtPrompt());
    EXPECT_FALSE(session->changeDirectory(test::tempHome()));
}

} // namespace
} // namespace orwick
