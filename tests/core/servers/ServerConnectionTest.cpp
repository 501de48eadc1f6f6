// Connecting through gvfs to servers that can't be logged in to: a closed port, a server that
// never answers, an attempt given up. A private session bus of the test's own; skips where gvfs
// can't run.

#include "servers/ServerConnection.h"
#include "support/LocalServers.h"
#include "support/TestMain.h"

#include <QTcpServer>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

struct Outcome {
    std::optional<FilePath> connected;
    std::optional<QString> failed;
    int passwordRequests = 0;
    bool ended() const { return connected || failed; }
};

void follow(ServerConnection& connection, Outcome& outcome)
{
    QObject::connect(&connection, &ServerConnection::connected, [&outcome](const FilePath& path) { outcome.connected = path; });
    QObject::connect(&connection, &ServerConnection::failed, [&outcome](const QString& message) { outcome.failed = message; });
    QObject::connect(&connection, &ServerConnection::passwordRequested, [&outcome] { ++outcome.passwordRequests; });
}

ServerAddress at(const QString& text) { return ServerAddress::parse(text).value(); }

TEST(ServerConnection, ClosedPortSaysTheServerRefused)
{
    GvfsSession gvfs;
    if (!gvfs.ok())
        GTEST_SKIP() << gvfs.why().toStdString();
    QTcpServer probe;
    ASSERT_TRUE(probe.listen(QHostAddress::LocalHost, 0));
    const int port = probe.serverPort();
    probe.close(); // nothing listens there now

    ServerConnection connection;
    Outcome outcome;
    follow(connection, outcome);
    connection.start(at(QStringLiteral("sftp://nobody@127.0.0.1:%1/").arg(port)));
    ASSERT_TRUE(waitUntil([&outcome] { return outcome.ended(); }, 30000));
    ASSERT_TRUE(outcome.failed);
    EXPECT_EQ(outcome.failed->toStdString(),
              "“127.0.0.1” refused the connection. Check the address and port, and that the server is running.");
    EXPECT_FALSE(connection.isRunning());
}

TEST(ServerConnection, ServerThatNeverAnswersFailsAtTheLimit)
{
    GvfsSession gvfs;
    if (!gvfs.ok())
        GTEST_SKIP() << gvfs.why().toStdString();
    QTcpServer silent; // takes the connection and says nothing, like a hung server
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost, 0));

    ServerConnection connection;
    connection.setAnswerLimit(3000);
    Outcome outcome;
    follow(connection, outcome);
    connection.start(at(QStringLiteral("sftp://nobody@127.0.0.1:%1/").arg(silent.serverPort())));
    ASSERT_TRUE(waitUntil([&outcome] { return outcome.ended(); }, 20000));
    ASSERT_TRUE(outcome.failed);
    EXPECT_EQ(outcome.failed->toStdString(),
              "“127.0.0.1” didn’t answer within 3 seconds. Check the address, and that the server is running and reachable.");
    EXPECT_EQ(outcome.passwordRequests, 0);
    EXPECT_FALSE(connection.isRunning());
}

TEST(ServerConnection, CancelledAttemptEndsQuietly)
{
    GvfsSession gvfs;
    if (!gvfs.ok())
        GTEST_SKIP() << gvfs.why().toStdString();
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost, 0));
    ServerConnection connection;
    Outcome outcome;
    follow(connection, outcome);
    connection.start(at(QStringLiteral("sftp://nobody@127.0.0.1:%1/").arg(silent.serverPort())));
    waitUntil([] { return false; }, 500);
    connection.cancel();
    EXPECT_FALSE(connection.isRunning());
    waitUntil([] { return false; }, 1500);
    EXPECT_FALSE(outcome.ended());
}

} // namespace
} // namespace orwick::test
