#include "commands/TaskActions.h"

#include "fileops/FileOperations.h"
#include "notes/NoteParser.h"
#include "state/WindowState.h"

#include <QDate>

namespace orwick::actions {

void toggleTask(WindowState& window, const FilePath& note, int line, std::function<void()> done)
{
    const QDate today = QDate::currentDate();
    auto edit = [note, line, today](const QByteArray& bytes) { return toggleTaskInBytes(bytes, line, today, note); };
    FileOperations::Finished finished;
    if (done)
        finished = [done = std::move(done)](const QList<FilePath>&) { done(); };
    FileOperations::shared().rewriteFile(note, std::move(edit), QStringLiteral("Toggle Task"), QString(), window.undoStack(),
                                         std::move(finished));
}

} // namespace orwick::actions
