#include "commands/NoteActions.h"

#include "fileops/FileOperations.h"
#include "notes/DailyNotes.h"
#include "state/FileActions.h"
#include "state/WindowState.h"

namespace orwick::actions {

void ensureDailyNote(FileOperations& operations, const FilePath& folder, QDate date, QUndoStack* undo,
                     std::function<void(const FilePath&)> shown)
{
    const DailyNotes::Plan plan = DailyNotes::plan(folder, date);
    if (plan.exists) {
        if (shown)
            shown(plan.url);
        return;
    }
    operations.createFile(plan.url, plan.text.toUtf8(), QStringLiteral("Today's Note"), undo, std::move(shown));
}

void openTodaysNote(WindowState& window)
{
    PaneState* pane = window.activePane();
    if (pane->listing())
        return;
    QPointer<PaneState> target = pane;
    ensureDailyNote(*window.files().operations(), pane->url(), QDate::currentDate(), window.undoStack(),
                    [target](const FilePath& note) {
                        if (target)
                            target->reveal({note});
                    });
}

void newNote(WindowState& window)
{
    PaneState* pane = window.activePane();
    if (pane->listing())
        return;
    QPointer<PaneState> target = pane;
    const FilePath note = FileOperations::uniqueURL(pane->url().child(QByteArrayView("untitled.md")), false);
    window.files().operations()->createFile(note, {}, QStringLiteral("New Note"), window.undoStack(),
                                            [target](const FilePath& made) {
                                                if (!target)
                                                    return;
                                                target->setPendingSelection({made});
                                                target->setPendingRename(made);
                                                target->reload();
                                            });
}

} // namespace orwick::actions
