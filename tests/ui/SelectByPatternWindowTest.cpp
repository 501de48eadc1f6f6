// Select by Pattern and Deselect by Pattern in a real window, by keyboard only: Ctrl++ (and the
// keypad's +) asks for a pattern, Return marks the matching items, a pattern that takes nothing
// says so and stays, Esc leaves the selection alone; Ctrl+Shift+- (and the keypad's −) deselects.

#include "WindowFixture.h"

#include "ui/window/NamePatternPrompt.h"

#include <QLineEdit>

namespace orwick::test {
namespace {

struct SelectByPatternTest : WindowTest {
    void SetUp() override
    {
        for (const char* name : {"a.txt", "b.txt", "c.md", "R&D notes.txt"})
            tree.file(name);
    }
    NamePatternPrompt* prompt() { return window->findChild<NamePatternPrompt*>(); }
    void awaitPrompt()
    {
        ASSERT_TRUE(waitUntil([&] { return prompt() && prompt()->isVisible() && QApplication::focusWidget() == prompt()->patternField(); }));
    }
    void awaitPromptGone()
    {
        ASSERT_TRUE(waitUntil([&] { return !prompt() || !prompt()->isVisible(); }));
        window->activateWindow();
        ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
    }
    QStringList selected()
    {
        QStringList names;
        for (const FileItem& item : pane()->selectedItems())
            names << item.name;
        return names;
    }
    // Replaces the field's text (it comes prefilled and selected) and presses Return.
    void enter(const QString& pattern)
    {
        press(Qt::Key_A, Qt::ControlModifier);
        type(pattern);
        press(Qt::Key_Return);
    }
};

TEST_F(SelectByPatternTest, CtrlPlusSelectsAndCtrlShiftMinusDeselectsByPattern)
{
    open(tree.root());
    select(tree.path("c.md"));

    press(Qt::Key_Plus, Qt::ControlModifier);
    awaitPrompt();
    EXPECT_EQ(prompt()->windowTitle(), "Select by Pattern");
    enter(QStringLiteral("*.TXT"));
    awaitPromptGone();
    EXPECT_EQ(selected(), (QStringList{"a.txt", "b.txt", "c.md", "R&D notes.txt"}));

    press(Qt::Key_Minus, Qt::ControlModifier | Qt::ShiftModifier);
    awaitPrompt();
    EXPECT_EQ(prompt()->windowTitle(), "Deselect by Pattern");
    EXPECT_EQ(prompt()->patternField()->text(), "*.TXT") << "the last pattern is offered again";
    EXPECT_EQ(prompt()->patternField()->selectedText(), "*.TXT") << "selected, so typing replaces it";
    enter(QStringLiteral("r&d*; a*"));
    awaitPromptGone();
    EXPECT_EQ(selected(), (QStringList{"b.txt", "c.md"}));
}

TEST_F(SelectByPatternTest, APatternThatTakesNothingSaysSoAndEscChangesNothing)
{
    open(tree.root());
    select(tree.path("a.txt"));
    press(Qt::Key_Plus, Qt::ControlModifier);
    awaitPrompt();
    enter(QStringLiteral("*.pdf"));
    EXPECT_TRUE(prompt()->isVisible()) << "stays open to be corrected";
    EXPECT_EQ(prompt()->note(), "No item here matches “*.pdf”");
    enter(QStringLiteral("   "));
    EXPECT_EQ(prompt()->note(), "Type a pattern, such as *.txt");
    press(Qt::Key_Escape);
    awaitPromptGone();
    EXPECT_EQ(selected(), QStringList{"a.txt"});
}

TEST_F(SelectByPatternTest, TheKeypadsPlusAndMinusAskToo)
{
    open(tree.root());
    press(Qt::Key_Plus, Qt::KeypadModifier);
    awaitPrompt();
    enter(QStringLiteral("*.md"));
    awaitPromptGone();
    EXPECT_EQ(selected(), QStringList{"c.md"});
    press(Qt::Key_Minus, Qt::KeypadModifier);
    awaitPrompt();
    EXPECT_EQ(prompt()->windowTitle(), "Deselect by Pattern");
    enter(QStringLiteral("*"));
    awaitPromptGone();
    EXPECT_TRUE(selected().isEmpty());
}

} // namespace
} // namespace orwick::test
