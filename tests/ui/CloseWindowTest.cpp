// Closing a window (its close button, or Ctrl+Shift+W): with one tab it closes at once; with
// several it asks first, and Cancel keeps it open with its tabs.

#include "WindowFixture.h"

#include <QAbstractButton>
#include <QMessageBox>

namespace orwick::test {
namespace {

struct CloseWindowTest : WindowTest {
    QMessageBox* question() { return window->findChild<QMessageBox*>(QStringLiteral("closeTabsQuestion")); }
    void answer(const QString& button)
    {
        ASSERT_TRUE(waitUntil([&] { return question() && question()->isVisible(); }));
        for (QAbstractButton* b : question()->buttons())
            if (b->text() == button) {
                b->click();
                return;
            }
        FAIL() << "no button " << button.toStdString();
    }
};

TEST_F(CloseWindowTest, OneTabClosesAtOnce)
{
    open(tree.root());
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(question(), nullptr);
}

TEST_F(CloseWindowTest, CtrlShiftWClosesTheWindowAskingWhenItHasSeveralTabs)
{
    open(tree.root());
    state->newTab();
    press(Qt::Key_W, Qt::ControlModifier | Qt::ShiftModifier);
    answer(QStringLiteral("Close Window"));
    EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); }));
}

TEST_F(CloseWindowTest, SeveralTabsAskFirstAndCancelKeepsThem)
{
    open(tree.root());
    state->newTab();
    state->newTab();
    EXPECT_FALSE(window->close());
    ASSERT_TRUE(waitUntil([&] { return question() != nullptr; }));
    EXPECT_EQ(question()->text(), QStringLiteral("Close this window and its 3 tabs?"));
    EXPECT_TRUE(question()->iconPixmap().isNull()) << "the question carries no stock picture";
    answer(QStringLiteral("Cancel"));
    ASSERT_TRUE(waitUntil([&] { return question() == nullptr; }));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(state->tabs().size(), 3);

    window->close();
    answer(QStringLiteral("Close Window"));
    EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); }));
}

} // namespace
} // namespace orwick::test
