// The orwick program started as a person starts it: twice, the second handing its request to the
// first; after the first was killed; with a file in the socket's place; --help and --version; and
// by the session bus, for another program's "Show in folder".

#include "platform/BusActivationFile.h"
#include "app/Settings.h"
#include "app/ShowInFolderService.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

using namespace orwick;
using test::waitUntil;

namespace {

struct StartUpFixture : ::testing::Test {
    test::TempTree tree;
    FilePath runtime = tree.folder("runtime");
    FilePath socket = runtime.child(QByteArrayView("orwick-:91.socket"));
    std::vector<std::unique_ptr<QProcess>> running;
    QMap<QProcess*, QByteArray> errors;

    void SetUp() override
    {
        if (!QFileInfo::exists(QStringLiteral(ORWICK_PATH)))
            GTEST_SKIP() << "the orwick program isn't built here (the sanitized build makes the core tests only)";
        chmod(runtime.c_str(), 0700);
        tree.folder("A");
        tree.folder("B");
        tree.folder("C");
        tree.file("a.txt", "a");
    }
    void TearDown() override
    {
        for (auto& process : running) {
            process->kill();
            process->waitForFinished(5000);
        }
    }
    QProcessEnvironment environment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.text());
        env.insert(QStringLiteral("DISPLAY"), QStringLiteral(":91"));
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("ORWICK_TRACE_OPEN"), QStringLiteral("1"));
        return env;
    }
    QProcess* start(const QStringList& arguments)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment());
        process->setWorkingDirectory(tree.root().text());
        process->start(QStringLiteral(ORWICK_PATH), arguments);
        EXPECT_TRUE(process->waitForStarted(5000));
        running.push_back(std::move(process));
        return running.back().get();
    }
    // Starts the first Orwick and waits until it listens.
    QProcess* startFirst(const QStringList& arguments = {})
    {
        QProcess* first = start(arguments);
        EXPECT_TRUE(waitUntil([&] { return test::exists(socket); }, 10000)) << "the first Orwick never listened";
        return first;
    }
    struct Finished {
        int status = -1;
        QByteArray out, err;
        qint64 ms = 0;
    };
    // Runs orwick to its end (at most 10 s).
    Finished run(const QStringList& arguments)
    {
        QProcess process;
        process.setProcessEnvironment(environment());
        process.setWorkingDirectory(tree.root().text());
        QElapsedTimer timer;
        timer.start();
        process.start(QStringLiteral(ORWICK_PATH), arguments);
        if (!process.waitForFinished(10000)) {
            process.kill();
            process.waitForFinished();
            return {};
        }
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
                process.readAllStandardError(), timer.elapsed()};
    }
    QByteArray errorOf(QProcess* process)
    {
        errors[process] += process->readAllStandardError();
        return errors[process];
    }
    // Waits until the process has said `text` on its standard error.
    ::testing::AssertionResult says(QProcess* process, const QByteArray& text, int timeoutMs = 10000)
    {
        if (waitUntil([&] { return errorOf(process).contains(text); }, timeoutMs))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "never said \"" << text.toStdString() << "\"; said:\n" << errors[process].toStdString();
    }
    QByteArray path(const char* relative) const { return tree.path(QString::fromUtf8(relative)).native(); }
};

TEST_F(StartUpFixture, ASecondStartHandsItsFolderToTheFirstAndEndsAtOnce)
{
    QProcess* first = startFirst({QStringLiteral("A")});
    const Finished second = run({QStringLiteral("B")});
    EXPECT_EQ(second.status, 0);
    EXPECT_LT(second.ms, 2000);
    EXPECT_EQ(second.out + second.err, QByteArray());
    EXPECT_TRUE(says(first, "open: " + path("B") + " in window 1\n"));
    EXPECT_TRUE(says(first, "open: rows of " + path("B") + " shown at "));

    // A link from another folder, revealing a file.
    const Finished linked = run({QStringLiteral("orwick://open?path=") + tree.path("a.txt").text() + QStringLiteral("&reveal=1")});
    EXPECT_EQ(linked.status, 0);
    EXPECT_TRUE(says(first, "open: " + path("a.txt") + " (reveal) in window 1\n"));
    EXPECT_TRUE(says(first, "open: rows of " + tree.root().native() + " shown at "));
    EXPECT_EQ(first->state(), QProcess::Running);
}

// The welcome sheet: the first plain start of a user (no folder, no session) greets, and the
// preferences store remembers it; a traced start (benchmarks, these tests) is left as it is.
TEST_F(StartUpFixture, OnlyAnUntracedFirstPlainStartGreetsTheUser)
{
    const FilePath config = tree.folder("config");
    const FilePath settings = config.child(QStringLiteral("Orwick/Orwick.conf"));
    QProcessEnvironment env = environment();
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), config.text());
    env.remove(QStringLiteral("ORWICK_TRACE_OPEN"));

    QProcess traced;
    QProcessEnvironment measured = env;
    measured.insert(QStringLiteral("ORWICK_TRACE_STARTUP"), QStringLiteral("quit"));
    traced.setProcessEnvironment(measured);
    traced.start(QStringLiteral(ORWICK_PATH), {});
    ASSERT_TRUE(traced.waitForFinished(20000));
    EXPECT_TRUE(traced.readAllStandardError().contains("first rows shown after"));
    EXPECT_FALSE(test::readAll(settings).contains("welcomed")) << test::readAll(settings).toStdString();

    QFile::remove(settings.text()); // the traced start kept its session, which a plain start would reopen
    auto plain = std::make_unique<QProcess>();
    plain->setProcessEnvironment(env);
    plain->start(QStringLiteral(ORWICK_PATH), {});
    ASSERT_TRUE(plain->waitForStarted(5000));
    running.push_back(std::move(plain));
    EXPECT_TRUE(waitUntil([&] { return test::readAll(settings).contains("welcomed=true"); }, 10000)) << test::readAll(settings).toStdString();
}

TEST_F(StartUpFixture, AFirstStartOnAFileShowsItsFolderWithTheFileSelected)
{
    QProcess* first = startFirst({QStringLiteral("a.txt")});
    EXPECT_TRUE(says(first, "open: " + path("a.txt") + " in window 1\n"));
    EXPECT_TRUE(says(first, "open: rows of " + tree.root().native() + " shown at "));
    EXPECT_TRUE(says(first, " 1 selected\n"));
}

TEST_F(StartUpFixture, NewWindowOpensASecondWindowInTheRunningOrwick)
{
    QProcess* first = startFirst();
    const Finished second = run({QStringLiteral("--new-window"), QStringLiteral("C")});
    EXPECT_EQ(second.status, 0);
    EXPECT_TRUE(says(first, "open: " + path("C") + " in window 2\n"));
    // The next request goes to the window in front: the new one.
    EXPECT_EQ(run({QStringLiteral("A")}).status, 0);
    EXPECT_TRUE(says(first, "open: " + path("A") + " in window 2\n"));
}

TEST_F(StartUpFixture, AKilledOrwicksSocketIsReplacedByTheNextOne)
{
    QProcess* killed = startFirst();
    killed->kill();
    ASSERT_TRUE(killed->waitForFinished(5000));
    ASSERT_TRUE(test::exists(socket)) << "a killed Orwick leaves its socket";

    // It listens before it opens its window.
    QProcess* next = start({QStringLiteral("A")});
    ASSERT_TRUE(says(next, "open: " + path("A") + " in window 1\n"));
    EXPECT_EQ(errorOf(next).count("orwick:"), 0) << errors[next].toStdString();
    const Finished third = run({QStringLiteral("B")});
    EXPECT_EQ(third.status, 0);
    EXPECT_LT(third.ms, 2000);
    EXPECT_TRUE(says(next, "open: " + path("B") + " in window 1\n"));
}

TEST_F(StartUpFixture, AFileInTheSocketsPlaceIsLeftAloneAndOrwickRunsOnItsOwn)
{
    tree.file("runtime/orwick-:91.socket", "not a socket");
    QProcess* first = start({QStringLiteral("A")});
    EXPECT_TRUE(says(first, "orwick: “" + socket.native() + "” is in the way and isn't Orwick's socket, so this Orwick runs on "
                            "its own: a later “orwick” won't open its folders here\n"));
    waitUntil([] { return false; }, 300); // it keeps running
    EXPECT_EQ(first->state(), QProcess::Running);
    EXPECT_EQ(test::readAll(socket), "not a socket");
    // Only that one line.
    EXPECT_EQ(errorOf(first).count("orwick:"), 1) << errors[first].toStdString();
}

// With the setting on, another program's "Show in folder" starts Orwick when none runs: a private
// session bus reads the file Orwick put in this home's services folder and starts the program.
TEST_F(StartUpFixture, TheBusStartsOrwickForShowInFolderWhileTheSettingIsOn)
{
    const QString runner = QStandardPaths::findExecutable(QStringLiteral("dbus-run-session"));
    const QString gdbus = QStandardPaths::findExecutable(QStringLiteral("gdbus"));
    if (runner.isEmpty() || gdbus.isEmpty())
        GTEST_SKIP() << "dbus-run-session or gdbus is missing (packages dbus and libglib2.0-bin; scripts/install-deps --with-checks installs them)";
    openSettings()->setValue(QLatin1StringView(ShowInFolderService::settingKey), true);
    openSettings()->sync();
    // Through a folder with a blank in its name: the bus reads the quoted Exec line as a shell would.
    const FilePath program = tree.link(QStringLiteral("my programs/orwick"), ORWICK_PATH);
    ASSERT_TRUE(BusActivationFile::put(program.text()));

    // The bus lives until its `cat` sees its input close; it says its address first. The programs
    // it starts write to its error output, where Orwick traces what it opens.
    QProcess bus;
    bus.setProcessEnvironment(environment());
    bus.start(runner, {QStringLiteral("--"), QStringLiteral("sh"), QStringLiteral("-c"),
                       QStringLiteral("echo \"$DBUS_SESSION_BUS_ADDRESS\"; exec cat")});
    ASSERT_TRUE(waitUntil([&] { return bus.canReadLine(); }, 10000)) << "the private bus never said its address";
    QProcessEnvironment onBus = environment();
    onBus.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QString::fromUtf8(bus.readLine().trimmed()));
    auto call = [&](const QString& destination, const QString& object, const QString& method, const QStringList& arguments) {
        QProcess process;
        process.setProcessEnvironment(onBus);
        process.start(gdbus, QStringList{QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"), destination,
                                         QStringLiteral("--object-path"), object, QStringLiteral("--method"), method} +
                                 arguments);
        if (!process.waitForFinished(30000))
            process.kill();
        return std::pair(process.exitCode(), process.readAllStandardOutput() + process.readAllStandardError());
    };
    auto stopOrwick = [&] {
        const auto [status, pid] = call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                        QStringLiteral("org.freedesktop.DBus.GetConnectionUnixProcessID"),
                                        {QLatin1StringView(ShowInFolderService::busName)});
        const QByteArray answer = pid.mid(pid.indexOf(' ') + 1); // "(uint32 1234,)"
        const qint64 id = answer.left(answer.indexOf(',')).toLongLong();
        EXPECT_GT(id, 0) << "the bus didn't say which process holds the name: " << pid.toStdString();
        if (status == 0 && id > 0)
            kill(pid_t(id), SIGTERM);
    };

    const auto [status, output] = call(QLatin1StringView(ShowInFolderService::busName), QLatin1StringView(ShowInFolderService::objectPath),
                                       QStringLiteral("org.freedesktop.FileManager1.ShowItems"),
                                       {QStringLiteral("['") + QString::fromLatin1(tree.path(QStringLiteral("a.txt")).toUrl().toEncoded()) +
                                            QStringLiteral("']"),
                                        QStringLiteral("''")});
    EXPECT_EQ(status, 0) << output.toStdString();
    EXPECT_TRUE(says(&bus, "open: " + path("a.txt") + " (reveal) in window 1\n", 20000));
    EXPECT_TRUE(says(&bus, "open: rows of " + tree.root().native() + " shown at "));
    stopOrwick();
    bus.closeWriteChannel();
    EXPECT_TRUE(bus.waitForFinished(10000));

    ASSERT_TRUE(BusActivationFile::take());
    openSettings()->remove(QLatin1StringView(ShowInFolderService::settingKey));
}

TEST_F(StartUpFixture, HelpAndVersionPrintAndEndWithoutAWindow)
{
    const Finished help = run({QStringLiteral("--help")});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.startsWith("Usage: orwick [--new-window] [FOLDER|FILE|URL]…\n")) << help.out.toStdString();
    EXPECT_TRUE(help.out.contains("orwick://open?path=/a/folder   (add &reveal=1 to select it in its parent)"));
    const Finished version = run({QStringLiteral("--version")});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "Orwick " ORWICK_VERSION "\n");
    EXPECT_FALSE(test::exists(socket)) << "neither started an Orwick";

    const Finished wrong = run({QStringLiteral("--bogus")});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.err, "orwick: there is no option “--bogus” (orwick --help lists them)\n");
    const Finished show = run({QStringLiteral("--show"), QStringLiteral("nowhere")});
    EXPECT_EQ(show.status, 2);
    EXPECT_EQ(show.err, "orwick: --show takes trash, recents, screenshots, drives or tag:NAME\n");
}

} // namespace
