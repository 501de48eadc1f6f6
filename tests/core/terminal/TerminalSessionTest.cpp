#include "TerminalRun.h"

#include "support/TempHome.h"
#include "terminal/ChildReaper.h"
#include "terminal/LoginShell.h"

#include <QFile>
#include <QTimer>
#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>

namespace orwick {
namespace {

using test::shell;
using test::waitFinished;
using test::waitForText;
using test::waitUntil;

TEST(TerminalSessionTest, ColoursAttributesWideCharactersAndTheCursorReachTheCells)
{
    // Colours and attributes; 中x é(e + U+0301)y; then tput moves the cursor.
    auto session = shell("printf '\\033[31mR\\033[38;5;208mO\\033[38;2;1;2;3mT\\033[1;3;4mB\\033[0mN\\n'; "
                         "printf '\\344\\270\\255x e\\314\\201y'; tput cup 5 10; printf X; sleep 0.2");
    ASSERT_TRUE(waitFinished(*session));
    const TerminalScreen& screen = session->screen();
    EXPECT_EQ(screen.cell(0, 0).characters[0], U'R');
    EXPECT_EQ(screen.cell(0, 0).foreground, TerminalColor::indexed(1));
    EXPECT_EQ(screen.cell(0, 1).foreground, TerminalColor::indexed(208));
    EXPECT_EQ(screen.cell(0, 2).foreground, TerminalColor::rgb(1, 2, 3));
    const TerminalCell bold = screen.cell(0, 3);
    EXPECT_EQ(bold.characters[0], U'B');
    EXPECT_TRUE(bold.has(cellAttribute::bold));
    EXPECT_TRUE(bold.has(cellAttribute::italic));
    EXPECT_TRUE(bold.has(cellAttribute::underline));
    EXPECT_EQ(bold.foreground, TerminalColor::rgb(1, 2, 3));
    const TerminalCell plain = screen.cell(0, 4);
    EXPECT_EQ(plain.characters[0], U'N');
    EXPECT_TRUE(plain.foreground.isDefault());
    EXPECT_EQ(plain.attributes, 0);

    EXPECT_EQ(screen.cell(1, 0).characters[0], U'中');
    EXPECT_EQ(screen.cell(1, 0).width, 2);
    EXPECT_EQ(screen.cell(1, 1).width, 0);
    EXPECT_EQ(screen.cell(1, 2).characters[0], U'x');
    EXPECT_EQ(screen.cell(1, 4).characters[0], U'e');
    EXPECT_EQ(screen.cell(1, 4).characters[1], U'\u0301');
    EXPECT_EQ(screen.cell(1, 5).characters[0], U'y');

    EXPECT_EQ(screen.cell(5, 10).characters[0], U'X');
    EXPECT_EQ(screen.cursorRow(), 5);
    EXPECT_EQ(screen.cursorCol(), 11);
}

TEST(TerminalSessionTest, TheShellGetsATerminalOfItsOwn)
{
    auto session = shell("printf '[%s][%s]' \"$TERM\" \"$COLORTERM\"; tty -s && printf ' tty'");
    ASSERT_TRUE(waitFinished(*session));
    EXPECT_TRUE(session->screen().screenText().contains(QStringLiteral("[xterm-256color][truecolor] tty")))
        << session->screen().screenText().toStdString();
}

TEST(TerminalSessionTest, TheAlternateScreenComesAndGoes)
{
    auto session = shell("printf main; printf '\\033[?1049h'; printf alt; read x; printf '\\033[?1049l'; read y");
    ASSERT_TRUE(waitForText(*session, QStringLiteral("alt")));
    EXPECT_TRUE(session->screen().isAlternateScreen());
    EXPECT_FALSE(session->screen().screenText().contains(QStringLiteral("main")));
    session->write("\r");
    ASSERT_TRUE(waitUntil([&] { return !session->screen().isAlternateScreen(); }));
    EXPECT_TRUE(session->screen().screenText().startsWith(QStringLiteral("main")));
    EXPECT_TRUE(session->screen().scrollback().isEmpty()); // the full-screen program left no history
    session->write("\r");
    EXPECT_TRUE(waitFinished(*session));
}

TEST(TerminalSessionTest, AResizeReachesTheProgram)
{
    auto session = shell("trap 'stty size; exit 0' WINCH; echo ready; while :; do sleep 0.05; done");
    ASSERT_TRUE(waitForText(*session, QStringLiteral("ready")));
    session->resize(30, 100);
    ASSERT_TRUE(waitFinished(*session));
    EXPECT_EQ(session->screen().rows(), 30);
    EXPECT_TRUE(session->screen().screenText().contains(QStringLiteral("30 100"))) << session->screen().screenText().toStdString();
}

TEST(TerminalSessionTest, AHundredThousandLinesKeepTheLastTenThousand)
{
    auto session = shell("seq 1 100000");
    ASSERT_TRUE(waitFinished(*session, 60000));
    const TerminalScreen& screen = session->screen();
    EXPECT_EQ(screen.scrollback().size(), Scrollback::kDefaultCapacity);
    QStringList lines = test::allLines(screen);
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    ASSERT_GT(lines.size(), Scrollback::kDefaultCapacity);
    // Nothing lost in between: the kept lines count up without a gap to the last one.
    const int first = lines.first().toInt();
    for (int i = 0; i < lines.size(); ++i)
        ASSERT_EQ(lines[i].toInt(), first + i) << "at line " << i;
    EXPECT_EQ(lines.last(), QStringLiteral("100000"));
}

TEST(TerminalSessionTest, ExitEndsTheSessionWithItsStatusAndAProgramThatCantRunSaysSo)
{
    auto session = shell("exit 3");
    QList<int> finished;
    QObject::connect(session.get(), &TerminalSession::finished, [&](int status) { finished.append(status); });
    ASSERT_TRUE(waitFinished(*session));
    EXPECT_EQ(session->exitStatus(), 3);
    EXPECT_EQ(finished, QList<int>{3});

    auto killed = shell("kill -TERM $$");
    ASSERT_TRUE(waitFinished(*killed));
    EXPECT_EQ(killed->exitStatus(), 128 + SIGTERM);

    // A shell that ends at once still shows its last words.
    auto quick = shell("echo bye");
    ASSERT_TRUE(waitFinished(*quick));
    EXPECT_EQ(quick->exitStatus(), 0);
    EXPECT_TRUE(quick->screen().screenText().startsWith(QStringLiteral("bye")));
    // A program that can't run says so.
    auto missing = test::startIn(test::tempHome(), {"/nonexistent/program"});
    ASSERT_TRUE(waitFinished(*missing));
    EXPECT_EQ(missing->exitStatus(), 127);
    EXPECT_TRUE(missing->screen().screenText().contains(QStringLiteral("Couldn't start /nonexistent/program")));
}

TEST(TerminalSessionTest, MalformedOutputNeverStopsWhatFollowsAndAFloodOfBellsRingsOnce)
{
    auto session = shell("printf '\\033[1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16;17;18;19;20;21;22;23;24;25;26;27;28;29;30;31;32;33;34;35;36mA"
                         "\\033[#$%%zB\\n\\377\\376\\303(C\\n\\033P\\033\\\\D\\033[99999999999999999999;99999999999999999HE\\n'");
    ASSERT_TRUE(waitFinished(*session));
    const QString text = test::allLines(session->screen()).join(QLatin1Char('\n'));
    for (const char* piece : {"A", "B", "C", "D", "E"})
        EXPECT_TRUE(text.contains(QLatin1StringView(piece))) << piece << " missing from " << text.toStdString();
    EXPECT_TRUE(text.contains(QChar(0xFFFD))); // bytes that are not UTF-8 show as replacement characters
    // A flood of bells rings once.
    auto bells = shell("i=0; while [ $i -lt 2000 ]; do printf '\\a'; i=$((i+1)); done; printf done");
    ASSERT_TRUE(waitFinished(*bells));
    EXPECT_TRUE(bells->screen().takeBell());
    EXPECT_FALSE(bells->screen().takeBell());
}

TEST(TerminalSessionTest, FolderReportsFollowTheShell)
{
    auto session = shell("printf '\\033]7;file://localhost/tmp/a%%20b\\007'; printf '\\033]7;file://elsewhere.example/x\\033\\\\'; "
                         "printf '\\033]7;file:///srv\\033\\\\'");
    QList<FilePath> reported;
    QObject::connect(session.get(), &TerminalSession::folderReported, [&](const FilePath& folder) { reported.append(folder); });
    ASSERT_TRUE(waitFinished(*session));
    EXPECT_EQ(reported, (QList<FilePath>{FilePath::fromNative("/tmp/a b"), FilePath::fromNative("/srv")}));
    EXPECT_EQ(session->folder(), FilePath::fromNative("/srv"));
}

TEST(TerminalSessionTest, ADeletedFolderStartsTheShellAtHome)
{
    test::TempTree tree;
    const FilePath gone = tree.path(QStringLiteral("gone"));
    auto session = test::startIn(gone, {"/bin/sh", "-c", "pwd"}, 24, 200);
    ASSERT_TRUE(waitFinished(*session));
    EXPECT_TRUE(session->screen().screenText().startsWith(test::tempHome().text())) << session->screen().screenText().toStdString();
}

TEST(TerminalSessionTest, AMissingShellFallsBackToTheUsersOwn)
{
    const QByteArray before = qgetenv("SHELL");
    qputenv("SHELL", "/nonexistent/shell");
    const QByteArray chosen = loginShell::program();
    qputenv("SHELL", before);
    EXPECT_NE(chosen, QByteArray("/nonexistent/shell"));
    EXPECT_TRUE(QFile::exists(QString::fromLocal8Bit(chosen)));
    qputenv("SHELL", "/bin/sh");
    EXPECT_EQ(loginShell::program(), QByteArray("/bin/sh"));
    qputenv("SHELL", before);
}

TEST(TerminalSessionTest, APasteIntoAProgramThatDoesntReadWaitsWithoutBlocking)
{
    auto session = shell("sleep 30");
    ASSERT_TRUE(waitUntil([&] { return session->pid() > 0; }));
    session->paste(QString(10 * 1024 * 1024, QLatin1Char('x'))); // returns: the terminal takes only a little
    EXPECT_GT(session->pendingInput(), 9 * 1024 * 1024);
    bool ticked = false;
    QTimer::singleShot(0, [&] { ticked = true; });
    EXPECT_TRUE(waitUntil([&] { return ticked; }, 2000)); // the event loop still runs
}

TEST(TerminalSessionTest, APasteIsBracketedWhenTheProgramAsks)
{
    auto session = shell("printf '\\033[?2004h'; stty -echo -icanon -icrnl; echo ready; head -c 16 | od -An -tx1; sleep 0.2", 24, 120);
    ASSERT_TRUE(waitForText(*session, QStringLiteral("ready")));
    session->paste(QStringLiteral("hi\x1b[201~!\n"));
    ASSERT_TRUE(waitFinished(*session));
    // ESC [ 2 0 0 ~ h i ! CR ESC [ 2 0 1 ~ : the stray end mark is gone, the line end is a Return.
    EXPECT_TRUE(session->screen().screenText().contains(QStringLiteral("1b 5b 32 30 30 7e 68 69 21 0d 1b 5b 32 30 31 7e")))
        << session->screen().screenText().toStdString();
}

TEST(TerminalSessionTest, ClosingHangsUpAndLeavesNoZombie)
{
    auto session = shell("sleep 100 & echo \"child $!\"; wait");
    ASSERT_TRUE(waitForText(*session, QStringLiteral("child ")));
    const pid_t shellPid = session->pid();
    session.reset();
    ASSERT_TRUE(waitUntil([] { return ChildReaper::shared().waiting() == 0; }, 10000));
    EXPECT_EQ(::waitpid(shellPid, nullptr, WNOHANG), -1); // reaped: not our child any more
    EXPECT_EQ(errno, ECHILD);
}

} // namespace
} // namespace orwick
