// The shell at its prompt takes a change of folder; a shell running a program is left alone.

#include "TerminalRun.h"

#include "support/TempHome.h"

#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>
#include <unistd.h>

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

TEST(PromptFollowingTest, ACdTypedAtThePromptRetitlesTheTerminalWithoutAReport)
{
    test::TempTree tree;
    const FilePath start = tree.folder(QStringLiteral("start"));
    const FilePath target = tree.folder(QStringLiteral("start/sub folder"));
    auto session = bashIn(start); // no rc file: the shell reports no folder (OSC 7)
    if (!session)
        GTEST_SKIP() << "bash is not installed";
    ASSERT_EQ(session->title(), QStringLiteral("start"));
    QList<FilePath> reported;
    int retitled = 0;
    QObject::connect(session.get(), &TerminalSession::folderReported, [&](const FilePath& folder) { reported.append(folder); });
    QObject::connect(session.get(), &TerminalSession::titleChanged, [&] { ++retitled; });

    session->write("cd 'sub folder'\r");
    ASSERT_TRUE(waitUntil([&] { return session->folder() == target; })) << session->folder().text().toStdString();
    EXPECT_EQ(session->title(), QStringLiteral("sub folder"));
    EXPECT_EQ(reported, QList<FilePath>{target});
    EXPECT_EQ(retitled, 1);

    ASSERT_TRUE(session->changeDirectory(start));
    EXPECT_EQ(session->title(), QStringLiteral("start")) << "a folder it is sent to retitles it at once";
    EXPECT_EQ(retitled, 2);
    session->write("echo \"[$PWD]\"\r");
    ASSERT_TRUE(waitForText(*session, QLatin1Char('[') + start.text() + QLatin1Char(']')));
    EXPECT_EQ(session->folder(), start);
    EXPECT_EQ(reported, QList<FilePath>{target}) << "where it was sent is not reported back";
}

TEST(PromptFollowingTest, AFolderReportedThroughALinkKeepsTheLinksName)
{
    test::TempTree tree;
    const FilePath target = tree.folder(QStringLiteral("target"));
    const FilePath link = tree.path(QStringLiteral("link"));
    ASSERT_EQ(::symlink(target.c_str(), link.c_str()), 0);
    auto session = bashIn(tree.root());
    if (!session)
        GTEST_SKIP() << "bash is not installed";
    session->write("cd link; printf '\\033]7;file://%s\\007' \"$PWD\"; echo done\r");
    ASSERT_TRUE(waitForText(*session, QStringLiteral("\ndone")));
    ASSERT_TRUE(waitUntil([&] { return session->isIdleAtPrompt(); }));
    EXPECT_EQ(session->folder(), link);
    EXPECT_EQ(session->title(), QStringLiteral("link"));
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
