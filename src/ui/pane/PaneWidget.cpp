#include "ui/pane/PaneWidget.h"

#include "files/FileCategory.h"
#include "platform/DefaultApps.h"
#include "platform/RecentFiles.h"
#include "ui/pane/FilterBar.h"
#include "ui/pane/PaneKeys.h"
#include "ui/pane/PathBar.h"
#include "ui/pane/SearchBar.h"
#include "ui/pane/StatusLine.h"
#include "ui/theme/Theme.h"
#include "ui/views/DrivesView.h"
#include "ui/views/FileListModel.h"
#include "ui/views/ColumnsView.h"
#include "ui/views/FileGridView.h"
#include "ui/views/FileListView.h"
#include "ui/views/FileTableView.h"
#include "ui/views/ViewContextMenu.h"
#include "ui/views/ViewDragDrop.h"

#include <QApplication>
#include <QDesktopServices>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeDatabase>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace orwick {

PaneWidget::PaneWidget(PaneState* pane, QWidget* parent) : QWidget(parent), m_pane(pane)
{
    m_model = new FileListModel(pane, this);
    m_pathBar = new PathBar(pane, this);
    m_stack = new QStackedWidget(this);
    m_filterBar = new FilterBar(pane, this);
    m_searchBar = new SearchBar(pane, this);
    m_listView = new FileListView(m_model, m_stack);
    m_message = new QLabel(m_stack);
    m_message->setAlignment(Qt::AlignCenter);
    m_message->setFocusPolicy(Qt::StrongFocus);
    m_message->setForegroundRole(QPalette::PlaceholderText); // dim, and follows the theme
    QFont font = m_message->font();
    font.setPointSizeF(font.pointSizeF() * 1.2);
    m_message->setFont(font);
    m_stack->addWidget(m_listView);
    m_stack->addWidget(m_message);
    m_statusLine = new StatusLine(pane, this);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_activeMark = new QWidget(this);
    m_activeMark->setFixedHeight(2);
    m_activeMark->setAutoFillBackground(true);
    setActive(false);
    layout->addWidget(m_activeMark);
    layout->addWidget(m_pathBar);
    layout->addWidget(m_filterBar);
    layout->addWidget(m_searchBar);
    layout->addWidget(m_stack, 1);
    layout->addWidget(m_statusLine);

    // The message label keeps the keys working (Back, Up) where there is no list.
    m_message->installEventFilter(this);
    // Every view drags its rows and takes drops; an empty folder's text takes drops too.
    takeInputOf(m_listView);
    connect(new ViewDragDrop(m_message, pane), &ViewDragDrop::dropped, this, &PaneWidget::filesDropped);

    connect(pane, &PaneState::itemsChanged, this, &PaneWidget::showState);
    connect(pane, &PaneState::locationChanged, this, &PaneWidget::showState);
    connect(pane, &PaneState::loadingChanged, this, &PaneWidget::showState);
    connect(pane, &PaneState::loadProgressChanged, this, [this] {
        if (m_stack->currentWidget() == m_message && m_pane->isLoading())
            m_message->setText(m_pane->loadingText());
    });
    // "Filter This Folder" (Ctrl+F from anywhere in the window) puts the keys in the field.
    connect(pane, &PaneState::filterFocusRequested, this, [this] { m_filterBar->open(); });
    connect(pane, &PaneState::viewModeChanged, this, &PaneWidget::showState);
    // Leaving the filter field hands the keys back to the view.
    connect(m_filterBar, &FilterBar::finished, this, [this] { itemsView()->setFocus(Qt::OtherFocusReason); });
    connect(m_searchBar, &SearchBar::finished, this, [this] { focusTarget()->setFocus(Qt::OtherFocusReason); });
    connect(pane, &PaneState::openRequested, this, &PaneWidget::openFiles);
    connect(pane, &PaneState::messageRequested, this, &PaneWidget::messageRequested);
    showState();
}

// Every view drags its rows and takes drops, and asks for the context menu the same ways; the
// pane's keys (Ctrl+F) reach it.
void PaneWidget::takeInputOf(QAbstractItemView* view)
{
    view->installEventFilter(this);
    connect(new ViewDragDrop(view, m_pane), &ViewDragDrop::dropped, this, &PaneWidget::filesDropped);
    connect(new ViewContextMenu(view, m_pane), &ViewContextMenu::requested, this, &PaneWidget::contextMenuRequested);
}

FileTableView* PaneWidget::tableView()
{
    if (!m_tableView) {
        m_tableView = new FileTableView(m_model, m_stack);
        m_stack->addWidget(m_tableView);
        takeInputOf(m_tableView);
        Q_EMIT tableViewMade(m_tableView);
    }
    return m_tableView;
}

FileGridView* PaneWidget::gridView()
{
    if (!m_gridView) {
        m_gridView = new FileGridView(m_model, m_stack);
        m_stack->addWidget(m_gridView);
        takeInputOf(m_gridView);
    }
    return m_gridView;
}

ColumnsView* PaneWidget::columnsView()
{
    if (!m_columnsView) {
        m_columnsView = new ColumnsView(m_model, m_stack);
        m_stack->addWidget(m_columnsView);
        takeInputOf(m_columnsView->currentColumn());
    }
    return m_columnsView;
}

QWidget* PaneWidget::focusTarget() const { return m_stack->currentWidget(); }

QWidget* PaneWidget::itemsView()
{
    switch (m_pane->viewMode()) {
    case ViewMode::grid: return gridView();
    case ViewMode::columns: return columnsView();
    case ViewMode::table: return tableView();
    case ViewMode::list: break;
    }
    return m_listView;
}

void PaneWidget::setActive(bool active)
{
    // A role, not a colour: the strip takes each new theme's accent with the application palette.
    m_activeMark->setBackgroundRole(active ? QPalette::Highlight : QPalette::Window);
}

void PaneWidget::takeFocus() { focusTarget()->setFocus(Qt::OtherFocusReason); }

void PaneWidget::showState()
{
    QWidget* shown = m_stack->currentWidget();
    const bool hadFocus = shown && (shown->hasFocus() || shown->isAncestorOf(QApplication::focusWidget()));
    QWidget* next = itemsView();
    if (m_pane->listing() && m_pane->listing()->kind == Listing::Kind::thisMac) {
        if (m_stack->currentWidget() != m_drives) // also when not made yet
            drives()->refresh();
        next = m_drives;
    } else if (m_pane->items().isEmpty() && m_pane->viewMode() != ViewMode::columns) {
        // While the new place is read: blank, then "Loading…" with its count once it takes a while.
        m_message->setText(m_pane->isLoading() ? m_pane->loadingText() : m_pane->emptyText());
        next = m_message;
    }
    m_stack->setCurrentWidget(next);
    // The keys stay where they are inside the view (a name being edited over its rows).
    if (hadFocus && !next->isAncestorOf(QApplication::focusWidget()) && QApplication::focusWidget() != next)
        next->setFocus(Qt::OtherFocusReason);
}

DrivesView* PaneWidget::drives()
{
    if (!m_drives) {
        m_drives = new DrivesView(m_pane, m_stack);
        m_stack->addWidget(m_drives);
        m_drives->installEventFilter(this);
    }
    return m_drives;
}

void PaneWidget::openFiles(const FileItems& files)
{
    static const QMimeDatabase mimes;
    for (const FileItem& file : files) {
        // The desktop's opener only complains on its error output: a type that no installed
        // application takes is said here instead.
        const QMimeType type = mimes.mimeTypeForFile(file.destination.text());
        if (!defaultApps::canOpen(type.name())) {
            Q_EMIT messageRequested(QStringLiteral("No app is set to open “%1” (%2)").arg(file.name, type.comment()));
            continue;
        }
        if (!QDesktopServices::openUrl(file.destination.toUrl())) {
            Q_EMIT messageRequested(QStringLiteral("Couldn’t open “%1”").arg(file.name));
            continue;
        }
        RecentFiles::add(file.destination, mimes.mimeTypeForFile(file.destination.text(), QMimeDatabase::MatchExtension).name());
    }
}

bool PaneWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn)
        Q_EMIT activated();
    if (event->type() == QEvent::KeyPress) {
        // Ctrl+F, or / with Vim keys, opens the filter field (or goes back to it).
        auto* key = static_cast<QKeyEvent*>(event);
        const bool vim = m_pane->preferences() && m_pane->preferences()->vimKeys();
        if ((key->key() == Qt::Key_F && key->modifiers() == Qt::ControlModifier)
            || (vim && key->text() == QLatin1StringView("/") && !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))) {
            m_filterBar->open();
            return true;
        }
    }
    // An empty folder's message has the keyboard in place of a view: the pane's keys work there
    // as in the list (Backspace goes up, once per press); back, forward and the rest are the
    // window's shortcuts and need nothing here.
    if (watched == m_message && event->type() == QEvent::KeyPress)
        return handlePaneKey(*m_pane, static_cast<QKeyEvent*>(event), PaneKeyContext{});
    return QWidget::eventFilter(watched, event);
}

} // namespace orwick
