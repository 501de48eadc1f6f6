#pragma once
// The window: a tab bar over the shown tab's pane grid, the menu bar built from the command
// catalogue, toasts over everything. Input goes to the panes and the commands; the window only
// draws the state and forwards.

#include "state/WindowState.h"

#include <QHash>
#include <QMainWindow>
#include <functional>

class QSplitter;
class QStackedWidget;
class QTabBar;

namespace orwick {

class CommandMenus;
class PaletteController;
class FileOpsController;
class PaneGrid;
class PaneWidget;
class WindowTabBar;
class PreviewPanel;
class QuickLook;
class Sidebar;
class ToastHost;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    MainWindow(WindowState* state, QWidget* parent = nullptr);

    WindowState* state() const { return m_state; }
    PaneWidget* activePaneWidget() const;
    ToastHost* toasts() const { return m_toasts; }
    CommandMenus* menus() const { return m_menus; }
    PaletteController* palette() const { return m_palette; }
    // The file commands and keys, progress card and conflict question of this window.
    FileOpsController* fileOps() const { return m_fileOps; }
    QTabBar* tabBar() const;
    // The column of places on the left (shown or hidden with the state's showSidebar()).
    Sidebar* sidebar() const { return m_sidebar; }
    // The preview column on the right (shown with the state's showPreview()) and Quick Look.
    // The preview column, made when first shown; Quick Look, made when first asked for. Null before.
    PreviewPanel* previewPanel() const { return m_previewPanel; }
    QuickLook* quickLook() const { return m_quickLook; }

    // Called for every pane widget made, now and later (git marks, property columns…).
    void addPaneDecorator(std::function<void(PaneWidget*)> decorate);

    // Closes through the same close event as every other close, without the question about
    // its tabs: for the end of the program, whose session keeps them. Returns whether the window
    // closed now (not while an editor's save runs, nor after one was refused).
    bool closeWithoutAsking();

protected:
    // The one check every close and quit passes: unsaved editor text is saved first (the close
    // waits for it; a refused save cancels the close, and so a quit), then a window of several
    // tabs asks (a window-modal question; the close waits).
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void askToClose();
    void syncTabs();
    void showSelectedTab();
    void updateTitles();
    PaneGrid* gridFor(TabState* tab);
    void decorate(PaneWidget* widget);
    void setUpPreview(QSplitter* splitter);
    void makePreviewPanel();
    void toggleTask(const FilePath& note, int line);

    WindowState* m_state;
    bool m_closeConfirmed = false;
    WindowTabBar* m_tabBar;
    QStackedWidget* m_grids;
    QHash<TabState*, PaneGrid*> m_gridOf;
    ToastHost* m_toasts;
    Sidebar* m_sidebar;
    QWidget* m_content; // the tab bar over the pane grids
    QSplitter* m_previewSplitter = nullptr;
    std::function<void()> m_placePreview; // shows, hides and sizes the preview column
    std::function<void()> m_openPreviewColumn; // gives the column its opening width
    bool m_previewOpensOnShow = false; // the column appeared before the window had its size
    PreviewPanel* m_previewPanel = nullptr;
    QuickLook* m_quickLook = nullptr;
    CommandMenus* m_menus;
    PaletteController* m_palette;
    FileOpsController* m_fileOps;
    QList<std::function<void(PaneWidget*)>> m_decorators;
    bool m_syncing = false;
};

} // namespace orwick
