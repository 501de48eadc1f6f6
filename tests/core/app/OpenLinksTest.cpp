// Reading orwick:// links and the program's arguments into open requests.

#include "app/OpenRouter.h"
#include "platform/XdgPaths.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

std::optional<OpenRequest> link(const char* url) { return OpenRouter::parseLink(QString::fromUtf8(url)); }
FilePath home(const char* relative) { return xdg::home().child(QByteArrayView(relative)); }

TEST(OpenLinks, TildeIsTheHomeFolder)
{
    const auto request = link("orwick://open?path=~/Documents");
    ASSERT_TRUE(request);
    EXPECT_EQ(request->path, home("Documents"));
    EXPECT_FALSE(request->reveal);
    EXPECT_EQ(link("orwick://open?path=~")->path, xdg::home());
}

TEST(OpenLinks, RevealsOnlyWhenRevealIsExactlyOne)
{
    EXPECT_TRUE(link("orwick://open?path=/tmp/a.txt&reveal=1")->reveal);
    EXPECT_TRUE(link("orwick://open?reveal=1&path=/tmp/a.txt")->reveal);
    for (const char* url : {"orwick://open?path=/tmp/a.txt&reveal=true", "orwick://open?path=/tmp/a.txt&reveal=01",
                            "orwick://open?path=/tmp/a.txt&reveal=", "orwick://open?path=/tmp/a.txt&reveal",
                            "orwick://open?path=/tmp/a.txt", "orwick://open?path=/tmp/a.txt&reveal=yes"}) {
        const auto request = link(url);
        ASSERT_TRUE(request) << url;
        EXPECT_FALSE(request->reveal) << url;
        EXPECT_EQ(request->path, FilePath::fromNative("/tmp/a.txt")) << url;
    }
    // The first "reveal" item decides, like the first "path".
    EXPECT_FALSE(link("orwick://open?path=/a&reveal=0&reveal=1")->reveal);
    EXPECT_EQ(link("orwick://open?path=/first&path=/second")->path, FilePath::fromNative("/first"));
    EXPECT_EQ(link("orwick://open?x=1&&path=/a")->path, FilePath::fromNative("/a"));
}

TEST(OpenLinks, ALinkWithoutAPathOrWithANulInItDoesNothing)
{
    for (const char* url : {"orwick://open", "orwick://open?", "orwick://open?reveal=1", "orwick://open?path=",
                            "orwick://open?paths=/tmp", "orwick://open#path=/tmp", "orwick://open?Path=/tmp",
                            "orwick://open?path=/tmp/a%00b"})
        EXPECT_FALSE(link(url)) << url;
}

TEST(OpenLinks, OnlyTheOpenPlaceOfTheOrwickScheme)
{
    for (const char* url : {"http://open?path=/tmp", "orwick://close?path=/tmp", "orwick:open?path=/tmp",
                            "orwick:/open?path=/tmp", "orwick://open/elsewhere?path=/tmp", "orwickx://open?path=/tmp",
                            "file:///tmp", "/tmp", ""})
        EXPECT_FALSE(link(url)) << url;
    EXPECT_EQ(link("ORWICK://Open?path=/tmp")->path, FilePath::fromNative("/tmp"));
    EXPECT_EQ(link("orwick://open/?path=/tmp")->path, FilePath::fromNative("/tmp"));
    EXPECT_EQ(link("orwick://open?path=/tmp#top")->path, FilePath::fromNative("/tmp"));
}

TEST(OpenLinks, PercentEncodedBytesStayBytes)
{
    EXPECT_EQ(link("orwick://open?path=/tmp/caf%C3%A9")->path.native(), QByteArray("/tmp/caf\xc3\xa9"));
    EXPECT_EQ(link("orwick://open?path=/tmp/%FF%FEname")->path.native(), QByteArray("/tmp/\xff\xfename"));
    EXPECT_EQ(link("orwick://open?path=/a%20b%26c%3D%23")->path.native(), QByteArray("/a b&c=#"));
    EXPECT_EQ(link("orwick://open?path=/a+b")->path.native(), QByteArray("/a+b")) << "a plus is a plus, not a space";
    // Unencoded text is taken as UTF-8.
    EXPECT_EQ(link("orwick://open?path=/tmp/ünï")->path.native(), QByteArray("/tmp/\xc3\xbcn\xc3\xaf"));
    // Raw bytes that are not UTF-8 (a link passed on the command line) are kept too.
    EXPECT_EQ(OpenRouter::parseLink(QByteArrayView("orwick://open?path=/tmp/\xff"))->path.native(), QByteArray("/tmp/\xff"));
}

TEST(OpenLinks, ARelativePathIsTakenFromTheBase)
{
    EXPECT_EQ(link("orwick://open?path=Documents")->path, home("Documents"));
    const FilePath base = FilePath::fromNative("/srv/data");
    EXPECT_EQ(OpenRouter::parseLink(QStringLiteral("orwick://open?path=../logs"), base)->path, FilePath::fromNative("/srv/logs"));
}

TEST(OpenArguments, PathsAreTakenFromTheWorkingFolderAndNamesThatAreNotUtf8KeptAsBytes)
{
    const FilePath cwd = FilePath::fromNative("/srv/data");
    const OpenRequests requests = OpenRouter::requestsFromArguments(
        QList<QByteArray>{"a.txt", "/etc", "sub/../b", "~name", "./c d", "caf\xe9", "/tmp/\xff\xfe"}, cwd);
    const OpenRequests expected{{FilePath::fromNative("/srv/data/a.txt"), false},
                                {FilePath::fromNative("/etc"), false},
                                {FilePath::fromNative("/srv/data/b"), false},
                                {FilePath::fromNative("/srv/data/~name"), false},
                                {FilePath::fromNative("/srv/data/c d"), false},
                                {FilePath::fromNative("/srv/data/caf\xe9"), false},
                                {FilePath::fromNative("/tmp/\xff\xfe"), false}};
    EXPECT_EQ(requests, expected);
}

TEST(OpenArguments, FileUrlsAndLinksMixInOrder)
{
    const FilePath cwd = FilePath::fromNative("/srv");
    const OpenRequests requests = OpenRouter::requestsFromArguments(
        QList<QByteArray>{"file:///tmp/caf%C3%A9%20x", "orwick://open?path=docs&reveal=1", "orwick://open", "file:///tmp/%FF",
                          "FILE:///var"},
        cwd);
    const OpenRequests expected{{FilePath::fromNative("/tmp/caf\xc3\xa9 x"), false},
                                {FilePath::fromNative("/srv/docs"), true},
                                {FilePath::fromNative("/tmp/\xff"), false},
                                {FilePath::fromNative("/var"), false}};
    EXPECT_EQ(requests, expected);
}

TEST(OpenArguments, EmptyArgumentsAreLeftOut)
{
    EXPECT_TRUE(OpenRouter::requestsFromArguments(QList<QByteArray>{"", "orwick://open?reveal=1"}, FilePath::fromNative("/")).isEmpty());
    EXPECT_EQ(OpenRouter::requestsFromArguments(QStringList{QStringLiteral("x")}, FilePath::fromNative("/a")),
              (OpenRequests{{FilePath::fromNative("/a/x"), false}}));
}

} // namespace
