// "Open With…": applications read from real desktop files in temporary data folders, started as
// real processes on a real file, and made the default in a real mimeapps.list.

#include "platform/DesktopApps.h"
#include "platform/XdgPaths.h"
#include "support/SystemFolders.h"
#include "support/TestMain.h"

#include <QFile>
#include <gtest/gtest.h>

namespace orwick {
namespace {

struct DesktopAppsTest : ::testing::Test {
    test::SystemFolders system;
    test::TempTree files;

    void install(const QString& id, const QByteArray& body) { system.install(id, body); }
    static QStringList names(const QList<DesktopApps::Application>& apps)
    {
        QStringList out;
        for (const auto& app : apps)
            out << app.name;
        return out;
    }
};

TEST_F(DesktopAppsTest, TheTypesApplicationsAreReadWithTheirNamesAndBrokenOnesLeftOut)
{
    install(QStringLiteral("writer.desktop"), "Name=Writer\nIcon=accessories-text-editor\nExec=writer %F\nMimeType=text/plain;\n");
    install(QStringLiteral("noexec.desktop"), "Name=No Command\nMimeType=text/plain;\n");
    install(QStringLiteral("quote.desktop"), "Name=Unclosed\nExec=\"viewer %f\nMimeType=text/plain;\n");
    install(QStringLiteral("noname.desktop"), "Exec=nameless %f\nMimeType=text/plain;\n");
    system.tree.file(QStringLiteral("share/applications/binary.desktop"), QByteArray("\x00\xff\xfe garbage", 12));
    EXPECT_EQ(names(DesktopApps::forType(QStringLiteral("text/plain"))), QStringList{"Writer"});
    // A C source is text too: the text editor opens it.
    EXPECT_EQ(names(DesktopApps::forType(QStringLiteral("text/x-csrc"))), QStringList{"Writer"});
    EXPECT_TRUE(DesktopApps::forType(QStringLiteral("application/x-orwick-nothing")).isEmpty());
    const auto writer = DesktopApps::find(QStringLiteral("writer.desktop"));
    ASSERT_TRUE(writer);
    EXPECT_EQ(writer->icon, "accessories-text-editor");
    EXPECT_FALSE(DesktopApps::find(QStringLiteral("noexec.desktop")));
}

TEST_F(DesktopAppsTest, ExecFieldCodesAndQuotesFollowTheDesktopEntryRules)
{
    DesktopApps::Application app{QStringLiteral("a.desktop"), QStringLiteral("My App"), QStringLiteral("my-icon"), {},
                                 QStringLiteral("/apps/a.desktop"), false};
    const FilePath file = FilePath::fromText(QStringLiteral("/home/u/R&D notes.txt"));
    app.exec = QStringLiteral("\"/opt/my app/run\" --name=%c %i --from=%k %f");
    EXPECT_EQ(*DesktopApps::commandLine(app, file),
              (QStringList{"/opt/my app/run", "--name=My App", "--icon", "my-icon", "--from=/apps/a.desktop", "/home/u/R&D notes.txt"}));
    app.exec = QStringLiteral("viewer %U");
    EXPECT_EQ(*DesktopApps::commandLine(app, file), (QStringList{"viewer", "file:///home/u/R%26D%20notes.txt"}));
    app.exec = QStringLiteral("sh -c \"echo \\\"\\$1\\\" 100%%\" %d %f");
    EXPECT_EQ(*DesktopApps::commandLine(app, file), (QStringList{"sh", "-c", "echo \"$1\" 100%", "/home/u/R&D notes.txt"}));
    app.exec = QStringLiteral("plainviewer");
    EXPECT_EQ(*DesktopApps::commandLine(app, file), (QStringList{"plainviewer", "/home/u/R&D notes.txt"})) << "the file still given";
    app.exec = QStringLiteral("\"unclosed %f");
    EXPECT_FALSE(DesktopApps::commandLine(app, file));
    app.exec = QStringLiteral("   ");
    EXPECT_FALSE(DesktopApps::commandLine(app, file));
}

TEST_F(DesktopAppsTest, LaunchStartsTheProgramOnTheFile)
{
    const FilePath marker = files.path(QStringLiteral("opened.txt"));
    const FilePath script = files.file("record.sh", "#!/bin/sh\nprintf '%s' \"$1\" > \"" + marker.native() + ".part\" && mv \"" + marker.native() + ".part\" \"" + marker.native() + "\"\n");
    QFile::setPermissions(script.text(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    install(QStringLiteral("recorder.desktop"), "Name=Recorder\nExec=" + script.native() + " %f\nMimeType=text/plain;\n");
    const FilePath document = files.file("Tom & Jerry.txt", "hello");
    const auto app = DesktopApps::find(QStringLiteral("recorder.desktop"));
    ASSERT_TRUE(app);
    EXPECT_EQ(DesktopApps::launch(*app, document), QString());
    ASSERT_TRUE(test::waitUntil([&] { return QFile::exists(marker.text()); }, 10000));
    EXPECT_EQ(test::readAll(marker), document.native());
}

TEST_F(DesktopAppsTest, AMissingProgramIsSaidNotStarted)
{
    install(QStringLiteral("ghost.desktop"), "Name=Ghost\nExec=orwick-no-such-program-here %f\nMimeType=text/plain;\n");
    const auto app = DesktopApps::find(QStringLiteral("ghost.desktop"));
    ASSERT_TRUE(app);
    EXPECT_EQ(DesktopApps::launch(*app, files.file("a.txt")), "“Ghost” can’t be started: the program “orwick-no-such-program-here” isn’t installed");
}

TEST_F(DesktopAppsTest, SetDefaultPutsTheChoiceFirstAndKeepsTheRestOfTheList)
{
    install(QStringLiteral("first.desktop"), "Name=First\nExec=first %f\nMimeType=text/plain;\n");
    install(QStringLiteral("second.desktop"), "Name=Second\nExec=second %f\nMimeType=text/plain;\n");
    const FilePath list = test::SystemFolders::mimeAppsList();
    ASSERT_TRUE(test::writeFile(
        list, "[Added Associations]\nimage/png=first.desktop;\n\n[Default Applications]\ntext/plain=first.desktop;\nimage/png=first.desktop;\n"));
    EXPECT_EQ(names(DesktopApps::forType(QStringLiteral("text/plain"))).value(0), "First");
    EXPECT_EQ(DesktopApps::setDefault(QStringLiteral("text/plain"), *DesktopApps::find(QStringLiteral("second.desktop"))), QString());
    EXPECT_EQ(names(DesktopApps::forType(QStringLiteral("text/plain"))), (QStringList{"Second", "First"}));
    EXPECT_EQ(test::readAll(list), "[Added Associations]\nimage/png=first.desktop;\n\n[Default Applications]\ntext/plain=second.desktop;\nimage/png=first.desktop;\n");

    // A list without the group gets one.
    QFile::remove(list.text());
    EXPECT_EQ(DesktopApps::setDefault(QStringLiteral("text/markdown"), *DesktopApps::find(QStringLiteral("first.desktop"))), QString());
    EXPECT_EQ(test::readAll(list), "[Default Applications]\ntext/markdown=first.desktop;\n");
}

} // namespace
} // namespace orwick
