#include "commands/ExportNoteActions.h"

#include "async/Background.h"
#include "fileops/FileOperations.h"
#include "notes/NoteFile.h"
#include "state/FileActions.h"
#include "state/WindowState.h"

namespace orwick::actions {

namespace {

QString actionName(NoteExport::Format format)
{
    return format == NoteExport::Format::html ? QStringLiteral("Export Note as HTML") : QStringLiteral("Export Note as PDF");
}

std::optional<FilePath> cursorNote(const WindowState& window)
{
    const PaneState* pane = window.activePane();
    if (!pane || !pane->cursor() || !window.canActOnSelection())
        return std::nullopt;
    const FileItem* item = pane->item(*pane->cursor());
    if (!item || item->isFolder || !notefile::isNote(item->url))
        return std::nullopt;
    return item->url;
}

} // namespace

bool canExportNote(const WindowState& window) { return cursorNote(window).has_value(); }

void exportNoteTo(FileOperations& operations, const FilePath& note, NoteExport::Format format, QUndoStack* undo,
                  std::function<void(const ExportDone&)> done)
{
    QPointer<QUndoStack> stack = undo;
    QPointer<FileOperations> engine = &operations;
    runInBackground(&operations, [note, format] { return NoteExport::exportNote(note, format); },
                    [engine, stack, note, format, done = std::move(done)](Result<NoteExport::Exported> exported) {
                        if (!exported) {
                            if (done)
                                done({{}, exported.error()});
                            return;
                        }
                        // The free name is taken as late as possible, right before the engine makes it.
                        const FilePath target = NoteExport::exportPath(note, format);
                        const QString missing = NoteExport::missingPicturesNote(exported->missingPictures);
                        engine->createFile(target, exported->bytes, actionName(format), stack,
                                           [done, missing](const FilePath& made) {
                                               if (!done)
                                                   return;
                                               const QString message = missing.isEmpty() ? QString()
                                                   : QStringLiteral("%1 in \u201C%2\u201D").arg(missing, made.fileName());
                                               done({made, message});
                                           });
                    });
}

void exportNote(WindowState& window, NoteExport::Format format)
{
    const std::optional<FilePath> note = cursorNote(window);
    if (!note)
        return;
    QPointer<WindowState> target = &window;
    exportNoteTo(*window.files().operations(), *note, format, window.undoStack(), [target](const ExportDone& done) {
        if (target && !done.message.isEmpty())
            Q_EMIT target->messageRequested(done.message);
    });
}

} // namespace orwick::actions
