#include "commands/ShelfActions.h"

#include "fileops/OperationTexts.h"
#include "files/Listing.h"
#include "places/Shelf.h"
#include "platform/DirectoryReader.h"
#include "state/FileActions.h"
#include "state/WindowState.h"

namespace orwick::shelfActions {

namespace {

bool isThere(const FilePath& item) { return statPath(item, FollowLinks::no).has_value(); }

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
    const QList<FilePath> items = Shelf::shared().items();
    // What is there before the move: afterwards, what is no longer there is what moved.
    QList<FilePath> present;
    for (const FilePath& item : items)
        if (isThere(item))
            present.append(item);
    FileOperations::Finished after;
    if (mode == FileOperations::Mode::move)
        after = [present](const QList<FilePath>&) {
            QList<FilePath> moved;
            for (const FilePath& item : present)
                if (!isThere(item))
                    moved.append(item);
            Shelf::shared().remove(moved);
        };
    window.files().transferHere(items, mode, std::move(after));
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
