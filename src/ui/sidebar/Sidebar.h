#pragma once
// Sidebar: the window's column of places (SidebarModel drawn by SidebarView). Opening a row acts
// on the window's active pane: a folder is navigated to; This Computer, the Trash and a tag are
// shown as listings; a saved search runs. Its menu renames, removes, reorders and ejects. Folders
// dropped on it join the Favourites, or the group they fall on. A group the store starts
// renaming (New Sidebar Group) is edited in place at once.
//
// Signals: messageRequested(text) carries a sentence for the window's toast.

#include "base/FilePath.h"

#include <QWidget>

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
    // Gives the keyboard to the rows (the current one, else the first place).
    void takeFocus();

Q_SIGNALS:
    void messageRequested(const QString& message);

private:
    void open(int row);
    void showMenu(int row, const QPoint& globalPosition);
    void addDropped(const QList<FilePath>& folders, int row);
    void eject(const SidebarRow& row);
    void editRenamingGroup();

    WindowState* m_window;
    SidebarStore* m_store;
    Locations* m_locations;
    SidebarModel* m_model;
    SidebarView* m_view;
};

} // namespace orwick
