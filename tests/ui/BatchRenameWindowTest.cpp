// The batch rename panel in a real window, by keys alone: F2 on several items opens it, the
// mode keys and fields change the preview, Return renames as one undo step, Esc cancels, and a
// pattern that doesn't compile says so and renames nothing.

#include "WindowFixture.h"

#include "ui/panels/DiskToolKeys.h"
#include "ui/rename/BatchRenameModel.h"
#include "ui/rename/BatchRenamePanel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSpinBox>

namespace orwick::test {
namespace {

struct BatchRenameWindowTest : WindowTest {
    BatchRenamePanel* panel() const { return window->findChild<BatchRenamePanel*>(); }
    QString summary() const { return panel() ? panel()->summary() : QString(); }
    QPushButton* renameButton() const { return panel()->findChild<QPushButton*>(QStringLiteral("renameButton")); }
    // Selects the three files and presses F2.
    void openOnThree()
    {
        select(tree.path("a.txt"));
        pane()->click(tree.path("c.txt"), Qt::ShiftModifier);
        ASSERT_EQ(pane()->selection().size(), 3);
        press(Qt::Key_F2);
        ASSERT_TRUE(waitUntil([&] { return panel() != nullptr; }));
        ASSERT_TRUE(waitUntil([&] { return summary() == QStringLiteral("Nothing changes yet"); })) << summary().toStdString();
    }
    void SetUp() override
    {
        tree.file("a.txt", "A");
        tree.file("b.txt", "B");
        tree.file("c.txt", "C");
        open(tree.root());
        DiskToolKeys::follow(*state, window.get()); // as the program's main wires each window
    }
};

TEST_F(BatchRenameWindowTest, F2OnSeveralNumbersThemAsOneUndoStep)
{
    openOnThree();
    EXPECT_EQ(state->panel(), WindowState::Panel::batchRename);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("find")) << "typing starts in the first field";
    EXPECT_FALSE(renameButton()->isEnabled());

    press(Qt::Key_3, Qt::ControlModifier); // Number
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("baseName"));
    type(QStringLiteral("Doc"));
    ASSERT_TRUE(waitUntil([&] { return summary() == QStringLiteral("3 of 3 will change"); })) << summary().toStdString();
    EXPECT_EQ(renameButton()->text(), QStringLiteral("Rename 3"));
    EXPECT_TRUE(renameButton()->isEnabled());
    const QModelIndex first = panel()->model()->index(0);
    EXPECT_EQ(first.data(BatchRenameModel::newNameRole).toString(), QStringLiteral("Doc 01.txt"));

    press(Qt::Key_Return);
    settle();
    ASSERT_TRUE(waitUntil([&] { return panel() == nullptr; }));
    EXPECT_EQ(state->panel(), WindowState::Panel::none);
    EXPECT_EQ(readAll(tree.path("Doc 01.txt")), "A");
    EXPECT_EQ(readAll(tree.path("Doc 03.txt")), "C");
    EXPECT_EQ(toast(), QStringLiteral("Renamed 3 items"));
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Rename 3 items"));
    ASSERT_TRUE(waitUntil([&] { return pane()->selection().size() == 3; })) << "the renamed items stay selected";

    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(readAll(tree.path("a.txt")), "A");
    EXPECT_FALSE(exists(tree.path("Doc 01.txt")));
}

TEST_F(BatchRenameWindowTest, PatternThatDoesNotCompileSaysSoAndEscCancels)
{
    openOnThree();
    type(QStringLiteral("(a"));
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("regex"));
    press(Qt::Key_Space);
    auto* problem = panel()->findChild<QLabel*>(QStringLiteral("ruleProblem"));
    ASSERT_TRUE(waitUntil([&] { return problem->isVisible(); }));
    EXPECT_EQ(problem->text(), QStringLiteral("That isn't a valid regular expression"));
    ASSERT_TRUE(waitUntil([&] { return !panel()->model()->isPending(); }));
    EXPECT_EQ(summary(), QStringLiteral("Nothing changes yet"));
    EXPECT_FALSE(renameButton()->isEnabled());
    press(Qt::Key_Return);
    settle();
    EXPECT_TRUE(exists(tree.path("a.txt")));

    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return panel() == nullptr; }));
    EXPECT_EQ(state->panel(), WindowState::Panel::none);
    EXPECT_EQ(state->undoStack()->count(), 0);
    EXPECT_TRUE(exists(tree.path("a.txt")) && exists(tree.path("b.txt")) && exists(tree.path("c.txt")));
}

TEST_F(BatchRenameWindowTest, PreviewMarksEachProblemOnItsRow)
{
    tree.file("taken.txt", "not in the batch");
    openOnThree();
    type(QStringLiteral("^[ab]"));
    press(Qt::Key_Tab);
    type(QStringLiteral("taken"));
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Space); // regular expression
    ASSERT_TRUE(waitUntil([&] { return summary() == QStringLiteral("0 of 3 will change, 2 can't be renamed"); }))
        << summary().toStdString();
    BatchRenameModel* model = panel()->model();
    EXPECT_EQ(model->index(0).data(BatchRenameModel::problemRole).toString(), QStringLiteral("Same name as another"));
    EXPECT_EQ(model->index(2).data(BatchRenameModel::problemRole).toString(), QString());
    EXPECT_FALSE(renameButton()->isEnabled());
}

TEST_F(BatchRenameWindowTest, ModeKeysWorkFromEveryPartOfThePanel)
{
    openOnThree();
    const ViewMode viewMode = pane()->viewMode();
    auto* mode = panel()->findChild<QComboBox*>(QStringLiteral("mode"));
    // Ctrl+digit as the window system gives it: with the digit as its text, which a drop-down
    // would otherwise take as the start of an item's name.
    const auto pressMode = [&](int digit) {
        press(Qt::Key_1 + digit - 1, Qt::ControlModifier);
        QApplication::processEvents();
    };
    const auto pressModeWithText = [&](int digit) {
        pressKey(QApplication::focusWidget(), Qt::Key_1 + digit - 1, Qt::ControlModifier, QString::number(digit));
        QApplication::processEvents();
    };
    pressModeWithText(4); // Change Case: its drop-down has the keys
    EXPECT_EQ(panel()->rule().mode, BatchRename::Mode::changeCase);
    ASSERT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("letterCase"));
    pressModeWithText(1);
    EXPECT_EQ(panel()->rule().mode, BatchRename::Mode::replace);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("find"));

    // From the Mode drop-down, which keeps the keys.
    mode->setFocus(Qt::TabFocusReason);
    pressModeWithText(3);
    EXPECT_EQ(panel()->rule().mode, BatchRename::Mode::number);
    EXPECT_EQ(mode->currentIndex(), 2);
    EXPECT_EQ(QApplication::focusWidget(), mode);
    pressMode(5);
    EXPECT_EQ(panel()->rule().mode, BatchRename::Mode::fromTemplate);

    // From the Start at box and a check box.
    panel()->findChildren<QSpinBox*>(QStringLiteral("startAt")).last()->setFocus(Qt::TabFocusReason);
    pressModeWithText(6);
    EXPECT_EQ(panel()->rule().mode, BatchRename::Mode::remove);
    pressModeWithText(2);
    panel()->findChild<QCheckBox*>(QStringLiteral("addAtEnd"))->setFocus(Qt::TabFocusReason);
    pressModeWithText(4);
    EXPECT_EQ(panel()->rule().mode, BatchRename::Mode::changeCase);
    EXPECT_EQ(pane()->viewMode(), viewMode) << "the window's view-mode keys stay out of the panel";
}

TEST_F(BatchRenameWindowTest, OneItemStillRenamesInPlace)
{
    select(tree.path("b.txt"));
    press(Qt::Key_F2);
    QApplication::processEvents();
    EXPECT_EQ(panel(), nullptr);
    EXPECT_EQ(pane()->renaming(), tree.path("b.txt"));
}

} // namespace
} // namespace orwick::test
