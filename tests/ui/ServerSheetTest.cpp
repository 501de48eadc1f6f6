// "Connect to Server…" in a real window: the sheet opens by its key, says what is wrong with an
// address without losing it, offers the recent servers, and closes with Esc. And Empty Trash…:
// it asks first, with what it frees, and deletes only once answered.

#include "WindowFixture.h"

#include "commands/CommandCatalog.h"
#include "places/SidebarStore.h"
#include "platform/XdgPaths.h"
#include "servers/ServerMounts.h"
#include "support/LocalServers.h"
#include "ui/servers/ServerSheet.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>

namespace orwick::test {
namespace {

using ServerSheetTest = WindowTest;

ServerSheet* shownSheet(QWidget* window)
{
    ServerSheet* sheet = nullptr;
    // Shown, with the keyboard in the address field.
    waitUntil([&] { return (sheet = window->findChild<ServerSheet*>()) && sheet->isVisible()
                           && QApplication::focusWidget() == sheet->addressField(); });
    return sheet && QApplication::focusWidget() == sheet->addressField() ? sheet : nullptr;
}

TEST_F(ServerSheetTest, OpensByItsKeyAndSaysWhatIsWrongWithAnAddress)
{
    open(tree.root());
    press(Qt::Key_K, Qt::ControlModifier | Qt::MetaModifier);
    ServerSheet* sheet = shownSheet(window.get());
    ASSERT_TRUE(sheet) << "Ctrl+Meta+K opens the sheet, ready to type";
    type(QStringLiteral("nas.local/share"));
    press(Qt::Key_Return);
    EXPECT_EQ(sheet->statusLabel()->text(), QStringLiteral("Start the address with sftp://, smb://, dav://, davs:// or ftp://."));
    EXPECT_TRUE(sheet->isVisible()) << "a wrong address keeps the sheet open";
    EXPECT_EQ(sheet->addressField()->text(), QStringLiteral("nas.local/share")) << "and what was typed";
    EXPECT_FALSE(sheet->connection()->isRunning());
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return !window->findChild<ServerSheet*>(); }));
}

TEST_F(ServerSheetTest, OffersRecentServersNewestFirst)
{
    SidebarStore::shared().rememberServer(QStringLiteral("smb://nas/docs"));
    SidebarStore::shared().rememberServer(QStringLiteral("sftp://ann@web.example/srv"));
    open(tree.root());
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("connectToServer"), *state));
    ServerSheet* sheet = shownSheet(window.get());
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->addressField()->text(), QStringLiteral("sftp://ann@web.example/srv"));
    ASSERT_EQ(sheet->recentList()->count(), 2);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(sheet->addressField()->text(), QStringLiteral("smb://nas/docs"));
    press(Qt::Key_Delete);
    EXPECT_EQ(SidebarStore::shared().recentServers(), QStringList{QStringLiteral("sftp://ann@web.example/srv")});
    press(Qt::Key_Escape);
    SidebarStore::shared().forgetServer(QStringLiteral("sftp://ann@web.example/srv"));
}

TEST_F(ServerSheetTest, EmptyTrashAsksWithWhatItFreesAndDeletesOnlyWhenAnswered)
{
    // The temporary home's Trash is the process's: tests run before this one in the same
    // program may have left items there.
    QDir(xdg::homeTrash().text()).removeRecursively();
    const FilePath item = tree.file("old draft.txt", QByteArray(1500, 'x'));
    open(tree.root());
    ops().trash({item}, QStringLiteral("Move to Trash"), state->undoStack(), false);
    settle();
    const FilePath inTrash = xdg::homeTrash().child(QStringLiteral("files/old draft.txt"));
    ASSERT_TRUE(exists(inTrash));

    press(Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier);
    QMessageBox* box = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (box = window->findChild<QMessageBox*>(QStringLiteral("emptyTrashQuestion"))) && box->isVisible(); }));
    EXPECT_TRUE(box->informativeText().startsWith(QStringLiteral("1 item"))) << box->informativeText().toStdString();
    EXPECT_TRUE(box->informativeText().contains(QStringLiteral("This frees"))) << box->informativeText().toStdString();
    EXPECT_TRUE(exists(inTrash)) << "nothing is deleted before the answer";
    // Return is Cancel: what can't be undone takes a deliberate choice.
    EXPECT_EQ(static_cast<QAbstractButton*>(box->defaultButton()), box->button(QMessageBox::Cancel));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(box, &enter);
    ASSERT_TRUE(waitUntil([&] { return !window->findChild<QMessageBox*>(QStringLiteral("emptyTrashQuestion")); }));
    settle();
    EXPECT_TRUE(exists(inTrash)) << "Return kept the Trash";

    press(Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(waitUntil([&] { return (box = window->findChild<QMessageBox*>(QStringLiteral("emptyTrashQuestion"))) && box->isVisible(); }));
    for (QAbstractButton* button : box->buttons())
        if (button->text() == QStringLiteral("Empty Trash"))
            button->click();
    settle();
    EXPECT_FALSE(exists(inTrash));
    EXPECT_EQ(toast(), QStringLiteral("Emptied the Trash"));
}

// A real sftp server of the test's own, through gvfs, by keys alone. Needs root (see SftpServer).
using ServerSheetFault = WindowTest;

TEST_F(ServerSheetFault, ConnectsByKeysAskingForThePasswordInTheSheet)
{
    GvfsSession gvfs;
    if (!gvfs.ok())
        GTEST_SKIP() << gvfs.why().toStdString();
    SftpServer server;
    if (!server.ok())
        GTEST_SKIP() << server.why().toStdString();
    open(tree.root());
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("connectToServer"), *state));
    ServerSheet* sheet = shownSheet(window.get());
    ASSERT_TRUE(sheet);
    sheet->addressField()->clear();
    type(server.address());
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return QApplication::focusWidget() == sheet->passwordField(); }, 30000))
        << sheet->statusLabel()->text().toStdString();
    type(QStringLiteral("wrong"));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return sheet->statusLabel()->text().contains(QStringLiteral("refused")); }, 30000));
    EXPECT_TRUE(sheet->passwordField()->text().isEmpty()) << "a password given is not kept in the field";
    type(server.password());
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !window->findChild<ServerSheet*>(); }, 30000)) << "the sheet closes once connected";
    EXPECT_TRUE(ServerMounts::isServerPath(pane()->url())) << pane()->url().text().toStdString();
    EXPECT_EQ(toast(), QStringLiteral("Connected to “%1 on 127.0.0.1”").arg(server.user()));
    EXPECT_EQ(SidebarStore::shared().recentServers().value(0), ServerAddress::parse(server.address())->toString());
    SidebarStore::shared().forgetServer(server.address());
    pane()->navigate(tree.root()); // off the server before it goes
}

} // namespace
} // namespace orwick::test
