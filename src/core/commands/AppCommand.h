#pragma once
// AppCommand: one thing the user can do, by key, menu, context menu or palette. A value: the
// menu item, the shortcut and the palette row of a command all run the same `run` and read the
// same `isEnabled`, so a command's title, icon and key are defined once.

#include <QKeySequence>
#include <QList>
#include <QString>
#include <functional>

namespace orwick {

class WindowState;

struct AppCommand {
    QString id;        // stable, lower camel case; generated families use a dotted prefix ("view.list")
    QString title;     // ends in "…" when it opens a further dialog or panel
    QString symbol;    // the icon's name in the symbol set (mapped to a desktop icon when drawn)
    QKeySequence shortcut; // empty when none
    // Further keys that run it too (the Linux habits such as Alt+Left, the keypad's + and −);
    // menus and the palette name only `shortcut`, the Keyboard Shortcuts sheet names them all.
    QList<QKeySequence> otherShortcuts;
    // Keys that run it only while a pane's items have the keyboard (its view, not a field or an
    // editor inside it): Return, Backspace and Esc, which fields, editors and sheets keep for
    // their own. The pane's views look them up here; no window shortcut holds them.
    QList<QKeySequence> paneShortcuts;
    QString keywords;  // extra space-separated search words
    // Evaluated each time a menu or the palette shows the command; absent means always enabled.
    std::function<bool(const WindowState&)> isEnabled;
    std::function<void(WindowState&)> run;
    // Why the command is dimmed when it is, in the user's words ("Comes with batch rename").
    QString disabledNote;
    // For a command that switches something on and off: whether it is on now (the menu shows a
    // check mark). Absent for other commands.
    std::function<bool(const WindowState&)> isChecked;

    bool enabledIn(const WindowState& window) const { return run && (!isEnabled || isEnabled(window)); }
    // The text the palette matches: the title and the keywords.
    QString searchText() const { return keywords.isEmpty() ? title : title + QLatin1Char(' ') + keywords; }
    // The shortcut as shown in menus and the palette ("Ctrl+Shift+N").
    // Shift+Tab arrives as Backtab, the key a command binds; people call it Tab.
    // A command with pane keys only is named by its first one ("Esc").
    QString shortcutText() const
    {
        const QKeySequence shown = shortcut.isEmpty() && !paneShortcuts.isEmpty() ? paneShortcuts.first() : shortcut;
        return shown.toString(QKeySequence::NativeText).replace(QStringLiteral("Backtab"), QStringLiteral("Tab"));
    }
};

} // namespace orwick
