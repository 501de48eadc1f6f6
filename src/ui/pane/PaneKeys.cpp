#include "ui/pane/PaneKeys.h"

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

} // namespace

bool handlePaneKey(PaneState& pane, QKeyEvent* event, const PaneKeyContext& context)
{
    const Qt::KeyboardModifiers mods = event->modifiers() & ~Qt::KeypadModifier;
    const bool shift = mods & Qt::ShiftModifier;
    const bool ctrl = mods & Qt::ControlModifier;
    const bool alt = mods & Qt::AltModifier;
    const int rowStep = context.horizontalMoves ? std::max(1, pane.gridColumns()) : 1;

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
        if (!pane.selection().isEmpty()) {
            pane.clearSelection();
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
