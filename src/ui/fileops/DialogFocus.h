#pragma once
// A question shown over the window (a QMessageBox opened with open()) hands the keyboard back
// where it was when it closes, however it closes (a button, Return, Esc). Without a window
// manager to do it, nothing is active after such a box goes, and the window's shortcuts (F5,
// Delete…) would be ignored until a click.

#include <QApplication>
#include <QDialog>
#include <QPointer>

namespace orwick {

inline void returnKeyboardWhenClosed(QDialog* dialog)
{
    QPointer<QWidget> focus = QApplication::focusWidget();
    QPointer<QWidget> window = dialog->parentWidget() ? dialog->parentWidget()->window() : nullptr;
    QObject::connect(dialog, &QDialog::finished, dialog, [focus, window] {
        if (window) {
            window->activateWindow();
            if (focus && focus->window() == window && focus->isVisible())
                focus->setFocus(Qt::ActiveWindowFocusReason);
        }
    });
}

} // namespace orwick
