#include "commands/NoteActions.h"

#include "app/Services.h"
#include "commands/DatabaseViewActions.h"
#include "fileops/FileOperations.h"
#include "notes/FileProperties.h"
#include "notes/NewNote.h"
#include "notes/DailyNotes.h"
#include "highlight/SyntaxHighlighter.h"
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
    const std::optional<NewNoteRequest> request = newNoteRequest(pane);
    if (!request)
        return;
    // What the folder's filters ask for, so the note stays in view; the view's own values win.
    PropertyMap values;
    if (FileProperties* store = services().properties) {
        const FileItems items = pane->unsortedItems();
        values = NewNote::valuesFromFilters(store->columns(pane->url()), [store, pane, &items](const QString& key) {
            return store->type(key, pane->url(), items);
        });
    }
    values.insert(request->values);
    const auto plan = NewNote::plan(pane->url(), request->title, values);
    if (!plan) {
        Q_EMIT window.messageRequested(plan.error());
        return;
    }
    QPointer<PaneState> target = pane;
    QPointer<WindowState> editing = &window;
    window.files().operations()->createFile(plan->path, plan->bytes, QStringLiteral("New Note"), window.undoStack(),
                                            [target, editing](const FilePath& made) {
                                                if (target) {
                                                    target->setPendingSelection({made});
                                                    target->reload();
                                                }
                                                if (editing)
                                                    editing->startEditing(made);
                                            });
}

namespace {

// The cursor's item when it is a file that may be text.
std::optional<FilePath> editableCursor(const WindowState& window)
{
    const PaneState* pane = window.activePane();
    if (!pane || !pane->cursor())
        return std::nullopt;
    const FileItem* item = pane->item(*pane->cursor());
    if (!item || item->isFolder || item->isPackage || item->brokenTarget)
        return std::nullopt;
    switch (item->category) {
    case FileCategory::text:
    case FileCategory::code:
    case FileCategory::data: return item->url;
    default: break;
    }
    if (item->url.extension().isEmpty() || SyntaxHighlighter::languageFor(item->url))
        return item->url;
    return std::nullopt;
}

} // namespace

bool canToggleEditing(const WindowState& window)
{
    return window.documentMode() != DocumentMode::preview || editableCursor(window).has_value();
}

void toggleEditing(WindowState& window)
{
    if (window.documentMode() != DocumentMode::preview)
        window.stopEditing();
    else if (const auto file = editableCursor(window))
        window.startEditing(*file);
}

} // namespace orwick::actions
