// The compare and find-in-files panels in a real window over real temporary trees: opened by
// their commands, they show what their engines find, stream, replace a running search, sync
// as one undo step and compare again.

#include "DiskToolWindow.h"
#include "commands/CommandCatalog.h"
#include "support/KeyPress.h"
#include "support/TestMain.h"
#include "ui/panels/ComparePanel.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/panels/FileComparisonView.h"
#include "ui/panels/FindInFilesPanel.h"
#include "ui/panels/FolderComparisonView.h"
#include "ui/panels/ImageComparisonView.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>
#include <QToolButton>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::waitUntil;

void pressKey(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {})
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(widget, &press);
}

const AppCommand* command(WindowState& state, const char* id)
{
    static QList<AppCommand> all;
    all = CommandCatalog::all(state);
    for (const AppCommand& c : all)
        if (c.id == QLatin1String(id))
            return &c;
    return nullptr;
}

class CompareFindPanelsTest : public test::DiskToolWindowTest {
protected:
    void open()
    {
        DiskToolWindowTest::open();
        DiskToolKeys::follow(*state, window.get()); // as the program's main wires each window
    }
    void run(const char* id)
    {
        const AppCommand* found = command(*state, id);
        ASSERT_TRUE(found);
        ASSERT_TRUE(found->isEnabled(*state)) << id << " is dimmed";
        found->run(*state);
    }
    // The panel now shown (one closed before is deleted first, so it can't be found instead).
    template <class Panel>
    Panel* current()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return shown<Panel>();
    }
    // Opens the window with the folders "left" and "right" compared in its panel: their view,
    // or nullptr when no folder comparison is shown.
    FolderComparisonView* compareLeftAndRight()
    {
        open();
        state->showPanel(WindowState::Panel::compare, tree.path("left"), {tree.path("left"), tree.path("right")});
        auto* panel = shown<ComparePanel>();
        return panel ? qobject_cast<FolderComparisonView*>(panel->view()) : nullptr;
    }
};

TEST_F(CompareFindPanelsTest, FindInFilesStreamsGroupedResultsAndArrowsMove)
{
    tree.file("a.txt", "first needle\nnothing\nsecond needle\n");
    tree.file("sub/b.txt", "a NEEDLE too\n");
    open();
    run("findInFiles");
    auto* panel = shown<FindInFilesPanel>();
    ASSERT_TRUE(panel);
    EXPECT_EQ(panel->folder(), tree.root());
    EXPECT_TRUE(panel->emptyText().startsWith("Type to search"));
    panel->setQuery("needle");
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching() && panel->results().matchCount() > 0; }));
    if (!panel->emptyText().isEmpty() && panel->results().isEmpty())
        GTEST_SKIP() << panel->emptyText().toStdString();
    EXPECT_EQ(panel->results().matchCount(), 3);
    EXPECT_EQ(panel->results().files().size(), 2u);
    EXPECT_TRUE(panel->footer().startsWith("3 matches in 2 files")) << panel->footer().toStdString();
    EXPECT_EQ(panel->highlighted(), 0);
    auto* field = panel->findChild<QLineEdit*>();
    pressKey(field, Qt::Key_Down);
    pressKey(field, Qt::Key_Down);
    pressKey(field, Qt::Key_Down);
    EXPECT_EQ(panel->highlighted(), 2) << "stops at the last match";
    pressKey(field, Qt::Key_Up);
    EXPECT_EQ(panel->highlighted(), 1);

    // Match case: only the lower-case ones.
    panel->setOptions({.regex = false, .matchCase = true});
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    EXPECT_EQ(panel->results().matchCount(), 2);

    // A query nothing matches says so.
    panel->setQuery("absent-word");
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    EXPECT_TRUE(panel->results().isEmpty());
    EXPECT_EQ(panel->emptyText(), QString("No matches for “absent-word”"));

    QPointer<FindInFilesPanel> guard(panel);
    pressKey(field, Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return guard.isNull();
    }));
}

TEST_F(CompareFindPanelsTest, FindInFilesTabGoesRoundItsControlsAndItsSwitchKeysWorkFromTheResults)
{
    tree.file("a.txt", "Needle\nneedle\nneedles\n");
    open();
    window->activateWindow();
    ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
    run("findInFiles");
    auto* panel = shown<FindInFilesPanel>();
    ASSERT_TRUE(panel);
    auto* field = panel->findChild<QLineEdit*>();
    auto* results = panel->findChild<QListView*>();
    QToolButton* regex = nullptr;
    QToolButton* matchCase = nullptr;
    for (QToolButton* button : panel->findChildren<QToolButton*>()) {
        if (button->toolTip().startsWith("Regular expression"))
            regex = button;
        else if (button->toolTip().startsWith("Match case"))
            matchCase = button;
    }
    ASSERT_TRUE(field && results && regex && matchCase);
    ASSERT_EQ(QApplication::focusWidget(), field);
    panel->setQuery("needle");
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    if (panel->results().isEmpty())
        GTEST_SKIP() << panel->emptyText().toStdString();
    ASSERT_EQ(panel->results().matchCount(), 3);

    // Query, the two switches in the order they show, the results, and round to the query.
    const QList<QWidget*> order{regex, matchCase, results, field};
    for (QWidget* expected : order) {
        test::pressKey(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), expected) << (QApplication::focusWidget() ? QApplication::focusWidget()->metaObject()->className() : "none");
    }
    test::pressKey(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_EQ(QApplication::focusWidget(), results) << "Shift+Tab goes back round";

    // In the results the arrows move the highlight, and the switches' keys work and search again.
    test::pressKey(results, Qt::Key_Down);
    EXPECT_EQ(panel->highlighted(), 1);
    EXPECT_TRUE(test::pressKey(results, Qt::Key_C, Qt::AltModifier)) << "Alt+C reaches match case from the results";
    EXPECT_TRUE(panel->options().matchCase);
    EXPECT_TRUE(matchCase->isChecked());
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    EXPECT_EQ(panel->results().matchCount(), 2);
    EXPECT_TRUE(test::pressKey(results, Qt::Key_R, Qt::AltModifier)) << "Alt+R reaches regular expressions from the results";
    EXPECT_TRUE(panel->options().regex);
    EXPECT_TRUE(regex->isChecked());
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    EXPECT_EQ(QApplication::focusWidget(), results) << "the keyboard stays in the results";

    // From a switch too, and Space flips the one with the keyboard.
    matchCase->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(test::pressKey(matchCase, Qt::Key_R, Qt::AltModifier));
    EXPECT_FALSE(panel->options().regex);
    test::pressKey(matchCase, Qt::Key_Space, Qt::NoModifier, " ");
    EXPECT_FALSE(panel->options().matchCase);
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    EXPECT_EQ(panel->results().matchCount(), 3);

    // Ctrl+Return is the panel's (open at the line in the editor), not the window's Open in New Tab.
    results->setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(test::pressKey(results, Qt::Key_Return, Qt::ControlModifier));
    EXPECT_FALSE(test::pressKey(field, Qt::Key_Return, Qt::ControlModifier));
    EXPECT_EQ(state->tabs().size(), 1);

    // Typing in the results goes on with the query.
    test::pressKey(results, Qt::Key_S, Qt::NoModifier, "s");
    EXPECT_EQ(panel->query(), QStringLiteral("needles"));
    EXPECT_EQ(QApplication::focusWidget(), field);

    // A switch that leaves no results gives the keyboard back to the query.
    panel->setQuery("NEEDLES");
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    ASSERT_EQ(panel->results().matchCount(), 1);
    results->setFocus(Qt::TabFocusReason);
    test::pressKey(results, Qt::Key_C, Qt::AltModifier);
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    EXPECT_EQ(panel->emptyText(), QStringLiteral("No matches for “NEEDLES”"));
    EXPECT_EQ(QApplication::focusWidget(), field);
}

TEST_F(CompareFindPanelsTest, ANewSearchReplacesTheOneInFlight)
{
    for (int i = 0; i < 50; ++i)
        tree.file(QString("f%1.txt").arg(i), "alpha\nbeta\n");
    open();
    run("findInFiles");
    auto* panel = shown<FindInFilesPanel>();
    ASSERT_TRUE(panel);
    panel->setQuery("alpha");
    panel->setQuery("beta"); // at once: the alpha search's output must never show
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    EXPECT_EQ(panel->results().matchCount(), 50);
    for (const auto& file : panel->results().files())
        for (const auto& match : file.matches)
            EXPECT_EQ(match.bytes, "beta");
}

TEST_F(CompareFindPanelsTest, CompareTwoFoldersSyncsAsOneStepAndComparesAgain)
{
    tree.file("left/same.txt", "s");
    tree.file("right/same.txt", "s");
    tree.file("left/docs/a.txt", "a");
    tree.file("right/extra.txt", "e");
    tree.file("left/changed.txt", "one");
    tree.file("right/changed.txt", "two");
    auto* view = compareLeftAndRight();
    ASSERT_TRUE(view);
    ASSERT_TRUE(waitUntil([&] { return view->result().has_value() && !view->isComparing(); }));
    EXPECT_EQ(view->heading(), "1 only on the left · 1 only on the right · 1 changed");
    EXPECT_EQ(view->list()->topLevelItemCount(), 3);
    view->setFilter(FolderDiff::Status::same);
    EXPECT_EQ(view->list()->topLevelItemCount(), 1);
    view->setFilter(std::nullopt);

    const int before = view->revision();
    const int steps = state->undoStack()->count();
    view->sync(FolderDiff::SyncMode::copyMissing(true), true);
    ASSERT_TRUE(waitUntil([&] { return view->revision() > before && !view->isComparing(); }, 20000));
    EXPECT_EQ(state->undoStack()->count(), steps + 1);
    EXPECT_TRUE(test::exists(tree.path("right/docs/a.txt")));
    EXPECT_EQ(view->heading(), "1 only on the right · 1 changed");

    const int afterSync = view->revision();
    state->undoStack()->undo();
    ASSERT_TRUE(waitUntil([&] { return view->revision() > afterSync && !view->isComparing(); }, 20000));
    EXPECT_FALSE(test::exists(tree.path("right/docs")));
    EXPECT_EQ(view->heading(), "1 only on the left · 1 only on the right · 1 changed");
}

TEST_F(CompareFindPanelsTest, MirrorGoesRightToLeftTooAsOneUndoStep)
{
    tree.file("left/same.txt", "s");
    tree.file("right/same.txt", "s");
    tree.file("left/extra.txt", "only left");
    tree.file("right/new.txt", "only right");
    tree.file("left/changed.txt", "left version");
    tree.file("right/changed.txt", "right version");
    auto* view = compareLeftAndRight();
    ASSERT_TRUE(view);
    ASSERT_TRUE(waitUntil([&] { return view->result().has_value() && !view->isComparing(); }));
    QStringList offered;
    for (const QAction* action : view->syncActions())
        offered << action->text();
    EXPECT_EQ(offered, (QStringList{"Copy what's missing to right", "Copy what's missing to left", "Both ways, newer file wins",
                                    "Mirror (extra files go to the Trash): “left” → “right”",
                                    "Mirror (extra files go to the Trash): “right” → “left”"}));

    const int before = view->revision();
    const int steps = state->undoStack()->count();
    view->sync(FolderDiff::SyncMode::mirror(false), true);
    ASSERT_TRUE(waitUntil([&] { return view->revision() > before && !view->isComparing(); }, 20000));
    EXPECT_EQ(state->undoStack()->count(), steps + 1);
    EXPECT_EQ(test::readAll(tree.path("left/new.txt")), "only right");
    EXPECT_EQ(test::readAll(tree.path("left/changed.txt")), "right version");
    EXPECT_FALSE(test::exists(tree.path("left/extra.txt"))) << "the extra file goes to the Trash";
    EXPECT_EQ(test::readAll(tree.path("right/changed.txt")), "right version") << "the source is left as it is";
    EXPECT_EQ(view->heading(), "No differences: every file matches");

    const int afterSync = view->revision();
    state->undoStack()->undo();
    ASSERT_TRUE(waitUntil([&] { return view->revision() > afterSync && !view->isComparing(); }, 20000));
    EXPECT_EQ(test::readAll(tree.path("left/extra.txt")), "only left");
    EXPECT_EQ(test::readAll(tree.path("left/changed.txt")), "left version");
    EXPECT_FALSE(test::exists(tree.path("left/new.txt")));
}

TEST_F(CompareFindPanelsTest, EveryFolderComparisonControlTakesTheKeyboardAndASyncGivesItBack)
{
    tree.file("left/docs/a.txt", "a");
    tree.file("right/extra.txt", "e");
    auto* view = compareLeftAndRight();
    ASSERT_TRUE(view);
    window->activateWindow();
    ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
    ASSERT_TRUE(waitUntil([&] { return view->result().has_value() && !view->isComparing(); }));
    auto* panel = current<ComparePanel>();
    EXPECT_TRUE(panel->footer().contains("S: Sync brings the folders into line")) << panel->footer().toStdString();
    ASSERT_TRUE(waitUntil([&] { return QApplication::focusWidget() == view->list(); })) << (QApplication::focusWidget() ? QApplication::focusWidget()->metaObject()->className() : "none");
    // Tab goes round the list, the filter and Sync, and stays in the view.
    auto* filter = view->findChild<QComboBox*>();
    auto* syncButton = view->findChild<QToolButton*>();
    test::pressKey(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), filter);
    test::pressKey(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(view->filter(), FolderDiff::Status::onlyLeft);
    test::pressKey(QApplication::focusWidget(), Qt::Key_Up);
    EXPECT_EQ(view->filter(), std::nullopt);
    test::pressKey(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), syncButton);
    test::pressKey(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), view->list());

    // S shows Sync's choices; the first copies what's missing to the right, after asking.
    QString offered;
    QTimer::singleShot(0, view, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        offered = menu->actions().first()->text();
        menu->actions().first()->trigger();
        menu->close();
    });
    test::pressKey(QApplication::focusWidget(), Qt::Key_S, Qt::NoModifier, "s");
    EXPECT_EQ(offered, "Copy what's missing to right");
    QMessageBox* ask = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (ask = view->findChild<QMessageBox*>()) && ask->isVisible(); }));
    // As a window system does: the question takes the keyboard.
    if (!waitUntil([&] { return QApplication::activeWindow() == ask; }, 1000))
        ask->activateWindow();
    const int before = view->revision();
    for (QAbstractButton* button : ask->buttons())
        if (button->text() == "Sync")
            button->click();
    ASSERT_TRUE(waitUntil([&] { return view->revision() > before && !view->isComparing(); }, 20000));
    EXPECT_TRUE(test::exists(tree.path("right/docs/a.txt")));
    EXPECT_EQ(QApplication::activeWindow(), window.get());
    ASSERT_TRUE(panel->isAncestorOf(QApplication::focusWidget())) << "the keyboard is back in the panel";
    const int afterSync = view->revision();
    EXPECT_TRUE(test::pressKey(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier)) << "Ctrl+Z reaches Undo";
    ASSERT_TRUE(waitUntil([&] { return view->revision() > afterSync && !view->isComparing(); }, 20000));
    EXPECT_FALSE(test::exists(tree.path("right/docs")));
}

TEST_F(CompareFindPanelsTest, EscFromAFilePairGoesBackToTheFolderList)
{
    tree.file("left/changed.txt", "one\n");
    tree.file("right/changed.txt", "two\n");
    tree.file("left/only.txt", "o");
    auto* view = compareLeftAndRight();
    ASSERT_TRUE(view);
    ASSERT_TRUE(waitUntil([&] { return view->result().has_value() && !view->isComparing(); }));
    auto* panel = current<ComparePanel>();
    const QString folderFooter = panel->footer();
    const QList<QTreeWidgetItem*> rows = view->list()->findItems("changed.txt", Qt::MatchExactly, 1);
    ASSERT_EQ(rows.size(), 1);
    view->list()->setCurrentItem(rows.first());
    pressKey(view->list(), Qt::Key_Return);
    ASSERT_EQ(current<ComparePanel>(), panel) << "the pair shows in the same sheet";
    auto* pair = qobject_cast<FileComparisonView*>(panel->pairView());
    ASSERT_TRUE(pair);
    ASSERT_TRUE(waitUntil([&] { return pair->sameBytes().has_value(); }));
    EXPECT_FALSE(view->isVisible());
    EXPECT_TRUE(panel->footer().startsWith("changed.txt · ")) << panel->footer().toStdString();
    EXPECT_TRUE(panel->footer().endsWith("Esc goes back to the folders")) << panel->footer().toStdString();

    const int revision = view->revision();
    QPointer<ComparePanel> guard(panel);
    pressKey(pair, Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_FALSE(guard.isNull()) << "the comparison stays open";
    EXPECT_EQ(panel->pairView(), nullptr);
    EXPECT_TRUE(view->isVisible());
    EXPECT_EQ(view->revision(), revision) << "the result is kept, not worked out again";
    EXPECT_EQ(view->list()->currentItem()->text(1), "changed.txt");
    EXPECT_EQ(panel->footer(), folderFooter);

    pressKey(view->list(), Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return guard.isNull();
    }));
}

TEST_F(CompareFindPanelsTest, CompareCommandTakesTwoSelectedFilesAndShowsTheDiff)
{
    tree.file("a.txt", "one\ntwo\nthree\n");
    tree.file("b.txt", "one\n2\nthree\n");
    tree.file("c.txt", "one\ntwo\nthree\n");
    open();
    ASSERT_TRUE(waitUntil([&] { return pane()->items().size() == 3; }));
    pane()->click(tree.path("a.txt"), Qt::NoModifier);
    pane()->click(tree.path("b.txt"), Qt::ControlModifier);
    ASSERT_EQ(pane()->selection().size(), 2);
    run("compare");
    auto* panel = shown<ComparePanel>();
    ASSERT_TRUE(panel);
    auto* view = qobject_cast<FileComparisonView*>(panel->view());
    ASSERT_TRUE(view);
    ASSERT_TRUE(waitUntil([&] { return view->sameBytes().has_value(); }));
    EXPECT_EQ(view->headline(), "Different contents");
    ASSERT_TRUE(view->diff());
    EXPECT_TRUE(view->diff()->diff.contains("\n-two\n+2\n"));
    EXPECT_TRUE(view->unifiedView()->toPlainText().contains("+2"));
    pressKey(view, Qt::Key_V, Qt::NoModifier, "v");
    EXPECT_TRUE(view->isSideBySide());

    panel->closeSheet();
    state->showPanel(WindowState::Panel::compare, tree.path("a.txt"), {tree.path("a.txt"), tree.path("c.txt")});
    auto* same = qobject_cast<FileComparisonView*>(current<ComparePanel>()->view());
    ASSERT_TRUE(waitUntil([&] { return same->sameBytes().has_value(); }));
    EXPECT_EQ(same->headline(), "These files are identical");
}

TEST_F(CompareFindPanelsTest, TwoPicturesAndTheSKey)
{
    QImage a(40, 20, QImage::Format_RGB32);
    a.fill(Qt::blue);
    QImage b = a;
    b.setPixelColor(0, 0, Qt::red);
    ASSERT_TRUE(a.save(tree.path("a.png").text()));
    ASSERT_TRUE(b.save(tree.path("b.png").text()));
    tree.file("broken.png", "not a picture");
    open();
    state->showPanel(WindowState::Panel::compare, tree.path("a.png"), {tree.path("a.png"), tree.path("b.png")});
    auto* view = qobject_cast<ImageComparisonView*>(shown<ComparePanel>()->view());
    ASSERT_TRUE(view);
    ASSERT_TRUE(waitUntil([&] { return view->isLoaded(); }));
    EXPECT_EQ(view->summary(), "0.1% of pixels differ · S switches view");
    EXPECT_EQ(view->mode(), ImageComparisonView::Mode::sideBySide);
    pressKey(view, Qt::Key_S, Qt::NoModifier, "s");
    EXPECT_EQ(view->mode(), ImageComparisonView::Mode::slider);
    pressKey(view, Qt::Key_S, Qt::NoModifier, "s");
    EXPECT_EQ(view->mode(), ImageComparisonView::Mode::difference);
    pressKey(view, Qt::Key_S, Qt::NoModifier, "s");
    EXPECT_EQ(view->mode(), ImageComparisonView::Mode::sideBySide);

    state->showPanel(WindowState::Panel::compare, tree.path("a.png"), {tree.path("a.png"), tree.path("broken.png")});
    auto* broken = qobject_cast<ImageComparisonView*>(current<ComparePanel>()->view());
    ASSERT_TRUE(waitUntil([&] { return broken->isLoaded(); }));
    EXPECT_EQ(broken->summary(), "Couldn't read these pictures");
}

TEST_F(CompareFindPanelsTest, ComparingAFolderWithItsChildSaysSoAndRunsNothing)
{
    tree.file("left/inner/x.txt", "x");
    open();
    state->showPanel(WindowState::Panel::compare, tree.path("left"), {tree.path("left"), tree.path("left/inner")});
    auto* view = qobject_cast<FolderComparisonView*>(shown<ComparePanel>()->view());
    ASSERT_TRUE(view);
    EXPECT_FALSE(view->isComparing());
    EXPECT_FALSE(view->result());
}

} // namespace
} // namespace orwick
