// Following the desktop's light or dark setting through the settings portal, on a real session
// bus: a private one made by dbus-run-session for this program, where a stand-in portal (on its
// own connection and thread, as the real one is another process) answers Read and sends
// SettingChanged.
//
// SystemColorScheme.FollowsThePortalOnAPrivateBus runs this program again under
// dbus-run-session with only the PortalOnBus tests (disabled in a plain run, since they need that
// bus).

#include "support/TestMain.h"
#include "theme/SystemColorScheme.h"
#include "theme/ThemeStore.h"
#include "app/Settings.h"
#include "support/TempHome.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {

TEST(SystemColorScheme, ReadsThePortalsValues)
{
    EXPECT_EQ(SystemColorScheme::fromPortalValue(uint(1)), Appearance::dark);
    EXPECT_EQ(SystemColorScheme::fromPortalValue(uint(2)), Appearance::light);
    EXPECT_EQ(SystemColorScheme::fromPortalValue(uint(0)), std::nullopt);
    EXPECT_EQ(SystemColorScheme::fromPortalValue(QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(uint(1)))))),
              Appearance::dark)
        << "Read wraps the value twice";
    EXPECT_EQ(SystemColorScheme::fromPortalValue(QStringLiteral("dark")), std::nullopt);
}

TEST(SystemColorScheme, WithoutABusTheFallbackDecides)
{
    Appearance fallback = Appearance::dark;
    SystemColorScheme scheme(QDBusConnection(QStringLiteral("orwick-no-such-bus")), [&] { return fallback; });
    EXPECT_EQ(scheme.portalAppearance(), std::nullopt);
    EXPECT_EQ(scheme.appearance(), Appearance::dark);
    fallback = Appearance::light;
    EXPECT_EQ(scheme.appearance(), Appearance::light);
}

TEST(SystemColorScheme, FollowsThePortalOnAPrivateBus)
{
    const QString runner = QStandardPaths::findExecutable(QStringLiteral("dbus-run-session"));
    if (runner.isEmpty())
        GTEST_SKIP() << "dbus-run-session is missing (package dbus; scripts/install-deps --with-checks installs it)";
    QProcess inner;
    inner.setProcessChannelMode(QProcess::MergedChannels);
    inner.start(runner, {QStringLiteral("--"), QCoreApplication::applicationFilePath(), QStringLiteral("--gtest_also_run_disabled_tests"),
                         QStringLiteral("--gtest_filter=DISABLED_PortalOnBus.*")});
    ASSERT_TRUE(inner.waitForFinished(120000));
    const QString output = QString::fromUtf8(inner.readAll());
    EXPECT_EQ(inner.exitCode(), 0) << output.toStdString();
    EXPECT_TRUE(output.contains(QStringLiteral("[  PASSED  ] 3 tests."))) << output.toStdString();
}

// --- On the private bus

// The settings portal's part that Orwick reads.
class StandInPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    explicit StandInPortal(QDBusConnection bus) : m_bus(std::move(bus)) {}
    std::atomic<uint> scheme{0};

public Q_SLOTS:
    QDBusVariant Read(const QString& nameSpace, const QString& key)
    {
        if (nameSpace != QLatin1StringView("org.freedesktop.appearance") || key != QLatin1StringView("color-scheme"))
            return QDBusVariant(QVariant::fromValue(QDBusVariant(QString())));
        return QDBusVariant(QVariant::fromValue(QDBusVariant(scheme.load())));
    }
    void change(uint value)
    {
        scheme = value;
        QDBusMessage signal = QDBusMessage::createSignal(QLatin1StringView(SystemColorScheme::portalPath),
                                                         QLatin1StringView(SystemColorScheme::portalInterface), QStringLiteral("SettingChanged"));
        signal << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme") << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

private:
    QDBusConnection m_bus;
};

struct DISABLED_PortalOnBus : ::testing::Test {
    QThread thread;
    QDBusConnection portalBus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("stand-in-portal"));
    StandInPortal* portal = nullptr;

    void SetUp() override
    {
        ASSERT_TRUE(QDBusConnection::sessionBus().isConnected()) << "runs under dbus-run-session";
        ASSERT_TRUE(portalBus.isConnected());
        portal = new StandInPortal(portalBus);
        portal->moveToThread(&thread);
        thread.start();
        ASSERT_TRUE(portalBus.registerObject(QLatin1StringView(SystemColorScheme::portalPath), portal, QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(portalBus.registerService(QLatin1StringView(SystemColorScheme::portalService)));
    }
    void TearDown() override
    {
        portalBus.unregisterService(QLatin1StringView(SystemColorScheme::portalService));
        portalBus.unregisterObject(QLatin1StringView(SystemColorScheme::portalPath));
        QMetaObject::invokeMethod(portal, &QObject::deleteLater);
        thread.quit();
        thread.wait();
        QDBusConnection::disconnectFromBus(QStringLiteral("stand-in-portal"));
    }
    void change(uint value) { QMetaObject::invokeMethod(portal, [this, value] { portal->change(value); }); }
};

TEST_F(DISABLED_PortalOnBus, ReadsTheSchemeAtStart)
{
    portal->scheme = 1;
    SystemColorScheme scheme(QDBusConnection::sessionBus(), [] { return Appearance::light; }, 5000);
    EXPECT_EQ(scheme.portalAppearance(), Appearance::dark);
    EXPECT_EQ(scheme.appearance(), Appearance::dark);
}

TEST_F(DISABLED_PortalOnBus, FollowsEachChangeAndFallsBackWithoutAPreference)
{
    portal->scheme = 2;
    SystemColorScheme scheme(QDBusConnection::sessionBus(), [] { return Appearance::dark; }, 5000);
    EXPECT_EQ(scheme.appearance(), Appearance::light);
    int changes = 0;
    QObject::connect(&scheme, &SystemColorScheme::changed, [&] { ++changes; });
    change(1);
    ASSERT_TRUE(waitUntil([&] { return scheme.appearance() == Appearance::dark; }));
    EXPECT_EQ(changes, 1);
    change(0);
    ASSERT_TRUE(waitUntil([&] { return !scheme.portalAppearance(); }));
    EXPECT_EQ(scheme.appearance(), Appearance::dark) << "no preference: the fallback's dark";
    EXPECT_EQ(changes, 1) << "dark to dark is no change";
    change(2);
    ASSERT_TRUE(waitUntil([&] { return scheme.appearance() == Appearance::light; }));
    EXPECT_EQ(changes, 2);
}

TEST_F(DISABLED_PortalOnBus, TheStoreFollowsTheDesktopOnlyInSystemMode)
{
    portal->scheme = 2;
    SystemColorScheme scheme(QDBusConnection::sessionBus(), [] { return Appearance::light; }, 5000);
    test::TempTree tree;
    ThemeStore store(tree.path("Themes"), &scheme);
    store.setSelectedName("Nord");
    store.setAppearanceMode(AppearanceMode::system);
    EXPECT_EQ(themeColorText(store.colors().color("background")), "#ECEFF4");
    int changes = 0;
    QObject::connect(&store, &ThemeStore::changed, [&] { ++changes; });
    change(1);
    ASSERT_TRUE(waitUntil([&] { return store.appearance() == Appearance::dark; }));
    EXPECT_EQ(themeColorText(store.colors().color("background")), "#2E3440");
    EXPECT_EQ(changes, 1);
    store.setAppearanceMode(AppearanceMode::light);
    change(2);
    ASSERT_TRUE(waitUntil([&] { return scheme.appearance() == Appearance::light; }));
    change(1);
    ASSERT_TRUE(waitUntil([&] { return scheme.appearance() == Appearance::dark; }));
    EXPECT_EQ(store.appearance(), Appearance::light) << "a chosen appearance stays";
    for (const char* key : {ThemeStore::themeKey, ThemeStore::appearanceKey})
        openSettings()->remove(QLatin1StringView(key));
}

} // namespace

#include "SystemColorSchemeTest.moc"
