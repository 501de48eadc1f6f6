// The file that lets the session bus start Orwick for "Show in folder": there while the setting
// is on, gone when it is turned off, and never another program's file replaced or removed.

#include "app/OpenRouter.h"
#include "app/Settings.h"
#include "app/ShowInFolderService.h"
#include "platform/BusActivationFile.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct BusActivation : ::testing::Test {
    FilePath file = BusActivationFile::path();
    FilePath busFolder = file.parent().parent(); // dbus-1

    void SetUp() override { clear(); }
    void TearDown() override
    {
        clear();
        openSettings()->remove(QLatin1StringView(ShowInFolderService::settingKey));
    }
    void clear() const
    {
        QFile::remove(busFolder.text());
        QDir(busFolder.text()).removeRecursively();
    }
};

TEST_F(BusActivation, TheFileNamesTheBusNameAndTheProgram)
{
    EXPECT_EQ(file, test::tempHome().child(QByteArrayView(".local/share/dbus-1/services/org.freedesktop.FileManager1.service")));
    const QByteArray text = BusActivationFile::textFor(QStringLiteral("/opt/orwick/bin/orwick"));
    EXPECT_TRUE(text.contains("\n[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=/opt/orwick/bin/orwick\n")) << text.toStdString();
    EXPECT_FALSE(text.contains('@')) << "every placeholder filled";
    EXPECT_TRUE(BusActivationFile::isOrwicks(text));
    EXPECT_FALSE(BusActivationFile::isOrwicks("[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=/usr/bin/nautilus\n"));
    // The bus splits the line as a shell does.
    EXPECT_TRUE(BusActivationFile::textFor(QStringLiteral("/home/ann/My Apps/it's/orwick"))
                    .endsWith("\nExec='/home/ann/My Apps/it'\\''s/orwick'\n"));
}

TEST_F(BusActivation, AnotherProgramsFileIsLeftAsItIs)
{
    const QByteArray theirs = "[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=/usr/bin/nautilus --gapplication-service\n";
    test::writeFile(file, theirs);
    const Status put = BusActivationFile::put(QStringLiteral("/usr/bin/orwick"));
    ASSERT_FALSE(put);
    EXPECT_EQ(put.error(), QStringLiteral("Another program's “%1” is in the way, so the desktop can't start Orwick for "
                                          "“Show in folder”; Orwick answers while it runs.")
                               .arg(file.text()));
    EXPECT_TRUE(BusActivationFile::take());
    EXPECT_EQ(test::readAll(file), theirs);
}

TEST_F(BusActivation, AFileThatCantBeReadIsTakenForAnotherProgramsAndLeft)
{
    test::writeFile(file, "[D-BUS Service]\n");
    // Not a file that can be opened for reading, whoever runs the test: a folder in its place.
    QFile::remove(file.text());
    QDir().mkpath(file.text());
    EXPECT_FALSE(BusActivationFile::put(QStringLiteral("/usr/bin/orwick")));
    EXPECT_TRUE(BusActivationFile::take());
    EXPECT_TRUE(QFileInfo(file.text()).isDir()) << "left where it was";
}

TEST_F(BusActivation, AFolderThatCantBeMadeIsSaidSo)
{
    test::writeFile(busFolder, "a file where the services folder's parent would be");
    const Status put = BusActivationFile::put(QStringLiteral("/usr/bin/orwick"));
    ASSERT_FALSE(put);
    EXPECT_EQ(put.error(), QStringLiteral("Orwick couldn't make the folder “%1”.").arg(file.parent().text()));
}

TEST_F(BusActivation, TheSettingPutsItInPlaceAndTakesItAway)
{
    OpenRouter router;
    ShowInFolderService service(&router, nullptr, QDBusConnection(QStringLiteral("orwick-no-such-bus")), QStringLiteral("/x/orwick"));
    EXPECT_FALSE(test::exists(file)) << "the setting is off by default";
    service.setOn(true);
    EXPECT_EQ(test::readAll(file), BusActivationFile::textFor(QStringLiteral("/x/orwick")));
    service.setOn(false);
    EXPECT_FALSE(test::exists(file));
    EXPECT_TRUE(BusActivationFile::take()) << "nothing to take is no failure";

    // A start with the setting off takes away a file of Orwick's left behind.
    ASSERT_TRUE(BusActivationFile::put(QStringLiteral("/x/orwick")));
    { ShowInFolderService off(&router, nullptr, QDBusConnection(QStringLiteral("orwick-no-such-bus")), QStringLiteral("/x/orwick")); }
    EXPECT_FALSE(test::exists(file));

    // A start with the setting on puts it back, but never over another program's file.
    openSettings()->setValue(QLatin1StringView(ShowInFolderService::settingKey), true);
    { ShowInFolderService again(&router, nullptr, QDBusConnection(QStringLiteral("orwick-no-such-bus")), QStringLiteral("/y/orwick")); }
    EXPECT_EQ(test::readAll(file), BusActivationFile::textFor(QStringLiteral("/y/orwick")));
    test::writeFile(file, "[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=/usr/bin/dolphin\n");
    ShowInFolderService third(&router, nullptr, QDBusConnection(QStringLiteral("orwick-no-such-bus")), QStringLiteral("/y/orwick"));
    EXPECT_EQ(test::readAll(file), "[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=/usr/bin/dolphin\n");
}

} // namespace
