#include "ui/pane/PaneKeys.h"

#include <QKeyEvent>
#include <optional>

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

std::optional<ViewMode> viewModeForDigit(int key)
{
    switch (key) {
    case Qt::Key_1: return ViewMode::grid;
    case Qt::Key_2: return ViewMode::list;
    case Qt::Key_3: return ViewMode::columns;
    case Qt::Key_4: return ViewMode::table;
    }
    return std::nullopt;
}

std::optional<SortKey> sortKeyForDigit(int key)
{
    switch (key) {
    case Qt::Key_1: return SortKey::name;
    case Qt::Key_2: return SortKey::modified;
    case Qt::Key_3: return SortKey::size;
    case Qt::Key_4: return SortKey::kind;
    }
    return std::nullopt;
}

} // namespace

bool handlePaneKey(PaneState& pane, QKeyEvent* event, const PaneKeyContext& context)
{
    const Qt::KeyboardModifiers mods = event->modifiers() & ~Qt::KeypadModifier;
    const bool shift = mods & Qt::ShiftModifier;
    const bool ctrl = mods & Qt::ControlModifier;
    const bool alt = mods & Qt::AltModifier;
    const int rowStep = context.horizontalMoves ? std::max(1, pane.gridColumns()) : 1;

    if (ctrl && !shift && !(mods & Qt::MetaModifier)) {
        if (const auto mode = alt ? std::nullopt : viewModeForDigit(event->key())) {
            pane.chooseViewMode(*mode);
            return true;
        }
        if (const auto key = alt ? sortKeyForDigit(event->key()) : std::nullopt) {
            pane.sort(*key);
            return true;
        }
    }
    if (event->key() == Qt::Key_G && ctrl && (mods & Qt::MetaModifier) && !alt && !shift) {
        pane.setGroupByDate(!pane.groupByDate());
        return true;
    }
    if (pane.preferences() && pane.preferences()->vimKeys() && handleVimKey(pane, event, context))
        return true;

    switch (event->key()) {
    case Qt::Key_Down:
        if (!ctrl && !alt) {
            pane.moveCursor(rowStep, shift);
            return true;
        }
        if (ctrl && !shift) { // Ctrl+Down opens, like Return
            pane.openSelection();
            return true;
        }
        break;
    case Qt::Key_Up:
        if (!ctrl && !alt) {
            pane.moveCursor(-rowStep, shift);
            return true;
        }
        if ((alt || ctrl) && !shift) {
            pane.goUp();
            return true;
        }
        break;
    case Qt::Key_Left:
        if (alt && !ctrl) {
            pane.goBack();
            return true;
        }
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
        if (alt && !ctrl) {
            pane.goForward();
            return true;
        }
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
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!ctrl && !alt && !shift) {
            pane.openSelection();
            return true;
        }
        break;
    case Qt::Key_Backspace:
        if (mods == Qt::NoModifier) {
            pane.goUp();
            return true;
        }
        break;
    case Qt::Key_BracketLeft:
        if (ctrl && !alt) {
            pane.goBack();
            return true;
        }
        break;
    case Qt::Key_BracketRight:
        if (ctrl && !alt) {
            pane.goForward();
            return true;
        }
        break;
    case Qt::Key_A:
        if (ctrl && alt) {
            pane.clearSelection();
            return true;
        }
        if (ctrl && !shift) {
            pane.selectAll();
            return true;
        }
        break;
    case Qt::Key_I:
        if (ctrl && shift && !alt) {
            pane.invertSelection();
            return true;
        }
        break;
    case Qt::Key_H:
        if (ctrl && !shift && !alt) {
            pane.setShowHidden(!pane.showHidden());
            return true;
        }
        break;
    case Qt::Key_Period:
    case Qt::Key_Greater:
        if (ctrl && shift) {
            pane.setShowHidden(!pane.showHidden());
            return true;
        }
        break;
    case Qt::Key_Escape:
        // First the selection goes, then an open filter closes (showing every row again).
        if (!pane.selection().isEmpty()) {
            pane.clearSelection();
            return true;
        }
        if (pane.isFiltering()) {
            pane.setFiltering(false);
            return true;
        }
        break;
    default:
        break;
    }
    if (isTypeSelectText(event)) {
        pane.typeAhead(event->text());
        return true;
    }
    return false;
}

} // namespace orwick
