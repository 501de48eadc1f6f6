#include "ui/notes/PaneDatabaseViews.h"

#include "commands/DatabaseViewActions.h"
#include "fileops/FileOperations.h"
#include "notes/BoardView.h"
#include "notes/CalendarView.h"
#include "notes/FileProperties.h"
#include "notes/GalleryView.h"
#include "notes/TaskList.h"
#include "ui/notes/BoardWidget.h"
#include "ui/notes/CalendarWidget.h"
#include "ui/notes/GalleryWidget.h"
#include "ui/notes/TasksWidget.h"
#include "ui/pane/PaneWidget.h"
#include "ui/views/FileTableView.h"
#include "ui/window/MainWindow.h"
#include "ui/window/ToastHost.h"

#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QStackedWidget>
#include <algorithm>

namespace orwick {

namespace {
QScrollArea* scrolling(QWidget* content, QWidget* parent)
{
    auto* area = new QScrollArea(parent);
    area->setWidget(content);
    area->setWidgetResizable(false);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusProxy(content);
    return area;
}
} // namespace

PaneDatabaseViews::PaneDatabaseViews(PaneWidget* widget, FileProperties* store, QUndoStack* undo,
                                     std::function<void(const QString&)> toast)
    : QObject(widget), m_widget(widget), m_store(store), m_undo(undo), m_toast(std::move(toast))
{
    m_stack = qobject_cast<QStackedWidget*>(widget->listView()->parentWidget());
    PaneState* pane = widget->pane();
    // After the pane widget's own handlers (connected first), so the view stays on top.
    connect(pane, &PaneState::locationChanged, this, [this] {
        m_month = {};
        m_tasksFolder = {};
        refresh();
    });
    connect(pane, &PaneState::itemsChanged, this, &PaneDatabaseViews::refresh);
    connect(pane, &PaneState::loadingChanged, this, &PaneDatabaseViews::refresh);
    connect(pane, &PaneState::viewModeChanged, this, &PaneDatabaseViews::refresh);
    connect(pane, &PaneState::selectionChanged, this, &PaneDatabaseViews::followPane);
    connect(store, &FileProperties::columnsChanged, this, [this](const FilePath& folder) {
        if (m_widget && folder == m_widget->pane()->url() && !m_movingCard)
            refresh();
    });
    connect(store, &FileProperties::valuesChanged, this, [this] {
        if (m_shown && *m_shown != QLatin1String("tasks"))
            rebuild();
    }, Qt::QueuedConnection);
    connect(&FileOperations::shared(), &FileOperations::contentsChanged, this, [this](const QList<FilePath>& files) {
        if (m_shown == QLatin1String("tasks") && std::any_of(files.begin(), files.end(), [this](const FilePath& f) {
                return m_tasksFolder.contains(f);
            }))
            readTasks();
    });
    refresh();
}

PaneDatabaseViews::~PaneDatabaseViews()
{
    if (m_widget)
        actions::setNewNoteHook(m_widget->pane(), {});
}

void PaneDatabaseViews::attach(MainWindow* window, FileProperties* store)
{
    window->addPaneDecorator([window, store](PaneWidget* widget) {
        new PaneDatabaseViews(widget, store, window->state()->undoStack(),
                              [window](const QString& message) { window->toasts()->show(message); });
    });
}

PaneDatabaseViews* PaneDatabaseViews::of(const PaneWidget* widget)
{
    return widget->findChild<PaneDatabaseViews*>(QString(), Qt::FindDirectChildrenOnly);
}

QWidget* PaneDatabaseViews::host() const { return m_pages; }

// The pages are made when a folder first shows one of them: most panes never do.
void PaneDatabaseViews::makePages()
{
    m_pages = new QStackedWidget(m_stack);
    m_board = new BoardWidget;
    m_boardArea = scrolling(m_board, m_pages);
    m_calendar = new CalendarWidget(m_pages);
    m_gallery = new GalleryWidget;
    m_galleryArea = scrolling(m_gallery, m_pages);
    m_galleryArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_galleryArea->setWidgetResizable(true); // the cards fill the width; the height is the gallery's
    m_tasks = new TasksWidget(m_pages);
    for (QWidget* page : {static_cast<QWidget*>(m_boardArea), static_cast<QWidget*>(m_calendar),
                          static_cast<QWidget*>(m_galleryArea), static_cast<QWidget*>(m_tasks)})
        m_pages->addWidget(page);
    if (m_stack)
        m_stack->addWidget(m_pages);
    // Keys the views don't take (Back, Up, the window's commands) still reach the pane.
    for (QWidget* view : {static_cast<QWidget*>(m_board), static_cast<QWidget*>(m_calendar),
                          static_cast<QWidget*>(m_gallery), static_cast<QWidget*>(m_tasks)})
        view->installEventFilter(m_widget);

    connect(m_board, &BoardWidget::openRequested, this, &PaneDatabaseViews::open);
    connect(m_calendar, &CalendarWidget::openRequested, this, &PaneDatabaseViews::open);
    connect(m_gallery, &GalleryWidget::openRequested, this, &PaneDatabaseViews::open);
    connect(m_tasks, &TasksWidget::openRequested, this, &PaneDatabaseViews::open);
    connect(m_board, &BoardWidget::moveRequested, this, &PaneDatabaseViews::moveCard);
    connect(m_calendar, &CalendarWidget::moveRequested, this, [this](const FilePath& item, QDate day) {
        const QString& key = m_calendar->calendar().key;
        setProperty(key, CalendarView::movedValue(m_store ? m_store->value(item, key) : std::nullopt, day), item);
    });
    connect(m_calendar, &CalendarWidget::monthRequested, this, [this](QDate month) {
        m_month = month;
        rebuild();
    });
    connect(m_board, &BoardWidget::groupByChosen, this, [this](const QString& key) { chooseSetting(QStringLiteral("groupBy"), key); });
    connect(m_board, &BoardWidget::makeSelectRequested, this, &PaneDatabaseViews::makeSelect);
    connect(m_calendar, &CalendarWidget::calendarByChosen, this,
            [this](const QString& key) { chooseSetting(QStringLiteral("calendarBy"), key); });
    connect(m_tasks, &TasksWidget::toggleRequested, this, &PaneDatabaseViews::toggle);
    // The views' keyboard item is the pane's selection, so Rename, Trash, Get Info… act on it.
    const auto select = [this](const FilePath& item) {
        if (m_widget && m_widget->pane()->cursor() != item && m_widget->pane()->row(item) >= 0)
            m_widget->pane()->click(item, Qt::NoModifier);
    };
    connect(m_board, &BoardWidget::currentChanged, this, select);
    connect(m_calendar, &CalendarWidget::currentChanged, this, select);
    connect(m_gallery, &GalleryWidget::currentChanged, this, select);
}

void PaneDatabaseViews::refresh()
{
    if (!m_widget || !m_stack)
        return;
    PaneState* pane = m_widget->pane();
    std::optional<QString> layout = actions::databaseLayout(*pane);
    if (layout && (pane->error() || (pane->isLoading() && pane->items().isEmpty())))
        layout.reset(); // the pane's own message (loading, can't read) says more
    const QWidget* focus = QApplication::focusWidget();
    const bool hadKeys = focus && (m_stack == focus || m_stack->isAncestorOf(focus));
    if (!layout) {
        if (m_shown) {
            m_shown.reset();
            actions::setNewNoteHook(pane, {});
            if (m_pages && m_stack->currentWidget() == m_pages)
                m_stack->setCurrentWidget(m_widget->itemsView());
            if (hadKeys)
                m_widget->itemsView()->setFocus(Qt::OtherFocusReason);
        }
        return;
    }
    const bool changed = m_shown != layout;
    m_shown = layout;
    if (!m_pages)
        makePages();
    QWidget* page = *layout == QLatin1String("board")      ? static_cast<QWidget*>(m_boardArea)
                  : *layout == QLatin1String("calendar")   ? static_cast<QWidget*>(m_calendar)
                  : *layout == QLatin1String("gallery")    ? static_cast<QWidget*>(m_galleryArea)
                                                           : static_cast<QWidget*>(m_tasks);
    m_pages->setCurrentWidget(page);
    m_pages->setFocusProxy(page);
    m_stack->setCurrentWidget(m_pages);
    if (hadKeys || changed)
        page->setFocus(Qt::OtherFocusReason);
    actions::setNewNoteHook(pane, [self = QPointer(this)]() -> std::optional<actions::NewNoteRequest> {
        if (!self || !self->m_shown)
            return actions::NewNoteRequest{};
        bool accepted = false;
        const QString title = QInputDialog::getText(self->m_pages, QStringLiteral("New Note"), QStringLiteral("Title:"),
                                                    QLineEdit::Normal, QString(), &accepted);
        if (!accepted)
            return std::nullopt;
        actions::NewNoteRequest request{title.trimmed(), {}};
        if (*self->m_shown == QLatin1String("board"))
            request.values = self->m_board->board().newItemValues(self->m_board->currentLane());
        else if (*self->m_shown == QLatin1String("calendar"))
            request.values = self->m_calendar->calendar().newItemValues(self->m_calendar->currentDay());
        if (request.title.isEmpty())
            request.title = QStringLiteral("Untitled");
        return request;
    });
    rebuild();
}

void PaneDatabaseViews::rebuild()
{
    if (!m_widget || !m_store || !m_shown)
        return;
    PaneState* pane = m_widget->pane();
    const FilePath folder = pane->url();
    const FileItems& items = pane->items();
    if (*m_shown == QLatin1String("tasks")) {
        if (m_tasksFolder != folder)
            readTasks();
        return;
    }
    DatabaseColumns database = DatabaseColumns::of(*m_store, folder, pane->unsortedItems());
    if (*m_shown == QLatin1String("board")) {
        BoardView board = BoardView::make(database, items);
        m_board->setBoard(std::move(board), items, std::move(database));
    } else if (*m_shown == QLatin1String("calendar")) {
        if (!m_month.isValid())
            m_month = QDate::currentDate();
        CalendarView calendar = CalendarView::make(database, items, m_month, QLocale().firstDayOfWeek());
        m_calendar->setCalendar(std::move(calendar), items, std::move(database));
    } else {
        m_gallery->setItems(items, std::move(database), {});
        findCovers();
    }
    followPane();
}

void PaneDatabaseViews::followPane()
{
    if (!m_widget || !m_shown)
        return;
    const std::optional<FilePath>& cursor = m_widget->pane()->cursor();
    if (!cursor)
        return;
    if (*m_shown == QLatin1String("board"))
        m_board->showCurrentItem(*cursor);
    else if (*m_shown == QLatin1String("gallery"))
        m_gallery->showCurrentItem(*cursor);
}

void PaneDatabaseViews::findCovers()
{
    const FileItems items = m_widget->pane()->items();
    const auto ticket = m_coversLoad.start();
    runInBackground(this, [items, token = ticket.token] {
        QHash<FilePath, FilePath> covers;
        for (const FileItem& item : items) {
            if (token->isCancelled())
                break;
            if (const auto cover = coverOf(item))
                covers.insert(item.url, *cover);
        }
        return covers;
    }, [this, ticket, items](QHash<FilePath, FilePath> covers) {
        if (!m_coversLoad.isCurrent(ticket))
            return;
        m_coversLoad.finish(ticket);
        if (m_widget && m_store && m_shown == QLatin1String("gallery")) {
            m_gallery->setItems(m_widget->pane()->items(),
                                DatabaseColumns::of(*m_store, m_widget->pane()->url(), m_widget->pane()->unsortedItems()), std::move(covers));
            followPane();
        }
    });
}

void PaneDatabaseViews::readTasks()
{
    const FilePath folder = m_widget->pane()->url();
    m_tasksFolder = folder;
    m_tasks->setLoading();
    const auto ticket = m_tasksLoad.start();
    runInBackground(this, [folder, token = ticket.token] { return TaskList::collect(folder, false, token.get()); },
                    [this, ticket](std::optional<TaskList> list) {
                        if (!m_tasksLoad.isCurrent(ticket))
                            return;
                        m_tasksLoad.finish(ticket);
                        if (list)
                            m_tasks->setTasks(*list, QDate::currentDate());
                    });
}

void PaneDatabaseViews::open(const FilePath& item)
{
    if (!m_widget)
        return;
    PaneState* pane = m_widget->pane();
    const FileItem* shown = pane->item(item);
    const FileItem found = shown ? *shown : FileItem::make(item);
    if (found.isFolder)
        pane->navigate(item);
    else
        Q_EMIT pane->openRequested({found});
}

void PaneDatabaseViews::setProperty(const QString& key, const std::optional<PropertyValue>& value, const FilePath& item)
{
    if (!m_store || key.isEmpty())
        return;
    if (const Status started = m_store->set(key, value, {item}, m_undo); !started && m_toast)
        m_toast(started.error());
}

void PaneDatabaseViews::moveCard(const FilePath& item, int fromLane, int toLane)
{
    const BoardView& board = m_board->board();
    if (!m_widget || !m_store)
        return;
    const auto value = board.movedValue(m_store->value(item, board.key), fromLane, toLane);
    if (!value)
        return;
    // The lanes are kept with the move (one undo step), so a lane the card leaves empty stays.
    // The board already shows the card moved; it is built again once the note is read back,
    // not from the values as they were before the write.
    const FilePath folder = m_widget->pane()->url();
    const FolderColumns settings = board.keepingLanes(m_store->columns(folder));
    const QScopedValueRollback moving(m_movingCard, true);
    if (const Status started = m_store->set(board.key, *value, {item}, folder, settings, m_undo); !started && m_toast)
        m_toast(started.error());
}

void PaneDatabaseViews::chooseSetting(const QString& field, const QString& key)
{
    if (!m_widget || !m_store)
        return;
    const FilePath folder = m_widget->pane()->url();
    FolderColumns settings = m_store->columns(folder);
    (field == QLatin1String("groupBy") ? settings.groupBy : settings.calendarBy) = key;
    if (const Status saved = m_store->setColumns(folder, settings); !saved && m_toast)
        m_toast(saved.error());
}

void PaneDatabaseViews::makeSelect(const QString& key, const QStringList& values)
{
    // As the table header's Type menu does: the folder's settings change, no note is touched.
    if (!m_widget || !m_store)
        return;
    const FilePath folder = m_widget->pane()->url();
    FolderColumns settings = m_store->columns(folder);
    settings.makeSelect(key, values);
    if (const Status saved = m_store->setColumns(folder, settings); !saved && m_toast)
        m_toast(saved.error());
}

void PaneDatabaseViews::toggle(const ListedTask& task)
{
    const NoteTask listed = task.task;
    const QDate today = QDate::currentDate();
    FileOperations::shared().rewriteFile(
        listed.note, [listed, today](const QByteArray& bytes) { return toggleListedTask(bytes, listed, today); },
        QStringLiteral("Toggle Task"), QString(), m_undo, [self = QPointer(this)](const QList<FilePath>&) {
            if (self)
                self->readTasks();
        });
}

} // namespace orwick
