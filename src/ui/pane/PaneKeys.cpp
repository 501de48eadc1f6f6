#include "ui/pane/PaneKeys.h"

#include "commands/CommandCatalog.h"
#include "state/WindowState.h"

#include <QKeyEvent>

namespace orwick {

namespace {

bool isTypeSelectText(const QKeyEvent* event)
{
    const Qt::KeyboardModifiers mods = event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (mods != Qt::NoModifier)
        return false;
    const QString text = event->text();
    return !text.isEmpty() && text.at(0).isPrint() && !(text == QLatin1StringView(" "));
}

// Vim keys: letters move instead of jumping to a name.
bool handleVimKey(PaneState& pane, QKeyEvent* event, const PaneKeyContext& context)
{
    const Qt::KeyboardModifiers mods = event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    const QString text = event->text();
    if (mods != Qt::NoModifier || text.size() != 1)
        return false;
    const bool pendingG = context.vimPendingG && *context.vimPendingG;
    if (context.vimPendingG)
        *context.vimPendingG = false;
    const int rowStep = context.horizontalMoves ? std::max(1, pane.gridColumns()) : 1;
    switch (text.at(0).unicode()) {
    case u'j': pane.moveCursor(rowStep, false); return true;
    case u'k': pane.moveCursor(-rowStep, false); return true;
    case u'J': pane.moveCursor(rowStep, true); return true;
    case u'K': pane.moveCursor(-rowStep, true); return true;
    case u'h':
        if (context.horizontalMoves)
            pane.moveCursor(-1, false);
        else
            pane.goUp();
        return true;
    case u'l':
        if (context.horizontalMoves)
            pane.moveCursor(1, false);
        else
            pane.enterCursorFolder();
        return true;
    case u'g':
        if (pendingG)
            pane.moveCursorToEnd(false, false);
        else if (context.vimPendingG)
            *context.vimPendingG = true;
        return true;
    case u'G': pane.moveCursorToEnd(true, false); return true;
    case u'/': pane.setFiltering(true); return true;
    }
    // Other letters do nothing rather than jump to a name.
    return isTypeSelectText(event);
}

// The window a pane belongs to (its tab's), if any.
WindowState* windowOf(const PaneState& pane)
{
    for (QObject* above = pane.parent(); above; above = above->parent())
        if (auto* window = qobject_cast<WindowState*>(above))
            return window;
    return nullptr;
}

// A pane key of the catalogue (Return, Backspace, Esc): runs its command when it can run. The key
// is the command's either way, so a view never acts on it besides.
bool runPaneCommand(PaneState& pane, const QKeyEvent* event)
{
    // The keypad's Enter is Enter, whatever the keypad flag says.
    const QKeySequence key(QKeyCombination(event->modifiers() & ~Qt::KeypadModifier, Qt::Key(event->key())));
    for (const AppCommand& command : CommandCatalog::fixed()) {
        if (!command.paneShortcuts.contains(key))
            continue;
        // A held key acts once: holding Return doesn't open the same file again and again,
        // nor Backspace race up to the root, nor Space flicker Quick Look.
        if (event->isAutoRepeat())
            return true;
        if (WindowState* window = windowOf(pane))
            CommandCatalog::run(command, *window);
        return true;
    }
    return false;
}

} // namespace

bool handlePaneKey(PaneState& pane, QKeyEvent* event, const PaneKeyContext& context)
{
    const Qt::KeyboardModifiers mods = event->modifiers() & ~Qt::KeypadModifier;
    const bool shift = mods & Qt::ShiftModifier;
    const bool ctrl = mods & Qt::ControlModifier;
    const bool alt = mods & Qt::AltModifier;
    const int rowStep = context.horizontalMoves ? std::max(1, pane.gridColumns()) : 1;

    if (pane.preferences() && pane.preferences()->vimKeys() && handleVimKey(pane, event, context))
        return true;

    switch (event->key()) {
    case Qt::Key_Down:
        if (!ctrl && !alt) {
            pane.moveCursor(rowStep, shift);
            return true;
        }
        break;
    case Qt::Key_Up:
        if (!ctrl && !alt) {
            pane.moveCursor(-rowStep, shift);
            return true;
        }
        break;
    case Qt::Key_Left:
        if (context.horizontalMoves && !ctrl && !alt) {
            pane.moveCursor(-1, shift);
            return true;
        }
        if (context.levelMoves && mods == Qt::NoModifier) {
            pane.goUp();
            return true;
        }
        break;
    case Qt::Key_Right:
        if (context.horizontalMoves && !ctrl && !alt) {
            pane.moveCursor(1, shift);
            return true;
        }
        if (context.levelMoves && mods == Qt::NoModifier) {
            pane.enterCursorFolder();
            return true;
        }
        break;
    case Qt::Key_Home:
    case Qt::Key_End:
        if (!ctrl && !alt) {
            pane.moveCursorToEnd(event->key() == Qt::Key_End, shift);
            return true;
        }
        break;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (!ctrl && !alt) {
            pane.moveCursor(event->key() == Qt::Key_PageDown ? context.pageRows : -context.pageRows, shift);
            return true;
        }
        break;
    default:
        break;
    }
    if (runPaneCommand(pane, event))
        return true;
    if (isTypeSelectText(event)) {
        pane.typeAhead(event->text());
        return true;
    }
    return false;
}

} // namespace orwick
