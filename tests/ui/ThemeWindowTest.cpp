// Themes in a real window: choosing a theme, an appearance or an accent (by palette command, by
// the View menu, by the Customize sheet) restyles the open window at once, and so does saving a
// theme file in the themes folder.

#include "commands/CommandCatalog.h"
#include "theme/ThemeStore.h"
#include "ui/panels/SettingsPanel.h"
#include "ui/sidebar/Sidebar.h"
#include "ui/pane/FilterBar.h"
#include "ui/pane/PaneWidget.h"
#include "ui/tabs/WindowTabBar.h"
#include "ui/window/CommandMenus.h"
#include "ui/theme/Theme.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QScrollBar>
#include <QStyleOptionSlider>
#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QFile>
#include <QMenu>
#include <QMenuBar>

using namespace orwick;
using namespace orwick::test;

namespace {

struct ThemeWindowTest : WindowTest {
    ThemeStore& themes() { return ThemeStore::shared(); }
    void SetUp() override
    {
        tree.file("a.txt");
        open(tree.root());
        themes().setAppearanceMode(AppearanceMode::light);
    }
    void TearDown() override
    {
        QFile::remove(themes().folder().child(QStringLiteral("mine.json")).text());
        themes().reload();
        themes().setSelectedName(QStringLiteral("Orwick"));
        themes().setAccent(std::nullopt);
        themes().setAppearanceMode(AppearanceMode::system);
    }
    // The colour the window shows at a point of the file list below its rows.
    QColor listGround()
    {
        QWidget* view = window->activePaneWidget()->focusTarget();
        QApplication::processEvents();
        const QImage shot = view->grab().toImage();
        return shot.pixelColor(shot.width() - 20, shot.height() - 20);
    }
    QColor sidebarGround()
    {
        const QImage shot = window->sidebar()->grab().toImage();
        return shot.pixelColor(shot.width() / 2, shot.height() - 10);
    }
    QMenu* themeMenu()
    {
        for (QAction* top : window->menuBar()->actions())
            if (top->text() == QStringLiteral("&View"))
                for (QAction* entry : top->menu()->actions())
                    if (entry->menu() && entry->text() == QStringLiteral("&Theme"))
                        return entry->menu();
        return nullptr;
    }
    QAction* entry(QMenu* menu, const QString& text)
    {
        for (QAction* a : menu->actions())
            if (a->text() == text)
                return a;
        return nullptr;
    }
};

TEST_F(ThemeWindowTest, TabCloseMarksAreThemedCrossesNotStockPictures)
{
    state->newTab();
    QApplication::processEvents();
    auto* tabs = qobject_cast<WindowTabBar*>(window->tabBar());
    ASSERT_NE(tabs, nullptr);
    ASSERT_EQ(tabs->count(), 2);
    const QImage bar = tabs->grab().toImage();
    for (int index = 0; index < tabs->count(); ++index) {
        const QRect mark = tabs->closeRect(index);
        ASSERT_FALSE(mark.isEmpty());
        const QColor ground = bar.pixelColor(mark.topLeft());
        int inked = 0, coloured = 0;
        for (int y = mark.top(); y <= mark.bottom(); ++y)
            for (int x = mark.left(); x <= mark.right(); ++x) {
                const QColor c = bar.pixelColor(x, y);
                inked += c != ground;
                coloured += c.hsvSaturation() > 80; // the stock picture's red
            }
        EXPECT_GT(inked, 0) << "tab " << index << " shows a mark";
        EXPECT_EQ(coloured, 0) << "tab " << index << " draws its cross in the theme's grey";
    }
}

TEST_F(ThemeWindowTest, ABoxWithoutWordsShowsWhenItHasTheKeyboard)
{
    // As in Get Info's permission grid: boxes with no label, reached with Tab.
    auto* holder = new QWidget(window.get());
    holder->setGeometry(0, 0, 120, 40);
    auto* ticked = new QCheckBox(holder);
    ticked->setChecked(true);
    ticked->move(4, 4);
    auto* unticked = new QCheckBox(holder);
    unticked->move(40, 4);
    auto* round = new QRadioButton(holder);
    round->move(76, 4);
    holder->show();
    holder->raise();
    for (QAbstractButton* box : {static_cast<QAbstractButton*>(ticked), static_cast<QAbstractButton*>(unticked),
                                 static_cast<QAbstractButton*>(round)}) {
        box->resize(box->sizeHint());
        window->activePaneWidget()->focusTarget()->setFocus(Qt::TabFocusReason);
        QApplication::processEvents();
        const QImage without = box->grab().toImage();
        box->setFocus(Qt::TabFocusReason);
        ASSERT_TRUE(box->hasFocus());
        QApplication::processEvents();
        const QImage with = box->grab().toImage();
        ASSERT_EQ(with.size(), without.size());
        int changed = 0;
        for (int y = 0; y < with.height(); ++y)
            for (int x = 0; x < with.width(); ++x) {
                const QColor a = with.pixelColor(x, y), b = without.pixelColor(x, y);
                changed += std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) > 120;
            }
        EXPECT_GE(changed, 8) << (box == ticked ? "ticked" : box == unticked ? "unticked" : "round")
                              << " box: the keyboard's place must be seen";
    }
}

TEST_F(ThemeWindowTest, ScrollBarsAreThinThumbsOnTheGroundOfTheirList)
{
    for (int i = 0; i < 300; ++i)
        tree.file(QStringLiteral("f%1.txt").arg(i));
    open(tree.root());
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("appearance.dark"), *state));
    auto* view = qobject_cast<QAbstractScrollArea*>(window->activePaneWidget()->focusTarget());
    ASSERT_NE(view, nullptr);
    ASSERT_TRUE(waitUntil([&] { return view->verticalScrollBar()->maximum() > 0; }));
    QScrollBar* bar = view->verticalScrollBar();
    const QColor ground = listGround();
    EXPECT_LE(bar->width(), 12) << "thin";
    const QImage shot = bar->grab().toImage();
    // Where the arrow buttons were: the list's ground at both ends once the thumb has left one.
    bar->setValue(bar->maximum() / 2);
    const QImage middle = bar->grab().toImage();
    EXPECT_EQ(middle.pixelColor(middle.width() / 2, 2), ground);
    EXPECT_EQ(middle.pixelColor(middle.width() / 2, middle.height() - 3), ground);
    EXPECT_EQ(middle.pixelColor(0, middle.height() / 4), ground) << "no groove of another colour";
    int thumb = 0;
    for (int y = 0; y < middle.height(); ++y)
        thumb += middle.pixelColor(middle.width() / 2, y) != ground;
    EXPECT_GT(thumb, 20) << "a thumb is drawn";
    EXPECT_NE(shot, middle) << "and it moves";
    QStyleOptionSlider option;
    option.initFrom(bar);
    option.orientation = Qt::Vertical;
    option.minimum = bar->minimum();
    option.maximum = bar->maximum();
    option.pageStep = bar->pageStep();
    option.sliderPosition = option.sliderValue = bar->value();
    EXPECT_TRUE(bar->style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSubLine, bar).isEmpty());
    EXPECT_EQ(bar->style()->hitTestComplexControl(QStyle::CC_ScrollBar, &option, QPoint(5, 2), bar), QStyle::SC_ScrollBarSubPage)
        << "a click at the end pages, as there is no arrow there";
}

TEST_F(ThemeWindowTest, AFieldsClearMarkIsTheThemesGreyCrossDrawnSharpAtTwiceTheScale)
{
    press(Qt::Key_F, Qt::ControlModifier);
    FilterBar* field = window->activePaneWidget()->filterBar();
    ASSERT_TRUE(waitUntil([&] { return field->isVisible(); }));
    const QIcon mark = field->style()->standardIcon(QStyle::SP_LineEditClearButton, nullptr, field);
    const QImage big = mark.pixmap(QSize(16, 16), 2.0).toImage();
    ASSERT_EQ(big.size(), QSize(32, 32)) << "drawn for the scale, not stretched";
    int inked = 0, coloured = 0;
    for (int y = 0; y < big.height(); ++y)
        for (int x = 0; x < big.width(); ++x) {
            const QColor c = big.pixelColor(x, y);
            inked += c.alpha() > 0;
            coloured += c.alpha() > 0 && c.hsvSaturation() > 80; // a stock picture's red or blue
        }
    EXPECT_GT(inked, 20);
    EXPECT_EQ(coloured, 0);
    EXPECT_EQ(big.pixelColor(16, 16).rgb(), theme::dimText().rgb()) << "the cross's middle, in the theme's grey";
}

TEST_F(ThemeWindowTest, MenuIconsComeFromTheDesktopsIconThemeWhenTheMenuOpens)
{
    // An icon theme of one picture, in the temporary home.
    const FilePath themes = tree.folder("icons");
    tree.file("icons/Plain/index.theme", "[Icon Theme]\nName=Plain\nDirectories=16x16/actions\n\n[16x16/actions]\nSize=16\nType=Fixed\n");
    QImage picture(16, 16, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    tree.folder("icons/Plain/16x16/actions");
    ASSERT_TRUE(picture.save(themes.child(QStringLiteral("Plain/16x16/actions/edit-copy.png")).text()));
    const QStringList searchPaths = QIcon::themeSearchPaths();
    const QString themeName = QIcon::themeName();
    QIcon::setThemeSearchPaths({themes.text()});
    QIcon::setThemeName(QStringLiteral("Plain"));

    QMenu* edit = nullptr;
    for (QAction* top : window->menuBar()->actions())
        if (top->text() == QStringLiteral("&Edit"))
            edit = top->menu();
    ASSERT_NE(edit, nullptr);
    QAction* copy = window->menus()->action(QStringLiteral("copy"));
    ASSERT_NE(copy, nullptr);
    edit->popup(window->mapToGlobal(QPoint(10, 10)));
    ASSERT_TRUE(waitUntil([&] { return edit->isVisible(); }));
    EXPECT_FALSE(copy->icon().isNull()) << "Copy shows the theme's edit-copy";
    edit->hide();
    QIcon::setThemeName(themeName);
    QIcon::setThemeSearchPaths(searchPaths);
}

TEST_F(ThemeWindowTest, ThemeAndAppearanceCommandsRestyleTheOpenWindow)
{
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("theme.Nord"), *state));
    EXPECT_EQ(listGround(), QColor(0xEC, 0xEF, 0xF4));
    EXPECT_EQ(sidebarGround(), QColor(0xE5, 0xE9, 0xF0));
    EXPECT_EQ(QApplication::palette().color(QPalette::Text), QColor(0x2E, 0x34, 0x40));

    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("appearance.dark"), *state));
    EXPECT_EQ(listGround(), QColor(0x2E, 0x34, 0x40));
    EXPECT_EQ(sidebarGround(), QColor(0x29, 0x2E, 0x39));
    EXPECT_TRUE(theme::isDark());

    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("theme.Solarized"), *state));
    EXPECT_EQ(listGround(), QColor(0x00, 0x2B, 0x36));
    EXPECT_EQ(QApplication::palette().color(QPalette::Highlight), QColor(0x26, 0x8B, 0xD2));

    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("accent.Green"), *state));
    EXPECT_EQ(QApplication::palette().color(QPalette::Highlight), QColor(0x2E, 0x9E, 0x55)) << "the active pane's mark and more";
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("accent.themesOwn"), *state));
    EXPECT_EQ(QApplication::palette().color(QPalette::Highlight), QColor(0x26, 0x8B, 0xD2));
}

TEST_F(ThemeWindowTest, SavingAThemeFileRestylesTheOpenWindow)
{
    const FilePath file = themes().folder().child(QStringLiteral("mine.json"));
    ASSERT_TRUE(writeFile(file, R"({"name": "Mine", "light": {"background": "#FFF4E0"}})"));
    ASSERT_TRUE(waitUntil([&] { return CommandCatalog::find(QStringLiteral("theme.Mine")) != nullptr; }))
        << "a new file is a new palette row";
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("theme.Mine"), *state));
    EXPECT_EQ(listGround(), QColor(0xFF, 0xF4, 0xE0));

    ASSERT_TRUE(writeFile(file, R"({"name": "Mine", "light": {"background": "#E0F4FF"}, "rowHeight": 40})"));
    ASSERT_TRUE(waitUntil([&] { return listGround() == QColor(0xE0, 0xF4, 0xFF); })) << "saved, and shown at once";
    EXPECT_EQ(theme::rowHeight(), 40);
    QWidget* view = window->activePaneWidget()->focusTarget();
    auto* list = qobject_cast<QAbstractItemView*>(view);
    ASSERT_TRUE(list);
    ASSERT_TRUE(waitUntil([&] { return list->visualRect(list->model()->index(0, 0)).height() >= 40; })) << "rows take the new height";

    ASSERT_TRUE(writeFile(file, R"({"name": "Mine", "light": )"));
    ASSERT_TRUE(waitUntil([&] { return toast().startsWith(QStringLiteral("Theme file mine.json: not valid JSON")); }))
        << "a file saved with a mistake says so: " << toast().toStdString();
    EXPECT_EQ(listGround(), QColor(0xFF, 0xFF, 0xFF)) << "Orwick's colours until the file is mended";
}

TEST_F(ThemeWindowTest, TheViewMenuListsThemesAndChecksTheChosenOne)
{
    QMenu* menu = themeMenu();
    ASSERT_TRUE(menu);
    Q_EMIT menu->aboutToShow();
    for (const char* name : {"Orwick", "Paper", "Nord", "Dracula", "Solarized", "Catppuccin", "Match System", "Light", "Dark",
                             "Choose Theme…", "Open Themes Folder"})
        EXPECT_TRUE(entry(menu, QString::fromUtf8(name))) << name;
    EXPECT_TRUE(entry(menu, "Orwick")->isChecked());
    EXPECT_TRUE(entry(menu, "Light")->isChecked());
    entry(menu, "Dracula")->trigger();
    EXPECT_EQ(themes().current().name, "Dracula");
    EXPECT_EQ(listGround(), QColor(0xFF, 0xFB, 0xEB));
    Q_EMIT menu->aboutToShow();
    EXPECT_TRUE(entry(menu, "Dracula")->isChecked());
    EXPECT_FALSE(entry(menu, "Orwick")->isChecked());

    entry(menu, "Open Themes Folder")->trigger();
    ASSERT_TRUE(waitUntil([&] { return pane()->url() == themes().folder() && !pane()->isLoading(); }));
}

TEST_F(ThemeWindowTest, ChooseThemeOpensCustomizeOnTheThemeRow)
{
    SettingsPanel::follow(*state, window.get());
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("chooseTheme"), *state));
    SettingsPanel* sheet = window->findChild<SettingsPanel*>();
    ASSERT_TRUE(sheet);
    auto* choice = qobject_cast<QComboBox*>(sheet->control(QStringLiteral("theme")));
    ASSERT_TRUE(choice);
    EXPECT_EQ(QApplication::focusWidget(), choice);
    EXPECT_EQ(choice->currentText(), "Orwick");
    press(Qt::Key_Right); // the next theme: Paper
    EXPECT_EQ(themes().current().name, "Paper");
    EXPECT_EQ(listGround(), QColor(0xFF, 0xFF, 0xFF));
    auto* mode = qobject_cast<QComboBox*>(sheet->control(QStringLiteral("appearanceMode")));
    ASSERT_TRUE(mode);
    mode->setCurrentIndex(mode->findData(QStringLiteral("dark")));
    EXPECT_EQ(listGround(), QColor(0x19, 0x19, 0x19));
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("appearance.light"), *state));
    EXPECT_EQ(mode->currentData().toString(), "light") << "the sheet follows a change made elsewhere";

    ASSERT_TRUE(writeFile(themes().folder().child(QStringLiteral("mine.json")), R"({"name": "Mine"})"));
    ASSERT_TRUE(waitUntil([&] { return choice->findData(QStringLiteral("Mine")) >= 0; })) << "a new theme file is offered at once";
    EXPECT_EQ(choice->currentText(), "Paper") << "and the choice stays";
    press(Qt::Key_Escape);
}

} // namespace
