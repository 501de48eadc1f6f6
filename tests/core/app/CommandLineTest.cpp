// Reading the orwick program's arguments.

#include "app/CommandLine.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

CommandLine parsed(const QList<QByteArray>& arguments)
{
    const Result<CommandLine> line = CommandLine::parse(arguments);
    EXPECT_TRUE(line) << (line ? "" : line.error().toStdString());
    return line.value_or(CommandLine{});
}

TEST(CommandLine, ItemsKeepTheirOrderAndBytes)
{
    const CommandLine line = parsed({"a", QByteArray("caf\xe9"), "orwick://open?path=~", "-"});
    EXPECT_EQ(line.action, CommandLine::Action::open);
    EXPECT_FALSE(line.newWindow);
    EXPECT_EQ(line.items, (QList<QByteArray>{"a", QByteArray("caf\xe9"), "orwick://open?path=~", "-"}));
}

TEST(CommandLine, OptionsAnywhereAndNamesAfterTheDoubleDash)
{
    const CommandLine line = parsed({"a", "--new-window", "--", "--help", "-b"});
    EXPECT_TRUE(line.newWindow);
    EXPECT_EQ(line.action, CommandLine::Action::open);
    EXPECT_EQ(line.items, (QList<QByteArray>{"a", "--help", "-b"}));
    EXPECT_EQ(parsed({"x", "--help"}).action, CommandLine::Action::help);
    EXPECT_EQ(parsed({"-h"}).action, CommandLine::Action::help);
    EXPECT_EQ(parsed({"--version"}).action, CommandLine::Action::version);
}

TEST(CommandLine, QtsOwnOptionsAreLeftToQt)
{
    const CommandLine line = parsed({"-platform", "offscreen", "-style", "Fusion", "-reverse", "folder"});
    EXPECT_EQ(line.items, QList<QByteArray>{"folder"});
}

TEST(CommandLine, ShowTakesAListingName)
{
    EXPECT_EQ(parsed({"--show", "trash"}).listing, Listing::of(Listing::Kind::trash));
    EXPECT_EQ(parsed({"--show=tag:Work"}).listing, Listing::tag(QStringLiteral("Work")));
    for (const QList<QByteArray>& wrong : {QList<QByteArray>{"--show"}, QList<QByteArray>{"--show", "nowhere"}}) {
        const Result<CommandLine> line = CommandLine::parse(wrong);
        ASSERT_FALSE(line);
        EXPECT_EQ(line.error(), QStringLiteral("orwick: --show takes trash, recents, screenshots, drives or tag:NAME"));
    }
}

TEST(CommandLine, AnUnknownOptionIsNamed)
{
    const Result<CommandLine> line = CommandLine::parse({"--frobnicate"});
    ASSERT_FALSE(line);
    EXPECT_EQ(line.error(), QStringLiteral("orwick: there is no option “--frobnicate” (orwick --help lists them)"));
}

TEST(CommandLine, AnActivationTokenIsKeptApart)
{
    const CommandLine line = parsed({"docs", "--activation-token=abc_123"});
    EXPECT_EQ(line.activationToken, "abc_123");
    EXPECT_EQ(line.items, QList<QByteArray>{"docs"});
}

TEST(CommandLine, RequestsAreTakenFromTheWorkingFolder)
{
    const CommandLine line = parsed({"docs", "/etc"});
    EXPECT_EQ(line.requests(FilePath::fromNative("/home/u")),
              (OpenRequests{{FilePath::fromNative("/home/u/docs"), false}, {FilePath::fromNative("/etc"), false}}));
}

} // namespace
