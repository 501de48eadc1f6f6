#include "commands/CommandCatalog.h"

#include "app/OpenRouter.h"
#include "commands/CommandActions.h"
#include "commands/CompareTargets.h"
#include "commands/DatabaseViewActions.h"
#include "commands/ExportNoteActions.h"
#include "commands/GitCommandActions.h"
#include "commands/ImageCommands.h"
#include "commands/LearnCommands.h"
#include "commands/NoteActions.h"
#include "commands/ShelfActions.h"
#include "commands/TagCommands.h"
#include "commands/ThemeCommands.h"
#include "commands/WorkspaceCommands.h"
#include "files/StoredPath.h"
#include "images/ImageActions.h"
#include "places/FinderTags.h"
#include "places/Locations.h"
#include "places/SidebarStore.h"
#include "state/FileActions.h"
#include "state/WindowState.h"
#include "terminal/TerminalActions.h"

#include <algorithm>
#include <QUndoStack>

namespace orwick::CommandCatalog {

namespace {

using Predicate = std::function<bool(const WindowState&)>;
using Action = std::function<void(WindowState&)>;

AppCommand make(const char* id, const char* title, const char* symbol, QKeySequence shortcut, const char* keywords,
                Action run, Predicate enabled = {})
{
    AppCommand command;
    command.id = QString::fromUtf8(id);
    command.title = QString::fromUtf8(title);
    command.symbol = QString::fromUtf8(symbol);
    command.shortcut = std::move(shortcut);
    command.keywords = QString::fromUtf8(keywords);
    command.run = std::move(run);
    command.isEnabled = std::move(enabled);
    return command;
}

// A command that is on or off: the menu shows its state with a check mark.
AppCommand checkable(AppCommand command, Predicate isOn)
{
    command.isChecked = std::move(isOn);
    return command;
}

// A command that says why it is dimmed when it is.
AppCommand withNote(AppCommand command, const char* note)
{
    command.disabledNote = QString::fromUtf8(note);
    return command;
}

// A command whose work is not built yet: listed, dimmed, and saying why.
AppCommand later(const char* id, const char* title, const char* symbol, QKeySequence shortcut, const char* keywords, const char* note)
{
    AppCommand command = make(id, title, symbol, std::move(shortcut), keywords, [](WindowState&) {}, [](const WindowState&) { return false; });
    command.disabledNote = QString::fromUtf8(note);
    return command;
}

QKeySequence keys(int combination) { return QKeySequence(combination); }
QKeySequence none() { return {}; }

// The shared tests: can-act-on-selection (nothing selected or a name being edited blocks the
// file commands), other-pane transfer, clipboard-has-files.
// "Save Search to Sidebar": the active pane's search, named by its saved name or its text.
const Predicate showsSearch = [](const WindowState& w) {
    const auto& listing = w.activePane()->listing();
    return listing && listing->kind == Listing::Kind::search;
};
void saveSearch(WindowState& w)
{
    if (!showsSearch(w))
        return;
    const SearchQuery query = w.activePane()->listing()->query;
    const QString name = query.name && !query.name->isEmpty() ? *query.name
                       : !query.text.trimmed().isEmpty()      ? query.text.trimmed()
                                                              : query.filterSummary();
    SidebarStore::shared().save(query.toSaved(name, QString()));
    Q_EMIT w.messageRequested(QStringLiteral("Saved to the sidebar"));
}

const Predicate onSelection = [](const WindowState& w) { return w.canActOnSelection(); };
const Predicate toOtherPane = [](const WindowState& w) { return w.files().canTransferToOther(); };
const Predicate clipboardHasFiles = [](const WindowState& w) { return w.files().canPaste(); };
Predicate test(bool (FileActions::*check)() const)
{
    return [check](const WindowState& w) { return (w.files().*check)(); };
}
Action files(void (FileActions::*verb)())
{
    return [verb](WindowState& w) { (w.files().*verb)(); };
}
const Predicate changeSelection = test(&FileActions::canChangeSelection);
const Predicate canCreate = test(&FileActions::canCreateHere);
const Predicate isSplit = [](const WindowState& w) { return w.selectedTab()->isSplit(); };
const Predicate hasFolder = [](const WindowState& w) { return !w.activePane()->listing().has_value(); };
const Predicate hasItems = [](const WindowState& w) { return !w.activePane()->items().isEmpty(); };
// Open With… needs one file under the cursor (not a folder).
const Predicate cursorIsFile = [](const WindowState& w) {
    const PaneState* pane = w.activePane();
    const FileItem* item = pane->cursor() ? pane->item(*pane->cursor()) : nullptr;
    return item && !item->isFolder && w.canActOnSelection();
};
Action toOther(FileOperations::Mode mode)
{
    return [mode](WindowState& w) { w.files().transferSelectionToOtherPane(mode); };
}
// F5 and F6 need a second pane; Copy to… and Move to… ask for any folder.
const char* kOnlyInTrash = "Only the Trash has this column";
const char* kOnlyInGrid = "Only the grid view has icons to size";
const char* kNoOtherPane = "Needs a selection, and another pane showing a folder";
const Predicate hasSelectedFolders = [](const WindowState& w) { return !w.selectedFolders().isEmpty(); };

const char* kNoCloud = "No cloud storage provider on Linux";
const char* kNoCounterpart = "Not available on Linux yet";
const char* kNotYet = "Not built yet";
const char* kOneFileNote = "Select one file of at most 10 MB";
const char* kOnePaneNote = "There is one pane: split the window first";
const char* kNotInRepository = "This folder isn’t in a git repository";
const char* kNotAFolder = "This pane shows a list, not a folder";
const char* kCopyFirst = "Copy or cut items first, then paste them in a folder";
const char* kSelectForPath = "Select an item to copy its path";

// The keys that run a command besides its own: the Linux habits, the keypad, and the pane's own.
void addOtherKeys(QList<AppCommand>& list)
{
    const std::pair<const char*, QKeySequence> others[] = {
        {"back", QKeySequence(Qt::ALT | Qt::Key_Left)},
        {"forward", QKeySequence(Qt::ALT | Qt::Key_Right)},
        {"up", QKeySequence(Qt::ALT | Qt::Key_Up)},
        {"hiddenFiles", QKeySequence(Qt::CTRL | Qt::Key_H)},
        {"trash", QKeySequence(Qt::Key_Delete)},
        {"toggleSidebar", QKeySequence(Qt::Key_F9)},
        {"togglePreview", QKeySequence(Qt::Key_F3)},
        {"toggleTerminal", QKeySequence(Qt::Key_F4)},
        {"selectByPattern", QKeySequence(Qt::KeypadModifier | Qt::Key_Plus)},
        {"deselectByPattern", QKeySequence(Qt::KeypadModifier | Qt::Key_Minus)},
    };
    for (const auto& [id, key] : others)
        for (AppCommand& command : list)
            if (command.id == QLatin1StringView(id))
                command.otherShortcuts.append(key);
    // The pane's own keys: they act in a pane's view only, so fields and editors keep them.
    const std::pair<const char*, QKeySequence> paneKeys[] = {
        {"open", QKeySequence(Qt::Key_Return)},
        {"open", QKeySequence(Qt::Key_Enter)},
        {"up", QKeySequence(Qt::Key_Backspace)},
        {"deselectOrCloseFilter", QKeySequence(Qt::Key_Escape)},
        {"quickLook", QKeySequence(Qt::Key_Space)}, // a table's box cell keeps Space to tick itself
    };
    for (const auto& [id, key] : paneKeys)
        for (AppCommand& command : list)
            if (command.id == QLatin1StringView(id))
                command.paneShortcuts.append(key);
}

// Esc in a pane: a search ends at once (the folder comes back, as Esc does in its field);
// otherwise first the selection goes, then an open filter closes (showing every row again).
void deselectOrCloseFilter(WindowState& w)
{
    PaneState* pane = w.activePane();
    if (pane->isSearching())
        pane->endSearch();
    else if (!pane->selection().isEmpty())
        pane->clearSelection();
    else if (pane->isFiltering())
        pane->setFiltering(false);
}
const Predicate hasSelectionOrFilter = [](const WindowState& w) {
    const PaneState* pane = w.activePane();
    return !pane->selection().isEmpty() || pane->isFiltering() || pane->isSearching();
};

QList<AppCommand> buildFixed()
{
    using namespace actions;
    const int C = Qt::CTRL, S = Qt::SHIFT, A = Qt::ALT, M = Qt::META;
    QList<AppCommand> list{
        make("newTab", "New Tab", "plus.square.on.square", keys(C | Qt::Key_T), "", [](WindowState& w) { w.newTab(); }),
        withNote(make("newFolder", "New Folder", "folder.badge.plus", keys(C | S | Qt::Key_N), "create mkdir", files(&FileActions::newFolder), canCreate),
                 kNotAFolder),
        withNote(make("newFile", "New File", "doc.badge.plus", keys(C | A | Qt::Key_N), "create touch", files(&FileActions::newFile), canCreate),
                 kNotAFolder),
        withNote(make("newNote", "New Note", "square.and.pencil", keys(C | A | S | Qt::Key_N), "markdown create write obsidian", newNote, canCreate),
                 kNotAFolder),
        withNote(make("todaysNote", "Today's Note", "calendar.badge.plus", keys(C | A | S | Qt::Key_D), "daily journal date obsidian",
                      openTodaysNote, hasFolder),
                 kNotAFolder),
        withNote(checkable(make("toggleEditing", "Edit File", "pencil.line", keys(C | Qt::Key_E), "write markdown text editor",
                                toggleEditing, canToggleEditing),
                           [](const WindowState& w) { return w.documentMode() != DocumentMode::preview; }),
                 "Put the cursor on a text file to edit it"),
        withNote(make("reopenTab", "Reopen Closed Tab", "", keys(C | S | Qt::Key_T), "", [](WindowState& w) { w.reopenClosedTab(); },
                      [](const WindowState& w) { return !w.closedTabURLs().isEmpty(); }),
                 "No closed tab to reopen"),
        make("closeTab", "Close Tab", "xmark", keys(C | Qt::Key_W), "", [](WindowState& w) { w.closeTab(); }),
        make("closeWindow", "Close Window", "macwindow", keys(C | S | Qt::Key_W), "close all tabs", [](WindowState& w) { w.closeWindow(); }),
        make("quit", "Quit", "power", keys(C | Qt::Key_Q), "exit close leave stop", [](WindowState& w) { w.quit(); }),
        withNote(make("newWindow", "New Window", "macwindow.badge.plus", keys(C | Qt::Key_N), "open another window",
                      [](WindowState&) { OpenRouter::instance()->openNewWindow(); },
                      [](const WindowState&) { return OpenRouter::instance() != nullptr; }),
                 "No other window can be opened from here"),
        // One item is renamed in place, several in the batch rename panel.
        withNote(make("rename", "Rename", "pencil", keys(Qt::Key_F2), "batch rename many multi-rename number replace regex",
                      [](WindowState& w) { w.beginRename(); }, changeSelection),
                 "Select the items to rename"),
        withNote(make("duplicate", "Duplicate", "plus.square.on.square", keys(C | Qt::Key_D), "", files(&FileActions::duplicateSelection),
                      changeSelection),
                 "Select the items to duplicate"),
        withNote(make("trash", "Move to Trash", "trash", keys(C | Qt::Key_Delete), "delete remove", files(&FileActions::trashSelection),
                      changeSelection),
                 "Select the items to move to the Trash"),
        withNote(make("copyToOther", "Copy to Other Pane", "arrow.right.doc.on.clipboard", keys(Qt::Key_F5), "",
                      toOther(FileOperations::Mode::copy), toOtherPane),
                 kNoOtherPane),
        withNote(make("moveToOther", "Move to Other Pane", "arrow.right.square", keys(Qt::Key_F6), "",
                      toOther(FileOperations::Mode::move), toOtherPane),
                 kNoOtherPane),
        withNote(make("linkToOther", "Make Link in Other Pane", "link", none(), "symlink symbolic link alias shortcut ln",
                      files(&FileActions::linkSelectionToOtherPane), toOtherPane),
                 kNoOtherPane),
        withNote(make("copyPath", "Copy Path", "", keys(C | A | Qt::Key_C), "link path clipboard", copyPath, onSelection), kSelectForPath),
        withNote(make("copyRelativePath", "Copy Relative Path", "", keys(C | A | S | Qt::Key_C), "link path relative git repo", copyRelativePath,
                      onSelection),
                 kSelectForPath),
        withNote(make("copyContents", "Copy Contents", "doc.on.clipboard", none(), "text clipboard file content paste without opening",
                      copyContents, canCopyContents),
                 kOneFileNote),
        withNote(make("copyDataURI", "Copy as Data URI", "chevron.left.forwardslash.chevron.right", none(),
                      "base64 inline css html embed svg image font", copyDataURI, canCopyContents),
                 kOneFileNote),
        withNote(make("showInFinder", "Show in System File Manager", "macwindow", none(), "reveal", showInSystemFileManager, hasFolder),
                 kNotAFolder),
        make("getInfo", "Get Info", "info.circle", keys(C | Qt::Key_I), "properties size details permissions",
             [](WindowState& w) { w.showPanel(WindowState::Panel::info, w.activePane()->url()); }),
        withNote(make("quickLook", "Quick Look", "", keys(C | Qt::Key_Y), "preview look", [](WindowState& w) { w.requestQuickLook(); },
                      [](const WindowState& w) { return w.activePane()->cursor().has_value(); }),
                 "Put the cursor on an item to look at it"),
        later("downloadNow", "Download Now", "icloud.and.arrow.down", none(), "cloud icloud google drive offline keep", kNoCloud),
        later("removeDownload", "Remove Download", "icloud", none(), "cloud icloud google drive free space evict", kNoCloud),
        withNote(make("reviewChanges", "Review Changes", "arrow.triangle.branch", keys(C | S | Qt::Key_U), "git diff commit stage status changes",
                      [](WindowState& w) { w.showPanel(WindowState::Panel::gitReview, w.activePane()->url()); }, actions::inGitRepository),
                 kNotInRepository),
        withNote(make("findInFiles", "Find in Files…", "text.magnifyingglass", keys(C | A | Qt::Key_F), "grep search contents text code ripgrep inside",
                      [](WindowState& w) { w.showPanel(WindowState::Panel::findInFiles, w.activePane()->url()); }, hasFolder),
                 kNotAFolder),
        withNote(make("compare", "Compare", "rectangle.split.2x1", none(), "diff difference versions images side by side",
                      [](WindowState& w) {
                          if (const auto pair = compareTargets(w))
                              w.showPanel(WindowState::Panel::compare, pair->first, {pair->first, pair->second});
                      },
                      [](const WindowState& w) { return compareTargets(w).has_value(); }),
                 kCompareNote),
        withNote(make("moveTo", "Move to…", "folder.badge.gearshape", keys(C | S | Qt::Key_M), "send relocate destination",
                      [](WindowState& w) { w.requestPalette(PaletteRequest::moveDestination); }, onSelection),
                 "Select the items to move"),
        withNote(make("copyTo", "Copy to…", "doc.on.doc", none(), "send duplicate destination",
                      [](WindowState& w) { w.requestPalette(PaletteRequest::copyDestination); }, onSelection),
                 "Select the items to copy"),
        withNote(make("addToShelf", "Add to Shelf", "tray.and.arrow.down", keys(C | A | Qt::Key_S), "drop stack gather collect basket",
                      shelfActions::addSelection, shelfActions::canAdd),
                 shelfActions::kAddNote),
        withNote(make("copyShelfHere", "Copy Shelf Here", "tray.and.arrow.up", none(), "drop stack paste land",
                      [](WindowState& w) { shelfActions::land(w, FileOperations::Mode::copy); }, shelfActions::canLand),
                 shelfActions::kLandNote),
        withNote(make("moveShelfHere", "Move Shelf Here", "tray.and.arrow.up", none(), "drop stack land",
                      [](WindowState& w) { shelfActions::land(w, FileOperations::Mode::move); }, shelfActions::canLand),
                 shelfActions::kLandNote),
        withNote(make("clearShelf", "Clear Shelf", "tray", none(), "drop stack empty", shelfActions::clear, shelfActions::canClear),
                 shelfActions::kEmptyNote),
        make("showShelf", "Show Shelf", "tray.full", none(), "drop stack list items gathered", [](WindowState& w) { w.requestShelf(); }),
        later("airDrop", "AirDrop", "dot.radiowaves.left.and.right", none(), "send share nearby iphone", kNoCounterpart),
        make("connectToServer", "Connect to Server…", "network", keys(C | M | Qt::Key_K), "smb afp nfs nas network share mount webdav",
             [](WindowState& w) { w.requestServerConnection(); }),
        withNote(make("putBack", "Put Back", "arrow.uturn.backward", none(), "restore trash undelete", files(&FileActions::putBackSelection),
                      test(&FileActions::canPutBack)),
                 "Select items in the Trash that Orwick knows the place of"),
        make("emptyTrash", "Empty Trash…", "trash", keys(C | S | Qt::Key_Delete), "bin delete permanently erase purge free space",
             files(&FileActions::requestEmptyTrash)),
        make("showRecents", "Recents", "clock.arrow.circlepath", keys(C | S | Qt::Key_F), "recent files opened lately",
             [](WindowState& w) { w.activePane()->show(Listing::of(Listing::Kind::recents)); }),
        make("thisMac", "This Computer", "desktopcomputer", keys(C | S | Qt::Key_C),
             "computer drives disks storage space usage capacity free volumes pc",
             [](WindowState& w) { w.activePane()->show(Listing::of(Listing::Kind::thisMac)); }),
        make("screenshots", "Screenshots", "camera.viewfinder", none(), "screen capture recording shots images",
             [](WindowState& w) { w.activePane()->show(Listing::of(Listing::Kind::screenshots)); }),
        withNote(make("tidyUp", "Tidy Up Folder…", "tray.2", none(), "organize sort downloads desktop clean messy files into folders",
                      files(&FileActions::requestTidyUp), canCreate),
                 kNotAFolder),
        withNote(make("cleanUp", "Clean Up Build Folders…", "sparkles", none(), "node_modules deriveddata disk space junk cache free up delete build",
                      [](WindowState& w) { w.showPanel(WindowState::Panel::cleanUp, w.activePane()->url()); }, hasFolder),
                 kNotAFolder),
        withNote(make("findDuplicates", "Find Duplicates…", "square.on.square", none(), "duplicate same identical copies files photos disk space free up dedupe",
                      [](WindowState& w) { w.showPanel(WindowState::Panel::duplicates, w.activePane()->url()); }, hasFolder),
                 kNotAFolder),
        withNote(make("showSpace", "Show Space Used…", "chart.pie", none(), "disk usage size treemap daisydisk storage big files what's taking space free up",
                      [](WindowState& w) { w.showPanel(WindowState::Panel::space, w.activePane()->url()); }, hasFolder),
                 kNotAFolder),
        make("trashFolder", "Open Trash", "trash", none(), "bin deleted put back",
             [](WindowState& w) { w.activePane()->show(Listing::of(Listing::Kind::trash)); }),
        withNote(make("pin", "Add to or Remove from Sidebar", "sidebar.left", keys(C | M | Qt::Key_T), "pin quick access favorite",
                      [](WindowState& w) { SidebarStore::shared().togglePinned(w.selectedFolders()); }, hasSelectedFolders),
                 "Select the folders to add or remove"),
        make("newSidebarGroup", "New Sidebar Group", "folder.badge.plus", none(), "section pin quick access",
             [](WindowState& w) { SidebarStore::shared().newGroup(QString(), w.selectedFolders(), true); }),
        withNote(make("compress", "Compress to Zip", "archivebox", none(), "zip archive", files(&FileActions::compressSelection),
                      test(&FileActions::canCompress)),
                 "Select the items to compress"),
        withNote(make("extract", "Extract Here", "archivebox.circle", none(), "unzip decompress expand untar", files(&FileActions::extractSelection),
                      test(&FileActions::canExtract)),
                 "Select the archives to extract"),
        withNote(make("undo", "Undo", "arrow.uturn.backward", keys(C | Qt::Key_Z), "revert back step", [](WindowState& w) { w.undoStack()->undo(); },
                      [](const WindowState& w) { return w.undoStack()->canUndo(); }),
                 "Nothing to undo"),
        withNote(make("redo", "Redo", "arrow.uturn.forward", keys(C | S | Qt::Key_Z), "again repeat step", [](WindowState& w) { w.undoStack()->redo(); },
                      [](const WindowState& w) { return w.undoStack()->canRedo(); }),
                 "Nothing to redo"),
        withNote(make("cut", "Cut", "scissors", keys(C | Qt::Key_X), "move", [](WindowState& w) { w.files().copySelection(true); }, onSelection),
                 "Select the items to cut"),
        withNote(make("copy", "Copy", "doc.on.doc", keys(C | Qt::Key_C), "", [](WindowState& w) { w.files().copySelection(false); }, onSelection),
                 "Select the items to copy"),
        withNote(make("copyImage", "Copy Image", "photo.on.rectangle", keys(C | M | Qt::Key_C), "picture clipboard figma paste pixels",
                      imageActions::copyImage, imageActions::canCopyImage),
                 imageActions::kSelectPicture),
        later("removeBackground", "Remove Background", "person.crop.rectangle", none(), "cut out subject transparent png isolate lift image picture photo", kNoCounterpart),
        withNote(make("removeLocation", "Remove Location from Photos", "location.slash", none(), "gps privacy exif strip share geotag where taken metadata",
                      imageActions::removeLocation, imageActions::canChangePictures),
                 imageActions::kSelectPictures),
        withNote(make("removeMetadata", "Remove All Metadata from Photos", "eye.slash", none(), "exif strip privacy camera gps xmp iptc clean share",
                      imageActions::removeMetadata, imageActions::canChangePictures),
                 imageActions::kSelectPictures),
        withNote(make("exportPDF", "Export Note as PDF", "doc.richtext", none(), "markdown print save pdf share document",
                      [](WindowState& w) { actions::exportNote(w, NoteExport::Format::pdf); }, actions::canExportNote),
                 actions::kExportNeedsNote),
        withNote(make("exportHTML", "Export Note as HTML", "globe", none(), "markdown web page html save publish",
                      [](WindowState& w) { actions::exportNote(w, NoteExport::Format::html); }, actions::canExportNote),
                 actions::kExportNeedsNote),
        withNote(make("imageSets", "Make Image Sets (@1x @2x @3x)", "square.stack.3d.up", none(), "retina 1x 2x 3x scale export assets ios app icon svg pdf png xcode web",
                      imageActions::makeImageSets, imageActions::canChangePictures),
                 imageActions::kSelectPictures),
        withNote(make("copyText", "Copy Text from Image", "text.viewfinder", none(), "ocr recognize read scan screenshot words picture pdf",
                      [](WindowState& w) { imageActions::copyText(w); }, imageActions::canReadText),
                 imageActions::kSelectPictures),
        withNote(make("combinePDF", "Combine into PDF", "doc.on.doc", none(), "merge join pdfs pages images to pdf scan",
                      imageActions::combineIntoPdf, imageActions::canCombine),
                 imageActions::kSelectPicturesOrPdfs),
        withNote(make("paste", "Paste", "doc.on.clipboard", keys(C | Qt::Key_V), "", [](WindowState& w) { w.files().paste(false); }, clipboardHasFiles),
                 kCopyFirst),
        withNote(make("moveHere", "Move Item Here", "arrow.down.doc", keys(C | A | Qt::Key_V), "", [](WindowState& w) { w.files().paste(true); },
                      clipboardHasFiles),
                 kCopyFirst),
        make("selectAll", "Select All", "checkmark.circle", keys(C | Qt::Key_A), "", [](WindowState& w) { w.activePane()->selectAll(); }),
        make("selectNone", "Select None", "circle", keys(C | A | Qt::Key_A), "deselect clear", [](WindowState& w) { w.activePane()->clearSelection(); }),
        withNote(make("deselectOrCloseFilter", "Deselect or Close Filter", "xmark.circle", none(), "escape clear selection filter cancel",
                      deselectOrCloseFilter, hasSelectionOrFilter),
                 "Nothing is selected, and no filter or search is open"),
        make("invertSelection", "Invert Selection", "", keys(C | S | Qt::Key_I), "reverse", [](WindowState& w) { w.activePane()->invertSelection(); }),
        withNote(make("selectByPattern", "Select by Pattern…", "checkmark.circle", keys(C | Qt::Key_Plus), "mask wildcard glob mark matching extension *.txt",
                      [](WindowState& w) { w.requestNamePattern(PaneState::Mark::select); }, hasItems),
                 "Nothing here to select"),
        withNote(make("deselectByPattern", "Deselect by Pattern…", "circle", keys(C | S | Qt::Key_Minus), "mask wildcard glob unmark matching extension",
                      [](WindowState& w) { w.requestNamePattern(PaneState::Mark::deselect); }, hasItems),
                 "Nothing here to deselect"),
        withNote(make("back", "Back", "chevron.left", keys(C | Qt::Key_BracketLeft), "", [](WindowState& w) { w.activePane()->goBack(); },
                      [](const WindowState& w) { return !w.activePane()->backStack().isEmpty() || w.activePane()->listing(); }),
                 "No earlier folder to go back to"),
        withNote(make("forward", "Forward", "chevron.right", keys(C | Qt::Key_BracketRight), "", [](WindowState& w) { w.activePane()->goForward(); },
                      [](const WindowState& w) { return !w.activePane()->forwardStack().isEmpty(); }),
                 "No later folder to go forward to"),
        withNote(make("up", "Enclosing Folder", "arrow.up", keys(C | Qt::Key_Up), "parent up", [](WindowState& w) { w.activePane()->goUp(); },
                      [](const WindowState& w) { return !w.activePane()->url().isRoot() || w.activePane()->listing(); }),
                 "This is the top folder"),
        withNote(make("open", "Open", "arrow.down.right.square", keys(C | Qt::Key_Down), "", [](WindowState& w) { w.activePane()->openSelection(); },
                      [](const WindowState& w) { // the selection, or the item under the cursor when none is selected
                          const PaneState* pane = w.activePane();
                          return !pane->selection().isEmpty() || (pane->cursor() && pane->item(*pane->cursor()));
                      }),
                 "Put the cursor on an item to open it"),
        withNote(make("openWith", "Open With…", "arrow.up.forward.app", none(), "application program app choose default handler mime type",
                      [](WindowState& w) { w.requestOpenWith(); }, cursorIsFile),
                 "Select a file to open"),
        withNote(make("openInNewTab", "Open in New Tab", "plus.rectangle.on.folder", keys(C | Qt::Key_Return), "",
                      [](WindowState& w) { w.openSelectionInNewTabs(); }, [](const WindowState& w) { return !w.selectedFolders().isEmpty(); }),
                 "Select the folders to open in tabs"),
        make("goToPath", "Go to Path…", "arrow.turn.down.right", keys(C | Qt::Key_L), "location folder",
             [](WindowState& w) { w.requestPalette(PaletteRequest::path); }),
        make("palette", "Command Palette", "command", keys(C | Qt::Key_K), "search jump", [](WindowState& w) { w.requestPalette(PaletteRequest::main); }),
        make("filter", "Filter This Folder", "line.3.horizontal.decrease", keys(C | Qt::Key_F), "find search narrow",
             [](WindowState& w) { w.activePane()->focusFilter(); }),
        make("search", "Search…", "magnifyingglass", none(), "find search files names contents text below everywhere home drives spotlight locate",
             [](WindowState& w) { w.activePane()->focusSearch(); }),
        make("dualPane", "Toggle Split", "rectangle.split.2x1", keys(C | Qt::Key_Backslash), "dual pane split two",
             [](WindowState& w) { w.selectedTab()->toggleSplit(); }),
        withNote(make("splitRight", "Split Right", "rectangle.righthalf.inset.filled", none(), "pane open beside column",
                      [](WindowState& w) { w.selectedTab()->split(w.activePane(), PaneEdge::right, w.activePane()->url()); },
                      [](const WindowState& w) { return w.selectedTab()->canSplit(w.activePane(), PaneEdge::right); }),
                 "A tab holds three columns of panes at most"),
        withNote(make("splitDown", "Split Down", "rectangle.bottomhalf.inset.filled", none(), "pane open below row",
                      [](WindowState& w) { w.selectedTab()->split(w.activePane(), PaneEdge::bottom, w.activePane()->url()); },
                      [](const WindowState& w) { return w.selectedTab()->canSplit(w.activePane(), PaneEdge::bottom); }),
                 "A column holds two panes at most"),
        withNote(make("closePane", "Close Pane", "xmark.rectangle", none(), "split remove",
                      [](WindowState& w) { w.selectedTab()->close(w.activePane()); }, isSplit),
                 kOnePaneNote),
        // F8 sits beside F5 and F6, which act on the other pane; Tab stays with text fields and the terminal.
        withNote(make("nextPane", "Focus Next Pane", "rectangle.2.swap", keys(Qt::Key_F8), "switch pane split",
                      [](WindowState& w) { w.selectedTab()->activateNext(1); }, isSplit),
                 kOnePaneNote),
        make("nextTab", "Show Next Tab", "arrow.right", keys(C | Qt::Key_Tab), "", [](WindowState& w) { w.selectTab(1); }),
        make("previousTab", "Show Previous Tab", "arrow.left", keys(C | S | Qt::Key_Backtab), "", [](WindowState& w) { w.selectTab(-1); }),
        make("hiddenFiles", "Toggle Hidden Files", "", keys(C | S | Qt::Key_Period), "dotfiles show hidden",
             [](WindowState& w) { w.activePane()->setShowHidden(!w.activePane()->showHidden()); }),
        withNote(checkable(make("hideIgnored", "Hide Git-Ignored Files", "eye.slash", none(), "gitignore node_modules build ignored show dim",
                                toggleHideIgnored, hasGit),
                           hidesIgnored),
                 "Needs git, which isn’t installed"),
        make("toggleSidebar", "Toggle Sidebar", "sidebar.left", keys(C | M | Qt::Key_S), "hide show places favorites room",
             [](WindowState& w) { w.setShowSidebar(!w.showSidebar()); }),
        make("focusSidebar", "Focus Sidebar", "sidebar.left", keys(C | A | Qt::Key_B), "places favorites keyboard jump",
             [](WindowState& w) { w.requestSidebarFocus(); }),
        make("togglePreview", "Toggle Preview", "sidebar.right", keys(C | A | Qt::Key_P), "viewer markdown quick look show file",
             [](WindowState& w) {
                 w.setShowPreview(!w.showPreview());
                 if (!w.showPreview())
                     w.setPreviewExpanded(false);
             }),
        make("expandPreview", "Expand Preview", "arrow.up.left.and.arrow.down.right", keys(C | A | Qt::Key_Return), "viewer markdown read full focus",
             [](WindowState& w) {
                 w.setPreviewExpanded(!w.previewExpanded());
                 if (w.previewExpanded())
                     w.setShowPreview(true);
             }),
        make("toggleTerminal", "Toggle Terminal", "terminal", keys(C | Qt::Key_J), "shell console bottom panel", terminalActions::toggleTerminal),
        make("focusTerminal", "Focus Terminal", "terminal", keys(C | Qt::Key_QuoteLeft), "shell console switch keyboard pane panel",
             terminalActions::toggleTerminalFocus),
        withNote(make("biggerIcons", "Bigger Icons", "plus.magnifyingglass", keys(C | Qt::Key_Equal), "zoom grid thumbnails larger",
                      [](WindowState& w) { w.activePane()->zoomIcons(1); }, [](const WindowState& w) { return w.activePane()->isTiled(); }),
                 kOnlyInGrid),
        withNote(make("smallerIcons", "Smaller Icons", "minus.magnifyingglass", keys(C | Qt::Key_Minus), "zoom grid thumbnails",
                      [](WindowState& w) { w.activePane()->zoomIcons(-1); }, [](const WindowState& w) { return w.activePane()->isTiled(); }),
                 kOnlyInGrid),
        make("newTerminal", "New Terminal", "plus.rectangle", keys(C | S | Qt::Key_J), "shell console tab another", terminalActions::newTerminal),
        withNote(make("closeTerminal", "Close Terminal", "xmark.rectangle", none(), "shell console end exit tab", terminalActions::closeTerminal,
                      terminalActions::hasTerminal),
                 "No terminal is open"),
        withNote(make("folderSizes", "Calculate Folder Sizes", "internaldrive", none(), "size folders disk usage",
                      [](WindowState& w) { w.activePane()->measureFolderSizes(); },
                      [](const WindowState& w) { return w.activePane()->canMeasureFolderSizes(); }),
                 kNotAFolder),
        make("groupByDate", "Group by Date", "calendar", keys(C | M | Qt::Key_G), "recent today sections",
             [](WindowState& w) { w.activePane()->setGroupByDate(!w.activePane()->groupByDate()); }),
        make("reload", "Reload", "arrow.clockwise", keys(C | Qt::Key_R), "refresh", [](WindowState& w) { w.activePane()->reload(); }),
        make("projects", "Projects", "chevron.left.forwardslash.chevron.right", keys(C | S | Qt::Key_P), "git repositories repos code switch open",
             [](WindowState& w) { w.requestPalette(PaletteRequest::projects); }),
        withNote(make("gitPull", "Git: Pull", "arrow.down.circle", none(), "git update remote origin download sync", actions::gitPull,
                      actions::inGitRepository), kNotInRepository),
        withNote(make("gitPush", "Git: Push", "arrow.up.circle", none(), "git upload remote origin publish sync", actions::gitPush,
                      actions::inGitRepository), kNotInRepository),
        withNote(make("gitFetch", "Git: Fetch", "arrow.triangle.2.circlepath", none(), "git remote check update", actions::gitFetch,
                      actions::inGitRepository), kNotInRepository),
        withNote(make("gitNewBranch", "Git: New Branch…", "", none(), "git branch create checkout feature",
                      [](WindowState& w) { w.showPanel(WindowState::Panel::gitNewBranch, w.activePane()->url()); },
                      actions::inGitRepository),
                 "This folder isn’t in a git repository"),
        withNote(make("gitSwitchBranch", "Git: Switch Branch…", "arrow.triangle.branch", none(), "git branch checkout change",
                      [](WindowState& w) { w.showPanel(WindowState::Panel::gitSwitchBranch, w.activePane()->url()); },
                      actions::inGitRepository),
                 "This folder isn’t in a git repository"),
        withNote(make("gitStash", "Git: Stash Changes", "tray.and.arrow.down", none(), "git stash save shelve put aside", actions::gitStash,
                      actions::inGitRepository), kNotInRepository),
        withNote(make("gitPopStash", "Git: Apply Latest Stash", "tray.and.arrow.up", none(), "git stash pop restore unshelve",
                      actions::gitApplyLatestStash, actions::inGitRepository), kNotInRepository),
        withNote(make("gitStashes", "Git: Stashes…", "tray.full", none(), "git stash list apply pop drop delete shelved",
                      [](WindowState& w) { w.showPanel(WindowState::Panel::gitStashes, w.activePane()->url()); },
                      actions::inGitRepository),
                 kNotInRepository),
        withNote(make("gitHistory", "Git: History", "clock.arrow.circlepath", none(), "git log commits history timeline",
                      [](WindowState& w) { w.showPanel(WindowState::Panel::gitHistory, w.activePane()->url()); },
                      actions::inGitRepository),
                 "This folder isn’t in a git repository"),
        withNote(make("saveSearch", "Save Search to Sidebar", "magnifyingglass", none(), "smart folder keep remember query bookmark", saveSearch,
                      showsSearch),
                 "Only a search can be saved: search first"),
        make("welcome", "Welcome to Orwick", "hand.wave", none(), "help shortcuts keys start onboarding",
             [](WindowState& w) { w.setWelcoming(true); }),
        later("checkForUpdates", "Check for Updates…", "arrow.down.circle", none(), "update upgrade new version sparkle download latest",
              "Updates come through your system's packages"),
        make("about", "About Orwick", "info.circle", none(), "version credits acknowledgements open source licenses",
             [](WindowState& w) { Q_EMIT w.messageRequested(QStringLiteral("Orwick %1 — a keyboard-driven file manager").arg(QStringLiteral(ORWICK_VERSION))); }),
        later("contactSupport", "Contact Support…", "envelope", none(), "help email question support feedback", kNotYet),
        later("reportProblem", "Report a Problem…", "ladybug", none(), "bug crash broken issue report feedback", kNotYet),
        make("customize", "Customize…", "slider.horizontal.3", keys(C | Qt::Key_Comma), "settings preferences sidebar groups favorites",
             [](WindowState& w) { w.showPanel(WindowState::Panel::settings, {}); }),
        make("keyboardShortcuts", "Keyboard Shortcuts", "keyboard", keys(Qt::Key_F1), "help keys hotkeys bindings cheat sheet list",
             [](WindowState& w) { w.requestShortcuts(); }),
        make("guide", "Orwick Guide", "graduationcap", keys(C | Qt::Key_Question), "", LearnCommands::openGuide), // Ctrl+Shift+/
        make("chooseTheme", "Choose Theme…", "paintpalette", none(), "appearance colors look settings", ThemeCommands::chooseTheme),
        make("openThemesFolder", "Open Themes Folder", "folder", none(), "theme custom colors json override", ThemeCommands::openThemesFolder),
        withNote(make("openInEditor", "", "", none(), "code editor ide vscode cursor zed xcode project", openInEditor, hasEditor),
                 "No code editor found"),
        make("openInTerminal", "Open in Terminal", "terminal", none(), "shell console panel here folder",
             [](WindowState& w) { terminalActions::openInTerminal(w, w.activePane()->url()); }),
        withNote(make("openInExternalTerminal", "", "macwindow.badge.plus", none(), "shell console external terminal app", openInTerminal, hasTerminal),
                 "No terminal app found"),
    };
    addOtherKeys(list);
    return list;
}

// "Open in …" names the editor and terminal in use, which the user may change at any time.
QString externalTerminalTitle()
{
    const QString name = actions::terminalName();
    return name == QLatin1StringView("Terminal") ? QStringLiteral("Open in External Terminal") : QStringLiteral("Open in ") + name;
}

void nameChosenPrograms(QList<AppCommand>& list)
{
    const std::pair<const char*, QString> titles[] = {{"openInEditor", QStringLiteral("Open in ") + actions::editorName()},
                                                      {"openInExternalTerminal", externalTerminalTitle()}};
    for (const auto& [id, title] : titles)
        for (qsizetype i = 0; i < list.size(); ++i)
            if (list.at(i).id == QLatin1StringView(id) && list.at(i).title != title)
                list[i].title = title; // touches the list only when the choice changed
}

QList<AppCommand> generated()
{
    QList<AppCommand> list;
    struct Mode {
        const char *id, *title, *symbol;
        ViewMode mode;
        int key;
    };
    const Mode modes[] = {{"view.list", "View as List", "list.bullet", ViewMode::list, Qt::Key_2},
                          {"view.grid", "View as Grid", "square.grid.2x2", ViewMode::grid, Qt::Key_1},
                          {"view.table", "View as Table", "tablecells", ViewMode::table, Qt::Key_4},
                          {"view.columns", "View as Columns", "rectangle.split.3x1", ViewMode::columns, Qt::Key_3}};
    for (const Mode& m : modes) {
        const ViewMode mode = m.mode;
        list.append(make(m.id, m.title, m.symbol, keys(Qt::CTRL | m.key), "layout icons thumbnails miller",
                         [mode](WindowState& w) {
                             actions::leaveDatabaseLayout(w);
                             w.activePane()->chooseViewMode(mode);
                         }));
    }
    // A notes folder as a board, calendar or gallery, or its tasks: kept per folder.
    const Mode layouts[] = {{"view.board", "View as Board", "rectangle.split.3x1", ViewMode::table, Qt::Key_5},
                            {"view.calendar", "View as Calendar", "calendar", ViewMode::table, Qt::Key_6},
                            {"view.gallery", "View as Gallery", "photo.on.rectangle", ViewMode::table, Qt::Key_7},
                            {"view.tasks", "View Tasks", "checklist", ViewMode::table, Qt::Key_8}};
    for (const Mode& m : layouts) {
        const QString layout = QString::fromLatin1(m.id).mid(5);
        list.append(withNote(make(m.id, m.title, m.symbol, keys(Qt::CTRL | m.key), "notes database kanban board calendar gallery cards tasks todo",
                                  [layout](WindowState& w) { actions::chooseDatabaseLayout(w, layout); }, actions::canChooseDatabaseLayout),
                             kNotAFolder));
    }
    struct Sort {
        const char *id, *title;
        SortKey key;
        int digit; // with Ctrl+Alt, beside the view modes' Ctrl+1…4
    };
    const Sort sorts[] = {{"sort.name", "Sort by Name", SortKey::name, Qt::Key_1},
                          {"sort.modified", "Sort by Date Modified", SortKey::modified, Qt::Key_2},
                          {"sort.size", "Sort by Size", SortKey::size, Qt::Key_3},
                          {"sort.kind", "Sort by Kind", SortKey::kind, Qt::Key_4}};
    for (const Sort& s : sorts) {
        const SortKey key = s.key;
        list.append(make(s.id, s.title, "arrow.up.arrow.down", keys(Qt::CTRL | Qt::ALT | s.digit), "order arrange",
                         [key](WindowState& w) { w.activePane()->sort(key); }));
    }
    // The Trash's own columns, while the Trash is shown.
    const Predicate showsTrash = [](const WindowState& w) { return w.activePane()->showsTrash(); };
    list.append(withNote(make("sort.originalLocation", "Sort by Original Location", "arrow.up.arrow.down", keys(Qt::CTRL | Qt::ALT | Qt::Key_5),
                              "order arrange trash deleted from where put back",
                              [](WindowState& w) { w.activePane()->sort(SortKey::originalLocation); }, showsTrash),
                         kOnlyInTrash));
    list.append(withNote(make("sort.dateDeleted", "Sort by Date Deleted", "arrow.up.arrow.down", keys(Qt::CTRL | Qt::ALT | Qt::Key_6),
                              "order arrange trash deleted when recently removed",
                              [](WindowState& w) { w.activePane()->sort(SortKey::dateDeleted); }, showsTrash),
                         kOnlyInTrash));
    return list;
}

// "Search: " + each saved search's name, which opens it in the active pane.
QList<AppCommand> savedSearches()
{
    QList<AppCommand> list;
    for (const SavedSearch& search : SidebarStore::shared().searches()) {
        AppCommand command = make("", "", "magnifyingglass", none(), "", [search](WindowState& w) { w.activePane()->open(search); });
        command.id = QStringLiteral("savedSearch.") + search.id;
        command.title = QStringLiteral("Search: ") + search.name;
        command.keywords = QStringLiteral("saved smart folder ") + search.name;
        list.append(command);
    }
    return list;
}

constexpr const char* kGoToFavorite = "goToFavorite:";
constexpr const char* kGoToDrive = "goToDrive:";

// "Go to " + each favourite, each folder of the sidebar's groups and each drive and server of
// its Locations, once per folder, with the sidebar row's icon. The drives are the list the
// sidebar read last: the palette never waits on a mount, and a drive ejected since is gone at
// the next read. This Computer and the Trash get no row here: "This Computer" and "Open Trash"
// open those very listings, and the palette would show two rows for one place.
QList<AppCommand> favorites()
{
    QList<AppCommand> list;
    QSet<FilePath> seen;
    auto add = [&](QLatin1StringView idPrefix, const QString& name, const FilePath& path, const QString& symbol, const char* keywords) {
        if (path.isEmpty() || seen.contains(path))
            return;
        seen.insert(path);
        AppCommand command = make("", "", "", none(), keywords, [path](WindowState& w) { w.activePane()->navigate(path); });
        command.id = idPrefix + storedPathText(path);
        command.title = QStringLiteral("Go to ") + name;
        command.symbol = symbol;
        list.append(command);
    };
    const QLatin1StringView favorite(kGoToFavorite), drive(kGoToDrive);
    const SidebarStore& store = SidebarStore::shared();
    for (const Place& place : store.allFavorites())
        add(favorite, place.name, place.url, place.symbol, "favorite place sidebar jump");
    for (const SidebarGroup& group : store.groups())
        for (const SidebarItem& item : group.items)
            add(favorite, item.name.value_or(item.path.fileName()), item.path, QStringLiteral("folder"), "favorite place sidebar jump");
    for (const Place& place : Locations::lastReadDrives()) {
        const char* keywords = place.symbol == QLatin1StringView("network") ? "server share network remote mount location sidebar jump"
                             : place.symbol == QLatin1StringView("externaldrive") ? "drive disk volume usb stick removable mount location sidebar jump"
                                                                                  : "drive disk volume partition mount location sidebar jump";
        add(drive, place.name, place.url, place.symbol, keywords);
    }
    return list;
}

} // namespace

const QList<AppCommand>& fixed()
{
    static QList<AppCommand> list = buildFixed();
    nameChosenPrograms(list);
    return list;
}

QList<AppCommand> all(const WindowState&)
{
    return fixed() + generated() + favorites() + savedSearches() + TagCommands::family(FinderTags::shared())
         + WorkspaceCommands::family() + ThemeCommands::family() + ImageCommands::family() + LearnCommands::family();
}

const AppCommand* find(const QString& id)
{
    for (const AppCommand& command : fixed())
        if (command.id == id)
            return &command;
    static const QList<AppCommand> families = generated();
    for (const AppCommand& command : families)
        if (command.id == id)
            return &command;
    // The other families follow what changes while Orwick runs (the favorites, the saved
    // searches, the tags in use, the saved workspaces, the themes, the text recognition
    // languages), so each is made afresh and the command found stays valid until the next call.
    // Only the family an id can belong to is made: making one reads stores and asks the system
    // (a menu looks up each of its commands).
    const auto startsWithAny = [&id](std::initializer_list<QLatin1StringView> prefixes) {
        return std::ranges::any_of(prefixes, [&id](QLatin1StringView prefix) { return id.startsWith(prefix); });
    };
    static QList<AppCommand> places, searches, tags, workspaces, themes, images; // one list each, as each call keeps its own
    QList<AppCommand>* made = nullptr;
    if (goesToPlace(id)) {
        made = &places;
        *made = favorites();
    } else if (startsWithAny({QLatin1StringView("savedSearch.")})) {
        made = &searches;
        *made = savedSearches();
    } else if (startsWithAny({TagCommands::kPrefix})) {
        made = &tags;
        *made = TagCommands::family(FinderTags::shared());
    } else if (startsWithAny({WorkspaceCommands::kOpenPrefix, WorkspaceCommands::kDeletePrefix, WorkspaceCommands::kSaveId})) {
        made = &workspaces;
        *made = WorkspaceCommands::family();
    } else if (startsWithAny({ThemeCommands::kThemePrefix, ThemeCommands::kAccentPrefix, QLatin1StringView("appearance.")})) {
        made = &themes;
        *made = ThemeCommands::family();
    } else if (startsWithAny({LearnCommands::kPrefix})) {
        for (const AppCommand& command : LearnCommands::family()) // fixed topics: made once
            if (command.id == id)
                return &command;
        return nullptr;
    } else if (startsWithAny({QLatin1StringView("image.")})) {
        made = &images;
        *made = ImageCommands::family();
    } else {
        return nullptr;
    }
    for (const AppCommand& command : std::as_const(*made))
        if (command.id == id)
            return &command;
    return nullptr;
}

bool goesToPlace(const QString& id)
{
    return id.startsWith(QLatin1StringView(kGoToFavorite)) || id.startsWith(QLatin1StringView(kGoToDrive));
}

bool run(const AppCommand& command, WindowState& window)
{
    if (!command.enabledIn(window))
        return false;
    command.run(window);
    return true;
}

bool run(const QString& id, WindowState& window)
{
    const AppCommand* command = find(id);
    return command && run(*command, window);
}

} // namespace orwick::CommandCatalog
