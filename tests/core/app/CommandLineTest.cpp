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

TEST(CommandLine, ItemsKeepTheirOrderAndBytesAmongTheOptions)
{
    using Action = CommandLine::Action;
    const struct {
        QList<QByteArray> arguments, items;
        Action action;
        bool newWindow;
    } rows[] = {
        {{"a", QByteArray("caf\xe9"), "orwick://open?path=~", "-"}, {"a", QByteArray("caf\xe9"), "orwick://open?path=~", "-"},
         Action::open, false},
        // Options anywhere, names after the double dash.
        {{"a", "--new-window", "--", "--help", "-b"}, {"a", "--help", "-b"}, Action::open, true},
        // Qt's own options are left to Qt.
        {{"-platform", "offscreen", "-style", "Fusion", "-reverse", "folder"}, {"folder"}, Action::open, false},
        {{"docs", "--activation-token=abc_123"}, {"docs"}, Action::open, false},
        {{"x", "--help"}, {"x"}, Action::help, false},
        {{"-h"}, {}, Action::help, false},
        {{"--version"}, {}, Action::version, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.arguments.join(' ').toStdString());
        const CommandLine line = parsed(row.arguments);
        EXPECT_EQ(line.items, row.items);
        EXPECT_EQ(line.action, row.action);
        EXPECT_EQ(line.newWindow, row.newWindow);
    }
    EXPECT_EQ(parsed({"docs", "--activation-token=abc_123"}).activationToken, "abc_123");
    EXPECT_EQ(parsed({"--show", "trash"}).listing, Listing::of(Listing::Kind::trash));
    EXPECT_EQ(parsed({"--show=tag:Work"}).listing, Listing::tag(QStringLiteral("Work")));
}

TEST(CommandLine, AWrongOptionIsNamed)
{
    const QString show = QStringLiteral("orwick: --show takes trash, recents, screenshots, drives or tag:NAME");
    for (const auto& [arguments, message] :
         {std::pair(QList<QByteArray>{"--show"}, show), std::pair(QList<QByteArray>{"--show", "nowhere"}, show),
          std::pair(QList<QByteArray>{"--frobnicate"}, QStringLiteral("orwick: there is no option “--frobnicate” (orwick --help lists them)"))}) {
        const Result<CommandLine> line = CommandLine::parse(arguments);
        ASSERT_FALSE(line);
        EXPECT_EQ(line.error(), message);
    }
}

TEST(CommandLine, RequestsAreTakenFromTheWorkingFolder)
{
    const CommandLine line = parsed({"docs", "/etc"});
    EXPECT_EQ(line.requests(FilePath::fromNative("/home/u")),
              (OpenRequests{{FilePath::fromNative("/home/u/docs"), false}, {FilePath::fromNative("/etc"), false}}));
}

} // namespace
