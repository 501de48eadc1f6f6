#pragma once
// ShelfList: a small popup listing what is on the shelf, one row per item with its name, the
// folder it lies in and a button that takes it off the shelf (Delete does the same for the
// current row). An item that is gone since it was shelved says so: the items are looked at off
// the GUI thread (one on a server that stopped answering must not hold the window), and a row
// shows as a plain item until its answer comes. Below the rows: Copy Here,
// Move Here (into the active pane's folder) and Clear, enabled as the commands are.
//
// Rows can be dragged out, to a pane or another program, as the file clipboard's data (the
// panes' own drag data); files dropped on the list go onto the shelf. The list follows the shelf
// while it is open and closes with Esc or a click elsewhere.

#include "base/FilePath.h"

#include <QFrame>
#include <QHash>

class QLabel;
class QListWidget;
class QPushButton;

namespace orwick {

class WindowState;

class ShelfList : public QFrame {
    Q_OBJECT
public:
    ShelfList(WindowState* window, QWidget* parent);

    QListWidget* rows() const { return m_rows; }
    // The paths of the rows, in order (tests).
    QList<FilePath> shownItems() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // What a look at an item found.
    struct Found {
        bool gone = false;
        bool isFolder = false;
    };
    void fill();
    // Looks at the shown items not looked at yet, and fills the rows again with what it found.
    void lookAtItems();
    QWidget* rowWidget(const FilePath& item, const Found& found);

    WindowState* m_window;
    QLabel* m_title;
    QListWidget* m_rows;
    QLabel* m_empty;
    QPushButton* m_copy;
    QPushButton* m_move;
    QPushButton* m_clear;
    QPoint m_pressAt; // where a press that may become a drag began
    QHash<FilePath, Found> m_found;
    bool m_looking = false; // a look is running
};

} // namespace orwick
