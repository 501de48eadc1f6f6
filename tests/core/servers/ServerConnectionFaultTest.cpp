// Logging in to a real sftp server of the test's own (an sshd on 127.0.0.1 with a test user),
// mounting it through gvfs, reading it, a refused password, a server that stops answering while
// a pane shows it, and disconnecting. Needs root for the test user; skips, saying why, elsewhere.

#include "places/Locations.h"
#include "servers/ServerConnection.h"
#include "servers/ServerMounts.h"
#include "state/PaneState.h"
#include "support/LocalServers.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>
#include <unistd.h>

namespace orwick::test {
namespace {

class ServerConnectionFault : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!gvfs.ok())
            GTEST_SKIP() << gvfs.why().toStdString();
        if (!server.ok())
            GTEST_SKIP() << server.why().toStdString();
        QObject::connect(&connection, &ServerConnection::connected, [this](const FilePath& path) { connected = path; });
        QObject::connect(&connection, &ServerConnection::failed, [this](const QString& message) { failed = message; });
        QObject::connect(&connection, &ServerConnection::passwordRequested,
                         [this](const ServerConnection::PasswordRequest& request) { requests.append(request); });
    }

    // Connects with `password` (and the right one when it was refused); true once mounted.
    bool connectWith(const QString& firstPassword)
    {
        connection.start(ServerAddress::parse(server.address()).value());
        if (!waitUntil([this] { return !requests.isEmpty() || failed; }, 30000) || failed)
            return false;
        connection.answerPassword({{}, {}, firstPassword});
        if (firstPassword != server.password()) {
            if (!waitUntil([this] { return requests.size() > 1 || failed; }, 30000) || failed)
                return false;
            connection.answerPassword({{}, {}, server.password()});
        }
        return waitUntil([this] { return connected || failed; }, 30000) && connected;
    }

    GvfsSession gvfs;
    SftpServer server;
    ServerConnection connection;
    std::optional<FilePath> connected;
    std::optional<QString> failed;
    QList<ServerConnection::PasswordRequest> requests;
};

TEST_F(ServerConnectionFault, LogsInWithThePasswordAndShowsTheServersFiles)
{
    const FilePath greeting = server.userHome().child(QStringLiteral("hello.txt"));
    ASSERT_TRUE(test::writeFile(greeting, "hi from the server"));

    ASSERT_TRUE(connectWith(server.password())) << (failed ? failed->toStdString() : "no answer");
    ASSERT_EQ(requests.size(), 1);
    EXPECT_FALSE(requests.first().refused);
    EXPECT_FALSE(requests.first().asksUser) << "the address names the user";
    EXPECT_TRUE(requests.first().message.contains(server.user())) << requests.first().message.toStdString();
    EXPECT_TRUE(ServerMounts::isServerPath(*connected));
    EXPECT_EQ(readAll(connected->child(QByteArrayView(greeting.native().mid(1)))), "hi from the server");

    const QList<MountedServer> mounts = ServerMounts::mounted();
    ASSERT_EQ(mounts.size(), 1);
    EXPECT_EQ(mounts.first().localPath, *connected);
    EXPECT_EQ(mounts.first().address.displayName(), server.user() + QStringLiteral(" on 127.0.0.1"));

    // The sidebar's Locations shows it, ejectable, with its free space.
    Locations locations;
    ASSERT_TRUE(waitUntil([&locations] { return locations.hasRead(); }, 10000));
    const auto row = std::find_if(locations.drives().begin(), locations.drives().end(),
                                  [this](const Place& place) { return place.url == *connected; });
    ASSERT_NE(row, locations.drives().end());
    EXPECT_TRUE(row->isEjectable);
    EXPECT_TRUE(row->trailing.endsWith(QStringLiteral(" free"))) << row->trailing.toStdString();

    std::optional<Status> unmounted;
    ServerMounts::unmount(&connection, *connected, [&unmounted](const Status& done) { unmounted = done; });
    ASSERT_TRUE(waitUntil([&unmounted] { return unmounted.has_value(); }, 20000));
    EXPECT_TRUE(unmounted->has_value()) << unmounted->error().toStdString();
    // gvfs's FUSE folder drops the mount's entry a moment after gio has returned.
    EXPECT_TRUE(waitUntil([] { return ServerMounts::mounted().isEmpty(); }, 5000));
}

TEST_F(ServerConnectionFault, RefusedPasswordIsAskedForAgainAndSaysSo)
{
    ASSERT_TRUE(connectWith(QStringLiteral("not the password"))) << (failed ? failed->toStdString() : "no answer");
    ASSERT_EQ(requests.size(), 2);
    EXPECT_FALSE(requests.first().refused);
    EXPECT_TRUE(requests.last().refused);
}

TEST_F(ServerConnectionFault, PaneOnAServerThatStopsAnsweringSaysSoInTime)
{
    ASSERT_TRUE(connectWith(server.password())) << (failed ? failed->toStdString() : "no answer");
    ViewPreferences preferences;
    PaneState pane(connected->child(QByteArrayView(server.userHome().native().mid(1))), &preferences);
    ASSERT_TRUE(waitUntil([&pane] { return !pane.isLoading(); }, 15000));
    EXPECT_FALSE(pane.error()) << pane.error()->toStdString();

    server.pause();
    QElapsedTimer clock;
    clock.start();
    pane.reload();
    // The GUI thread keeps turning: this loop runs all along, and the load gives up at its limit.
    ASSERT_TRUE(waitUntil([&pane] { return !pane.isLoading(); }, PaneState::kNetworkReadLimitMs + 5000));
    EXPECT_LT(clock.elapsed(), PaneState::kNetworkReadLimitMs + 3000);
    ASSERT_TRUE(pane.error());
    EXPECT_EQ(*pane.error(), emptyText::notAnswering);
    EXPECT_TRUE(pane.items().isEmpty());
    server.resume();
}

TEST_F(ServerConnectionFault, PaneOnAServerThatGoesAwaySaysSo)
{
    ASSERT_TRUE(connectWith(server.password())) << (failed ? failed->toStdString() : "no answer");
    ViewPreferences preferences;
    PaneState pane(connected->child(QByteArrayView(server.userHome().native().mid(1))), &preferences);
    ASSERT_TRUE(waitUntil([&pane] { return !pane.isLoading(); }, 15000));
    ASSERT_FALSE(pane.error());

    server.stop();
    // gvfs notices the closed connection on the next read; the pane says what happened.
    ASSERT_TRUE(waitUntil([&pane] {
        if (!pane.isLoading() && !pane.error())
            pane.reload();
        return pane.error().has_value();
    }, PaneState::kNetworkReadLimitMs + 10000));
    EXPECT_EQ(pane.error()->toStdString(), emptyText::serverGone.toStdString());
    EXPECT_TRUE(pane.items().isEmpty());
}

} // namespace
} // namespace orwick::test
