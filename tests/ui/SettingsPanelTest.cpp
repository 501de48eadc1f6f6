// The "Customize…" sheet in a real window: opened by its key, worked by keys alone, changing
// the real owners and the settings store, closed by Esc with the keyboard back in the pane.

#include "app/Settings.h"
#include "git/Git.h"
#include "platform/XdgPaths.h"
#include "ui/panels/SettingsPanel.h"
#include "ui/theme/Theme.h"
#include "ui/window/CommandMenus.h"
#include "WindowFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QMenu>

using namespace orwick;
using namespace orwick::test;

namespace {

QString stored(const char* key) { return QSettings(xdg::orwickConfigFile().text(), QSettings::IniFormat).value(key).toString(); }

struct SettingsWindowTest : WindowTest {
    void SetUp() override
    {
        preferences.setVimKeys(false);
        tree.file("a.txt");
        open(tree.root());
        SettingsPanel::follow(*state, window.get());
    }
    void TearDown() override { preferences.setVimKeys(false); }
    SettingsPanel* sheet() const
    {
        for (SettingsPanel* panel : window->findChildren<SettingsPanel*>())
            if (!panel->isHidden())
                return panel;
        return nullptr;
    }
    // Presses Down, then Up, until `key`'s control has the keyboard; false if it never does.
    bool moveTo(const char* key)
    {
        for (int arrow : {Qt::Key_Down, Qt::Key_Up}) // the row may be above, too
            for (int i = 0; i < 20 && QApplication::focusWidget() != sheet()->control(key); ++i)
                press(arrow);
        return QApplication::focusWidget() == sheet()->control(key);
    }
};

} // namespace

TEST_F(SettingsWindowTest, CtrlCommaOpensTheSheetAndKeysAloneChangeASetting)
{
    QWidget* paneFocus = QApplication::focusWidget();
    ASSERT_TRUE(paneFocus);
    ASSERT_TRUE(window->activePaneWidget()->isAncestorOf(paneFocus));

    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(sheet()) << "Ctrl+, opens the sheet";
    EXPECT_EQ(state->panel(), WindowState::Panel::settings);
    EXPECT_TRUE(sheet()->isAncestorOf(QApplication::focusWidget())) << "the sheet takes the keyboard";
    // Every setting has its row, its help shown with it.
    for (const char* key : {"defaultViewMode", "gridForMedia", "vimKeys", "hideIgnored", "preferredEditor", "preferredTerminal",
                            "takeOverShowInFolder"})
        EXPECT_TRUE(sheet()->control(key)) << key;
    auto* vim = qobject_cast<QCheckBox*>(sheet()->control("vimKeys"));
    ASSERT_TRUE(vim);
    EXPECT_EQ(vim->text(), "Vim keys in the file list");
    EXPECT_FALSE(vim->isChecked());

    // Tab moves on to the next row, Shift+Tab comes back; both stay in the sheet.
    QWidget* first = QApplication::focusWidget();
    ASSERT_EQ(first, sheet()->control("theme")) << "Appearance comes first";
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), sheet()->control("appearanceMode"));
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), first);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(sheet()->isAncestorOf(QApplication::focusWidget())) << "Shift+Tab on the first row goes round to the last";

    ASSERT_TRUE(moveTo("vimKeys"));
    press(Qt::Key_Space);
    EXPECT_TRUE(preferences.vimKeys());
    EXPECT_TRUE(vim->isChecked());
    EXPECT_EQ(stored("vimKeys"), "true");
    press(Qt::Key_Space);
    EXPECT_FALSE(preferences.vimKeys());
    EXPECT_EQ(stored("vimKeys"), "false");
    press(Qt::Key_Return);
    EXPECT_TRUE(preferences.vimKeys()) << "Enter switches too";

    press(Qt::Key_Escape);
    EXPECT_FALSE(sheet()) << "Esc closes the sheet";
    EXPECT_EQ(state->panel(), WindowState::Panel::none);
    EXPECT_EQ(QApplication::focusWidget(), paneFocus) << "the keyboard goes back to the pane";
    EXPECT_TRUE(preferences.vimKeys()) << "closing keeps what was changed";
}

TEST_F(SettingsWindowTest, ArrowsStepAChoiceAndTheOpenPaneFollowsTheDefaultView)
{
    preferences.setDefaultViewMode(ViewMode::list);
    ASSERT_EQ(pane()->viewMode(), ViewMode::list);
    state->showPanel(WindowState::Panel::settings, {});
    ASSERT_TRUE(sheet());
    auto* views = qobject_cast<QComboBox*>(sheet()->control("defaultViewMode"));
    ASSERT_TRUE(views);
    ASSERT_TRUE(moveTo("defaultViewMode"));
    press(Qt::Key_Right);
    EXPECT_EQ(preferences.defaultViewMode(), ViewMode::grid);
    EXPECT_EQ(stored("defaultViewMode"), "grid");
    EXPECT_EQ(pane()->viewMode(), ViewMode::grid) << "a folder without a chosen view shows the new default at once";
    press(Qt::Key_Left);
    EXPECT_EQ(preferences.defaultViewMode(), ViewMode::list);
    press(Qt::Key_Left);
    EXPECT_EQ(preferences.defaultViewMode(), ViewMode::list) << "the first choice is the end";
    press(Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget(), sheet()->control("gridForMedia")) << "Down goes to the next row, not the next choice";
    EXPECT_EQ(preferences.defaultViewMode(), ViewMode::list);

    // The view the pane showed when the sheet opened has made way for another: the keyboard goes
    // back to the pane all the same.
    ASSERT_TRUE(moveTo("defaultViewMode"));
    press(Qt::Key_Right);
    ASSERT_EQ(pane()->viewMode(), ViewMode::grid);
    press(Qt::Key_Escape);
    EXPECT_FALSE(sheet());
    QWidget* focus = QApplication::focusWidget();
    ASSERT_TRUE(focus);
    EXPECT_TRUE(window->activePaneWidget()->isAncestorOf(focus) && focus->isVisible());
    preferences.setDefaultViewMode(ViewMode::list);
}

TEST_F(SettingsWindowTest, TheRowWithTheKeyboardIsTintedInTheThemeChosenFromIt)
{
    state->showPanel(WindowState::Panel::settings, {});
    ASSERT_TRUE(sheet());
    ASSERT_TRUE(moveTo("appearanceMode"));
    QWidget* row = sheet()->control("appearanceMode")->parentWidget();
    const QColor before = theme::selection();
    EXPECT_EQ(row->palette().color(QPalette::Window), before);
    auto* appearances = qobject_cast<QComboBox*>(sheet()->control("appearanceMode"));
    ASSERT_TRUE(appearances);
    const int start = appearances->currentIndex();
    for (int i = 0; i < appearances->count() && theme::selection() == before; ++i)
        press(i < appearances->count() - 1 - start ? Qt::Key_Right : Qt::Key_Left);
    ASSERT_NE(theme::selection(), before) << "another appearance has another selection colour";
    EXPECT_EQ(row->palette().color(QPalette::Window), theme::selection());
    appearances->setCurrentIndex(start);
    press(Qt::Key_Down);
    EXPECT_NE(row->palette().color(QPalette::Window), theme::selection()) << "the row left has the sheet's colours again";
    press(Qt::Key_Escape);
}

TEST_F(SettingsWindowTest, AChangeShowsInEveryWindowsSheet)
{
    WindowState otherState(tree.root(), &preferences);
    MainWindow other(&otherState);
    SettingsPanel::follow(otherState, &other);
    other.show();
    otherState.showPanel(WindowState::Panel::settings, {});
    auto* otherVim = qobject_cast<QCheckBox*>(other.findChild<SettingsPanel*>()->control("vimKeys"));
    ASSERT_TRUE(otherVim);

    state->showPanel(WindowState::Panel::settings, {});
    qobject_cast<QCheckBox*>(sheet()->control("vimKeys"))->click();
    EXPECT_TRUE(preferences.vimKeys());
    EXPECT_TRUE(otherVim->isChecked());
    preferences.setVimKeys(false); // the View menu or another program's change alike
    EXPECT_FALSE(otherVim->isChecked());
}

TEST_F(SettingsWindowTest, TheMenuHasCustomizeAndAnotherPanelReplacesTheSheet)
{
    QAction* customize = window->menus()->action("customize");
    ASSERT_TRUE(customize);
    EXPECT_EQ(customize->text(), "Customize…");
    EXPECT_EQ(customize->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Comma));
    bool inAMenu = false;
    for (QMenu* menu : window->findChildren<QMenu*>())
        inAMenu = inAMenu || menu->actions().contains(customize);
    EXPECT_TRUE(inAMenu);

    customize->trigger();
    ASSERT_TRUE(sheet());
    state->closePanel();
    EXPECT_FALSE(sheet()) << "the panel set back closes the sheet";
}
