#include "commands/CommandGroups.h"

#include "commands/LearnCommands.h"

#include <QHash>
#include <QSet>

namespace orwick::CommandGroups {

namespace {
// The guide's topics, each its own item of the Help menu.
QStringList learnIds()
{
    QStringList ids;
    for (const AppCommand& command : LearnCommands::family())
        ids.append(command.id);
    return ids;
}
} // namespace

const QList<Group>& menus()
{
    static const QList<Group> groups{
        {QStringLiteral("File"),
         {"newWindow", "newTab", "newFolder", "newFile", "newNote", "todaysNote", "exportHTML", "exportPDF", "-", "open", "openWith", "openInNewTab", "openInEditor",
          "openInTerminal", "openInExternalTerminal", "showInFinder", "pin", "newSidebarGroup", "-", "quickLook", "getInfo", "compress",
          "extract", "tidyUp", "-", "putBack", "trash", "emptyTrash", "-", "closeTab", "closeWindow", "quit"}},
        {QStringLiteral("Edit"),
         {"undo", "redo", "-", "cut", "copy", "paste", "moveHere", "-", "addToShelf", "copyShelfHere", "moveShelfHere", "clearShelf", "showShelf", "-", "duplicate", "rename", "toggleEditing", "-", "copyPath", "copyRelativePath", "copyContents", "copyDataURI", "-",
          "selectAll", "selectNone", "deselectOrCloseFilter", "invertSelection", "selectByPattern", "deselectByPattern", "-", "filter", "search", "saveSearch", "-",
          "customize"}},
        {QStringLiteral("View"),
         {"view.grid", "view.list", "view.columns", "view.table", "view.board", "view.calendar", "view.gallery", "view.tasks", "-", "sort.name", "sort.modified", "sort.size", "sort.kind", "sort.originalLocation", "sort.dateDeleted", "groupByDate",
          "-", "hiddenFiles", "hideIgnored", "biggerIcons", "smallerIcons", "folderSizes", "reload", "-", "toggleSidebar", "focusSidebar",
          "togglePreview", "expandPreview", "toggleTerminal", "focusTerminal", "newTerminal", "closeTerminal"}},
        {QStringLiteral("Go"),
         {"back", "forward", "up", "-", "palette", "goToPath", "projects", "-", "showRecents", "thisMac", "screenshots", "trashFolder",
          "connectToServer", "-", "moveTo", "copyTo", "copyToOther", "moveToOther", "linkToOther", "-", "findDuplicates", "showSpace",
          "cleanUp", "findInFiles"}},
        {QStringLiteral("Git"),
         {"reviewChanges", "gitHistory", "-", "gitSwitchBranch", "gitNewBranch", "-", "gitStash", "gitPopStash", "gitStashes", "-",
          "gitFetch", "gitPull", "gitPush"}},
        {QStringLiteral("Image"),
         {"image.convert.png", "image.convert.jpeg", "image.convert.webp", "image.convert.avif", "image.resize", "imageSets", "-",
          "image.rotate.left", "image.rotate.right", "image.flip.horizontal", "image.flip.vertical", "-",
          "removeLocation", "removeMetadata", "-", "copyImage", "copyText", "combinePDF", "removeBackground"}},
        {QStringLiteral("Window"),
         {"dualPane", "splitRight", "splitDown", "closePane", "nextPane", "-", "nextTab", "previousTab", "reopenTab", "-", "saveWorkspace"}},
        {QStringLiteral("Help"), QStringList{"keyboardShortcuts", "guide", "welcome", "about", "-"} + learnIds()},
    };
    return groups;
}

QList<QList<AppCommand>> grouped(const QList<AppCommand>& commands, QStringList* titles)
{
    QHash<QString, qsizetype> byId;
    for (qsizetype i = 0; i < commands.size(); ++i)
        byId.insert(commands[i].id, i);
    QList<QList<AppCommand>> groups;
    QSet<QString> placed;
    const auto add = [&](const QString& title, QList<AppCommand> group) {
        if (group.isEmpty())
            return;
        groups.append(std::move(group));
        titles->append(title);
    };
    for (const Group& menu : menus()) {
        QList<AppCommand> group;
        for (const QString& id : menu.ids) {
            const auto it = byId.constFind(id);
            if (it == byId.cend() || placed.contains(id))
                continue;
            placed.insert(id);
            group.append(commands[*it]);
        }
        add(menu.title, std::move(group));
    }
    QList<AppCommand> rest;
    for (const AppCommand& command : commands)
        if (!placed.contains(command.id))
            rest.append(command);
    add(QStringLiteral("More"), std::move(rest));
    return groups;
}

} // namespace orwick::CommandGroups
