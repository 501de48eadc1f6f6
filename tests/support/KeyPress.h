#pragma once
// Presses a key as the window system delivers it: the focused widget may claim it first
// (ShortcutOverride, as a line editor does for Ctrl+C), then the window's shortcuts get it, and
// only a key no shortcut takes reaches `target` as a key press. Sending a QKeyEvent alone would
// skip the shortcuts, which is where the window's commands live.

#include <QCoreApplication>
#include <QKeyEvent>

// Qt's own entry for this, used by its test library; exported by Qt Gui.
Q_GUI_EXPORT bool qt_sendShortcutOverrideEvent(QObject* receiver, ulong timestamp, int key, Qt::KeyboardModifiers modifiers,
                                               const QString& text = QString(), bool autoRepeat = false, ushort count = 1);

namespace orwick::test {

// Returns true when a shortcut took the key.
inline bool pressKey(QObject* target, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {})
{
    if (qt_sendShortcutOverrideEvent(target, 0, key, modifiers, text))
        return true;
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QCoreApplication::sendEvent(target, &release);
    return false;
}

} // namespace orwick::test
