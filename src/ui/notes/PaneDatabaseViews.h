#pragma once
// The database views of one pane: when the shown folder's layout (kept per folder, chosen by the
// View as Board/Calendar/Gallery and View Tasks commands) is "board", "calendar", "gallery" or
// "tasks", the pane shows that view in place of its file views, over the same arranged items
// (the folder's filters and property sort apply). A view's keyboard card is the pane's cursor,
// both ways: a view opens on the selection, and a selection made elsewhere moves the card. The
// views only draw and forward input; what they change goes through the property store and the
// file operations engine as one undo step on the window's stack: a card moved to another lane
// or an item to another day sets that property (the board's lanes are kept in the folder's
// settings in the same step, so a lane the card leaves empty stays), Space in the Tasks view toggles the task in its
// note. A note made while a view is shown (New Note) asks for its title and starts with the
// lane's option or the day's date.
// Owned by the pane widget.

#include "async/Background.h"
#include "base/FilePath.h"
#include "notes/PropertyValue.h"

#include <QDate>
#include <QObject>
#include <QPointer>
#include <QUndoStack>
#include <functional>

class QScrollArea;
class QStackedWidget;

namespace orwick {

class BoardWidget;
class CalendarWidget;
class FileProperties;
class GalleryWidget;
class MainWindow;
class PaneWidget;
class TasksWidget;
struct ListedTask;

class PaneDatabaseViews : public QObject {
    Q_OBJECT
public:
    PaneDatabaseViews(PaneWidget* widget, FileProperties* store, QUndoStack* undo, std::function<void(const QString&)> toast);
    ~PaneDatabaseViews() override;

    static void attach(MainWindow* window, FileProperties* store);
    static PaneDatabaseViews* of(const PaneWidget* widget);

    // The layout shown now ("board", "calendar", "gallery", "tasks"), or nothing.
    const std::optional<QString>& shownLayout() const { return m_shown; }
    // The views, null until a folder first shows one of them.
    QWidget* host() const;
    BoardWidget* board() const { return m_board; }
    CalendarWidget* calendar() const { return m_calendar; }
    GalleryWidget* gallery() const { return m_gallery; }
    TasksWidget* tasks() const { return m_tasks; }
    // Nothing under way: no task reading, no covers being found.
    bool isSettled() const { return !m_tasksLoad.isRunning() && !m_coversLoad.isRunning(); }

private:
    void makePages();
    void refresh();
    void rebuild();
    // The shown view's keyboard card goes to the pane's cursor: the view shows the selection.
    void followPane();
    void readTasks();
    void findCovers();
    void open(const FilePath& item);
    void setProperty(const QString& key, const std::optional<PropertyValue>& value, const FilePath& item);
    // A card moved on the board: its new value and the board's lanes, as one undo step.
    void moveCard(const FilePath& item, int fromLane, int toLane);
    void chooseSetting(const QString& field, const QString& key);
    // The board's text property made a select whose options are `values`.
    void makeSelect(const QString& key, const QStringList& values);
    void toggle(const ListedTask& task);

    QPointer<PaneWidget> m_widget;
    QPointer<FileProperties> m_store;
    QPointer<QUndoStack> m_undo;
    std::function<void(const QString&)> m_toast;
    QStackedWidget* m_stack = nullptr;  // the pane's
    // Made when first shown (makePages): null until a folder shows one of the views.
    QStackedWidget* m_pages = nullptr;
    QScrollArea* m_boardArea = nullptr;
    QScrollArea* m_galleryArea = nullptr;
    BoardWidget* m_board = nullptr;
    CalendarWidget* m_calendar = nullptr;
    GalleryWidget* m_gallery = nullptr;
    TasksWidget* m_tasks = nullptr;
    std::optional<QString> m_shown;
    QDate m_month;
    TaskSlot m_tasksLoad;
    TaskSlot m_coversLoad;
    FilePath m_tasksFolder;
    bool m_movingCard = false; // a card's move is being handed to the store
};

} // namespace orwick
