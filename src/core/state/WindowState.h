#pragma once
// WindowState: one window — its tabs, the shown tab, the folders of closed tabs, the panel shown
// over the content and the window's undo stack — with the window actions that commands call.
// Everything here is headless; the window draws it.
//
// Signals: tabsChanged() follows every change of the tab list or order; selectedTabChanged()
// follows every change of the shown tab; closeRequested() asks the window to close (the last tab
// was closed); quitRequested() asks the program to end (Quit), every window with it; panelChanged() follows every change of the panel fields; showPreviewChanged()
// follows every change of showPreview(); workspaceNameRequested() asks the window for a name to
// save the window's tabs under (it answers through workspaceActions::save); showSidebarChanged()
// follows every change of showSidebar(); previewExpandedChanged() follows every change of
// previewExpanded(); quickLookRequested() asks the window to show Quick Look;
// documentModeChanged() follows every change of documentMode() or editedFile().
//
// Only the shown tab's panes read their folders: a restored tab's panes load when it is first
// selected.

#include "state/TabState.h"

#include <QObject>
#include <QUndoStack>
#include <functional>

namespace orwick {

class FileActions;

// How the preview shows a text file: rendered (`preview`), as its source in the editor alone
// (`edit`), or as its source beside the rendered note (`split`).
enum class DocumentMode { preview, edit, split };

// What the palette is opened for.
enum class PaletteRequest { main, path, projects, copyDestination, moveDestination };

class WindowState : public QObject {
    Q_OBJECT
public:
    // `start` whenShown: the first pane waits until its tab's loadPanes(), so that a session
    // restored before the window is drawn reads no folder it then throws away.
    WindowState(const FilePath& folder, ViewPreferences* preferences, QObject* parent = nullptr,
                PaneState::Start start = PaneState::Start::loading);

    const QList<TabState*>& tabs() const { return m_tabs; }
    TabState* selectedTab() const;
    PaneState* activePane() const { return selectedTab()->activePane(); }
    const QList<FilePath>& closedTabURLs() const { return m_closedTabURLs; }
    QUndoStack* undoStack() { return &m_undoStack; }
    const QUndoStack* undoStack() const { return &m_undoStack; }
    ViewPreferences* preferences() const { return m_preferences; }

    // --- Session
    // The window's layout: every tab's pane grid, the selected tab, showPreview.
    Session session() const;
    // Replaces the tabs by the session's (folders gone since fall back to home) and selects its
    // selected tab. Only that tab's panes read their folders: now, or with `later` when the
    // caller first moves them elsewhere (a start's open requests) and then calls loadPanes().
    enum class Load { now, later };
    void restore(const Session& session, Load load = Load::now);
    // Whether the preview panel is shown.
    bool showPreview() const { return m_showPreview; }
    void setShowPreview(bool shown);
    // Whether the preview takes the whole content area (the window keeps it in the settings).
    bool previewExpanded() const { return m_previewExpanded; }
    void setPreviewExpanded(bool expanded)
    {
        if (std::exchange(m_previewExpanded, expanded) != expanded)
            Q_EMIT previewExpandedChanged();
    }
    // The file the editor holds while documentMode() isn't `preview`, else empty. Opening it
    // shows the preview column, which then holds the editor; stopEditing() goes back to the
    // rendered preview (the editor saves what it holds first). setDocumentMode() switches
    // between `edit` and `split` while editing.
    DocumentMode documentMode() const { return m_documentMode; }
    const FilePath& editedFile() const { return m_editedFile; }
    void startEditing(const FilePath& file, DocumentMode mode = DocumentMode::split);
    void stopEditing() { startEditing({}, DocumentMode::preview); }
    void setDocumentMode(DocumentMode mode)
    {
        if (m_documentMode != DocumentMode::preview && mode != DocumentMode::preview)
            startEditing(m_editedFile, mode);
    }
    // Asks the window to show the cursor's item over the whole window (Quick Look).
    void requestQuickLook() { Q_EMIT quickLookRequested(); }
    void requestWorkspaceName() { Q_EMIT workspaceNameRequested(); }
    // Whether the sidebar of places is shown (the window keeps it in the settings).
    bool showSidebar() const { return m_showSidebar; }
    void setShowSidebar(bool shown)
    {
        if (std::exchange(m_showSidebar, shown) != shown)
            Q_EMIT showSidebarChanged();
    }
    // Asks the window to show the sidebar and give it the keyboard.
    void requestSidebarFocus() { Q_EMIT sidebarFocusRequested(); }

    // --- Tabs
    // A new tab on `folder` (the active pane's folder when absent), right after the shown one, shown.
    TabState* newTab(const std::optional<FilePath>& folder = std::nullopt);
    // With fewer than two tabs, asks to close the window instead (closedTabURLs unchanged).
    void closeTab(const std::optional<QUuid>& id = std::nullopt);
    // Close Window: asks the window to close (it asks first when it has several tabs).
    void closeWindow() { Q_EMIT closeRequested(); }
    // Quit: the program ends, with all its windows (their tabs come back with the session).
    void quit() { Q_EMIT quitRequested(); }
    void reopenClosedTab();
    // Shows the tab `offset` places on, wrapping at both ends.
    void selectTab(int offset);
    void selectTabWithID(const QUuid& id);
    void moveTab(const QUuid& id, const QUuid& onto);
    void openSelectionInNewTabs();

    // --- Selection
    QList<FilePath> selectedURLs() const;    // in shown order
    QList<FilePath> selectedFolders() const;
    // The file commands act only with a selection and while no name is being edited.
    bool canActOnSelection() const;
    bool hasOtherPane() const { return selectedTab()->otherPane() != nullptr; }
    // One item: inline rename. Several: the batch rename panel over them, in shown order.
    bool beginRename();
    // Copies or moves the selection into `folder` through the window's file actions; false when
    // it can't be done (nothing selected, a name being edited).
    bool transferSelection(bool move, const FilePath& folder);
    // The window's file verbs: new folder, rename, trash, copy and move, clipboard… on the shared
    // file operations, with this window's undo stack.
    FileActions& files() const { return *m_files; }
    void endFilter();

    // Asks the window to show the "Connect to Server…" sheet.
    void requestServerConnection() { Q_EMIT serverConnectionRequested(); }

    // Asks the window to open the palette in `mode`.
    void requestPalette(PaletteRequest request) { Q_EMIT paletteRequested(request); }
    // Asks the window for a name pattern to select or deselect by (the small pattern field).
    void requestNamePattern(PaneState::Mark mark) { Q_EMIT namePatternRequested(mark); }
    // Asks the window to show the Keyboard Shortcuts sheet.
    void requestShortcuts() { Q_EMIT shortcutsRequested(); }
    // Asks the window to show what is on the shelf (Shelf.h).
    void requestShelf() { Q_EMIT shelfRequested(); }
    // Asks the window for the chooser of applications that open the cursor's file.
    void requestOpenWith() { Q_EMIT openWithRequested(); }
    // Asks the window to show `message` with a button per choice ("Rebase", "Merge"); `chosen`
    // gets the index of the one pressed, and is never called when none is.
    void requestChoice(const QString& message, const QStringList& choices, std::function<void(int)> chosen)
    {
        Q_EMIT choiceRequested(message, choices, chosen);
    }

    // --- Help
    // The guide's article shown (a topic id), absent while the guide is closed. The last one
    // shown stays as lastLearnArticle(), for the guide to reopen at.
    const std::optional<QString>& learnArticle() const { return m_learnArticle; }
    const QString& lastLearnArticle() const { return m_lastLearnArticle; }
    void setLearnArticle(const std::optional<QString>& topic)
    {
        if (topic)
            m_lastLearnArticle = *topic;
        if (std::exchange(m_learnArticle, topic) != topic)
            Q_EMIT learnArticleChanged();
    }
    // Whether the welcome sheet is shown.
    bool isWelcoming() const { return m_isWelcoming; }
    void setWelcoming(bool shown)
    {
        if (std::exchange(m_isWelcoming, shown) != shown)
            Q_EMIT welcomingChanged();
    }

    // --- Panels over the content (at most one at a time)
    enum class Panel { none, duplicates, space, cleanUp, settings, batchRename, info, compare, findInFiles, gitReview, gitSwitchBranch, gitNewBranch, gitHistory, gitStashes };
    Panel panel() const { return m_panel; }
    const FilePath& panelFolder() const { return m_panelFolder; }
    // The items the panel acts on (batch rename: the selection it renames, in shown order;
    // compare: the left and the right item).
    const QList<FilePath>& panelItems() const { return m_panelItems; }
    void showPanel(Panel panel, const FilePath& folder, const QList<FilePath>& items = {});
    void closePanel() { showPanel(Panel::none, {}); }

Q_SIGNALS:
    void tabsChanged();
    void selectedTabChanged();
    void closeRequested();
    void quitRequested();
    void panelChanged();
    void messageRequested(const QString& message);
    void paletteRequested(orwick::PaletteRequest request);
    void showPreviewChanged();
    void workspaceNameRequested();
    void showSidebarChanged();
    void sidebarFocusRequested();
    void previewExpandedChanged();
    void quickLookRequested();
    void documentModeChanged();
    void serverConnectionRequested();
    void namePatternRequested(orwick::PaneState::Mark mark);
    void shortcutsRequested();
    void shelfRequested();
    // Follow every change of learnArticle() and of isWelcoming().
    void learnArticleChanged();
    void welcomingChanged();
    void openWithRequested();
    void choiceRequested(const QString& message, const QStringList& choices, const std::function<void(int)>& chosen);
    // The picture tools (imageActions) ask the window for the Resize options for `pictures`, and
    // to show recognized `text` whole with a way to copy it.
    void imageResizeRequested(const QList<orwick::FilePath>& pictures);
    void textSheetRequested(const QString& title, const QString& text);

protected:
    TabState* makeTab(const FilePath& folder);

    QList<TabState*> m_tabs;
    QUuid m_selectedTabID;
    QList<FilePath> m_closedTabURLs;
    QUndoStack m_undoStack;
    ViewPreferences* m_preferences;
    Panel m_panel = Panel::none;
    FileActions* m_files;
    FilePath m_panelFolder;
    QList<FilePath> m_panelItems;
    bool m_showPreview = false;
    bool m_previewExpanded = false;
    bool m_showSidebar = true;
    DocumentMode m_documentMode = DocumentMode::preview;
    FilePath m_editedFile;
    std::optional<QString> m_learnArticle;
    QString m_lastLearnArticle;
    bool m_isWelcoming = false;
};

} // namespace orwick
