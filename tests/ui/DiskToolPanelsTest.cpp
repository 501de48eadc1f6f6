// The disk-tool panels in a real window over real temporary trees: each finds what its engine
// finds, words its states in the footer, covers the content area, and closing stops its work.

#include "DiskToolWindow.h"
#include "commands/CommandCatalog.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/panels/CleanUpPanel.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/panels/DuplicatesPanel.h"
#include "ui/panels/SpacePanel.h"
#include "ui/panels/TreemapWidget.h"
#include "ui/window/MainWindow.h"

#include <QHeaderView>
#include <QPointer>
#include <QPushButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QKeyEvent>
#include <QMouseEvent>
#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::TempTree;
using test::waitUntil;

// deleteLater() runs only when deferred deletions are delivered, which waitUntil's loop does not do.
bool deleted(const QPointer<QObject>& object)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return object.isNull();
}

void pressKey(QWidget* widget, Qt::Key key)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &press);
}

void click(QWidget* widget, const QPointF& at)
{
    const QPointF global = widget->mapToGlobal(at);
    QMouseEvent press(QEvent::MouseButtonPress, at, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, at, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &release);
}

using DiskToolPanelsTest = test::DiskToolWindowTest;

TEST_F(DiskToolPanelsTest, DuplicatesListGroupsTickExtraCopiesAndAskingAgainKeepsThem)
{
    const QByteArray big(150000, 'x');
    tree.file(QStringLiteral("a.bin"), big);
    tree.file(QStringLiteral("a copy.bin"), big);
    tree.file(QStringLiteral("small1"), "s");
    tree.file(QStringLiteral("small2"), "s");
    open();
    DiskToolKeys::follow(*state, window.get());
    state->showPanel(WindowState::Panel::duplicates, pane()->url());
    auto* panel = shown<DuplicatesPanel>();
    ASSERT_TRUE(panel);
    EXPECT_EQ(panel->geometry(), window->centralWidget()->geometry()) << "the sheet covers the content area";
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    ASSERT_EQ(panel->choice().groups().size(), 1u) << "the 1-byte pair is under the default minimum";
    EXPECT_TRUE(panel->footer().startsWith("1 group, ")) << panel->footer().toStdString();
    panel->tickExtraCopies();
    EXPECT_TRUE(panel->footer().contains(" · 1 ticked"));
    auto* list = panel->findChild<QTreeWidget*>();
    list->setCurrentItem(list->topLevelItem(list->topLevelItemCount() - 1));
    QTreeWidgetItem* current = list->currentItem();

    QPointer<DuplicatesPanel> guard(panel);
    state->showPanel(WindowState::Panel::duplicates, pane()->url()); // the key pressed again
    EXPECT_FALSE(deleted(guard.data())) << "the sheet was made again and its results dropped";
    ASSERT_TRUE(guard);
    EXPECT_FALSE(panel->isSearching()) << "no second walk";
    EXPECT_EQ(panel->choice().toTrash(), std::vector{tree.path(QStringLiteral("a copy.bin"))});
    EXPECT_EQ(list->currentItem(), current);
    EXPECT_EQ(state->panel(), WindowState::Panel::duplicates);
    // The keyboard is back in the list, not in the sheet, where Del would reach the window.
    EXPECT_EQ(panel->focusWidget(), list);

    pressKey(panel, Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return deleted(guard.data()); })) << "Esc closes the sheet";
    EXPECT_EQ(state->panel(), WindowState::Panel::none) << "closing the kept sheet still closes the panel";
}

TEST_F(DiskToolPanelsTest, ActivatingADuplicateShowsItInItsFolder)
{
    const QByteArray big(150000, 'x');
    tree.file(QStringLiteral("a.bin"), big);
    const FilePath deep = tree.file(QStringLiteral("sub/deeper/b.bin"), big);
    open();
    DiskToolKeys::openDuplicates(window.get(), pane());
    auto* panel = shown<DuplicatesPanel>();
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    auto* list = panel->findChild<QTreeWidget*>();
    QTreeWidgetItem* row = nullptr;
    for (QTreeWidgetItemIterator it(list); *it; ++it)
        if ((*it)->text(0) == "sub/deeper/b.bin")
            row = *it;
    ASSERT_TRUE(row) << "members are named from the searched folder down";
    QPointer<DuplicatesPanel> guard(panel);
    Q_EMIT list->itemActivated(row, 0);
    EXPECT_TRUE(waitUntil([&] { return deleted(guard.data()); })) << "the sheet makes way";
    ASSERT_TRUE(waitUntil([&] { return pane()->url() == deep.parent() && pane()->selection().contains(deep); }));
}

TEST_F(DiskToolPanelsTest, SpacePanelGoesInAndOut)
{
    tree.file(QStringLiteral("big/inner/large"), QByteArray(2500000, 'l'));
    tree.file(QStringLiteral("big/small"), "s");
    tree.file(QStringLiteral("other"), "o");
    open();
    DiskToolKeys::openSpace(window.get(), pane());
    auto* panel = shown<SpacePanel>();
    ASSERT_TRUE(panel);
    ASSERT_TRUE(waitUntil([&] { return panel->current() != nullptr; }));
    const SpaceNode* root = panel->current();
    ASSERT_FALSE(root->children.empty());
    auto* map = panel->findChild<TreemapWidget*>();
    ASSERT_TRUE(map);
    EXPECT_EQ(map->node(), root);
    ASSERT_FALSE(map->blocks().empty());
    EXPECT_EQ(map->blocks().front().node->name, "big");

    const QPointF middle = map->blocks().front().rect.center();
    click(map, middle);
    EXPECT_EQ(panel->current()->name, "big") << "a click goes into the folder";
    pressKey(map, Qt::Key_Backspace);
    EXPECT_EQ(panel->current(), root) << "Backspace goes back out";
}

// The commands set the window's panel; a sheet the user closes sets it back, so the same command
// opens it again and nothing reads a panel that is gone.
TEST_F(DiskToolPanelsTest, TheWindowsPanelFollowsTheSheets)
{
    open();
    DiskToolKeys::follow(*state, window.get());
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("findDuplicates"), *state));
    ASSERT_TRUE(shown<DuplicatesPanel>());
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("showSpace"), *state));
    EXPECT_TRUE(waitUntil([&] { return deleted(nullptr) && window->findChildren<PanelSheet*>().size() == 1; }));
    EXPECT_EQ(state->panel(), WindowState::Panel::space) << "the replaced sheet's close leaves the new panel";
    pressKey(shown<SpacePanel>(), Qt::Key_Escape);
    EXPECT_EQ(state->panel(), WindowState::Panel::none);
    EXPECT_TRUE(waitUntil([&] { return deleted(nullptr) && !shown<PanelSheet>(); }));
    state->showPanel(WindowState::Panel::cleanUp, tree.root());
    EXPECT_TRUE(shown<CleanUpPanel>());
    state->closePanel();
    EXPECT_TRUE(waitUntil([&] { return deleted(nullptr) && !shown<PanelSheet>(); }));

    // The same panel on another folder replaces the sheet, and the window still shows that panel.
    const FilePath sub = tree.folder(QStringLiteral("sub"));
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("findDuplicates"), *state));
    QPointer<DuplicatesPanel> first(shown<DuplicatesPanel>());
    ASSERT_TRUE(first);
    pane()->navigate(sub);
    ASSERT_TRUE(waitUntil([&] { return pane()->url() == sub && !pane()->isLoading(); }));
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("findDuplicates"), *state));
    EXPECT_TRUE(waitUntil([&] { return deleted(first.data()); }));
    ASSERT_TRUE(shown<DuplicatesPanel>());
    EXPECT_EQ(shown<DuplicatesPanel>()->folder(), sub);
    EXPECT_EQ(state->panel(), WindowState::Panel::duplicates) << "the replaced sheet's close leaves the new panel";
}

TEST_F(DiskToolPanelsTest, CleanUpShowsEachKindInFullBesideItsSize)
{
    tree.file(QStringLiteral("web/package.json"), "{}");
    tree.file(QStringLiteral("web/dist/app.js"), QByteArray(5000, 'j'));
    open();
    window->resize(1100, 700);
    DiskToolKeys::openCleanUp(window.get(), pane());
    auto* panel = shown<CleanUpPanel>();
    ASSERT_TRUE(panel);
    ASSERT_TRUE(waitUntil([&] { return !panel->isScanning() && panel->rows().size() == 1; }));
    QCoreApplication::processEvents();
    auto* list = panel->findChild<QTreeWidget*>();
    ASSERT_EQ(list->topLevelItem(0)->text(1), "JavaScript build");
    const int needed = list->fontMetrics().horizontalAdvance(QStringLiteral("JavaScript build"));
    EXPECT_GT(list->header()->sectionSize(1), needed) << "the kind is not cut to \"JavaScript b…\"";
    EXPECT_LT(list->header()->sectionSize(2), list->header()->sectionSize(0)) << "the folder, not the size, takes the room";
}

TEST_F(DiskToolPanelsTest, TheDrivesPageHasItsOwnFooterAndTheMapGetsItsBack)
{
    tree.file(QStringLiteral("big.bin"), QByteArray(1'200'000, 'b'));
    open();
    DiskToolKeys::openSpace(window.get(), pane());
    auto* panel = shown<SpacePanel>();
    ASSERT_TRUE(panel);
    ASSERT_TRUE(waitUntil([&] { return panel->current() != nullptr; }, 10000));
    const QString mapFooter = panel->footer();
    ASSERT_TRUE(mapFooter.contains("Backspace goes out")) << mapFooter.toStdString();
    QPushButton* drives = nullptr;
    for (QPushButton* button : panel->findChildren<QPushButton*>())
        if (button->text() == "Drives")
            drives = button;
    ASSERT_TRUE(drives);

    drives->click();
    EXPECT_FALSE(panel->footer().contains("Backspace goes out")) << "the map's keys are not offered over the drives";
    EXPECT_FALSE(panel->footer().isEmpty());
    drives->click();
    EXPECT_EQ(panel->footer(), mapFooter);
    EXPECT_TRUE(panel->findChild<TreemapWidget*>()->hasFocus()) << "the keyboard is back on the map";
}

} // namespace
} // namespace orwick
