#pragma once
// Notes in one pane: the table view shows the folder's property columns (typed cells, edited in
// place, each edit one step on the window's undo stack), the filter chips sit above the views,
// and the folder's filters and a property sort chosen from the table's header reach the pane's
// arrangement; the header's menu shows or hides a property column. Properties load for the shown folder in the background after each listing (a
// newer load or leaving the folder cancels the older); the rows show first and are filtered or
// sorted again when the properties arrive or change. Failed writes show as toasts. Owned by the
// pane widget.

#include "files/Arrangement.h"

#include <QObject>
#include <QPointer>
#include <functional>
#include <optional>

class QPoint;
class QUndoStack;

namespace orwick {

class FileProperties;
class FilterChipsBar;
class MainWindow;
class PaneWidget;
class PropertyColumnsModel;

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

    PropertyColumnsModel* columnsModel() const { return m_columns; }
    FilterChipsBar* chipsBar() const { return m_chips; }
    // The property the pane sorts by, if any (chosen by clicking its column header).
    const std::optional<QString>& propertySort() const { return m_sortKey; }

private:
    // Drops the rows the folder's filters reject and sorts by the chosen property.
    void adjust(ArrangeInput& input) const;
    void locationChanged();
    void loadingChanged();
    void valuesChanged();
    void headerClicked(int column);
    // The header's menu: every key the folder's items carry, checked when shown as a column.
    void showColumnsMenu(const QPoint& globalPosition);
    void updateChips();

    QPointer<PaneWidget> m_widget;
    QPointer<FileProperties> m_store;
    std::function<void(const QString&)> m_toast;
    PropertyColumnsModel* m_columns;
    FilterChipsBar* m_chips;
    FilePath m_folder;
    std::optional<QString> m_sortKey;
    bool m_sortAscending = true;
};

} // namespace orwick
