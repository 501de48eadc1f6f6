#pragma once
// ViewKeys: the keys that belong to one view and are not commands — the board's, the calendar's,
// Review Changes', Find in Files', the terminal's, the palette's… — in one table. The Keyboard
// Shortcuts sheet lists it after the commands, and the views that can look their keys up here
// do (a view asks which of its actions a pressed key is), so what the sheet says is what the
// view does. The window-wide keys stay the command catalogue's; a view key that is also a
// window shortcut says why the view keeps it while it has the keyboard (`takesFromWindow`).

#include <QKeyCombination>
#include <QKeySequence>
#include <QList>
#include <QString>

#include <optional>

namespace orwick {

// The views with keys of their own, in the order the sheet lists them.
enum class KeyedView {
    board,
    calendar,
    gallery,
    tasks,
    review,
    findInFiles,
    folderComparison,
    fileComparison,
    terminal,
    palette,
    renameInPlace,
    duplicates,
    spaceUsed,
    cleanUp,
};

// What a view key does; the views that read their keys from the table switch on it.
enum class ViewKeyAction {
    boardPreviousLane, boardNextLane, boardCardAbove, boardCardBelow, boardFirstCard, boardLastCard,
    boardCardToPreviousLane, boardCardToNextLane, boardOpen,
    calendarPreviousDay, calendarNextDay, calendarPreviousWeek, calendarNextWeek,
    calendarPreviousMonth, calendarNextMonth, calendarToday,
    calendarItemDayEarlier, calendarItemDayLater, calendarItemWeekEarlier, calendarItemWeekLater,
    calendarDaysItems, calendarOpen,
    galleryLeft, galleryRight, galleryUp, galleryDown, galleryFirst, galleryLast, galleryOpen,
    tasksTick,
    reviewStage, reviewStageHunk, reviewNextHunk, reviewPreviousHunk, reviewDiscard, reviewCommit,
    reviewTakeOurs, reviewTakeTheirs, reviewEdit, reviewToDiff, reviewToFiles,
    reviewPrevious, reviewNext, reviewPageUp, reviewPageDown, reviewFirst, reviewLast,
    findPrevious, findNext, findPageUp, findPageDown, findFirst, findLast, findShow, findEdit,
    findMatchCase, findRegularExpression,
    compareSync, compareOpenPair,
    compareSideBySide, comparePictureView, compareSliderLeft, compareSliderRight,
    terminalCopy, terminalPaste, terminalScrollUp, terminalScrollDown,
    palettePrevious, paletteNext, palettePageUp, palettePageDown, paletteComplete, paletteChoose,
    paletteChooseOther, paletteClose,
    renameKeep, renameCancel,
    duplicatesTick, duplicatesShow, duplicatesTrash,
    spaceBlockLeft, spaceBlockRight, spaceBlockUp, spaceBlockDown, spaceFirst, spaceLast,
    spaceOpen, spaceOut, spaceTrash, spaceMenu,
    cleanUpTick, cleanUpTrash, cleanUpShow,
};

struct ViewKey {
    ViewKeyAction action = {};
    QList<QKeySequence> chords; // each one chord; the first is the one a hint names
    QString does;               // what it does, in a few words ("Move the card to the lane on the right")
    // Shift held with it still counts (the review's letters and signs: some layouts type the
    // brackets with Shift; in the diff, Shift with a move picks lines).
    bool shiftToo = false;
    // For a key that is also a window shortcut: why the view keeps it while it has the keyboard.
    QString takesFromWindow;
};

struct ViewKeySection {
    KeyedView view;
    QString title; // the sheet's heading ("Board", "Review Changes")
    QList<ViewKey> keys;
};

namespace ViewKeys {

// Every view's keys, built once.
const QList<ViewKeySection>& all();
const ViewKeySection& of(KeyedView view);
// The row of an action.
const ViewKey& key(ViewKeyAction action);

// A pressed key as the table writes it: without the keypad's and AltGr's marks, Enter as Return,
// Shift+Tab as Backtab.
QKeyCombination normalized(QKeyCombination pressed);
// Whether `pressed` is one of the action's chords.
bool matches(ViewKeyAction action, QKeyCombination pressed);
// The action of `view` that `pressed` is, if any.
std::optional<ViewKeyAction> actionFor(KeyedView view, QKeyCombination pressed);

// The chords of a row as the sheet shows them ("Ctrl+Shift+Right", joined by "  or  ").
QString chordsText(const ViewKey& key);

} // namespace ViewKeys

} // namespace orwick
