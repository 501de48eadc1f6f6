// The keys each view keeps for itself: one table the Keyboard Shortcuts sheet lists and the views
// read. Within a view a chord means one thing; a view key that is also a window shortcut says why
// the view keeps it, so none shadows a command unnoticed; the views ask the table which of their
// actions a pressed key is, the keypad's Enter and Shift+Tab included.

#include "commands/CommandCatalog.h"
#include "commands/ViewKeys.h"
#include "support/HeadlessWindow.h"

#include <QSet>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

// Every chord a row answers: its own, and with Shift too when Shift doesn't change it.
QList<QKeyCombination> answered(const ViewKey& key)
{
    QList<QKeyCombination> chords;
    for (const QKeySequence& chord : key.chords) {
        chords.append(chord[0]);
        if (key.shiftToo)
            chords.append(QKeyCombination(chord[0].keyboardModifiers() | Qt::ShiftModifier, chord[0].key()));
    }
    return chords;
}

TEST(ViewKeysTest, EveryViewHasATitleAndKeysAndNoChordTwice)
{
    QSet<QString> titles;
    QSet<ViewKeyAction> actions;
    for (const ViewKeySection& section : ViewKeys::all()) {
        EXPECT_FALSE(section.title.isEmpty());
        EXPECT_FALSE(titles.contains(section.title)) << section.title.toStdString();
        titles.insert(section.title);
        EXPECT_FALSE(section.keys.isEmpty()) << section.title.toStdString();
        QSet<int> chords;
        for (const ViewKey& key : section.keys) {
            EXPECT_FALSE(key.does.isEmpty());
            EXPECT_FALSE(key.chords.isEmpty()) << key.does.toStdString();
            EXPECT_FALSE(actions.contains(key.action)) << key.does.toStdString();
            actions.insert(key.action);
            for (const QKeyCombination chord : answered(key)) {
                EXPECT_FALSE(chords.contains(chord.toCombined()))
                    << section.title.toStdString() << ": " << QKeySequence(chord).toString().toStdString() << " twice";
                chords.insert(chord.toCombined());
            }
        }
    }
    EXPECT_TRUE(titles.contains("Board"));
    EXPECT_TRUE(titles.contains("Review Changes"));
    EXPECT_TRUE(titles.contains("Find in Files"));
}

TEST(ViewKeysTest, AKeyOfAViewMatchesAsTheViewReceivesIt)
{
    using A = ViewKeyAction;
    EXPECT_EQ(ViewKeys::actionFor(KeyedView::board, QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Right)),
              A::boardCardToNextLane);
    EXPECT_EQ(ViewKeys::actionFor(KeyedView::board, QKeyCombination(Qt::Key_Right)), A::boardNextLane);
    EXPECT_EQ(ViewKeys::actionFor(KeyedView::board, QKeyCombination(Qt::ControlModifier, Qt::Key_Right)), std::nullopt);
    // The keypad's Enter is Return, and its arrows are the arrows.
    EXPECT_EQ(ViewKeys::actionFor(KeyedView::board, QKeyCombination(Qt::KeypadModifier, Qt::Key_Enter)), A::boardOpen);
    EXPECT_EQ(ViewKeys::actionFor(KeyedView::board, QKeyCombination(Qt::KeypadModifier, Qt::Key_Up)), A::boardCardAbove);
    // The review's keys hold with Shift (a layout that types "]" with Shift), but not with Ctrl.
    EXPECT_EQ(ViewKeys::actionFor(KeyedView::review, QKeyCombination(Qt::ShiftModifier, Qt::Key_BracketRight)), A::reviewNextHunk);
    EXPECT_EQ(ViewKeys::actionFor(KeyedView::review, QKeyCombination(Qt::Key_N)), A::reviewNextHunk);
    EXPECT_EQ(ViewKeys::actionFor(KeyedView::review, QKeyCombination(Qt::ControlModifier, Qt::Key_N)), std::nullopt);
    EXPECT_EQ(ViewKeys::actionFor(KeyedView::review, QKeyCombination(Qt::ControlModifier | Qt::KeypadModifier, Qt::Key_Enter)),
              A::reviewCommit);
    // Shift+Tab arrives as Backtab.
    EXPECT_EQ(ViewKeys::actionFor(KeyedView::calendar, QKeyCombination(Qt::ShiftModifier, Qt::Key_Backtab)), A::calendarDaysItems);
    EXPECT_TRUE(ViewKeys::matches(A::findMatchCase, QKeyCombination(Qt::AltModifier, Qt::Key_C)));
    EXPECT_EQ(ViewKeys::chordsText(ViewKeys::key(A::reviewNextHunk)), "]  or  N");
    EXPECT_EQ(ViewKeys::chordsText(ViewKeys::key(A::calendarDaysItems)), "Tab  or  Shift+Tab");
}

struct ViewKeysWindowTest : test::HeadlessWindowTest {
    void SetUp() override { openWindow(tree.root()); }
};

TEST_F(ViewKeysWindowTest, AViewKeyThatIsAWindowShortcutSaysWhyTheViewKeepsIt)
{
    QHash<int, QString> windowKeys; // chord → the command it runs anywhere in the window
    for (const AppCommand& command : CommandCatalog::all(*window))
        for (const QKeySequence& key : QList<QKeySequence>{command.shortcut} + command.otherShortcuts)
            if (!key.isEmpty())
                windowKeys.insert(key[0].toCombined(), command.title);
    int taken = 0;
    for (const ViewKeySection& section : ViewKeys::all())
        for (const ViewKey& key : section.keys) {
            QStringList shadowed;
            for (const QKeyCombination chord : answered(key))
                if (windowKeys.contains(chord.toCombined()))
                    shadowed.append(windowKeys.value(chord.toCombined()));
            EXPECT_EQ(shadowed.isEmpty(), key.takesFromWindow.isEmpty())
                << section.title.toStdString() << ": " << key.does.toStdString() << " — window's "
                << shadowed.join(", ").toStdString();
            taken += shadowed.isEmpty() ? 0 : 1;
        }
    EXPECT_GT(taken, 0); // Review Changes keeps Del and Ctrl+Return
}

} // namespace
