#pragma once
// PreviewFollower: the item a window's preview shows — the cursor of the active pane of the
// shown tab, or nothing — and a PreviewLoad that follows it into a PreviewView. Keeps up with
// tab and pane switches and with changes to the shown file (an edit, a toggled task); loads
// only while `active` (the view is on screen). Lives on the GUI thread.

#include "state/WindowState.h"

#include <QMetaObject>
#include <QObject>

namespace orwick {

class PreviewLoad;
class PreviewView;

class PreviewFollower : public QObject {
    Q_OBJECT
public:
    PreviewFollower(WindowState* window, PreviewView* view, QObject* parent = nullptr);

    void setActive(bool active);
    bool isActive() const { return m_active; }
    // Loads the shown item again (it changed on disk).
    void reload();
    PreviewLoad* load() const { return m_load; }
    // The item the cursor is on, or nothing.
    std::optional<FilePath> target() const;

private:
    void followPane();
    void update();

    WindowState* m_window;
    PreviewView* m_view;
    PreviewLoad* m_load;
    QMetaObject::Connection m_paneSelection;
    QMetaObject::Connection m_paneItems;
    QMetaObject::Connection m_tabPane;
    bool m_active = false;
    // The shown item's date and size when it was asked for: a change reloads it.
    std::pair<qint64, qint64> m_stamp{0, 0};
};

} // namespace orwick
