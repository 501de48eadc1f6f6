// The learn family: one command per topic of the Orwick Guide, last in the catalogue, each
// opening the guide at its article; "Orwick Guide" opens it at the first topic, then at the
// article read last; "Welcome to Orwick" shows the welcome sheet.

#include "commands/CommandCatalog.h"
#include "commands/CommandGroups.h"
#include "help/GuideTopics.h"
#include "support/HeadlessWindow.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {
struct LearnCommandsTest : test::HeadlessWindowTest {
    void SetUp() override { openWindow(tree.root()); }
};
} // namespace

TEST_F(LearnCommandsTest, OneCommandPerTopicInTheGuidesOrderLastInTheCatalogue)
{
    const QList<AppCommand> all = CommandCatalog::all(*window);
    const QList<GuideTopic>& topics = guide::topics();
    ASSERT_GE(all.size(), topics.size());
    const QStringList expectedTitles{"Getting Around", "Copying and Moving", "Search and Filter", "Notes and Properties",
                                     "Reviewing Git Changes", "Disk Tools", "The Terminal", "Pictures"};
    QStringList titles;
    for (qsizetype i = 0; i < topics.size(); ++i) {
        const AppCommand& command = all[all.size() - topics.size() + i];
        EXPECT_EQ(command.id, "learn." + topics[i].id);
        EXPECT_EQ(command.symbol, "graduationcap");
        EXPECT_TRUE(command.shortcut.isEmpty());
        EXPECT_TRUE(command.enabledIn(*window));
        titles.append(command.title);
        const AppCommand* found = CommandCatalog::find(command.id);
        ASSERT_NE(found, nullptr) << command.id.toStdString();
        EXPECT_EQ(found->title, command.title);
    }
    EXPECT_EQ(titles, expectedTitles);
    EXPECT_EQ(CommandCatalog::find("learn.noSuchTopic"), nullptr);
}

TEST_F(LearnCommandsTest, ATopicsCommandOpensTheGuideAtItsArticle)
{
    EXPECT_FALSE(window->learnArticle().has_value());
    ASSERT_TRUE(CommandCatalog::run("learn.diskTools", *window));
    EXPECT_EQ(window->learnArticle(), QString("diskTools"));
}

TEST_F(LearnCommandsTest, TheGuideOpensAtTheFirstTopicThenAtTheArticleReadLast)
{
    const AppCommand* guideCommand = CommandCatalog::find("guide");
    ASSERT_NE(guideCommand, nullptr);
    EXPECT_EQ(guideCommand->title, "Orwick Guide");
    EXPECT_EQ(guideCommand->symbol, "graduationcap");
    ASSERT_TRUE(CommandCatalog::run(*guideCommand, *window));
    EXPECT_EQ(window->learnArticle(), QString("gettingAround"));
    window->setLearnArticle(QString("pictures")); // the reader turns to another topic
    window->setLearnArticle(std::nullopt);        // and closes the guide
    ASSERT_TRUE(CommandCatalog::run(*guideCommand, *window));
    EXPECT_EQ(window->learnArticle(), QString("pictures"));
}

TEST_F(LearnCommandsTest, CtrlQuestionMarkOpensTheGuideAndF1TheKeyboardShortcuts)
{
    const QKeySequence ctrlQuestion(Qt::CTRL | Qt::Key_Question);
    EXPECT_EQ(CommandCatalog::find("guide")->shortcut, ctrlQuestion);
    const AppCommand* shortcuts = CommandCatalog::find("keyboardShortcuts");
    EXPECT_EQ(shortcuts->shortcut, QKeySequence(Qt::Key_F1));
    EXPECT_FALSE(shortcuts->otherShortcuts.contains(ctrlQuestion)) << "one key, one command";
}

TEST_F(LearnCommandsTest, WelcomeShowsTheWelcomeSheet)
{
    const AppCommand* welcome = CommandCatalog::find("welcome");
    ASSERT_NE(welcome, nullptr);
    EXPECT_EQ(welcome->title, "Welcome to Orwick");
    EXPECT_EQ(welcome->symbol, "hand.wave");
    EXPECT_FALSE(window->isWelcoming());
    ASSERT_TRUE(CommandCatalog::run(*welcome, *window));
    EXPECT_TRUE(window->isWelcoming());
}

TEST_F(LearnCommandsTest, TheHelpMenuListsTheGuideAndItsTopics)
{
    QStringList titles;
    const QList<QList<AppCommand>> groups = CommandGroups::grouped(CommandCatalog::all(*window), &titles);
    const qsizetype help = titles.indexOf("Help");
    ASSERT_GE(help, 0);
    QStringList ids;
    for (const AppCommand& command : groups[help])
        ids.append(command.id);
    EXPECT_EQ(ids.mid(0, 4), (QStringList{"keyboardShortcuts", "guide", "welcome", "about"}));
    EXPECT_TRUE(ids.contains("learn.gettingAround"));
    EXPECT_TRUE(ids.contains("learn.pictures"));
}
