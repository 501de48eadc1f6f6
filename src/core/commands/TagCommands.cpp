#include "commands/TagCommands.h"

#include "places/FinderTags.h"
#include "state/FileActions.h"
#include "state/WindowState.h"

namespace orwick::TagCommands {

namespace {

QList<FinderTag> offered(const FinderTags& tags)
{
    QList<FinderTag> list = FinderTag::colors();
    for (const FinderTag& tag : tags.inUse())
        if (!tag.isColor())
            list.append(tag);
    return list;
}

} // namespace

bool allCarry(const FinderTags& tags, const QList<FilePath>& items, const QString& tag)
{
    if (items.isEmpty())
        return false;
    for (const FilePath& item : items)
        if (!tags.tagsOf(item).contains(tag))
            return false;
    return true;
}

void toggle(WindowState& window, const QString& tag)
{
    if (!window.files().canChangeSelection())
        return;
    const QList<FilePath> items = window.selectedURLs();
    const bool remove = allCarry(FinderTags::shared(), items, tag);
    window.files().operations()->changeTag(items, tag, remove ? FileOperations::TagChange::remove : FileOperations::TagChange::add,
                                           window.undoStack());
}

QList<AppCommand> family(const FinderTags& tags)
{
    QList<AppCommand> list;
    int key = Qt::Key_1;
    for (const FinderTag& tag : offered(tags)) {
        AppCommand command;
        command.id = kPrefix + tag.name.toLower();
        command.title = tag.name;
        command.symbol = tag.isColor() ? QStringLiteral("tag.") + tag.name.toLower() : QStringLiteral("tag");
        if (tag.isColor())
            command.shortcut = QKeySequence(Qt::ALT | Qt::Key(key++));
        command.keywords = QStringLiteral("label color finder tags");
        const QString name = tag.name;
        command.run = [name](WindowState& w) { toggle(w, name); };
        command.isEnabled = [](const WindowState& w) { return w.files().canChangeSelection(); };
        command.disabledNote = QStringLiteral("Select the items to tag");
        list.append(command);
    }
    return list;
}

} // namespace orwick::TagCommands
