// The Orwick Guide and the welcome sheet in a real window: Ctrl+? opens the guide at its first
// topic with the keyboard in the topic list, Down turns to the next article, Tab reaches the
// article, Esc closes and gives the keyboard back to the pane; a topic's command opens the guide
// at its article. The welcome sheet shows the catalogue's keys and the workspace hint, its button
// hands over to the guide, and a window on its own never welcomes.

#include "WindowFixture.h"

#include "commands/CommandCatalog.h"
#include "help/GuideTopics.h"
#include "ui/panels/GuideSheet.h"
#include "ui/panels/WelcomeSheet.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTextBrowser>

namespace orwick::test {
namespace {

struct GuideSheetTest : WindowTest {
    GuideSheet* guideSheet()
    {
        for (GuideSheet* sheet : window->findChildren<GuideSheet*>())
            if (sheet->isVisible())
                return sheet;
        return nullptr;
    }
    WelcomeSheet* welcomeSheet()
    {
        for (WelcomeSheet* sheet : window->findChildren<WelcomeSheet*>())
            if (sheet->isVisible())
                return sheet;
        return nullptr;
    }
    QString articleText() { return guideSheet()->article()->toPlainText(); }
};

TEST_F(GuideSheetTest, CtrlQuestionMarkOpensTheGuideDownTurnsTheTopicAndEscCloses)
{
    open(tree.root());
    QWidget* paneFocus = QApplication::focusWidget();
    // The window system hands Ctrl+Shift+/ over as Ctrl+?.
    press(Qt::Key_Question, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return guideSheet() != nullptr; }));
    const QList<GuideTopic>& topics = guide::topics();
    EXPECT_EQ(state->learnArticle(), topics[0].id);
    EXPECT_EQ(QApplication::focusWidget(), guideSheet()->topicList());
    EXPECT_EQ(guideSheet()->topicList()->currentRow(), 0);
    EXPECT_TRUE(articleText().startsWith(topics[0].title)) << articleText().left(80).toStdString();
    EXPECT_TRUE(articleText().contains("Ctrl+K"));

    press(Qt::Key_Down);
    EXPECT_EQ(state->learnArticle(), topics[1].id);
    EXPECT_EQ(guideSheet()->shownTopic(), topics[1].id);
    EXPECT_TRUE(articleText().startsWith(topics[1].title)) << articleText().left(80).toStdString();

    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), guideSheet()->article()) << "Tab moves into the article";
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), guideSheet()->topicList());

    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return guideSheet() == nullptr; }));
    EXPECT_FALSE(state->learnArticle().has_value());
    EXPECT_EQ(QApplication::focusWidget(), paneFocus) << "the keyboard goes back to the pane";

    // Opened again, the guide shows the article read last.
    press(Qt::Key_Question, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return guideSheet() != nullptr; }));
    EXPECT_EQ(guideSheet()->topicList()->currentRow(), 1);
}

TEST_F(GuideSheetTest, ATopicsCommandOpensTheGuideAtItsArticleAndTurnsAnOpenOne)
{
    open(tree.root());
    ASSERT_TRUE(CommandCatalog::run("learn.terminal", *state));
    ASSERT_TRUE(waitUntil([&] { return guideSheet() != nullptr; }));
    EXPECT_TRUE(articleText().startsWith("The Terminal"));
    GuideSheet* first = guideSheet();
    ASSERT_TRUE(CommandCatalog::run("learn.pictures", *state));
    EXPECT_EQ(guideSheet(), first) << "one guide, turned to the article";
    EXPECT_TRUE(articleText().startsWith("Pictures"));
    EXPECT_EQ(first->topicList()->currentItem()->text(), "Pictures");
}

TEST_F(GuideSheetTest, AWindowOnItsOwnNeverWelcomes)
{
    open(tree.root());
    QApplication::processEvents();
    EXPECT_EQ(welcomeSheet(), nullptr);
    EXPECT_FALSE(state->isWelcoming());
}

TEST_F(GuideSheetTest, TheWelcomeShowsTheCataloguesKeysAndHandsOverToTheGuide)
{
    open(tree.root());
    ASSERT_TRUE(CommandCatalog::run("welcome", *state));
    ASSERT_TRUE(waitUntil([&] { return welcomeSheet() != nullptr; }));
    QStringList texts;
    for (const QLabel* label : welcomeSheet()->findChildren<QLabel*>())
        texts.append(label->text());
    for (const QString& id : WelcomeSheet::keyCommands()) {
        const AppCommand* command = CommandCatalog::find(id);
        ASSERT_NE(command, nullptr) << id.toStdString();
        EXPECT_TRUE(texts.contains(command->shortcutText())) << id.toStdString();
        EXPECT_TRUE(texts.contains(command->title)) << id.toStdString();
    }
    EXPECT_TRUE(texts.contains("Ctrl+K"));
    EXPECT_TRUE(texts.contains("Ctrl+?"));
    EXPECT_TRUE(texts.contains("Open one from the palette (Ctrl+K, then “Workspace”). Save the window's tabs with “Save Workspace…”."));
    EXPECT_EQ(QApplication::focusWidget(), welcomeSheet()->guideButton());

    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return guideSheet() != nullptr && welcomeSheet() == nullptr; }));
    EXPECT_FALSE(state->isWelcoming());
    EXPECT_EQ(state->learnArticle(), guide::topics().first().id);
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return guideSheet() == nullptr; }));
}

TEST_F(GuideSheetTest, EscClosesTheWelcome)
{
    open(tree.root());
    state->setWelcoming(true);
    ASSERT_TRUE(waitUntil([&] { return welcomeSheet() != nullptr; }));
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return welcomeSheet() == nullptr; }));
    EXPECT_FALSE(state->isWelcoming());
}

// At a first start the welcome comes before the window is active, when nothing has the keyboard
// yet: closing it still gives the keyboard to the pane, so Down moves in the list at once.
TEST_F(GuideSheetTest, EscOnTheFirstStartWelcomeGivesTheKeyboardToThePane)
{
    tree.file("a.txt", "a");
    state = std::make_unique<WindowState>(tree.root(), &preferences);
    window = std::make_unique<MainWindow>(state.get());
    state->setWelcoming(true);
    window->show();
    window->activateWindow();
    ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get() && welcomeSheet() != nullptr; }));
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading(); }));
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return welcomeSheet() == nullptr; }));
    QApplication::processEvents();
    QWidget* paneWidget = window->activePaneWidget();
    EXPECT_TRUE(paneWidget->isAncestorOf(QApplication::focusWidget()))
        << "the keyboard is in " << (QApplication::focusWidget() ? QApplication::focusWidget()->metaObject()->className() : "nothing");
}

} // namespace
} // namespace orwick::test
