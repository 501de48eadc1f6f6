#pragma once
// WindowState: one window — its tabs, the shown tab, the folders of closed tabs and the window's
// undo stack. Tab and pane actions build on this.

#include "state/TabState.h"

#include <QObject>
#include <QUndoStack>

namespace orwick {

class WindowState : public QObject {
    Q_OBJECT
public:
    WindowState(const FilePath& folder, ViewPreferences* preferences, QObject* parent = nullptr);

    const QList<TabState*>& tabs() const { return m_tabs; }
    TabState* selectedTab() const;
    PaneState* activePane() const { return selectedTab()->activePane(); }
    const QList<FilePath>& closedTabURLs() const { return m_closedTabURLs; }
    QUndoStack* undoStack() { return &m_undoStack; }
    ViewPreferences* preferences() const { return m_preferences; }

Q_SIGNALS:
    void tabsChanged();
    void selectedTabChanged();

protected:
    QList<TabState*> m_tabs;
    QUuid m_selectedTabID;
    QList<FilePath> m_closedTabURLs;
    QUndoStack m_undoStack;
    ViewPreferences* m_preferences;
};

} // namespace orwick
