// The Keyboard Shortcuts sheet in a real window: F1 opens it over the content with every command
// of the catalogue under the menus' headings and all of each command's keys; typing filters by
// title, keywords or key; Return runs the highlighted command; Esc clears, then closes.

#include "WindowFixture.h"

#include "commands/CommandCatalog.h"
#include "commands/CommandGroups.h"
#include "commands/ViewKeys.h"
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
    // Command id → keys of the rows shown, and the headings shown, in order; a view key's row
    // is "heading/what it does" → keys in `viewKeys`.
    QHash<QString, QString> rows(QStringList* headings = nullptr, QHash<QString, QString>* viewKeys = nullptr)
    {
        QHash<QString, QString> shown;
        QTreeWidget* list = sheet()->list();
        QString heading;
        for (int i = 0; i < list->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* item = list->topLevelItem(i);
            if (item->isHidden())
                continue;
            if (item->isFirstColumnSpanned()) {
                heading = item->text(0);
                if (headings)
                    headings->append(heading);
                continue;
            }
            const QString id = item->data(0, Qt::UserRole).toString();
            if (id.isEmpty()) {
                if (viewKeys)
                    viewKeys->insert(heading + u'/' + item->text(0), item->text(1));
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
    QHash<QString, QString> viewKeys;
    const QHash<QString, QString> shown = rows(&headings, &viewKeys);
    EXPECT_EQ(headings.mid(0, 9), (QStringList{"File", "Edit", "View", "Go", "Git", "Image", "Window", "Help", "More"}));
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
    EXPECT_EQ(sheet()->shownCount(), shown.size() + viewKeys.size());
}

TEST_F(ShortcutsSheetTest, AfterTheCommandsEachViewsOwnKeysUnderTheViewsName)
{
    open(tree.root());
    press(Qt::Key_F1);
    awaitSheet();
    QStringList headings;
    QHash<QString, QString> viewKeys;
    rows(&headings, &viewKeys);
    QStringList viewTitles;
    for (const ViewKeySection& section : ViewKeys::all()) {
        viewTitles.append(section.title);
        for (const ViewKey& key : section.keys) {
            QStringList native;
            for (const QKeySequence& chord : key.chords)
                native.append(chord.toString(QKeySequence::NativeText).replace("Backtab", "Tab"));
            EXPECT_EQ(viewKeys.value(section.title + u'/' + key.does), native.join("  or  "))
                << section.title.toStdString() << ": " << key.does.toStdString();
        }
    }
    EXPECT_EQ(headings.mid(9), viewTitles) << "one section per view, after the menus'";
    EXPECT_EQ(viewKeys.value("Board/Move the card to the lane on the right (Ctrl+Z undoes)"),
              QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Right).toString(QKeySequence::NativeText));
    EXPECT_EQ(viewKeys.value("Review Changes/The next hunk (from the file list too)"), "]  or  N");

    // The filter finds a view's keys by its name, what they do or the keys.
    type(QStringLiteral("hunk"));
    viewKeys.clear();
    headings.clear();
    EXPECT_TRUE(rows(&headings, &viewKeys).isEmpty());
    EXPECT_EQ(headings, QStringList{"Review Changes"});
    EXPECT_EQ(viewKeys.size(), 3);
    press(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("board ctrl+shift"));
    viewKeys.clear();
    rows(nullptr, &viewKeys);
    EXPECT_EQ(viewKeys.size(), 2);
    // Return on a view's key says where it works, and the sheet stays.
    ASSERT_TRUE(sheet()->list()->currentItem());
    press(Qt::Key_Return);
    EXPECT_TRUE(sheet()->isVisible());
    EXPECT_TRUE(sheet()->footer().endsWith(" in Board")) << sheet()->footer().toStdString();
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
    EXPECT_EQ(sheet()->footer(), "No command or key matches “zzzzqq”");

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
