#include "commands/ViewKeys.h"

#include <QHash>

namespace orwick::ViewKeys {

namespace {

using A = ViewKeyAction;
constexpr auto C = Qt::CTRL;
constexpr auto S = Qt::SHIFT;
constexpr auto Alt = Qt::ALT;

ViewKey row(A action, QList<QKeySequence> chords, const char* does)
{
    ViewKey key;
    key.action = action;
    key.chords = std::move(chords);
    key.does = QString::fromUtf8(does);
    return key;
}

// A review key: Shift held with it still counts (see ViewKey::shiftToo).
ViewKey reviewRow(A action, QList<QKeySequence> chords, const char* does, const char* takesFromWindow = "")
{
    ViewKey key = row(action, std::move(chords), does);
    key.shiftToo = true;
    key.takesFromWindow = QString::fromUtf8(takesFromWindow);
    return key;
}

ViewKey takenRow(A action, QList<QKeySequence> chords, const char* does, const char* takesFromWindow)
{
    ViewKey key = row(action, std::move(chords), does);
    key.takesFromWindow = QString::fromUtf8(takesFromWindow);
    return key;
}

QList<ViewKeySection> build()
{
    return {
        {KeyedView::board, QStringLiteral("Board"), {
            row(A::boardPreviousLane, {Qt::Key_Left}, "The lane on the left"),
            row(A::boardNextLane, {Qt::Key_Right}, "The lane on the right"),
            row(A::boardCardAbove, {Qt::Key_Up}, "The card above (or the choice above)"),
            row(A::boardCardBelow, {Qt::Key_Down}, "The card below (or the choice below)"),
            row(A::boardFirstCard, {Qt::Key_Home}, "The lane's first card"),
            row(A::boardLastCard, {Qt::Key_End}, "The lane's last card"),
            row(A::boardCardToPreviousLane, {C | S | Qt::Key_Left}, "Move the card to the lane on the left (Ctrl+Z undoes)"),
            row(A::boardCardToNextLane, {C | S | Qt::Key_Right}, "Move the card to the lane on the right (Ctrl+Z undoes)"),
            row(A::boardOpen, {Qt::Key_Return}, "Open the card's note (or take the choice)"),
        }},
        {KeyedView::calendar, QStringLiteral("Calendar"), {
            row(A::calendarPreviousDay, {Qt::Key_Left}, "The day before"),
            row(A::calendarNextDay, {Qt::Key_Right}, "The day after"),
            row(A::calendarPreviousWeek, {Qt::Key_Up}, "A week back (or the choice above)"),
            row(A::calendarNextWeek, {Qt::Key_Down}, "A week on (or the choice below)"),
            row(A::calendarPreviousMonth, {Qt::Key_PageUp}, "A month back"),
            row(A::calendarNextMonth, {Qt::Key_PageDown}, "A month on"),
            row(A::calendarToday, {Qt::Key_Home}, "Today"),
            row(A::calendarItemDayEarlier, {C | S | Qt::Key_Left}, "Move the note a day earlier (Ctrl+Z undoes)"),
            row(A::calendarItemDayLater, {C | S | Qt::Key_Right}, "Move the note a day later (Ctrl+Z undoes)"),
            row(A::calendarItemWeekEarlier, {C | S | Qt::Key_Up}, "Move the note a week earlier (Ctrl+Z undoes)"),
            row(A::calendarItemWeekLater, {C | S | Qt::Key_Down}, "Move the note a week later (Ctrl+Z undoes)"),
            row(A::calendarDaysItems, {Qt::Key_Tab, S | Qt::Key_Backtab}, "Go through the day's notes"),
            row(A::calendarOpen, {Qt::Key_Return}, "Open the note (or take the choice)"),
        }},
        {KeyedView::gallery, QStringLiteral("Gallery"), {
            row(A::galleryLeft, {Qt::Key_Left}, "The card on the left"),
            row(A::galleryRight, {Qt::Key_Right}, "The card on the right"),
            row(A::galleryUp, {Qt::Key_Up}, "The card above"),
            row(A::galleryDown, {Qt::Key_Down}, "The card below"),
            row(A::galleryFirst, {Qt::Key_Home}, "The first card"),
            row(A::galleryLast, {Qt::Key_End}, "The last card"),
            row(A::galleryOpen, {Qt::Key_Return}, "Open the card's note"),
        }},
        {KeyedView::tasks, QStringLiteral("Tasks"), {
            row(A::tasksTick, {Qt::Key_Space}, "Tick or untick the task (Ctrl+Z undoes)"),
        }},
        {KeyedView::review, QStringLiteral("Review Changes"), {
            reviewRow(A::reviewStage, {Qt::Key_Space}, "Stage or unstage the file, or the picked lines"),
            reviewRow(A::reviewStageHunk, {Qt::Key_H}, "Stage or unstage the hunk at the cursor"),
            reviewRow(A::reviewNextHunk, {Qt::Key_BracketRight, Qt::Key_N}, "The next hunk (from the file list too)"),
            reviewRow(A::reviewPreviousHunk, {Qt::Key_BracketLeft, Qt::Key_P}, "The hunk before (from the file list too)"),
            reviewRow(A::reviewDiscard, {Qt::Key_Delete, Qt::Key_Backspace}, "Discard the file or the picked lines (Ctrl+Z brings them back)",
                      "Del moves the pane's selection to the Trash elsewhere; here it discards the change"),
            reviewRow(A::reviewCommit, {C | Qt::Key_Return}, "Commit",
                      "Ctrl+Return opens in a new tab elsewhere; here it commits"),
            reviewRow(A::reviewTakeOurs, {Qt::Key_O}, "Take ours (a file in conflict)"),
            reviewRow(A::reviewTakeTheirs, {Qt::Key_T}, "Take theirs (a file in conflict)"),
            reviewRow(A::reviewEdit, {Qt::Key_E}, "Open the file in the editor"),
            reviewRow(A::reviewToDiff, {Qt::Key_Right, Qt::Key_Return}, "From the files to the diff"),
            reviewRow(A::reviewToFiles, {Qt::Key_Left}, "From the diff back to the files"),
            reviewRow(A::reviewPrevious, {Qt::Key_Up}, "The file or line above (Shift picks lines in the diff)"),
            reviewRow(A::reviewNext, {Qt::Key_Down}, "The file or line below (Shift picks lines in the diff)"),
            reviewRow(A::reviewPageUp, {Qt::Key_PageUp}, "A page up"),
            reviewRow(A::reviewPageDown, {Qt::Key_PageDown}, "A page down"),
            reviewRow(A::reviewFirst, {Qt::Key_Home}, "The first file or line"),
            reviewRow(A::reviewLast, {Qt::Key_End}, "The last file or line"),
        }},
        {KeyedView::findInFiles, QStringLiteral("Find in Files"), {
            row(A::findPrevious, {Qt::Key_Up}, "The match above"),
            row(A::findNext, {Qt::Key_Down}, "The match below"),
            row(A::findPageUp, {Qt::Key_PageUp}, "Ten matches up"),
            row(A::findPageDown, {Qt::Key_PageDown}, "Ten matches down"),
            row(A::findFirst, {Qt::Key_Home}, "The first match (in the results)"),
            row(A::findLast, {Qt::Key_End}, "The last match (in the results)"),
            row(A::findShow, {Qt::Key_Return}, "Search now, or open the match's file"),
            takenRow(A::findEdit, {C | Qt::Key_Return}, "Open the match in the editor at its line",
                     "Ctrl+Return opens in a new tab elsewhere; here it opens the editor"),
            row(A::findMatchCase, {Alt | Qt::Key_C}, "Match case on or off"),
            row(A::findRegularExpression, {Alt | Qt::Key_R}, "Regular expression on or off"),
        }},
        {KeyedView::folderComparison, QStringLiteral("Folder Comparison"), {
            row(A::compareSync, {Qt::Key_S}, "Sync: the three ways to make the folders agree"),
            row(A::compareOpenPair, {Qt::Key_Return}, "Compare the two files of the row"),
        }},
        {KeyedView::fileComparison, QStringLiteral("Compare Files"), {
            row(A::compareSideBySide, {Qt::Key_V}, "Side by side, or one column (two text files)"),
            row(A::comparePictureView, {Qt::Key_S}, "Side by side, slider or difference (two pictures)"),
            row(A::compareSliderLeft, {Qt::Key_Left}, "Move the slider left"),
            row(A::compareSliderRight, {Qt::Key_Right}, "Move the slider right"),
        }},
        {KeyedView::terminal, QStringLiteral("Terminal"), {
            takenRow(A::terminalCopy, {C | S | Qt::Key_C}, "Copy the selected text",
                     "The terminal keeps every key but F4, Ctrl+` and the palette's, This Computer's too"),
            row(A::terminalPaste, {C | S | Qt::Key_V, S | Qt::Key_Insert}, "Paste"),
            row(A::terminalScrollUp, {S | Qt::Key_PageUp}, "Scroll back a page"),
            row(A::terminalScrollDown, {S | Qt::Key_PageDown}, "Scroll on a page"),
        }},
        {KeyedView::palette, QStringLiteral("Palette"), {
            row(A::palettePrevious, {Qt::Key_Up}, "The row above"),
            row(A::paletteNext, {Qt::Key_Down}, "The row below"),
            row(A::palettePageUp, {Qt::Key_PageUp}, "Eight rows up"),
            row(A::palettePageDown, {Qt::Key_PageDown}, "Eight rows down"),
            row(A::paletteComplete, {Qt::Key_Tab}, "Complete the typed path (Go to Folder)"),
            row(A::paletteChoose, {Qt::Key_Return}, "Run the command, or go to the file or folder"),
            takenRow(A::paletteChooseOther, {C | Qt::Key_Return}, "Open the folder in a new tab (a project: in the editor)",
                     "Ctrl+Return opens in a new tab elsewhere; in the palette it opens the chosen row so"),
            row(A::paletteClose, {Qt::Key_Escape}, "Close the palette"),
        }},
        {KeyedView::renameInPlace, QStringLiteral("Rename in Place"), {
            row(A::renameKeep, {Qt::Key_Return}, "Keep the new name (Ctrl+Z undoes)"),
            row(A::renameCancel, {Qt::Key_Escape}, "Keep the old name"),
        }},
        {KeyedView::duplicates, QStringLiteral("Find Duplicates"), {
            row(A::duplicatesTick, {Qt::Key_Space}, "Tick or untick the file"),
            row(A::duplicatesShow, {Qt::Key_Return}, "Show the file in its folder"),
            takenRow(A::duplicatesTrash, {Qt::Key_Delete}, "Move the ticked files to the Trash (Ctrl+Z puts them back)",
                     "Del moves the pane's selection to the Trash elsewhere; here the ticked files"),
        }},
        {KeyedView::spaceUsed, QStringLiteral("Show Space Used"), {
            row(A::spaceBlockLeft, {Qt::Key_Left}, "The block on the left"),
            row(A::spaceBlockRight, {Qt::Key_Right}, "The block on the right"),
            row(A::spaceBlockUp, {Qt::Key_Up}, "The block above"),
            row(A::spaceBlockDown, {Qt::Key_Down}, "The block below"),
            row(A::spaceFirst, {Qt::Key_Home}, "The biggest block"),
            row(A::spaceLast, {Qt::Key_End}, "The smallest block"),
            row(A::spaceOpen, {Qt::Key_Return}, "Go into the folder, or show the file in the pane"),
            row(A::spaceOut, {Qt::Key_Backspace}, "Back out to the enclosing folder"),
            takenRow(A::spaceTrash, {Qt::Key_Delete}, "Move the block to the Trash (Ctrl+Z puts it back)",
                     "Del moves the pane's selection to the Trash elsewhere; here the block"),
            row(A::spaceMenu, {Qt::Key_Menu, S | Qt::Key_F10}, "The block's menu"),
        }},
        {KeyedView::cleanUp, QStringLiteral("Clean Up Build Folders"), {
            row(A::cleanUpTick, {Qt::Key_Space}, "Tick or untick the folder"),
            takenRow(A::cleanUpTrash, {Qt::Key_Delete}, "Move the ticked folders to the Trash (Ctrl+Z puts them back)",
                     "Del moves the pane's selection to the Trash elsewhere; here the ticked folders"),
            row(A::cleanUpShow, {Qt::Key_Return}, "Show the folder in the pane"),
        }},
    };
}

} // namespace

const QList<ViewKeySection>& all()
{
    static const QList<ViewKeySection> table = build();
    return table;
}

const ViewKeySection& of(KeyedView view)
{
    for (const ViewKeySection& section : all())
        if (section.view == view)
            return section;
    Q_UNREACHABLE(); // every view has its section
}

const ViewKey& key(ViewKeyAction action)
{
    static const QHash<ViewKeyAction, const ViewKey*> byAction = [] {
        QHash<ViewKeyAction, const ViewKey*> map;
        for (const ViewKeySection& section : all())
            for (const ViewKey& key : section.keys)
                map.insert(key.action, &key);
        return map;
    }();
    const ViewKey* found = byAction.value(action);
    Q_ASSERT(found);
    return *found;
}

QKeyCombination normalized(QKeyCombination pressed)
{
    Qt::Key key = pressed.key();
    Qt::KeyboardModifiers modifiers = pressed.keyboardModifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
    if (key == Qt::Key_Enter)
        key = Qt::Key_Return;
    if (key == Qt::Key_Backtab)
        modifiers |= Qt::ShiftModifier;
    return QKeyCombination(modifiers, key);
}

namespace {

bool rowMatches(const ViewKey& row, QKeyCombination pressed)
{
    pressed = normalized(pressed);
    for (const QKeySequence& chord : row.chords) {
        const QKeyCombination wanted = chord[0];
        if (wanted.key() != pressed.key())
            continue;
        Qt::KeyboardModifiers held = pressed.keyboardModifiers();
        if (row.shiftToo)
            held = (held & ~Qt::ShiftModifier) | (wanted.keyboardModifiers() & Qt::ShiftModifier);
        if (held == wanted.keyboardModifiers())
            return true;
    }
    return false;
}

} // namespace

bool matches(ViewKeyAction action, QKeyCombination pressed) { return rowMatches(key(action), pressed); }

std::optional<ViewKeyAction> actionFor(KeyedView view, QKeyCombination pressed)
{
    for (const ViewKey& row : of(view).keys)
        if (rowMatches(row, pressed))
            return row.action;
    return std::nullopt;
}

QString chordsText(const ViewKey& key)
{
    QStringList texts;
    for (const QKeySequence& chord : key.chords)
        // Shift+Tab arrives as Backtab; people call it Tab.
        texts.append(chord.toString(QKeySequence::NativeText).replace(QStringLiteral("Backtab"), QStringLiteral("Tab")));
    return texts.join(QStringLiteral("  or  "));
}

} // namespace orwick::ViewKeys
