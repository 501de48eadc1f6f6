#pragma once
// TabBarDrops: folders dropped on the window's tab bar open in new tabs, one per folder in the
// order dropped (FileActions::openDroppedInTabs); files alone are refused with a toast. Watches
// the tab bar and forwards; owned by it.

#include <QObject>

class QTabBar;

namespace orwick {

class WindowState;

class TabBarDrops : public QObject {
    Q_OBJECT
public:
    TabBarDrops(QTabBar* tabBar, WindowState* state);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QTabBar* m_tabBar;
    WindowState* m_state;
};

} // namespace orwick
