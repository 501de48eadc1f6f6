// The Keyboard Shortcuts sheet in a real window: F1 opens it over the content with every command
// of the catalogue under the menus' headings and all of each command's keys; typing filters by
// title, keywords or key; Return runs the highlighted command; Esc clears, then closes.

#include "WindowFixture.h"

#include "commands/CommandCatalog.h"
#include "commands/CommandGroups.h"
#include "ui/panels/ShortcutsSheet.h"
#include "ui/window/NamePatternPrompt.h"

#include <QLineEdit>
#include <QTreeWidget>

namespace orwick::test {
namespace {

struct ShortcutsSheetTest : WindowTest {
    ShortcutsSheet* sheet() { return window->findChild<ShortcutsSheet*>(); }
    void awaitSheet()
    {
        ASSERT_TRUE(waitUntil([&] { return sheet() && sheet()->isVisible() && QApplication::focusWidget() == sheet()->filterField(); }));
    }
    // Command id → keys of the rows shown, and the headings shown, in order.
    QHash<QString, QString> rows(QStringList* headings = nullptr)
    {
        QHash<QString, QString> shown;
        QTreeWidget* list = sheet()->list();
        for (int i = 0; i < list->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* item = list->topLevelItem(i);
            if (item->isHidden())
                continue;
            const QString id = item->data(0, Qt::UserRole).toString();
            if (id.isEmpty()) {
                if (headings)
                    headings->append(item->text(0));
                continue;
            }
            shown.insert(id, item->text(1));
        }
        return shown;
    }
};

TEST_F(ShortcutsSheetTest, F1ListsEveryCommandWithAllItsKeysUnderTheMenusHeadings)
{
    open(tree.root());
    press(Qt::Key_F1);
    awaitSheet();
    QStringList headings;
    const QHash<QString, QString> shown = rows(&headings);
    EXPECT_EQ(headings, (QStringList{"File", "Edit", "View", "Go", "Git", "Image", "Window", "Help", "More"}));
    EXPECT_EQ(shown.value("trash"), "Ctrl+Del  or  Del");
    EXPECT_EQ(shown.value("back"), "Ctrl+[  or  Alt+Left");
    EXPECT_EQ(shown.value("selectByPattern"), "Ctrl++  or  Num++");
    EXPECT_EQ(shown.value("keyboardShortcuts"), "F1");
    EXPECT_EQ(shown.value("guide"), "Ctrl+?");
    EXPECT_EQ(shown.value("undo"), "Ctrl+Z");
    EXPECT_EQ(shown.value("redo"), "Ctrl+Shift+Z");
    EXPECT_EQ(shown.value("previousTab"), "Ctrl+Shift+Tab");
    EXPECT_TRUE(shown.contains("openWith"));
    // One owner of keys: each command of the catalogue is listed, with exactly its keys.
    for (const AppCommand& command : CommandCatalog::all(*state)) {
        ASSERT_TRUE(shown.contains(command.id)) << command.id.toStdString();
        EXPECT_EQ(shown.value(command.id), ShortcutsSheet::keysText(command)) << command.id.toStdString();
    }
    EXPECT_EQ(sheet()->shownCount(), shown.size());
}

TEST_F(ShortcutsSheetTest, TypingFiltersByTitleKeywordsOrKeyAndReturnRunsTheRow)
{
    tree.file("a.txt"); // Select by Pattern wants items to select
    open(tree.root());
    press(Qt::Key_F1);
    awaitSheet();
    type(QStringLiteral("ctrl+t"));
    QHash<QString, QString> shown = rows();
    EXPECT_TRUE(shown.contains("newTab"));
    EXPECT_TRUE(shown.contains("nextTab")) << "Ctrl+Tab starts with the text";
    EXPECT_FALSE(shown.contains("reopenTab")) << "Ctrl+Shift+T doesn't contain it";
    EXPECT_FALSE(shown.contains("keyboardShortcuts"));

    press(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("hotkeys"));
    EXPECT_EQ(rows().keys(), QStringList{"keyboardShortcuts"}) << "found by a keyword";

    press(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("zzzzqq"));
    EXPECT_EQ(sheet()->shownCount(), 0);
    EXPECT_EQ(sheet()->footer(), "No command matches “zzzzqq”");

    press(Qt::Key_Escape);
    EXPECT_TRUE(sheet()->filterField()->text().isEmpty()) << "the first Esc clears the filter";
    EXPECT_GT(sheet()->shownCount(), 100);
    type(QStringLiteral("select by pattern"));
    ASSERT_TRUE(sheet()->list()->currentItem());
    EXPECT_EQ(sheet()->list()->currentItem()->text(0), "Select by Pattern…");
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !sheet() || !sheet()->isVisible(); })) << "the sheet closes before the command runs";
    ASSERT_TRUE(waitUntil([&] { return window->findChild<NamePatternPrompt*>() != nullptr; }));
    window->findChild<NamePatternPrompt*>()->reject();
}

TEST_F(ShortcutsSheetTest, EscClosesAndTheKeyboardReturnsToThePane)
{
    open(tree.root());
    QWidget* before = QApplication::focusWidget();
    press(Qt::Key_F1);
    awaitSheet();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    ASSERT_TRUE(sheet()->list()->currentItem());
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !sheet() || !sheet()->isVisible(); }));
    EXPECT_EQ(QApplication::focusWidget(), before);
}

} // namespace
} // namespace orwick::test
