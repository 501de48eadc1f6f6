#include "ui/window/CommandMenus.h"

#include "commands/CommandCatalog.h"
#include "commands/CommandGroups.h"
#include "commands/DatabaseViewActions.h"
#include "places/FinderTag.h"
#include "ui/text/LiteralText.h"
#include "ui/theme/DrawnIcons.h"
#include "ui/theme/ThemeSwatch.h"
#include "ui/views/TagDots.h"
#include "ui/window/TagsMenu.h"
#include "ui/window/ThemeMenu.h"
#include "ui/window/WorkspacesMenu.h"
#include "state/FileActions.h"

#include <QAction>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QUndoStack>

namespace orwick {

QIcon commandIcon(const QString& symbol)
{
    // A tag's command shows its colour ("tag.red"); another tag a plain dot ("tag").
    if (symbol == QLatin1StringView("tag") || symbol.startsWith(QLatin1StringView("tag.")))
        return tagDotIcon(FinderTag::colorIndex(symbol.mid(4)).value_or(0));
    // A theme's command shows a swatch of its colours ("theme.Nord").
    if (symbol.startsWith(QLatin1StringView("theme.")))
        return theme::themeSwatchIcon(symbol.mid(6));
    static const QHash<QString, QString> themeNames{
        {"plus.square.on.square", "tab-new"}, {"macwindow.badge.plus", "window-new"}, {"folder.badge.plus", "folder-new"}, {"doc.badge.plus", "document-new"},
        {"xmark", "window-close"}, {"pencil", "edit-rename"}, {"trash", "user-trash"}, {"doc.on.doc", "edit-copy"},
        {"scissors", "edit-cut"}, {"doc.on.clipboard", "edit-paste"}, {"chevron.left", "go-previous"},
        {"chevron.right", "go-next"}, {"arrow.up", "go-up"}, {"arrow.clockwise", "view-refresh"},
        {"checkmark.circle", "edit-select-all"}, {"info.circle", "help-about"}, {"archivebox", "package-x-generic"},
        {"line.3.horizontal.decrease", "view-filter"}, {"terminal", "utilities-terminal"}, {"desktopcomputer", "computer"},
        {"clock.arrow.circlepath", "document-open-recent"}, {"arrow.down.right.square", "document-open"},
        {"list.bullet", "view-list-details"}, {"square.grid.2x2", "view-list-icons"}, {"tablecells", "view-list-text"},
        {"rectangle.split.3x1", "view-split-left-right"}, {"rectangle.split.2x1", "view-split-left-right"},
        {"chart.pie", "drive-harddisk"}, {"square.on.square", "edit-copy"}, {"sparkles", "edit-clear"},
        {"magnifyingglass", "edit-find"}, {"text.magnifyingglass", "edit-find"}, {"plus.magnifyingglass", "zoom-in"},
        {"minus.magnifyingglass", "zoom-out"}, {"arrow.uturn.backward", "edit-undo"}, {"arrow.uturn.forward", "edit-redo"}, {"network", "network-server"},
        {"arrow.right.doc.on.clipboard", "edit-copy"}, {"arrow.right.square", "go-next"}, {"archivebox.circle", "package-x-generic"},
        {"arrow.down.doc", "edit-paste"}, {"tray.2", "view-sort-ascending"}, {"folder.badge.gearshape", "folder"},
        {"photo", "image-x-generic"}, {"photo.on.rectangle", "image-x-generic"}, {"square.stack.3d.up", "image-x-generic"},
        {"rotate.left", "object-rotate-left"}, {"rotate.right", "object-rotate-right"},
        {"arrow.left.and.right.righttriangle.left.righttriangle.right", "object-flip-horizontal"},
        {"arrow.up.and.down.righttriangle.up.righttriangle.down", "object-flip-vertical"},
        {"arrow.down.circle", "go-down"}, {"arrow.up.circle", "go-up"}, {"arrow.left", "go-previous"}, {"arrow.right", "go-next"},
        {"arrow.triangle.2.circlepath", "view-refresh"}, {"arrow.turn.down.right", "go-jump"}, {"arrow.up.forward.app", "system-run"},
        {"arrow.up.left.and.arrow.down.right", "view-fullscreen"}, {"calendar", "x-office-calendar"},
        {"calendar.badge.plus", "appointment-new"}, {"camera.viewfinder", "camera-photo"},
        {"chevron.left.forwardslash.chevron.right", "text-x-script"}, {"command", "preferences-desktop-keyboard-shortcuts"},
        {"keyboard", "input-keyboard"}, {"doc.richtext", "x-office-document"}, {"globe", "web-browser"},
        {"envelope", "mail-message-new"}, {"graduationcap", "help-browser"}, {"hand.wave", "help-browser"},
        {"icloud", "folder-remote"}, {"icloud.and.arrow.down", "folder-download"}, {"internaldrive", "drive-harddisk"},
        {"ladybug", "dialog-warning"}, {"link", "insert-link"}, {"paintpalette", "preferences-desktop-theme"},
        {"circle.lefthalf.filled", "preferences-desktop-theme"}, {"paintbrush.pointed", "applications-graphics"},
        {"pencil.line", "accessories-text-editor"}, {"square.and.pencil", "accessories-text-editor"},
        {"plus.rectangle", "utilities-terminal"}, {"plus.rectangle.on.folder", "tab-new"}, {"power", "application-exit"},
        {"rectangle.2.swap", "object-flip-horizontal"}, {"slider.horizontal.3", "preferences-system"},
        {"tray.and.arrow.down", "document-save"}, {"tray.and.arrow.up", "document-send"}, {"tray", "edit-clear"}, {"tray.full", "folder-open"},
        {"xmark.circle", "process-stop"}, {"xmark.rectangle", "window-close"}, {"dot.radiowaves.left.and.right", "network-wireless"},
        {"text.viewfinder", "edit-find-replace"}};
    // The desktop's icon theme first (or the fallback theme, IconThemeFallback.h); else Orwick's own mark.
    if (const QString name = themeNames.value(symbol); !name.isEmpty())
        if (const QIcon found = QIcon::fromTheme(name); !found.isNull())
            return found;
    return drawn::symbolMark(symbol);
}

namespace {
// A command's title in a menu: the image family sits in the Image menu, which says "Image:" already.
QString menuText(const AppCommand& command)
{
    const QString title = command.title.startsWith(QLatin1StringView("Image: ")) ? command.title.mid(7) : command.title;
    return literalText(title);
}

// A key pressed without Ctrl, Alt or Meta that isn't a function key: one typed in passing.
bool isPlainKey(const QKeySequence& key)
{
    if (key.count() != 1)
        return false;
    const QKeyCombination chord = key[0];
    const bool withModifier = chord.keyboardModifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    const bool functionKey = chord.key() >= Qt::Key_F1 && chord.key() <= Qt::Key_F35;
    return !withModifier && !functionKey;
}

// Undo and Redo name what they would undo ("Undo Rename"), as the undo stack words it.
QString shownText(const AppCommand& command, const WindowState& state)
{
    if (command.id == QLatin1StringView("undo") && state.undoStack()->canUndo())
        return literalText(command.title + QLatin1Char(' ') + state.undoStack()->undoText());
    if (command.id == QLatin1StringView("redo") && state.undoStack()->canRedo())
        return literalText(command.title + QLatin1Char(' ') + state.undoStack()->redoText());
    return menuText(command);
}

// The menu bar's titles with their Alt keys: each its first letter, as users expect ("&File"),
// unless an earlier menu has that letter; then the first of its letters no menu starts with, so
// Go and Git each open with a key of their own ("&Go", "Gi&t") and Image keeps Alt+I.
QStringList withOwnMnemonics(const QStringList& titles)
{
    QSet<QChar> taken;
    for (const QString& title : titles)
        if (!title.isEmpty())
            taken.insert(title[0].toLower());
    QSet<QChar> firstsGiven;
    QStringList marked;
    for (const QString& title : titles) {
        qsizetype at = -1;
        if (!title.isEmpty() && !firstsGiven.contains(title[0].toLower())) {
            at = 0;
            firstsGiven.insert(title[0].toLower());
        }
        for (qsizetype i = 1; at < 0 && i < title.size(); ++i)
            if (title[i].isLetter() && !taken.contains(title[i].toLower())) {
                at = i;
                taken.insert(title[i].toLower());
            }
        marked << (at < 0 ? title : QString(title).insert(at, QLatin1Char('&')));
    }
    return marked;
}
} // namespace

CommandMenus::CommandMenus(QMainWindow* window, WindowState* state) : QObject(window), m_window(window), m_state(state)
{
    // The menus are the catalogue's groups (CommandGroups), each with its own additions.
    // Each is made in menu bar order; the ones with additions are kept as they go by.
    QHash<QString, QMenu*> made;
    QStringList titles;
    for (const CommandGroups::Group& group : CommandGroups::menus())
        titles << group.title;
    const QStringList marked = withOwnMnemonics(titles);
    for (qsizetype i = 0; i < titles.size(); ++i)
        made.insert(titles[i], addMenu(marked[i], CommandGroups::menus()[i].ids));
    const auto menu = [&made](const char* title) { return made.value(QLatin1StringView(title)); };
    QMenu* file = menu("File");
    TagsMenu::addShortcuts(window, state);
    file->insertMenu(action(QStringLiteral("getInfo")), TagsMenu::addTo(file, window, state));

    QMenu* view = menu("View");
    view->addSeparator();
    ThemeMenu::addTo(view, state);
    WorkspacesMenu::addTo(menu("Window"), state);

    // The menu names the first key: Ctrl+Shift+Tab, not the Backtab the keyboard sends.
    if (QAction* a = action(QStringLiteral("previousTab")))
        a->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), a->shortcut()});
}

QAction* CommandMenus::makeAction(const QString& id)
{
    const AppCommand* command = CommandCatalog::find(id);
    if (!command)
        return nullptr;
    // Without its icon until a menu shows it: looking icons up in the desktop's theme is most of
    // what making the menu bar costs, and a window shows its files before anyone opens a menu.
    auto* action = new QAction(menuText(*command), m_window);
    QList<QKeySequence> keys;
    if (!command->shortcut.isEmpty())
        keys.append(command->shortcut); // first: the one the menu names
    keys += command->otherShortcuts;
    action->setShortcuts(keys);
    action->setShortcutContext(Qt::WindowShortcut);
    action->setStatusTip(command->disabledNote);
    action->installEventFilter(this); // to learn which of its keys was pressed
    connect(action, &QAction::triggered, this, [this, id] {
        const QKeySequence pressed = std::exchange(m_pressedKey, {});
        const AppCommand* command = CommandCatalog::find(id);
        if (!command)
            return;
        // A dimmed command says why when its chord is pressed, unless a name is being edited (its
        // keys are the editor's then). A plain key (Delete, the keypad's + and −) stays quiet: it
        // is pressed in passing, and a toast each time would be noise; the palette and the
        // Keyboard Shortcuts sheet still say why.
        if (!CommandCatalog::run(*command, *m_state) && !command->disabledNote.isEmpty() && !m_state->files().isRenaming()
            && !isPlainKey(pressed))
            Q_EMIT messageRequested(command->title + QStringLiteral(": ") + command->disabledNote);
    });
    m_window->addAction(action); // shortcuts work while the menu bar is closed
    m_actions.insert(id, action);
    return action;
}

bool CommandMenus::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Shortcut)
        m_pressedKey = static_cast<QShortcutEvent*>(event)->key(); // the action's triggered() follows at once
    return QObject::eventFilter(watched, event);
}

QMenu* CommandMenus::addMenu(const QString& title, const QStringList& ids)
{
    QMenu* menu = m_window->menuBar()->addMenu(title);
    for (const QString& id : ids) {
        if (id == QLatin1StringView("-")) {
            menu->addSeparator();
            continue;
        }
        if (QAction* a = makeAction(id))
            menu->addAction(a);
    }
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { refresh(menu); });
    // Closed menus leave every action enabled, so each shortcut reaches its command, which checks.
    connect(menu, &QMenu::aboutToHide, this, [menu] {
        for (QAction* a : menu->actions())
            if (!a->isSeparator() && a->property("fromCatalogue").toBool())
                a->setEnabled(true);
    });
    return menu;
}

void CommandMenus::giveIcon(QAction* action, const AppCommand& command)
{
    if (m_withIcons.contains(action))
        return;
    m_withIcons.insert(action);
    action->setIcon(commandIcon(command.symbol));
}

void CommandMenus::refresh(QMenu* menu)
{
    for (QAction* a : menu->actions()) {
        const QString id = m_actions.key(a);
        if (id.isEmpty())
            continue;
        const AppCommand* command = CommandCatalog::find(id);
        if (command)
            giveIcon(a, *command);
        a->setProperty("fromCatalogue", true);
        a->setEnabled(command && command->enabledIn(*m_state));
        if (command && a->text() != shownText(*command, *m_state)) // "Open in …" follows the chosen program
            a->setText(shownText(*command, *m_state));
        if (command && command->isChecked) { // "Hide Git-Ignored Files" shows whether they are hidden
            a->setCheckable(true);
            a->setChecked(command->isChecked(*m_state));
        }
        if (id.startsWith(QLatin1StringView("view."))) {
            a->setCheckable(true);
            // A notes folder shown as a board, calendar, gallery or its tasks checks that one.
            const std::optional<QString> layout = actions::databaseLayout(*m_state->activePane());
            a->setChecked((layout ? *layout : viewModeName(m_state->activePane()->viewMode())) == id.mid(5));
        }
    }
}

// Pictures: the picture tools that can act on the selection, in a submenu before Get Info.
void CommandMenus::addImageMenu(QMenu& menu)
{
    QStringList ids;
    for (const CommandGroups::Group& group : CommandGroups::menus())
        if (group.title == QLatin1StringView("Image"))
            ids = group.ids;
    auto* images = new QMenu(QStringLiteral("Image"), &menu);
    images->setIcon(commandIcon(QStringLiteral("photo")));
    for (const QString& id : std::as_const(ids)) {
        const AppCommand* command = CommandCatalog::find(id);
        QAction* a = action(id);
        if (id == QLatin1StringView("-"))
            images->addSeparator();
        else if (a && command && command->enabledIn(*m_state) && id != QLatin1StringView("copyImage")) { // Copy Image is with Copy
            giveIcon(a, *command);
            images->addAction(a);
        }
    }
    if (images->isEmpty() || std::ranges::all_of(images->actions(), &QAction::isSeparator)) {
        delete images;
        return;
    }
    QAction* before = action(QStringLiteral("getInfo"));
    if (!menu.actions().contains(before))
        before = nullptr;
    menu.insertMenu(before, images);
    menu.insertSeparator(before);
}

void CommandMenus::showContextMenu(const QPoint& globalPosition)
{
    const bool hasSelection = !m_state->activePane()->selection().isEmpty();
    const QStringList ids = hasSelection
        ? QStringList{"open", "openWith", "openInNewTab", "openInEditor", "-", "rename", "duplicate", "compress", "extract", "-", "cut", "copy",
                      "copyImage", "copyPath", "copyRelativePath", "copyToOther", "moveToOther", "linkToOther", "addToShelf", "-", "getInfo", "putBack", "trash"}
        : QStringList{"newFolder", "newFile", "paste", "moveHere", "copyShelfHere", "moveShelfHere", "-", "openInTerminal", "showInFinder", "tidyUp", "-", "selectAll",
                      "reload"};
    QMenu menu(m_window);
    for (const QString& id : ids) {
        if (id == QLatin1StringView("-")) {
            menu.addSeparator();
            continue;
        }
        if (QAction* a = action(id)) {
            const AppCommand* command = CommandCatalog::find(id);
            if (command && !command->enabledIn(*m_state))
                continue; // a context menu lists what can be done here
            if (command && a->text() != menuText(*command))
                a->setText(menuText(*command));
            if (command)
                giveIcon(a, *command);
            menu.addAction(a);
        }
    }
    if (hasSelection)
        addImageMenu(menu);
    if (hasSelection && m_state->files().canChangeSelection()) {
        // "Tags" comes before the last group (Put Back, Move to Trash).
        QAction* before = nullptr;
        for (QAction* a : menu.actions())
            if (a == action(QStringLiteral("putBack")) || a == action(QStringLiteral("trash"))) {
                before = a;
                break;
            }
        QMenu* tags = TagsMenu::addTo(&menu, m_window, m_state);
        menu.insertMenu(before, tags);
        menu.insertSeparator(before);
    }
    menu.exec(globalPosition);
}

} // namespace orwick
