// Colour tags in a real window: Alt+1 … Alt+7 toggle a colour tag on the selection as one undo
// step, the rows show the dots once the cache has read them, the sidebar lists the tags in use,
// and the palette has a row per tag, titled with its name, after the saved searches.

#include "WindowFixture.h"

#include "commands/CommandCatalog.h"
#include "places/FinderTags.h"
#include "platform/Xattr.h"
#include "ui/pane/PaneTagDecoration.h"
#include "ui/sidebar/Sidebar.h"
#include "ui/sidebar/SidebarModel.h"
#include "ui/views/FileListModel.h"
#include "ui/views/FolderColumnModel.h"
#include "ui/views/TagDots.h"

using namespace orwick;
using test::waitUntil;

namespace {

struct TagWindowTest : test::WindowTest {
    void SetUp() override
    {
        static const bool following = [] {
            FinderTags::shared().follow(&FileOperations::shared());
            return true;
        }();
        (void)following;
        report = tree.file("report.txt", "r");
        notes = tree.file("notes.md", "n");
        open(tree.root());
        window->addPaneDecorator([](PaneWidget* widget) { new PaneTagDecoration(widget, &FinderTags::shared()); });
    }
    QList<int> dots(const FilePath& item)
    {
        const int row = pane()->row(item);
        const FileListModel* model = window->activePaneWidget()->model();
        return row < 0 ? QList<int>() : model->data(model->index(row, FileListModel::NameColumn), TagColorsRole).value<QList<int>>();
    }
    bool sidebarLists(const QString& tag) const
    {
        const SidebarModel* model = window->sidebar()->model();
        for (int i = 0; i < model->rowCount(); ++i)
            if (model->rowAt(i).kind == SidebarRow::Kind::tag && model->rowAt(i).tagName == tag)
                return true;
        return false;
    }

    FilePath report, notes;
};

TEST_F(TagWindowTest, AltDigitTogglesAColourTagAndTheRowShowsItsDot)
{
    ASSERT_TRUE(xattr::set(notes, xattr::tags, "client-a"));
    select(report);
    pane()->click(notes, Qt::ControlModifier);
    ASSERT_EQ(state->selectedURLs().size(), 2);

    press(Qt::Key_1, Qt::AltModifier); // Red
    settle();
    EXPECT_EQ(xattr::get(report, xattr::tags), QByteArray("Red"));
    EXPECT_EQ(xattr::get(notes, xattr::tags), QByteArray("client-a,Red"));
    EXPECT_EQ(toast(), QStringLiteral("Added Red to 2 items"));
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Add Red Tag"));
    ASSERT_TRUE(waitUntil([&] { return dots(report) == QList<int>{6} && dots(notes) == QList<int>{6}; }));
    ASSERT_TRUE(waitUntil([&] { return sidebarLists(QStringLiteral("client-a")); })) << "a tag in use joins the colour set";
    EXPECT_TRUE(sidebarLists(QStringLiteral("Gray")));

    press(Qt::Key_1, Qt::AltModifier); // every selected item has it: it goes
    settle();
    EXPECT_EQ(xattr::get(report, xattr::tags), std::nullopt);
    EXPECT_EQ(xattr::get(notes, xattr::tags), QByteArray("client-a"));
    ASSERT_TRUE(waitUntil([&] { return dots(report).isEmpty(); }));

    state->undoStack()->undo();
    settle();
    EXPECT_EQ(xattr::get(report, xattr::tags), QByteArray("Red"));
    ASSERT_TRUE(waitUntil([&] { return dots(report) == QList<int>{6}; }));
}

TEST_F(TagWindowTest, AnotherProgramsTagShowsAfterTheWatcherReloads)
{
    ASSERT_TRUE(waitUntil([&] { return FinderTags::shared().cache().contains(tree.root()); }));
    ASSERT_TRUE(xattr::set(report, xattr::tags, "Blue,Green"));
    ASSERT_TRUE(waitUntil([&] { return dots(report) == (QList<int>{4, 2}); }, 8000));
}

TEST_F(TagWindowTest, ASideColumnOfTheColumnsViewShowsTheDotsToo)
{
    ASSERT_TRUE(xattr::set(report, xattr::tags, "Yellow, Red"));
    FolderColumnModel column(tree.root(), {}, {});
    auto dotsOf = [&](const FilePath& item) {
        for (int row = 0; row < column.rowCount(); ++row)
            if (column.itemAt(row)->url == item)
                return column.data(column.index(row), TagColorsRole).value<QList<int>>();
        return QList<int>();
    };
    ASSERT_TRUE(waitUntil([&] { return dotsOf(report) == (QList<int>{5, 6}); }));
    EXPECT_TRUE(dotsOf(notes).isEmpty());
}

TEST_F(TagWindowTest, ThePaletteHasATagRowPerColourAfterTheSavedSearches)
{
    const QList<AppCommand> all = CommandCatalog::all(*state);
    qsizetype red = -1, firstWorkspace = -1;
    QStringList titles;
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (all[i].id.startsWith(QLatin1StringView("tag.")))
            titles.append(all[i].title);
        if (all[i].id == QLatin1StringView("tag.red"))
            red = i;
        if (firstWorkspace < 0 && all[i].id == QLatin1StringView("saveWorkspace"))
            firstWorkspace = i;
    }
    EXPECT_EQ(titles.mid(0, 7), (QStringList{"Red", "Orange", "Yellow", "Green", "Blue", "Purple", "Gray"}));
    ASSERT_GE(red, 0);
    EXPECT_LT(red, firstWorkspace);
    EXPECT_EQ(all[red].shortcutText(), QStringLiteral("Alt+1"));
    EXPECT_EQ(all[red].keywords, QStringLiteral("label color finder tags"));
    EXPECT_FALSE(all[red].enabledIn(*state)) << "nothing selected";
    select(report);
    EXPECT_TRUE(all[red].enabledIn(*state));
}

} // namespace
