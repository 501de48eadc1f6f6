#include "WindowFixture.h"

#include "app/Settings.h"
#include "commands/CommandCatalog.h"
#include "places/SidebarStore.h"
#include "platform/XdgPaths.h"
#include "ui/sidebar/Sidebar.h"
#include "ui/sidebar/SidebarModel.h"
#include "ui/sidebar/SidebarView.h"

#include <QContextMenuEvent>
#include <QDir>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>

using namespace orwick;
using test::waitUntil;

namespace {

struct SidebarWindowTest : test::WindowTest {
    FilePath documents = xdg::home().child(QStringLiteral("Documents"));

    void SetUp() override
    {
        QDir().mkpath(documents.text());
        openSettings()->remove(QStringLiteral("showSidebar"));
        open(tree.root());
    }
    SidebarView* view() const { return window->sidebar()->view(); }
    SidebarModel* model() const { return window->sidebar()->model(); }
    int rowOf(SidebarRow::Kind kind, const FilePath& path) const
    {
        for (int i = 0; i < model()->rowCount(); ++i)
            if (model()->rowAt(i).kind == kind && model()->rowAt(i).path == path)
                return i;
        return -1;
    }
};

TEST_F(SidebarWindowTest, F9TogglesTheSidebarAndTheChoiceIsKept)
{
    EXPECT_TRUE(window->sidebar()->isVisible());
    press(Qt::Key_F9);
    EXPECT_FALSE(window->sidebar()->isVisible());
    EXPECT_FALSE(state->showSidebar());
    EXPECT_FALSE(readSettingsBool(*openSettings(), QStringLiteral("showSidebar"), true));
    // A new window starts the way the last one was left.
    WindowState second(tree.root(), &preferences);
    MainWindow other(&second);
    EXPECT_FALSE(second.showSidebar());
    press(Qt::Key_F9);
    EXPECT_TRUE(window->sidebar()->isVisible());
    EXPECT_TRUE(readSettingsBool(*openSettings(), QStringLiteral("showSidebar"), false));
}

TEST_F(SidebarWindowTest, ArrowsAndReturnOpenDocumentsInTheActivePane)
{
    // Hiding the focused sidebar gives the keyboard to the pane; the focus key shows it again.
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_EQ(QApplication::focusWidget(), view());
    press(Qt::Key_F9);
    EXPECT_NE(QApplication::focusWidget(), view());
    EXPECT_TRUE(window->activePaneWidget()->isAncestorOf(QApplication::focusWidget()));
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(window->sidebar()->isVisible());
    ASSERT_EQ(QApplication::focusWidget(), view());
    const int target = rowOf(SidebarRow::Kind::favorite, documents);
    ASSERT_GT(target, 0);
    while (view()->currentIndex().row() < target)
        press(Qt::Key_Down);
    ASSERT_EQ(view()->currentIndex().row(), target);
    press(Qt::Key_Return);
    EXPECT_EQ(pane()->url(), documents);
}

TEST_F(SidebarWindowTest, TheKeyboardKeepsItsPlaceWhenTheRowsChangeAndReturnOnATitleFoldsItsSection)
{
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    view()->setCurrentIndex(model()->index(rowOf(SidebarRow::Kind::favorite, documents)));
    const FilePath added = tree.folder(QStringLiteral("Added"));
    SidebarStore::shared().addFavorite(added, 0); // first: every row below moves down one
    ASSERT_TRUE(waitUntil([&] { return rowOf(SidebarRow::Kind::favorite, added) >= 0; }));
    EXPECT_EQ(view()->currentIndex().row(), rowOf(SidebarRow::Kind::favorite, documents));
    SidebarStore::shared().removeFavorite(added);
    // Return on a title folds its section.
    const int title = model()->titleRow(section::favorites);
    ASSERT_GE(title, 0);
    view()->setCurrentIndex(model()->index(title));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return rowOf(SidebarRow::Kind::favorite, documents) < 0; }));
    EXPECT_TRUE(SidebarStore::shared().isCollapsed(section::favorites));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return rowOf(SidebarRow::Kind::favorite, documents) >= 0; }));
}

TEST_F(SidebarWindowTest, ADroppedFolderJoinsTheFavorites)
{
    const FilePath folder = tree.folder(QStringLiteral("Dropped"));
    QMimeData data;
    data.setUrls({folder.toUrl()});
    const QPoint at(20, view()->viewport()->height() - 5); // below the last row
    const Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QDragEnterEvent enter(at, all, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view()->viewport(), &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDragMoveEvent move(at, all, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view()->viewport(), &move);
    QDropEvent dropped(at, all, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view()->viewport(), &dropped);
    EXPECT_TRUE(SidebarStore::shared().isFavorite(folder));
    ASSERT_TRUE(waitUntil([&] { return rowOf(SidebarRow::Kind::favorite, folder) >= 0; }));
    // The palette's "Go to" family follows.
    const auto commands = CommandCatalog::all(*state);
    EXPECT_TRUE(std::any_of(commands.begin(), commands.end(), [](const AppCommand& c) { return c.title == "Go to Dropped"; }));
    SidebarStore::shared().removeFavorite(folder);
}

TEST_F(SidebarWindowTest, NewSidebarGroupFromTheSelectionStartsRenamingIt)
{
    const FilePath folder = tree.folder(QStringLiteral("Work"));
    pane()->reload();
    select(folder);
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("newSidebarGroup"), *state));
    ASSERT_TRUE(waitUntil([&] { return qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr; }));
    auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    editor->setText(QStringLiteral("Clients"));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([] {
        const auto& groups = SidebarStore::shared().groups();
        return std::any_of(groups.begin(), groups.end(), [](const SidebarGroup& g) { return g.name == "Clients"; });
    }));
    const auto& groups = SidebarStore::shared().groups();
    const auto clients = std::find_if(groups.begin(), groups.end(), [](const SidebarGroup& g) { return g.name == "Clients"; });
    EXPECT_EQ(clients->items.first().path, folder);
    SidebarStore::shared().removeGroup(clients->id);
}

TEST_F(SidebarWindowTest, PinAddsTheSelectedFolderThenRemovesIt)
{
    const FilePath folder = tree.folder(QStringLiteral("Pinme"));
    pane()->reload();
    select(folder);
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("pin"), *state));
    EXPECT_TRUE(SidebarStore::shared().arePinned({folder}));
    ASSERT_TRUE(waitUntil([&] { return rowOf(SidebarRow::Kind::groupItem, folder) >= 0; }));
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("pin"), *state));
    EXPECT_FALSE(SidebarStore::shared().arePinned({folder}));
}

TEST_F(SidebarWindowTest, TrashThisComputerTagsAndSavedSearchesShowTheirListings)
{
    SavedSearch saved{QStringLiteral("7d3c1a52-0000-4000-8000-000000000001"), QStringLiteral("Notes"), QStringLiteral("note"),
                      QStringLiteral("below"), tree.root().text(), QStringLiteral("any"), QStringLiteral("any")};
    SidebarStore::shared().save(saved);
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    auto openRow = [&](SidebarRow::Kind kind) {
        for (int i = 0; i < model()->rowCount(); ++i)
            if (model()->rowAt(i).kind == kind) {
                view()->setCurrentIndex(model()->index(i));
                view()->setFocus();
                press(Qt::Key_Return);
                return true;
            }
        return false;
    };
    ASSERT_TRUE(openRow(SidebarRow::Kind::trash));
    ASSERT_TRUE(pane()->listing().has_value());
    EXPECT_EQ(pane()->listing()->kind, Listing::Kind::trash);
    ASSERT_TRUE(openRow(SidebarRow::Kind::thisComputer));
    EXPECT_EQ(pane()->listing()->kind, Listing::Kind::thisMac);
    ASSERT_TRUE(openRow(SidebarRow::Kind::tag));
    EXPECT_EQ(*pane()->listing(), Listing::tag(QStringLiteral("Red")));
    ASSERT_TRUE(waitUntil([&] { return openRow(SidebarRow::Kind::search); }));
    EXPECT_EQ(pane()->listing()->kind, Listing::Kind::search);
    SidebarStore::shared().removeSearch(saved.id);
}

TEST_F(SidebarWindowTest, TheMenuKeyAsksForOneMenu)
{
    // X11 sends a keyboard context event beside the Menu key's press: the two together ask once.
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_EQ(QApplication::focusWidget(), view());
    QObject::disconnect(view(), &SidebarView::menuRequested, nullptr, nullptr); // no modal menu in the test
    int asked = 0;
    QObject::connect(view(), &SidebarView::menuRequested, [&asked] { ++asked; });
    const QPoint row = view()->visualRect(view()->currentIndex()).center();
    QContextMenuEvent keyboard(QContextMenuEvent::Keyboard, row, view()->viewport()->mapToGlobal(row));
    QApplication::sendEvent(view()->viewport(), &keyboard);
    press(Qt::Key_Menu);
    EXPECT_EQ(asked, 1);
}

} // namespace
