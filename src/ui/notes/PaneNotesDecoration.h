#pragma once
// Notes in one pane: the table view shows the folder's property columns (typed cells, edited in
// place, each edit one step on the window's undo stack), the filter chips sit above the views,
// and the folder's filters and a property sort chosen from the table's header reach the pane's
// arrangement; while a property sorts the rows, the list's header shows no arrow and choosing
// the pane's own sort ends it. The header's menu shows, hides, renames and deletes properties and edits their
// options; the header's sections keep the folder's column order and widths (see
// PropertyHeaderLayout). Properties load for the shown folder in the background after each
// listing (a newer load or leaving the folder cancels the older); the rows show first and are
// filtered or sorted again when the properties arrive or change. Failed writes show as toasts.
// Owned by the pane widget.

#include "files/Arrangement.h"
#include "ui/notes/PropertyHeaderMenu.h"

#include <QObject>
#include <QPointer>
#include <functional>
#include <optional>
#include <tuple>

class QPoint;
#include <QUndoStack>

namespace orwick {

class FileProperties;
class FileTableView;
class FilterChipsBar;
class MainWindow;
class PaneWidget;
class PropertyColumnsModel;
class PropertyHeaderLayout;

class PaneNotesDecoration : public QObject {
    Q_OBJECT
public:
    // `toast` shows a message to the user (the window's toasts).
    PaneNotesDecoration(PaneWidget* widget, FileProperties* store, QUndoStack* undo,
                        std::function<void(const QString&)> toast);

    // Decorates every pane of the window, now and later, with the window's undo stack and toasts.
    static void attach(MainWindow* window, FileProperties* store);
    // The decoration of a pane widget, if it has one.
    static PaneNotesDecoration* of(const PaneWidget* widget);

    // The table's property columns and header: null until the pane first shows a table.
    PropertyColumnsModel* columnsModel() const { return m_columns; }
    PropertyHeaderLayout* headerLayout() const { return m_header; }
    // What the header's menu acts on when opened over `column` (a logical section).
    HeaderMenuContext headerMenuContext(int column) const;
    FilterChipsBar* chipsBar() const { return m_chips; }
    // The property the pane sorts by, if any (chosen by clicking its column header).
    const std::optional<QString>& propertySort() const { return m_sortKey; }

private:
    // Drops the rows the folder's filters reject and sorts by the chosen property.
    void adjust(ArrangeInput& input) const;
    // The table's property columns, header menu and cell editing, once the table is made.
    void decorateTable(FileTableView* table);
    void locationChanged();
    void loadingChanged();
    void valuesChanged();
    void headerClicked(int column);
    // Keeps the sort indicator on the sorted property's column when columns change; a renamed
    // property (its name replaced in place among the shown columns, by a rename or by undoing
    // one) keeps the sort under its new name.
    void followSortColumn();
    // The views' sort arrows: on the sorted property's column in the table, on none in the list.
    void showSort();
    // The pane's own sort chosen (a header click, a Sort By command) ends the property sort.
    void paneSortChosen();
    void updateChips();

    QPointer<PaneWidget> m_widget;
    QPointer<FileProperties> m_store;
    std::function<void(const QString&)> m_toast;
    QPointer<QUndoStack> m_undo;
    PropertyColumnsModel* m_columns = nullptr;
    PropertyHeaderLayout* m_header = nullptr;
    FilterChipsBar* m_chips;
    FilePath m_folder;
    std::optional<QString> m_sortKey;
    QStringList m_shownKeys; // the shown columns the sort was last checked against
    bool m_sortAscending = true;
    std::tuple<SortKey, bool, bool> m_paneSort; // the pane's key, direction and date groups
};

} // namespace orwick
