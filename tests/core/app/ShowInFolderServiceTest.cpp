// Answering other programs' "Show in folder" on a real session bus: a private one made by
// dbus-run-session for this program, so the desktop's own bus is never touched.
//
// ShowInFolderService.AnswersOnAPrivateSessionBus runs this program again under
// dbus-run-session, with only the ShowInFolderOnBus tests (disabled in a plain run, since they
// need that bus).

#include "app/OpenRouter.h"
#include "app/Settings.h"
#include "app/ShowInFolderService.h"
#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDBusConnectionInterface>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {

const QString kTaken = QStringLiteral("Another file manager answers “Show in folder” right now, so Orwick leaves it alone.");

TEST(ShowInFolderService, WithoutABusItSaysSoAndOrwickRunsOn)
{
    openSettings()->setValue(QLatin1StringView(ShowInFolderService::settingKey), true);
    OpenRouter router;
    ShowInFolderService service(&router, nullptr, QDBusConnection(QStringLiteral("orwick-no-such-bus")));
    openSettings()->remove(QLatin1StringView(ShowInFolderService::settingKey));
    EXPECT_FALSE(service.isClaimed());
    EXPECT_EQ(service.problem(), QStringLiteral("Orwick can't reach the desktop's message bus (D-Bus), so it can't answer “Show in folder”."));
    EXPECT_EQ(ShowInFolderService::instance(), &service);
}

TEST(ShowInFolderService, UrisBecomeRequestsAndOtherSchemesAreLeftOut)
{
    const OpenRequests requests = ShowInFolderService::requestsFor(
        {QStringLiteral("file:///tmp/a%20b.txt"), QStringLiteral("https://example.org/x"), QStringLiteral("/srv/plain"),
         QStringLiteral("file:///tmp/caf%E9"), QStringLiteral("")},
        true);
    EXPECT_EQ(requests, (OpenRequests{{FilePath::fromNative("/tmp/a b.txt"), true},
                                      {FilePath::fromNative("/srv/plain"), true},
                                      {FilePath::fromNative("/tmp/caf\xe9"), true}}));
}

TEST(ShowInFolderService, AnswersOnAPrivateSessionBus)
{
    const QString runner = QStandardPaths::findExecutable(QStringLiteral("dbus-run-session"));
    if (runner.isEmpty())
        GTEST_SKIP() << "dbus-run-session is missing (package dbus; scripts/install-deps --with-checks installs it)";
    QProcess inner;
    inner.setProcessChannelMode(QProcess::MergedChannels);
    inner.start(runner, {QStringLiteral("--"), QCoreApplication::applicationFilePath(), QStringLiteral("--gtest_also_run_disabled_tests"),
                         QStringLiteral("--gtest_filter=ShowInFolderOnBus.*")});
    ASSERT_TRUE(inner.waitForFinished(120000));
    const QString output = QString::fromUtf8(inner.readAll());
    EXPECT_EQ(inner.exitCode(), 0) << output.toStdString();
    EXPECT_TRUE(output.contains(QStringLiteral("[  PASSED  ] 4 tests."))) << output.toStdString();
}

// --- On the private bus

struct ShowInFolderOnBus : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<WindowState> window;
    OpenRouter router;

    void SetUp() override
    {
        ASSERT_TRUE(QDBusConnection::sessionBus().isConnected()) << "runs under dbus-run-session";
        tree.folder("A");
        tree.folder("B");
        tree.file("a.txt", "a");
        window = std::make_unique<WindowState>(tree.path("B"), &preferences);
        ASSERT_TRUE(waitUntil([&] { return !window->activePane()->isLoading(); }));
        router.setFrontWindow([this] { return window.get(); });
        openSettings()->setValue(QLatin1StringView(ShowInFolderService::settingKey), true);
    }
    void TearDown() override { openSettings()->remove(QLatin1StringView(ShowInFolderService::settingKey)); }

    static bool nameIsOwned()
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(QLatin1StringView(ShowInFolderService::busName));
    }
    // Calls a method of the interface with gdbus, another program, while this one answers.
    ::testing::AssertionResult call(const char* method, const FilePath& item)
    {
        const QString gdbus = QStandardPaths::findExecutable(QStringLiteral("gdbus"));
        if (gdbus.isEmpty())
            return ::testing::AssertionFailure() << "gdbus is missing (package libglib2.0-bin)";
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(gdbus, {QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"),
                              QLatin1StringView(ShowInFolderService::busName), QStringLiteral("--object-path"),
                              QLatin1StringView(ShowInFolderService::objectPath), QStringLiteral("--method"),
                              QStringLiteral("org.freedesktop.FileManager1.") + QLatin1StringView(method),
                              QStringLiteral("['") + QString::fromLatin1(item.toUrl().toEncoded()) + QStringLiteral("']"),
                              QStringLiteral("''")});
        if (!waitUntil([&] { return process.state() == QProcess::NotRunning; }, 20000))
            return ::testing::AssertionFailure() << "gdbus never returned";
        if (process.exitCode() != 0)
            return ::testing::AssertionFailure() << process.readAll().toStdString();
        return ::testing::AssertionSuccess();
    }
    ::testing::AssertionResult shows(const FilePath& folder, const QSet<FilePath>& selected)
    {
        PaneState* pane = window->activePane();
        if (waitUntil([&] { return pane->url() == folder && !pane->isLoading() && pane->selection() == selected; }))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "shows " << pane->url().text().toStdString() << " with "
                                             << pane->selection().size() << " selected";
    }
};

TEST_F(ShowInFolderOnBus, DISABLED_ShowItemsSelectsTheItemInItsFolder)
{
    ShowInFolderService service(&router);
    ASSERT_TRUE(service.isClaimed()) << service.problem().toStdString();
    EXPECT_EQ(service.problem(), QString());
    ASSERT_TRUE(call("ShowItems", tree.path("a.txt")));
    EXPECT_EQ(window->tabs().size(), 2);
    EXPECT_TRUE(shows(tree.root(), {tree.path("a.txt")}));

    // A folder's item is selected too, not opened.
    ASSERT_TRUE(call("ShowItemProperties", tree.path("A")));
    EXPECT_TRUE(shows(tree.root(), {tree.path("A")}));
    EXPECT_EQ(window->tabs().size(), 2) << "the front window shows that folder already";
}

TEST_F(ShowInFolderOnBus, DISABLED_ShowFoldersOpensThem)
{
    ShowInFolderService service(&router);
    ASSERT_TRUE(service.isClaimed()) << service.problem().toStdString();
    ASSERT_TRUE(call("ShowFolders", tree.path("A")));
    EXPECT_TRUE(shows(tree.path("A"), {}));
}

TEST_F(ShowInFolderOnBus, DISABLED_TheSwitchClaimsAndGivesBackTheName)
{
    openSettings()->setValue(QLatin1StringView(ShowInFolderService::settingKey), false);
    ShowInFolderService service(&router);
    int changes = 0;
    QObject::connect(&service, &ShowInFolderService::stateChanged, [&] { ++changes; });
    EXPECT_FALSE(service.isOn());
    EXPECT_FALSE(service.isClaimed());
    EXPECT_FALSE(nameIsOwned());
    service.setOn(true);
    EXPECT_TRUE(service.isOn());
    EXPECT_TRUE(service.isClaimed());
    EXPECT_TRUE(nameIsOwned());
    EXPECT_GE(changes, 1);
    service.setOn(false);
    EXPECT_FALSE(service.isClaimed());
    EXPECT_FALSE(nameIsOwned());
    EXPECT_FALSE(openSettings()->value(QLatin1StringView(ShowInFolderService::settingKey)).toBool());
}

TEST_F(ShowInFolderOnBus, DISABLED_ANameAnotherProgramHoldsIsLeftAlone)
{
    // Another program holds the name: this test program, started to do only that.
    QProcess holder;
    holder.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_also_run_disabled_tests"),
                                                           QStringLiteral("--gtest_filter=ShowInFolderHolder.*")});
    ASSERT_TRUE(waitUntil([] { return nameIsOwned(); }, 20000)) << "the holder never took the name";

    ShowInFolderService service(&router);
    EXPECT_FALSE(service.isClaimed());
    EXPECT_EQ(service.problem(), kTaken);
    EXPECT_TRUE(nameIsOwned()) << "still the other program's";

    // Once the other program lets it go, Orwick takes it.
    holder.closeWriteChannel();
    ASSERT_TRUE(holder.waitForFinished(20000));
    EXPECT_TRUE(waitUntil([&] { return service.isClaimed(); }, 10000));
    EXPECT_EQ(service.problem(), QString());
}

// Holds the name until its standard input closes, for the test above.
TEST(ShowInFolderHolder, DISABLED_HoldsTheNameUntilItsInputCloses)
{
    ASSERT_TRUE(QDBusConnection::sessionBus().registerService(QLatin1StringView(ShowInFolderService::busName)));
    char buffer[16];
    while (fread(buffer, 1, sizeof buffer, stdin) > 0) {
    }
}

} // namespace
