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
#include <QMenu>
#include <QMimeData>
#include <QTimer>

using namespace orwick;
using test::waitUntil;

namespace {

// One row of a popup menu as it opened: its title and whether it could be chosen.
struct MenuRow {
    QString title;
    bool enabled = true;
    bool operator==(const MenuRow&) const = default;
};

// Runs `act`, reading the rows of the popup menu it opens; then `answer` acts on the menu, which
// is closed when there is none (menus run their own event loop).
QList<MenuRow> menuOpenedBy(const std::function<void()>& act, const std::function<void(QMenu*)>& answer = {})
{
    auto rows = std::make_shared<QList<MenuRow>>();
    QTimer::singleShot(0, [rows, answer] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        for (QAction* action : menu->actions())
            if (!action->isSeparator())
                rows->append({action->text(), action->isEnabled()});
        if (answer)
            answer(menu);
        else
            menu->close();
    });
    act();
    QApplication::processEvents(); // the reader runs even when nothing opened
    return *rows;
}

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
    bool keyboardInPane() const { return window->activePaneWidget()->isAncestorOf(QApplication::focusWidget()); }
    // As a window system does when a popup menu closes: the window is active again. (The
    // offscreen platform leaves no window active.)
    void activateAgain()
    {
        window->activateWindow();
        ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
    }
    // The menu of `row` as Shift+F10 opens it with the keyboard on the row.
    QList<MenuRow> menuOf(int row, const std::function<void(QMenu*)>& answer = {})
    {
        activateAgain();
        view()->setCurrentIndex(model()->index(row));
        view()->setFocus();
        return menuOpenedBy([this] { press(Qt::Key_F10, Qt::ShiftModifier); }, answer);
    }
    // Whether the Favorites title is drawn marked: its ground beside the text against the margin.
    bool favoritesTitleMarked() const
    {
        const QRect title = view()->visualRect(model()->index(model()->titleRow(section::favorites)));
        const QImage shot = view()->viewport()->grab().toImage();
        return shot.pixelColor(title.left() + 8, title.center().y()) != shot.pixelColor(title.left() + 2, title.center().y());
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

TEST_F(SidebarWindowTest, ArrowsAndReturnOpenDocumentsInTheActivePaneWhichThenHasTheKeyboard)
{
    // Esc gives the keyboard back to the pane, and so does the focus key pressed again.
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_EQ(QApplication::focusWidget(), view());
    press(Qt::Key_Escape);
    EXPECT_TRUE(keyboardInPane());
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_EQ(QApplication::focusWidget(), view());
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(keyboardInPane());
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
    EXPECT_TRUE(keyboardInPane());
}

TEST_F(SidebarWindowTest, AFavoriteIsRenamedInPlaceWhileTheSidebarChanges)
{
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    const int row = rowOf(SidebarRow::Kind::favorite, documents);
    ASSERT_GT(row, 0);
    // Its menu starts with Rename, which edits the name as F2 does. (A menu closing here leaves
    // no window active, which would end the edit: the test edits with F2.)
    const QList<MenuRow> rows = menuOf(row);
    ASSERT_FALSE(rows.isEmpty());
    EXPECT_EQ(rows.first().title, "Rename");
    activateAgain();
    ASSERT_EQ(QApplication::focusWidget(), view());
    ASSERT_EQ(view()->currentIndex().row(), row);
    press(Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->text(), "Documents");
    // The rows change meanwhile (here a favourite added elsewhere): the editor stays, and the
    // sidebar shows the change once the name is in.
    const FilePath added = tree.folder(QStringLiteral("Added"));
    SidebarStore::shared().addFavorite(added);
    QApplication::processEvents();
    QApplication::processEvents();
    ASSERT_EQ(QApplication::focusWidget(), editor);
    type(QStringLiteral("Papers"));
    press(Qt::Key_Return); // the name goes in from the event loop
    ASSERT_TRUE(waitUntil([&] { return SidebarStore::shared().layout().favoriteNames.value(documents) == "Papers"; }));
    ASSERT_TRUE(waitUntil([&] { return rowOf(SidebarRow::Kind::favorite, added) >= 0; }));
    EXPECT_EQ(model()->rowAt(rowOf(SidebarRow::Kind::favorite, documents)).name, "Papers");
    EXPECT_EQ(QApplication::focusWidget(), view());
    // A change of names or figures only updates the rows where they stand: the rows aren't reset.
    int resets = 0;
    const auto counting = QObject::connect(model(), &QAbstractItemModel::modelReset, view(), [&resets] { ++resets; });
    SidebarStore::shared().renameFavorite(documents, QString());
    const bool renamed = waitUntil([&] { return model()->rowAt(rowOf(SidebarRow::Kind::favorite, documents)).name == "Documents"; });
    QObject::disconnect(counting);
    ASSERT_TRUE(renamed);
    EXPECT_EQ(resets, 0);
    EXPECT_TRUE(SidebarStore::shared().layout().favoriteNames.isEmpty());
    SidebarStore::shared().removeFavorite(added);
}

TEST_F(SidebarWindowTest, ASectionTitleIsMarkedOnlyWhileTheSidebarHasTheKeyboardOnIt)
{
    // Focus passing through the sidebar (a new tab, a sheet closing) leaves its cursor on the
    // first title; the rows changing afterwards doesn't mark it.
    view()->setFocus(Qt::TabFocusReason);
    window->activePaneWidget()->takeFocus();
    ASSERT_TRUE(keyboardInPane());
    const FilePath added = tree.folder(QStringLiteral("Added"));
    SidebarStore::shared().addFavorite(added);
    ASSERT_TRUE(waitUntil([&] { return rowOf(SidebarRow::Kind::favorite, added) >= 0; }));
    SidebarStore::shared().removeFavorite(added);
    ASSERT_TRUE(waitUntil([&] { return rowOf(SidebarRow::Kind::favorite, added) < 0; }));
    const QModelIndex title = model()->index(model()->titleRow(section::favorites));
    EXPECT_FALSE(view()->selectionModel()->isSelected(title));
    EXPECT_FALSE(favoritesTitleMarked());
    // The focus key starts on the first place, not on that title.
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(view()->currentIndex().row(), title.row() + 1);
    EXPECT_FALSE(favoritesTitleMarked());
    // The keyboard's cursor on the title marks it, until the keyboard leaves.
    press(Qt::Key_Up);
    ASSERT_EQ(view()->currentIndex(), title);
    EXPECT_TRUE(favoritesTitleMarked());
    press(Qt::Key_Escape);
    ASSERT_TRUE(keyboardInPane());
    EXPECT_FALSE(favoritesTitleMarked());
}

TEST_F(SidebarWindowTest, MoveUpAndMoveDownAreOfferedWhereThereIsSomewhereToMove)
{
    auto search = [this](const char* id, const char* name) {
        return SavedSearch{QString::fromLatin1(id), QString::fromLatin1(name), QStringLiteral("note"), QStringLiteral("below"),
                           tree.root().text(), QStringLiteral("any"), QStringLiteral("any")};
    };
    auto searchRow = [this](const QString& id) {
        for (int i = 0; i < model()->rowCount(); ++i)
            if (model()->rowAt(i).kind == SidebarRow::Kind::search && model()->rowAt(i).itemId == id)
                return i;
        return -1;
    };
    const MenuRow up{QStringLiteral("Move Up")}, down{QStringLiteral("Move Down")};
    const MenuRow noUp{up.title, false}, noDown{down.title, false};
    const SavedSearch first = search("7d3c1a52-0000-4000-8000-000000000002", "Notes");
    SidebarStore::shared().save(first);
    ASSERT_TRUE(waitUntil([&] { return searchRow(first.id) >= 0; }));
    // The only saved search has nowhere to go.
    QList<MenuRow> rows = menuOf(searchRow(first.id));
    ASSERT_TRUE(rows.contains(MenuRow{QStringLiteral("Rename")}));
    EXPECT_FALSE(std::any_of(rows.begin(), rows.end(), [&](const MenuRow& r) { return r.title == up.title || r.title == down.title; }));
    // Of two, the first moves down only and the last up only.
    const SavedSearch second = search("7d3c1a52-0000-4000-8000-000000000003", "Drafts");
    SidebarStore::shared().save(second);
    ASSERT_TRUE(waitUntil([&] { return searchRow(second.id) >= 0; }));
    rows = menuOf(searchRow(first.id));
    EXPECT_TRUE(rows.contains(noUp) && rows.contains(down));
    rows = menuOf(searchRow(second.id));
    EXPECT_TRUE(rows.contains(up) && rows.contains(noDown));
    // The favourites likewise, and one between moves both ways.
    const FilePath added = tree.folder(QStringLiteral("Added"));
    SidebarStore::shared().addFavorite(added);
    ASSERT_TRUE(waitUntil([&] { return rowOf(SidebarRow::Kind::favorite, added) >= 0; }));
    rows = menuOf(model()->titleRow(section::favorites) + 1);
    EXPECT_TRUE(rows.contains(noUp) && rows.contains(down));
    rows = menuOf(rowOf(SidebarRow::Kind::favorite, documents));
    EXPECT_TRUE(rows.contains(up) && rows.contains(down));
    rows = menuOf(rowOf(SidebarRow::Kind::favorite, added));
    EXPECT_TRUE(rows.contains(up) && rows.contains(noDown));
    SidebarStore::shared().removeFavorite(added);
    SidebarStore::shared().removeSearch(first.id);
    SidebarStore::shared().removeSearch(second.id);
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
