#pragma once
// ShortcutsSheet: "Keyboard Shortcuts" (F1) — every command of the catalogue with all the
// keys that run it, under the menus' headings (CommandGroups), read afresh from the catalogue
// each time it opens, so a key is defined in one place only; after them, under each view's name,
// the keys a view keeps for itself (ViewKeys: the board's, Review Changes', the palette's…).
// Typing filters: a row stays when each typed word is found in its title, keywords or keys
// (a view key's: its view, what it does and its keys), folded as search folds names ("trash",
// "ctrl+t", "hotkeys"). Up and Down move through the rows, Return runs the highlighted command
// (the sheet closes first; a dimmed command says why in the footer; a view's key says where it
// works), the first Esc clears the filter and the next closes. Drawn as the other sheets.

#include "commands/AppCommand.h"
#include "ui/panels/PanelSheet.h"

class QLineEdit;
class QMainWindow;
class QTreeWidget;
class QTreeWidgetItem;

namespace orwick {

class WindowState;

class ShortcutsSheet : public PanelSheet {
    Q_OBJECT
public:
    ShortcutsSheet(WindowState& state, QWidget* window);

    // Opens the sheet over `window` each time `state` asks for it (again: the filter is cleared).
    static void follow(WindowState& state, QMainWindow* window);

    QLineEdit* filterField() const { return m_filter; }
    QTreeWidget* list() const { return m_list; }
    // The rows shown now, commands' and views' keys (headings not counted).
    int shownCount() const;
    // The keys of a command as the sheet shows them: each key's text, joined by "  or  ".
    static QString keysText(const AppCommand& command);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fill();
    void applyFilter(const QString& text);
    void runCurrent();
    void moveCurrent(int step);

    WindowState& m_state;
    QLineEdit* m_filter;
    QTreeWidget* m_list;
};

} // namespace orwick
