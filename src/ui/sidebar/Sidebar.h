#pragma once
// Sidebar: the window's column of places (SidebarModel drawn by SidebarView). Opening a row acts
// on the window's active pane: a folder is navigated to; This Computer, the Trash and a tag are
// shown as listings; a saved search runs; then the keyboard goes to that pane. Esc gives the
// keyboard back to the active pane too. Its menu renames, removes, reorders (Move Up and Move
// Down where there is somewhere to move) and ejects. Folders dropped on it join the Favourites,
// or the group they fall on. A group the store starts renaming (New Sidebar Group) is edited in
// place at once.
//
// Signals: messageRequested(text) carries a sentence for the window's toast.

#include "base/FilePath.h"

#include <QWidget>
#include <utility>

namespace orwick {

class Locations;
class SidebarModel;
class SidebarStore;
class SidebarView;
class WindowState;
struct SidebarRow;

class Sidebar : public QWidget {
    Q_OBJECT
public:
    Sidebar(WindowState* window, SidebarStore* store, QWidget* parent = nullptr);

    SidebarView* view() const { return m_view; }
    SidebarModel* model() const { return m_model; }
    // Gives the keyboard to the rows (the place chosen last, else the first place); when they
    // have it already, gives it back to the active pane, so the focus key goes there and back.
    void takeFocus();

Q_SIGNALS:
    void messageRequested(const QString& message);

private:
    void open(int row);
    void showMenu(int row, const QPoint& globalPosition);
    void addDropped(const QList<FilePath>& folders, int row);
    void eject(const SidebarRow& row);
    void editRenamingGroup();
    // Gives the keyboard to the active pane's view.
    void returnKeyboard();
    // Where a row that can be moved stands among those it moves among, and how many they are;
    // -1 and 0 for a row that doesn't move.
    std::pair<qsizetype, qsizetype> placeAmongSiblings(const SidebarRow& row) const;

    WindowState* m_window;
    SidebarStore* m_store;
    Locations* m_locations;
    SidebarModel* m_model;
    SidebarView* m_view;
};

} // namespace orwick
