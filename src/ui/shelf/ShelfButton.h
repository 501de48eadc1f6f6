#pragma once
// ShelfButton: the shelf's entry at the foot of the sidebar, "Shelf" with the number of items on
// it. Pressing it (Return or Space with the keyboard, a click) opens ShelfList, the list of what
// is on the shelf; so does the window's Show Shelf (WindowState::shelfRequested), which, with
// the sidebar hidden, opens the list over the window's middle instead. Files dropped on the
// button go onto the shelf.

#include <QPointer>
#include <QToolButton>

namespace orwick {

class ShelfList;
class WindowState;

class ShelfButton : public QToolButton {
    Q_OBJECT
public:
    ShelfButton(WindowState* window, QWidget* parent = nullptr);

    // Opens the list (beside this button when it is shown) and gives it the keyboard.
    void showList();
    // The open list; null when none is shown.
    ShelfList* list() const;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void updateText();

    WindowState* m_window;
    QPointer<ShelfList> m_list;
};

} // namespace orwick
