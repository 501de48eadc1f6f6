// One Orwick per user and display: hand-overs through a real local socket, a socket left by an
// Orwick that ended, and what is left alone.

#include "app/SingleInstance.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <future>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>

using namespace orwick;
using test::waitUntil;

namespace {

using Request = SingleInstance::Request;
using HandOverResult = Result<SingleInstance::HandOver>;

// Hands over on another thread while this one runs the event loop the listener needs.
HandOverResult handOverWhileServing(const FilePath& socket, const Request& request, int timeoutMs = 2000)
{
    auto result = std::async(std::launch::async, [=] { return SingleInstance::handOver(socket, request, timeoutMs); });
    EXPECT_TRUE(waitUntil([&] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, timeoutMs + 3000));
    return result.get();
}

// A socket file nothing listens on, as an Orwick that was killed leaves it.
void leaveDeadSocket(const FilePath& path)
{
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    strcpy(address.sun_path, path.c_str());
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(fd);
}

struct SingleInstanceFixture : ::testing::Test {
    test::TempTree tree;
    FilePath socket = tree.path("orwick-test.socket");
    Request request{FilePath::fromNative("/srv/work"), {"a.txt", QByteArray("caf\xe9"), "", "orwick://open?path=~&reveal=1"}};
};

TEST(SingleInstanceWire, ARequestReadsBackAsSent)
{
    const Request request{FilePath::fromNative("/home/u"), {"x", "", QByteArray("\xff\xfe"), "--new-window"}};
    EXPECT_EQ(SingleInstance::decode(SingleInstance::encode(request)), request);
    const Request none{FilePath::fromNative("/"), {}};
    EXPECT_EQ(SingleInstance::decode(SingleInstance::encode(none)), none);
}

TEST(SingleInstanceWire, AnythingElseIsRefused)
{
    const QByteArray good = SingleInstance::encode({FilePath::fromNative("/a"), {"b"}});
    EXPECT_FALSE(SingleInstance::decode(good.left(good.size() - 1))) << "shorter than it says";
    EXPECT_FALSE(SingleInstance::decode(good + "x")) << "longer than it says";
    EXPECT_FALSE(SingleInstance::decode(QByteArray("\0\0\0\x09other1\0/a", 13)));
    EXPECT_FALSE(SingleInstance::decode(QByteArray("\0\0\0\x0aorwick1\0a/", 14))) << "a relative working folder";
    EXPECT_FALSE(SingleInstance::decode(QByteArray("\xff\xff\xff\xff", 4)));
    EXPECT_FALSE(SingleInstance::decode(QByteArray()));
}

TEST(SingleInstancePath, LivesInTheRuntimeFolderNamedForTheDisplay)
{
    qputenv("DISPLAY", ":7");
    qunsetenv("WAYLAND_DISPLAY");
    const Result<FilePath> path = SingleInstance::socketPath();
    ASSERT_TRUE(path) << path.error().toStdString();
    EXPECT_EQ(*path, test::tempHome().child(QByteArrayView("runtime/orwick-:7.socket")));
    qputenv("WAYLAND_DISPLAY", "wayland-1");
    EXPECT_EQ(*SingleInstance::socketPath(), test::tempHome().child(QByteArrayView("runtime/orwick-wayland-1.socket")));
    qunsetenv("WAYLAND_DISPLAY");
}

TEST(SingleInstancePath, WithoutARuntimeFolderAPrivateFolderInTmp)
{
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("XDG_RUNTIME_DIR");
    const Result<FilePath> path = SingleInstance::socketPath();
    qputenv("XDG_RUNTIME_DIR", runtime);
    ASSERT_TRUE(path) << path.error().toStdString();
    const FilePath folder = FilePath::fromNative("/tmp/orwick-" + QByteArray::number(getuid()));
    EXPECT_EQ(path->parent(), folder);
    struct stat st {};
    ASSERT_EQ(lstat(folder.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0700u);
}

TEST_F(SingleInstanceFixture, NothingThereMeansNoneRunning)
{
    const HandOverResult result = SingleInstance::handOver(socket, request);
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, SingleInstance::HandOver::noneRunning);
}

TEST_F(SingleInstanceFixture, TheRunningOneReceivesTheArgumentsAndWorkingFolder)
{
    SingleInstance first;
    ASSERT_TRUE(first.listen(socket));
    QList<Request> received;
    QObject::connect(&first, &SingleInstance::received, [&](const Request& r) { received.append(r); });
    const HandOverResult result = handOverWhileServing(socket, request);
    ASSERT_TRUE(result) << result.error().toStdString();
    EXPECT_EQ(*result, SingleInstance::HandOver::done);
    ASSERT_TRUE(waitUntil([&] { return !received.isEmpty(); }));
    EXPECT_EQ(received, QList<Request>{request});
    // And again: the listener stays.
    EXPECT_TRUE(handOverWhileServing(socket, {FilePath::fromNative("/"), {}}));
    EXPECT_TRUE(waitUntil([&] { return received.size() == 2; }));
}

TEST_F(SingleInstanceFixture, ASocketLeftByAnOrwickThatEndedIsReplaced)
{
    leaveDeadSocket(socket);
    const HandOverResult result = SingleInstance::handOver(socket, request);
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, SingleInstance::HandOver::noneRunning);
    SingleInstance first;
    const Status listening = first.listen(socket);
    ASSERT_TRUE(listening) << listening.error().toStdString();
    EXPECT_EQ(*handOverWhileServing(socket, request), SingleInstance::HandOver::done);
}

TEST_F(SingleInstanceFixture, TheSocketGoesWithItsOrwick)
{
    {
        SingleInstance first;
        ASSERT_TRUE(first.listen(socket));
        EXPECT_TRUE(test::exists(socket));
    }
    EXPECT_FALSE(test::exists(socket));
}

TEST_F(SingleInstanceFixture, AFileInTheWayIsLeftAloneAndSaysWhy)
{
    const FilePath file = tree.file("orwick-test.socket", "mine");
    SingleInstance first;
    const Status listening = first.listen(file);
    ASSERT_FALSE(listening);
    EXPECT_EQ(listening.error(), QStringLiteral("“") + file.text() + QStringLiteral("” is in the way and isn't Orwick's socket"));
    EXPECT_EQ(test::readAll(file), "mine");
    EXPECT_FALSE(first.isListening());
    // A later start finds nothing to hand over to.
    EXPECT_EQ(*SingleInstance::handOver(file, request), SingleInstance::HandOver::noneRunning);
}

TEST_F(SingleInstanceFixture, AStuckOrwickDoesNotHangTheNextStart)
{
    // Listening, but never reading: the kernel accepts the connection, nobody answers.
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    strcpy(address.sun_path, this->socket.c_str());
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(fd, 4), 0);
    QElapsedTimer timer;
    timer.start();
    const HandOverResult result = SingleInstance::handOver(this->socket, request, 300);
    EXPECT_LT(timer.elapsed(), 2000);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), QStringLiteral("the running Orwick didn't answer within 0.3 seconds"));
    // Alive, so it is not replaced either.
    SingleInstance second;
    EXPECT_FALSE(second.listen(this->socket));
    close(fd);
}

TEST_F(SingleInstanceFixture, ASocketOfAnotherUserIsLeftAloneFault)
{
    if (getuid() != 0)
        GTEST_SKIP() << "needs root to give the socket to another user";
    leaveDeadSocket(socket);
    ASSERT_EQ(lchown(socket.c_str(), 65534, 65534), 0);
    const HandOverResult handed = SingleInstance::handOver(socket, request);
    ASSERT_FALSE(handed) << "a request goes to no one else's Orwick";
    EXPECT_EQ(handed.error(), QStringLiteral("“") + socket.text() + QStringLiteral("” belongs to another user"));
    SingleInstance first;
    const Status listening = first.listen(socket);
    ASSERT_FALSE(listening);
    EXPECT_EQ(listening.error(), QStringLiteral("“") + socket.text() + QStringLiteral("” belongs to another user"));
    EXPECT_TRUE(test::exists(socket));
}

} // namespace
