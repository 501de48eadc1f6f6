// "Open With…" in a real window: the chooser lists the applications of the cursor's file type
// from real desktop files, Return starts the chosen one on the file as a real process, "Always
// use it" makes it the type's default, "Other Application…" lists every application; a type no
// application opens offers them all. Get Info's Open With buttons start the application too.

#include "WindowFixture.h"

#include "commands/CommandCatalog.h"
#include "support/SystemFolders.h"
#include "ui/dialogs/OpenWithChooser.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/panels/InfoPanel.h"

#include <QCheckBox>
#include <QFile>
#include <QListWidget>
#include <QPushButton>

namespace orwick::test {
namespace {

struct OpenWithWindowTest : WindowTest {
    SystemFolders system;
    FilePath marker;

    void SetUp() override
    {
        marker = system.tree.path(QStringLiteral("opened-with"));
        // An application that writes its own name and the file it was given, then stops.
        const FilePath script = system.tree.file("record.sh", "#!/bin/sh\nprintf '%s %s' \"$0\" \"$1\" > \"" + marker.native() + ".part\" && mv \"" +
                                                             marker.native() + ".part\" \"" + marker.native() + "\"\n");
        QFile::setPermissions(script.text(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QByteArray exec = "Exec=" + script.native() + " %f\n";
        system.install(QStringLiteral("writer.desktop"), "Name=Writer\n" + exec + "MimeType=text/plain;\n");
        system.install(QStringLiteral("pad.desktop"), "Name=Pad\n" + exec + "MimeType=text/plain;\n");
        system.install(QStringLiteral("viewer.desktop"), "Name=Viewer\n" + exec + "MimeType=image/png;\n");
        system.tree.file("share/applications/broken.desktop", "[Desktop Entry]\nName=Broken\nExec=\"unclosed %f\nMimeType=text/plain;\n");
    }

    OpenWithChooser* chooser() { return window->findChild<OpenWithChooser*>(); }
    void awaitChooser()
    {
        ASSERT_TRUE(waitUntil([&] { return chooser() && chooser()->isVisible() && QApplication::focusWidget() == chooser()->list(); }));
    }
    QStringList rows()
    {
        QStringList names;
        for (int i = 0; i < chooser()->list()->count(); ++i)
            names << chooser()->list()->item(i)->text();
        return names;
    }
    QByteArray opened() { return readAll(marker); }
};

TEST_F(OpenWithWindowTest, TheChosenApplicationOpensTheFileAndCanBecomeTheDefault)
{
    const FilePath file = tree.file("Tom & Jerry.txt", "hello");
    open(tree.root());
    select(file);
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("openWith"), *state)) << "reached as a command (menu, palette)";
    awaitChooser();
    const QStringList listed = rows();
    ASSERT_EQ(listed.size(), 3) << listed.join(u',').toStdString();
    EXPECT_TRUE(listed[0].endsWith(" (default)"));
    EXPECT_EQ(listed.last(), "Other Application…");
    EXPECT_FALSE(listed.join(u',').contains("Broken")) << "a broken desktop file is left out";

    press(Qt::Key_Down); // the second application
    const QString second = listed[1];
    chooser()->makeDefault()->setChecked(true);
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !chooser(); }));
    ASSERT_TRUE(waitUntil([&] { return !opened().isEmpty(); }, 10000));
    EXPECT_TRUE(opened().endsWith(" " + file.native())) << opened().toStdString();
    EXPECT_EQ(toast(), second + " now opens plain text document files");

    EXPECT_TRUE(readAll(SystemFolders::mimeAppsList()).contains("text/plain=" + QByteArray(second == "Pad" ? "pad" : "writer") + ".desktop;"));

    // Asked again, the new default comes first.
    window->activateWindow();
    ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("openWith"), *state));
    awaitChooser();
    EXPECT_EQ(rows().first(), second + " (default)");
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !chooser(); }));
}

TEST_F(OpenWithWindowTest, OtherApplicationListsThemAllAndAnUnhandledTypeStartsThere)
{
    const FilePath unknown = tree.file("data.orwick-nothing", QByteArray("\x00\x01\x02\xff", 4)); // any bytes
    const FilePath text = tree.file("notes.txt", "x");
    open(tree.root());
    select(text);
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("openWith"), *state));
    awaitChooser();
    chooser()->list()->setCurrentRow(chooser()->list()->count() - 1);
    press(Qt::Key_Return);
    EXPECT_EQ(rows(), (QStringList{"Pad", "Viewer", "Writer"})) << "every application, by name";
    EXPECT_TRUE(chooser()->isVisible()) << "the chooser waits for the user to pick one";
    EXPECT_FALSE(waitUntil([&] { return !opened().isEmpty(); }, 1500)) << "nothing was started unasked: " << opened().toStdString();
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !chooser(); }));

    window->activateWindow();
    ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
    select(unknown);
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("openWith"), *state));
    awaitChooser();
    EXPECT_TRUE(chooser()->note().startsWith("No application is set to open")) << chooser()->note().toStdString();
    EXPECT_EQ(rows(), (QStringList{"Pad", "Viewer", "Writer"}));
    press(Qt::Key_Escape);
}

TEST_F(OpenWithWindowTest, AFolderHasNoOpenWith)
{
    tree.folder("Sub");
    open(tree.root());
    select(tree.path("Sub"));
    EXPECT_FALSE(CommandCatalog::find(QStringLiteral("openWith"))->enabledIn(*state));
}

TEST_F(OpenWithWindowTest, GetInfosOpenWithButtonsStartTheApplication)
{
    const FilePath file = tree.file("report.txt", "twelve bytes");
    open(tree.root());
    DiskToolKeys::follow(*state, window.get());
    select(file);
    press(Qt::Key_I, Qt::ControlModifier);
    InfoPanel* panel = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        panel = window->findChild<InfoPanel*>();
        return panel && panel->info().path == file && !panel->rowText(QStringLiteral("Open With")).isEmpty();
    }));
    const QStringList buttons = panel->rowText(QStringLiteral("Open With")).split(QStringLiteral(", "));
    ASSERT_EQ(buttons.size(), 3) << buttons.join(u',').toStdString();
    EXPECT_EQ(buttons.last(), "Other…");
    QPushButton* first = nullptr;
    for (QPushButton* button : panel->findChildren<QPushButton*>())
        if (button->text() == buttons.first())
            first = button;
    ASSERT_TRUE(first);
    first->click();
    ASSERT_TRUE(waitUntil([&] { return !opened().isEmpty(); }, 10000));
    EXPECT_TRUE(opened().endsWith(" " + file.native()));
}

} // namespace
} // namespace orwick::test
