#include "commands/ShelfActions.h"

#include "fileops/OperationTexts.h"
#include "files/Listing.h"
#include "places/Shelf.h"
#include "state/FileActions.h"
#include "state/WindowState.h"

#include <QSet>
#include <memory>

namespace orwick::shelfActions {

namespace {

// Keeps the shelf in step with a landing that moves its items, by the moves the engine made:
// the items the move took leave the shelf, its undo puts each one it brings back to its place on
// the shelf again, and redo takes them off again. Nothing on the shelf is looked at on this
// thread: an item on a disk that stopped answering can't hold up the window.
FileOperations::Moved followOnShelf()
{
    struct Taken {
        QSet<FilePath> items; // where the items the move took were shelved
        bool known = false;   // set by the move itself, which reports first
    };
    return [taken = std::make_shared<Taken>()](const QList<FileMove>& moves) {
        if (!taken->known) {
            for (const FileMove& move : moves)
                taken->items.insert(move.from);
            taken->known = true;
        }
        QList<FilePath> off, on;
        for (const FileMove& move : moves) {
            if (taken->items.contains(move.from))
                off.append(move.from);
            else if (taken->items.contains(move.to))
                on.append(move.to);
        }
        Shelf& shelf = Shelf::shared();
        shelf.remove(off);
        shelf.add(on);
    };
}

} // namespace

bool canAdd(const WindowState& window)
{
    if (!window.canActOnSelection())
        return false;
    // The Trash's rows are put back, not carried off; This Computer's rows are whole drives.
    const auto& listing = window.activePane()->listing();
    return !listing || (listing->kind != Listing::Kind::trash && listing->kind != Listing::Kind::thisMac);
}

QString addedText(const QList<FilePath>& asked, const QList<FilePath>& added)
{
    if (added.isEmpty())
        return asked.size() == 1 ? quoted(asked.first().fileName()) + QStringLiteral(" is on the shelf already")
                                 : QStringLiteral("These %1 are on the shelf already").arg(itemCount(asked.size()));
    const QString what = added.size() == 1 ? quoted(added.first().fileName()) : itemCount(added.size());
    QString text = QStringLiteral("Added %1 to the shelf").arg(what);
    const qsizetype already = asked.size() - added.size();
    if (already > 0)
        text += already == 1 ? QStringLiteral("; 1 was on it already") : QStringLiteral("; %1 were on it already").arg(already);
    return text;
}

void add(WindowState& window, const QList<FilePath>& items)
{
    if (items.isEmpty())
        return;
    const QList<FilePath> added = Shelf::shared().add(items);
    Q_EMIT window.messageRequested(addedText(items, added));
}

void addSelection(WindowState& window)
{
    if (canAdd(window))
        add(window, window.selectedURLs());
}

bool canLand(const WindowState& window) { return !Shelf::shared().isEmpty() && window.files().canCreateHere(); }

void land(WindowState& window, FileOperations::Mode mode)
{
    if (!canLand(window))
        return;
    // Every item goes to the job, gone or not: the engine tells what it moved, skipped or failed.
    window.files().transferHere(Shelf::shared().items(), mode,
                                mode == FileOperations::Mode::move ? followOnShelf() : FileOperations::Moved());
}

bool canClear(const WindowState&) { return !Shelf::shared().isEmpty(); }

void clear(WindowState& window)
{
    Shelf& shelf = Shelf::shared();
    if (shelf.isEmpty())
        return;
    const qsizetype count = shelf.count();
    shelf.clear();
    Q_EMIT window.messageRequested(QStringLiteral("Cleared the shelf (%1)").arg(itemCount(count)));
}

} // namespace orwick::shelfActions
