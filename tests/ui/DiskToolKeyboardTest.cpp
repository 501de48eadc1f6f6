// The treemap and the clean-up list by keyboard only, in a real window: arrows move between
// blocks, Return goes in, Backspace comes out, Delete moves the block to the Trash through the
// engine (Ctrl+Z puts it back); in the clean-up list Space unticks a row, Delete trashes the
// ticked ones and Return shows a row's folder in the pane.

#include "WindowFixture.h"

#include "commands/CommandCatalog.h"
#include "ui/panels/CleanUpPanel.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/panels/DuplicatesPanel.h"
#include "ui/panels/SpacePanel.h"
#include "ui/panels/TreemapWidget.h"

#include <QComboBox>
#include <QFileInfo>
#include <QPushButton>
#include <QTreeWidget>

namespace orwick::test {
namespace {

struct DiskToolKeyboardTest : WindowTest {
    // Show Space Used on the tree, by its command, once the map has been measured (null: never).
    SpacePanel* showSpace()
    {
        open(tree.root());
        DiskToolKeys::follow(*state, window.get());
        EXPECT_TRUE(CommandCatalog::run(QStringLiteral("showSpace"), *state));
        SpacePanel* panel = nullptr;
        EXPECT_TRUE(waitUntil([&] {
            panel = window->findChild<SpacePanel*>();
            return panel && panel->current();
        }, 10000));
        return panel && panel->current() ? panel : nullptr;
    }
    QString currentName(TreemapWidget* map)
    {
        const TreemapWidget::Block* block = map->currentBlock();
        return block && block->node ? QString::fromUtf8(block->node->name) : QString();
    }
};

TEST_F(DiskToolKeyboardTest, TheTreemapMovesGoesInComesOutAndTrashesByKey)
{
    tree.file("big/inner.bin", QByteArray(3'000'000, 'b'));
    tree.file("big/second.bin", QByteArray(1'500'000, 'c'));
    tree.file("mid/inner.bin", QByteArray(2'000'000, 'm'));
    const FilePath loose = tree.file("loose.bin", QByteArray(1'200'000, 'l'));
    SpacePanel* panel = showSpace();
    ASSERT_NE(panel, nullptr);
    auto* map = panel->findChild<TreemapWidget*>();
    ASSERT_TRUE(map);
    ASSERT_TRUE(waitUntil([&] { return map->hasFocus(); }));
    ASSERT_EQ(map->blocks().size(), 3u);
    EXPECT_EQ(currentName(map), "big") << "the largest block first";

    // Every block can be reached with the arrows from the largest one.
    QSet<QString> reached{currentName(map)};
    for (int key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Down}) {
        press(key);
        reached.insert(currentName(map));
    }
    EXPECT_EQ(reached, (QSet<QString>{"big", "mid", "loose.bin"}));

    press(Qt::Key_Home);
    EXPECT_EQ(currentName(map), "big");
    press(Qt::Key_Return);
    EXPECT_EQ(panel->current()->name, "big") << "Return goes in";
    EXPECT_EQ(currentName(map), "inner.bin");
    press(Qt::Key_Backspace);
    EXPECT_EQ(panel->current(), panel->root()) << "Backspace comes out";

    press(Qt::Key_End);
    EXPECT_EQ(currentName(map), "loose.bin");
    press(Qt::Key_Delete);
    EXPECT_TRUE(panel->isTrashing()) << "Delete reached the map, not the window's Move to Trash";
    settle();
    ASSERT_TRUE(waitUntil([&] { return map->blocks().size() == 2u; })) << toast().toStdString();
    EXPECT_FALSE(QFileInfo::exists(loose.text())) << "moved to the Trash";
    EXPECT_EQ(state->undoStack()->undoText(), "Move to Trash");
    EXPECT_TRUE(map->hasFocus()) << "the keyboard stays on the map";
    EXPECT_FALSE(currentName(map).isEmpty());

    state->undoStack()->undo();
    settle();
    EXPECT_TRUE(QFileInfo::exists(loose.text())) << "put back";
}

TEST_F(DiskToolKeyboardTest, TheCleanUpListTicksTrashesAndShowsByKey)
{
    tree.file("web/package.json", "{}");
    tree.file("web/node_modules/x/index.js", QByteArray(5000, 'j'));
    tree.file("py/__pycache__/m.pyc", "c");
    open(tree.root());
    DiskToolKeys::follow(*state, window.get());
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("cleanUp"), *state));
    CleanUpPanel* panel = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        panel = window->findChild<CleanUpPanel*>();
        return panel && !panel->isScanning() && panel->rows().size() == 2u;
    }, 10000));
    auto* list = panel->findChild<QTreeWidget*>();
    ASSERT_TRUE(waitUntil([&] { return list->hasFocus(); }));
    ASSERT_EQ(list->indexOfTopLevelItem(list->currentItem()), 0);

    press(Qt::Key_Down);
    press(Qt::Key_Space);
    ASSERT_FALSE(panel->rows()[1].ticked) << "Space unticks the row";
    const FilePath kept = panel->rows()[1].found.url;
    const FilePath trashed = panel->rows()[0].found.url;

    press(Qt::Key_Delete);
    settle();
    ASSERT_TRUE(waitUntil([&] { return panel->rows().size() == 1u; }));
    EXPECT_FALSE(QFileInfo::exists(trashed.text()));
    EXPECT_TRUE(QFileInfo::exists(kept.text()));
    EXPECT_EQ(panel->rows()[0].found.url, kept);
    EXPECT_TRUE(list->hasFocus());

    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !window->findChild<CleanUpPanel*>(); }));
    ASSERT_TRUE(waitUntil([&] { return pane()->selection().contains(kept); })) << "the folder is shown in the pane";
}

TEST_F(DiskToolKeyboardTest, TabGoesRoundTheSheetsPartsAndNeverToThePanesBeneath)
{
    const QByteArray big(150000, 'x');
    tree.file("a.bin", big);
    tree.file("a copy.bin", big);
    open(tree.root());
    DiskToolKeys::follow(*state, window.get());
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("findDuplicates"), *state));
    DuplicatesPanel* panel = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        panel = window->findChild<DuplicatesPanel*>();
        return panel && !panel->isSearching();
    }, 10000));
    auto* list = panel->findChild<QTreeWidget*>();
    ASSERT_TRUE(waitUntil([&] { return list->hasFocus(); }));

    QPushButton* tick = nullptr;
    for (QPushButton* button : panel->findChildren<QPushButton*>())
        if (button->text() == "Tick Extra Copies")
            tick = button;
    ASSERT_TRUE(tick);
    press(Qt::Key_Tab);
    EXPECT_TRUE(qobject_cast<QComboBox*>(QApplication::focusWidget())) << "from the list, Tab goes to the first tool, the size";
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_TRUE(list->hasFocus()) << "and Shift+Tab back to the list";
    bool reachedTick = false;
    for (int i = 0; i < 6; ++i) {
        press(Qt::Key_Tab);
        QWidget* focus = QApplication::focusWidget();
        ASSERT_TRUE(focus && panel->isAncestorOf(focus)) << "Tab " << i + 1 << " left the sheet for "
            << (focus ? focus->metaObject()->className() : "nothing");
        reachedTick = reachedTick || focus == tick;
    }
    ASSERT_TRUE(reachedTick) << "Tab reaches the sheet's buttons";
    for (int i = 0; i < 6; ++i) {
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        QWidget* focus = QApplication::focusWidget();
        ASSERT_TRUE(focus && panel->isAncestorOf(focus)) << "Shift+Tab " << i + 1 << " left the sheet";
    }

    while (QApplication::focusWidget() != tick)
        press(Qt::Key_Tab);
    press(Qt::Key_Space);
    EXPECT_EQ(panel->choice().chosenCount(), 1) << "Space on the focused button ticks the extra copy";
}


TEST_F(DiskToolKeyboardTest, MeasuringTheDrivesKeepsTheKeyboardOnItsButton)
{
    tree.file("big/inner.bin", QByteArray(3'000'000, 'b'));
    SpacePanel* panel = showSpace();
    ASSERT_NE(panel, nullptr);
    auto button = [&](const QString& title) {
        for (auto* b : panel->findChildren<QPushButton*>())
            if (b->text() == title)
                return b;
        return static_cast<QPushButton*>(nullptr);
    };
    button("Drives")->setFocus();
    press(Qt::Key_Space);
    QPushButton* measure = button("Show What's Using Space");
    ASSERT_TRUE(measure);
    measure->setFocus();
    press(Qt::Key_Space);
    ASSERT_FALSE(measure->isEnabled()) << "measuring";
    EXPECT_FALSE(qobject_cast<QPushButton*>(QApplication::focusWidget()))
        << "not on the next button, where Space would open the home map";
    ASSERT_TRUE(waitUntil([&] { return measure->isEnabled(); }, 20000));
    EXPECT_EQ(QApplication::focusWidget(), measure) << "back on the button once measured";
}

} // namespace
} // namespace orwick::test
