#include "ui/window/MainWindow.h"
#include "ui/window/RowsShown.h"

#include "fileops/FileOperations.h"
#include "ui/fileops/FileOpsController.h"
#include "ui/pane/PaneWidget.h"
#include "ui/text/LiteralText.h"
#include "ui/views/FileListView.h"
#include "app/Services.h"
#include "commands/Frecency.h"
#include "platform/StoreNotices.h"
#include "ui/theme/ThemeApplier.h"
#include "ui/theme/ThemedSplitter.h"
#include "ui/window/CommandMenus.h"
#include "ui/window/PaletteController.h"
#include "ui/window/PaneGrid.h"
#include "ui/terminal/TerminalSplit.h"
#include "ui/window/TabBarDrops.h"
#include "ui/tabs/WindowTabBar.h"
#include "ui/window/ToastHost.h"
#include "fileops/OutsideMoves.h"
#include "ui/window/WorkspaceNamePrompt.h"
#include "ui/window/NamePatternPrompt.h"
#include "ui/panels/GuideSheet.h"
#include "ui/panels/ShortcutsSheet.h"
#include "ui/panels/WelcomeSheet.h"
#include "ui/dialogs/OpenWithChooser.h"
#include "ui/servers/ServerSheet.h"
#include "ui/images/RecognizedTextSheet.h"
#include "ui/images/ResizeDialog.h"
#include "ui/sidebar/Sidebar.h"
#include "ui/preview/PreviewFollower.h"
#include "ui/preview/PreviewPanel.h"
#include "ui/preview/PreviewView.h"
#include "ui/preview/QuickLook.h"
#include "commands/TaskActions.h"
#include "app/Settings.h"
#include "places/SidebarStore.h"

#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QApplication>
#include <QCloseEvent>
#include <QPointer>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

namespace orwick {

namespace {
constexpr int kPreviewWidth = 380; // the preview column's width when it first opens
constexpr QSize kFirstSize(1200, 760); // a new window's size, on a screen with room for it

// The preview column's width when it opens beside the panes in `room` pixels: kPreviewWidth,
// or half the room in a narrow window, so the panes always keep at least half.
int openingPreviewWidth(int room) { return std::min(kPreviewWidth, room / 2); }
}

MainWindow::MainWindow(WindowState* state, QWidget* parent) : QMainWindow(parent), m_state(state)
{
    theme::follow(); // the first window puts the theme into the application
    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_tabBar = new WindowTabBar(central);
    new TabBarDrops(m_tabBar, state); // folders dropped on it open in new tabs
    m_grids = new QStackedWidget(central);
    layout->addWidget(m_tabBar);
    layout->addWidget(m_grids, 1);
    // The sidebar of places beside the content; whether it shows is kept as "showSidebar".
    auto* splitter = new ThemedSplitter(Qt::Horizontal, this);
    splitter->setHandleWidth(1); // a line between the sidebar and the content
    splitter->setChildrenCollapsible(false);
    m_sidebar = new Sidebar(state, &SidebarStore::shared(), splitter);
    splitter->addWidget(m_sidebar);
    splitter->addWidget(central);
    splitter->setStretchFactor(1, 1);
    m_content = central;
    setUpPreview(splitter);
    splitter->setSizes({220, 980, 0});
    setCentralWidget(splitter);
    state->setShowSidebar(readSettingsBool(*openSettings(), QStringLiteral("showSidebar"), true));
    m_sidebar->setVisible(state->showSidebar());
    connect(state, &WindowState::showSidebarChanged, this, [this] {
        const bool shown = m_state->showSidebar();
        if (!shown && m_sidebar->isAncestorOf(QApplication::focusWidget()))
            if (PaneWidget* pane = activePaneWidget())
                pane->takeFocus();
        m_sidebar->setVisible(shown);
        openSettings()->setValue(QStringLiteral("showSidebar"), shown);
    });
    connect(state, &WindowState::sidebarFocusRequested, this, [this] {
        m_state->setShowSidebar(true);
        m_sidebar->takeFocus();
    });
    m_toasts = new ToastHost(this);
    connect(m_sidebar, &Sidebar::messageRequested, this, [this](const QString& text) { m_toasts->show(text); });
    // What the stores have to say (a damaged file set aside, a file that can't be saved).
    StoreNotices::deliverTo(this, [this](const QString& message) { m_toasts->show(message); });
    m_fileOps = new FileOpsController(this, state, m_toasts, &FileOperations::shared());
    addPaneDecorator([this](PaneWidget* widget) { m_fileOps->attach(widget); });
    m_menus = new CommandMenus(this, state);
    m_palette = new PaletteController(state, services().frecency, this);
    connect(m_menus, &CommandMenus::messageRequested, this, [this](const QString& text) { m_toasts->show(text); });
    WorkspaceNamePrompt::follow(state, this); // "Save Workspace…" asks for a name
    NamePatternPrompt::follow(state, this);   // "Select by Pattern…", "Deselect by Pattern…"
    ShortcutsSheet::follow(*state, this);     // "Keyboard Shortcuts"
    GuideSheet::follow(*state, this);         // "Orwick Guide" and its topics
    WelcomeSheet::follow(*state, this);       // "Welcome to Orwick"
    OpenWithChooser::follow(state, this);     // "Open With…"
    ServerSheet::follow(state, this);         // "Connect to Server…"
    ResizeDialog::follow(state, this);        // "Image: Resize…"
    RecognizedTextSheet::follow(*state, this); // "Copy Text from Image", its toast's Show

    connect(state, &WindowState::tabsChanged, this, &MainWindow::syncTabs);
    connect(state, &WindowState::selectedTabChanged, this, &MainWindow::showSelectedTab);
    connect(state, &WindowState::closeRequested, this, &QWidget::close);
    connect(state, &WindowState::messageRequested, this, [this](const QString& text) { m_toasts->show(text); });
    connect(state, &WindowState::choiceRequested, this,
            [this](const QString& text, const QStringList& choices, const std::function<void(int)>& chosen) {
                QList<ToastAction> buttons;
                for (int i = 0; i < choices.size(); ++i)
                    buttons.append({literalText(choices[i]), [chosen, i] { chosen(i); }});
                m_toasts->show(text, buttons);
            });
    // Notes, pictures and folders another program moved: offer to update the links to them.
    connect(&OutsideMoves::shared(), &OutsideMoves::offered, this, [this](const QList<FileMove>& moves, const QString& text) {
        if (isActiveWindow() || QApplication::activeWindow() == nullptr)
            m_toasts->show(text, QStringLiteral("Update Links"),
                           [this, moves] { OutsideMoves::shared().accept(moves, m_state->undoStack()); });
    });
    connect(m_tabBar, &QTabBar::currentChanged, this, [this](int index) {
        if (!m_syncing && index >= 0 && index < m_state->tabs().size())
            m_state->selectTabWithID(m_state->tabs()[index]->id());
    });
    connect(m_tabBar, &QTabBar::tabMoved, this, [this](int from, int to) {
        if (m_syncing)
            return;
        const QUuid moving = m_state->tabs()[from]->id(), onto = m_state->tabs()[to]->id();
        m_syncing = true; // the bar already shows the new order
        m_state->moveTab(moving, onto);
        m_syncing = false;
    });
    connect(m_tabBar, &QTabBar::tabCloseRequested, this, [this](int index) { m_state->closeTab(m_state->tabs()[index]->id()); });

    syncTabs();
    // A small screen gets a window that fits it, with a margin for the desktop's panels.
    const QSize screenRoom = screen() ? screen()->availableGeometry().size() * 9 / 10 : kFirstSize;
    resize(kFirstSize.boundedTo(screenRoom));
}

// The preview column at the right of the content and Quick Look over the window; whether the
// column shows is the state's showPreview() (kept in the session), whether it takes the whole
// content area its previewExpanded() (kept as "previewExpanded"). Both are made when first
// wanted: a window that never previews doesn't pay for their views as it opens.
void MainWindow::setUpPreview(QSplitter* splitter)
{
    m_previewSplitter = splitter;
    connect(m_state, &WindowState::quickLookRequested, this, [this] {
        if (m_quickLook)
            return; // it follows the requests itself
        m_quickLook = new QuickLook(m_state, this);
        connect(m_quickLook, &QuickLook::taskToggleRequested, this, &MainWindow::toggleTask);
        m_quickLook->open();
    });
    m_state->setPreviewExpanded(readSettingsBool(*openSettings(), QStringLiteral("previewExpanded"), false));
    // The splitter's sizes before the preview covered the content, given back when it stops.
    auto uncovered = std::make_shared<QList<int>>();
    auto place = [this, uncovered] {
        const bool shown = m_state->showPreview();
        if (!m_previewPanel) {
            if (!shown)
                return; // not made yet, and not wanted
            makePreviewPanel();
        }
        // The editor (and its live preview) takes the whole content area too.
        const bool expanded = shown && (m_state->previewExpanded() || m_state->documentMode() != DocumentMode::preview);
        QWidget* focus = QApplication::focusWidget();
        const bool focusInPreview = m_previewPanel->isAncestorOf(focus);
        const bool appearing = shown && m_previewPanel->isHidden();
        const bool covering = expanded && m_content->isVisible();
        const bool uncovering = !expanded && m_content->isHidden() && uncovered->size() == 3;
        auto* splitter = qobject_cast<QSplitter*>(m_previewPanel->parentWidget());
        const QList<int> before = splitter ? splitter->sizes() : QList<int>{};
        m_previewPanel->setVisible(shown);
        m_content->setVisible(!expanded);
        // The sidebar keeps its width when the preview takes the content's room, and the
        // panes get theirs back after.
        if (covering && before.size() == 3) {
            *uncovered = before;
            splitter->setSizes({before[0], 0, before[1] + before[2]});
        } else if (uncovering && splitter && before.size() == 3) {
            // The room the preview covered is shared again as it was (the column at its old
            // width when it was open before, leaving the panes 200 pixels); the sidebar keeps
            // the width it has now.
            const int room = before[1] + before[2];
            const int old = (*uncovered)[2];
            const int column = !shown ? 0 : old > 0 ? std::min(old, std::max(0, room - 200)) : openingPreviewWidth(room);
            splitter->setSizes({before[0], room - column, column});
            uncovered->clear();
        }
        // The column opens at a readable width, taken from the panes, never from the sidebar:
        // once the window has its size, for a column restored with the session.
        if (appearing && splitter && !expanded) {
            if (isVisible())
                m_openPreviewColumn();
            else
                m_previewOpensOnShow = true;
        }
        if (expanded)
            m_previewPanel->focusTarget()->setFocus(Qt::OtherFocusReason);
        else if ((focusInPreview || !focus) && activePaneWidget())
            activePaneWidget()->takeFocus();
    };
    m_placePreview = place;
    m_openPreviewColumn = [this] {
        auto* splitter = m_previewPanel ? qobject_cast<QSplitter*>(m_previewPanel->parentWidget()) : nullptr;
        const QList<int> sizes = splitter ? splitter->sizes() : QList<int>{};
        if (sizes.size() != 3)
            return;
        const int room = sizes[1] + sizes[2];
        const int column = openingPreviewWidth(room);
        splitter->setSizes({sizes[0], room - column, column});
    };
    connect(m_state, &WindowState::showPreviewChanged, this, place);
    // (documentModeChanged is followed once the panel exists: editing always shows the column first.)
    connect(m_state, &WindowState::previewExpandedChanged, this, [this, place] {
        openSettings()->setValue(QStringLiteral("previewExpanded"), m_state->previewExpanded());
        place();
    });
    place();
}

void MainWindow::makePreviewPanel()
{
    m_previewPanel = new PreviewPanel(m_state, m_previewSplitter);
    m_previewPanel->hide(); // placed, and shown, by the preview's place()
    m_previewSplitter->addWidget(m_previewPanel);
    m_previewSplitter->setStretchFactor(2, 0);
    connect(m_previewPanel, &PreviewPanel::taskToggleRequested, this, &MainWindow::toggleTask);
    // After the panel's own connection: a new editor is made before it is given the keyboard.
    connect(m_state, &WindowState::documentModeChanged, this, m_placePreview);
}

// A task box clicked in a note toggles the task in the file, as one undoable change.
void MainWindow::toggleTask(const FilePath& note, int line)
{
    actions::toggleTask(*m_state, note, line, [panel = QPointer(m_previewPanel), look = QPointer(m_quickLook)] {
        if (panel)
            panel->follower()->reload();
        if (look)
            look->follower()->reload();
    });
}

QTabBar* MainWindow::tabBar() const { return m_tabBar; }

PaneWidget* MainWindow::activePaneWidget() const
{
    PaneGrid* grid = m_gridOf.value(m_state->selectedTab());
    return grid ? grid->activeWidget() : nullptr;
}

void MainWindow::addPaneDecorator(std::function<void(PaneWidget*)> decorator)
{
    for (PaneGrid* grid : std::as_const(m_gridOf))
        for (PaneWidget* widget : grid->paneWidgets())
            decorator(widget);
    m_decorators.append(std::move(decorator));
}

void MainWindow::decorate(PaneWidget* widget)
{
    connect(widget, &PaneWidget::contextMenuRequested, m_menus, &CommandMenus::showContextMenu);
    connect(widget->pane(), &PaneState::locationChanged, this, &MainWindow::updateTitles);
    // Every folder shown counts as a visit for the palette's ranking and the sidebar's Recent,
    // once its rows have been read: a folder that couldn't be opened is no visit.
    PaneState* pane = widget->pane();
    auto unread = std::make_shared<bool>(true); // the folder shown hasn't counted yet
    auto recordVisit = [pane, unread] {
        if (!*unread || pane->isLoading() || pane->isWaitingToBeShown())
            return;
        *unread = false;
        if (Frecency* frecency = services().frecency; frecency && !pane->listing() && !pane->error())
            frecency->record(pane->url());
    };
    connect(pane, &PaneState::locationChanged, this, [unread] { *unread = true; });
    connect(pane, &PaneState::loadingChanged, this, recordVisit);
    recordVisit();
    for (const auto& decorator : std::as_const(m_decorators))
        decorator(widget);
}

PaneGrid* MainWindow::gridFor(TabState* tab)
{
    PaneGrid* grid = m_gridOf.value(tab);
    if (!grid) {
        grid = new PaneGrid(tab, [this](PaneWidget* widget) { decorate(widget); });
        connect(grid, &PaneGrid::messageRequested, this, [this](const QString& text) { m_toasts->show(text); });
        connect(tab, &TabState::activePaneChanged, this, &MainWindow::updateTitles);
        m_gridOf.insert(tab, grid);
        m_grids->addWidget(new TerminalSplit(tab, grid, m_grids)); // the tab's terminal panel under its panes
    }
    return grid;
}

void MainWindow::syncTabs()
{
    m_syncing = true;
    // Grids of closed tabs go.
    for (auto it = m_gridOf.begin(); it != m_gridOf.end();) {
        if (!m_state->tabs().contains(it.key())) {
            TerminalSplit::of(it.value())->deleteLater();
            it = m_gridOf.erase(it);
        } else {
            ++it;
        }
    }
    // The bar gets as many tabs as the state, each with its title (updateTitles). A tab's grid is
    // made when the tab is first shown, so a restored window of many tabs builds the pane
    // widgets of one.
    m_syncing = false;
    updateTitles();
    showSelectedTab();
}

void MainWindow::showSelectedTab()
{
    m_syncing = true;
    TabState* selected = m_state->selectedTab();
    m_tabBar->setCurrentIndex(int(m_state->tabs().indexOf(selected)));
    m_tabBar->setVisible(m_state->tabs().size() > 1);
    PaneGrid* grid = gridFor(selected);
    // Showing the grid hands the keyboard to its first pane, which would make that one active;
    // the tab's own active pane takes it back.
    PaneState* active = selected->activePane();
    m_grids->setCurrentWidget(TerminalSplit::of(grid));
    m_syncing = false;
    selected->activate(active);
    if (PaneWidget* widget = grid->activeWidget())
        widget->takeFocus();
    updateTitles();
    // A tab shown for the first time (a restored one): its other panes read their folders once
    // the active pane's rows are on screen, after the update that put them there has ended.
    if (active->isLoading() && selected->hasPanesWaiting())
        whenRowsShown(*this, active, [tab = QPointer<TabState>(selected)] {
            QTimer::singleShot(0, tab, [tab] {
                if (tab)
                    tab->activePaneShown();
            });
        });
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // Every close — the close button, Close Window, quitting, the session's end — asks here
    // first. Text the editor holds is saved before the window goes: the close is tried again
    // once the engine says it saved; a refused save keeps the window and shows why.
    QPointer<MainWindow> self(this);
    if (m_previewPanel && !m_previewPanel->readyToClose([self] {
            if (self)
                QMetaObject::invokeMethod(self, &QWidget::close, Qt::QueuedConnection);
        })) {
        event->ignore();
        return;
    }
    if (m_state->tabs().size() > 1 && !m_closeConfirmed && isVisible()) {
        event->ignore();
        askToClose();
        return;
    }
    QMainWindow::closeEvent(event);
}

void MainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (std::exchange(m_previewOpensOnShow, false) && m_previewPanel && m_previewPanel->isVisible())
        m_openPreviewColumn();
}

bool MainWindow::closeWithoutAsking()
{
    m_closeConfirmed = true;
    return close();
}

void MainWindow::askToClose()
{
    if (findChild<QMessageBox*>(QStringLiteral("closeTabsQuestion")))
        return; // asked already
    auto* box = new QMessageBox(QMessageBox::Question, QStringLiteral("Close Window"),
                                QStringLiteral("Close this window and its %1 tabs?").arg(m_state->tabs().size()),
                                QMessageBox::Cancel, this);
    box->setObjectName(QStringLiteral("closeTabsQuestion"));
    QPushButton* close = box->addButton(QStringLiteral("Close Window"), QMessageBox::AcceptRole);
    box->setDefaultButton(close);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    connect(box, &QMessageBox::finished, this, [this, box, close] {
        if (box->clickedButton() != static_cast<QAbstractButton*>(close))
            return;
        m_closeConfirmed = true;
        QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    });
    box->open();
}

void MainWindow::updateTitles()
{
    QList<WindowTabBar::Tab> tabs;
    for (const TabState* tab : m_state->tabs())
        tabs.append({literalText(tab->title()), tab->place()});
    const bool syncing = std::exchange(m_syncing, true); // the tabs it adds or removes are the state's already
    m_tabBar->setTabs(tabs);
    m_syncing = syncing;
    setWindowTitle(m_state->activePane()->title() + QStringLiteral(" — Orwick"));
}

} // namespace orwick
