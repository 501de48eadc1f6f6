#include "ui/notes/PaneNotesDecoration.h"

#include "notes/FileProperties.h"
#include "ui/notes/FilterChipsBar.h"
#include "ui/notes/PropertyCellDelegate.h"
#include "ui/notes/PropertyHeaderLayout.h"
#include "ui/notes/PropertyColumnsModel.h"
#include "ui/pane/PaneWidget.h"
#include "ui/views/FileListModel.h"
#include "ui/views/FileTableView.h"
#include "ui/window/MainWindow.h"
#include "ui/window/ToastHost.h"

#include <QHeaderView>
#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>
#include <QVBoxLayout>

namespace orwick {

PaneNotesDecoration::PaneNotesDecoration(PaneWidget* widget, FileProperties* store, QUndoStack* undo,
                                         std::function<void(const QString&)> toast)
    : QObject(widget), m_widget(widget), m_store(store), m_toast(toast)
{
    PaneState* pane = widget->pane();
    m_undo = undo;
    m_chips = new FilterChipsBar(store, widget);
    if (auto* layout = qobject_cast<QVBoxLayout*>(widget->layout())) {
        const int viewsAt = layout->indexOf(widget->listView()->parentWidget());
        layout->insertWidget(viewsAt < 0 ? layout->count() : viewsAt, m_chips);
    }

    connect(m_chips, &FilterChipsBar::saveFailed, this, toast);
    // Queued: an editor that commits while the window closes must not rebuild widgets that are
    // going; the call is dropped with this decoration.
    connect(store, &FileProperties::valuesChanged, this, &PaneNotesDecoration::valuesChanged, Qt::QueuedConnection);
    connect(store, &FileProperties::columnsChanged, this, [this](const FilePath& folder) {
        if (folder == m_folder) {
            updateChips();
            if (m_widget)
                m_widget->pane()->propertiesChanged();
        }
    });
    connect(pane, &PaneState::locationChanged, this, &PaneNotesDecoration::locationChanged);
    connect(pane, &PaneState::loadingChanged, this, &PaneNotesDecoration::loadingChanged);
    connect(pane, &PaneState::viewModeChanged, this, &PaneNotesDecoration::updateChips);
    m_paneSort = {pane->sortKey(), pane->sortAscending(), pane->groupByDate()};
    connect(pane, &PaneState::arrangementOptionsChanged, this, &PaneNotesDecoration::paneSortChosen);
    // The table's columns are set up when the pane first shows a table.
    if (widget->hasTableView())
        decorateTable(widget->tableView());
    connect(widget, &PaneWidget::tableViewMade, this, &PaneNotesDecoration::decorateTable);

    // Filters and the property sort, applied to every arrangement of this pane.
    pane->setPropertySource([self = QPointer(this)](ArrangeInput& input) {
        if (self)
            self->adjust(input);
    });
    locationChanged();
    if (!pane->isLoading())
        loadingChanged();
}

void PaneNotesDecoration::decorateTable(FileTableView* table)
{
    PaneState* pane = m_widget->pane();
    m_columns = new PropertyColumnsModel(m_store, FileListModel::UrlRole, this);
    m_columns->setRowRoles({FileListModel::UrlRole, FileListModel::SelectedRole, FileListModel::CursorRole,
                            FileListModel::HeadingRole, FileListModel::HiddenRole});
    m_columns->setFolderItems([pane = QPointer(pane)] { return pane ? pane->unsortedItems() : FileItems(); });
    m_columns->setSourceModel(m_widget->model());
    m_columns->setUndoStack(m_undo);
    table->setItemDelegate(new PropertyCellDelegate(table));
    table->showModel(m_columns);
    m_header = new PropertyHeaderLayout(table->header(), m_columns, m_store, this);
    connect(m_columns, &QAbstractItemModel::modelReset, this, &PaneNotesDecoration::followSortColumn);
    connect(m_header, &PropertyHeaderLayout::saveFailed, this, m_toast);
    // Property cells edit in place: F2 or a double click on a property cell (elsewhere a
    // double click still opens the row).
    table->setEditTriggers(QAbstractItemView::EditKeyPressed);
    connect(m_columns, &PropertyColumnsModel::writeFailed, this, m_toast);
    QHeaderView* header = table->header();
    connect(header, &QHeaderView::sectionClicked, this, &PaneNotesDecoration::headerClicked);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this, [this, header](const QPoint& at) {
        QMenu menu;
        fillHeaderMenu(&menu, headerMenuContext(header->logicalIndexAt(at)));
        if (!menu.isEmpty())
            menu.exec(header->mapToGlobal(at));
    });
    m_columns->setFolder(m_folder);
    m_header->setFolder(m_folder);
    showSort();
}

void PaneNotesDecoration::attach(MainWindow* window, FileProperties* store)
{
    // Undo and redo of property edits run outside any pane: their failures are the window's.
    QObject::connect(store, &FileProperties::writeFailed, window,
                     [window](const QString& message) { window->toasts()->show(message); });
    window->addPaneDecorator([window, store](PaneWidget* widget) {
        new PaneNotesDecoration(widget, store, window->state()->undoStack(),
                                [window](const QString& message) { window->toasts()->show(message); });
    });
}

PaneNotesDecoration* PaneNotesDecoration::of(const PaneWidget* widget)
{
    return widget->findChild<PaneNotesDecoration*>(QString(), Qt::FindDirectChildrenOnly);
}

void PaneNotesDecoration::adjust(ArrangeInput& input) const
{
    if (!m_store || input.items.isEmpty())
        return;
    input.items = m_store->filtered(input.items, input.folder);
    if (m_sortKey) {
        input.propertySort = m_sortKey;
        input.propertyValue = m_store->sortValues(*m_sortKey, m_store->type(*m_sortKey, input.folder, input.items));
        input.ascending = m_sortAscending;
    }
}

void PaneNotesDecoration::locationChanged()
{
    if (!m_widget || !m_store)
        return;
    const FilePath folder = m_widget->pane()->listing() ? FilePath() : m_widget->pane()->url();
    if (folder == m_folder)
        return;
    if (!m_folder.isEmpty())
        m_store->cancelLoad(m_folder);
    m_folder = folder;
    m_sortKey.reset();
    showSort();
    if (m_columns) {
        m_columns->setFolder(m_folder);
        m_header->setFolder(m_folder);
    }
    updateChips();
}

void PaneNotesDecoration::loadingChanged()
{
    if (!m_widget || !m_store || m_widget->pane()->isLoading())
        return;
    // Rows are shown already; their properties follow in the background.
    m_store->load(m_widget->pane()->unsortedItems());
}

void PaneNotesDecoration::valuesChanged()
{
    if (!m_widget)
        return;
    updateChips();
    // Re-arranging is only needed when properties decide which rows show or their order.
    if (m_sortKey || !m_store->columns(m_folder).filters.isEmpty())
        m_widget->pane()->propertiesChanged();
}

namespace {

// The name that replaced `key` in place when `after` is `before` with that one name changed.
std::optional<QString> renamedTo(const QString& key, const QStringList& before, const QStringList& after)
{
    const qsizetype at = before.indexOf(key);
    if (at < 0 || after.size() != before.size() || before.contains(after[at]))
        return std::nullopt;
    for (qsizetype i = 0; i < after.size(); ++i)
        if (i != at && after[i] != before[i])
            return std::nullopt;
    return after[at];
}

} // namespace

void PaneNotesDecoration::followSortColumn()
{
    const QStringList before = std::exchange(m_shownKeys, m_store ? m_store->columns(m_folder).shown : QStringList());
    if (!m_sortKey || !m_widget)
        return;
    if (!m_shownKeys.contains(*m_sortKey))
        if (const auto renamed = renamedTo(*m_sortKey, before, m_shownKeys)) {
            m_sortKey = *renamed;
            m_widget->pane()->propertiesChanged();
        }
    for (int column = m_columns->firstPropertyColumn(); column < m_columns->columnCount(); ++column)
        if (m_columns->propertyColumn(column)->key == *m_sortKey)
            return showSort();
    // The column went (hidden, deleted): back to the pane's own sort.
    m_sortKey.reset();
    showSort();
    m_widget->pane()->propertiesChanged();
}

void PaneNotesDecoration::showSort()
{
    if (!m_widget)
        return;
    const Qt::SortOrder order = m_sortAscending ? Qt::AscendingOrder : Qt::DescendingOrder;
    std::optional<int> column;
    if (m_sortKey && m_columns) {
        column = -1;
        for (int c = m_columns->firstPropertyColumn(); c < m_columns->columnCount(); ++c)
            if (m_columns->propertyColumn(c)->key == *m_sortKey)
                column = c;
    }
    if (m_widget->hasTableView())
        m_widget->tableView()->setOutsideSort(column, order);
    m_widget->listView()->setOutsideSort(m_sortKey ? std::optional(-1) : std::nullopt, order);
}

void PaneNotesDecoration::paneSortChosen()
{
    if (!m_widget)
        return;
    const PaneState* pane = m_widget->pane();
    const std::tuple now{pane->sortKey(), pane->sortAscending(), pane->groupByDate()};
    if (std::exchange(m_paneSort, now) == now || !m_sortKey)
        return;
    m_sortKey.reset(); // the pane arranges its rows again right after saying so
    showSort();
}

void PaneNotesDecoration::headerClicked(int column)
{
    const PropertyColumn* property = m_columns->propertyColumn(column);
    if (!property) {
        if (m_sortKey) {
            m_sortKey.reset();
            showSort();
            m_widget->pane()->propertiesChanged();
        }
        return;
    }
    m_sortAscending = m_sortKey == property->key ? !m_sortAscending : true;
    m_sortKey = property->key;
    showSort();
    m_widget->pane()->propertiesChanged();
}

HeaderMenuContext PaneNotesDecoration::headerMenuContext(int column) const
{
    HeaderMenuContext context;
    context.store = m_store;
    context.undo = m_undo;
    context.folder = m_folder;
    if (m_widget)
        context.items = m_widget->pane()->unsortedItems();
    if (const PropertyColumn* property = m_columns ? m_columns->propertyColumn(column) : nullptr)
        context.key = property->key;
    QPointer<PaneWidget> widget = m_widget;
    context.ask = [widget](const QString& title, const QString& label, const QString& text) -> std::optional<QString> {
        bool accepted = false;
        const QString answer = QInputDialog::getText(widget, title, label, QLineEdit::Normal, text, &accepted);
        return accepted ? std::optional(answer) : std::nullopt;
    };
    context.report = m_toast;
    return context;
}

void PaneNotesDecoration::updateChips()
{
    if (!m_widget || !m_store)
        return;
    const bool hasFilters = !m_folder.isEmpty() && !m_store->columns(m_folder).filters.isEmpty();
    const bool table = m_widget->pane()->viewMode() == ViewMode::table;
    m_chips->setVisible(!m_folder.isEmpty() && (hasFilters || table));
    if (m_chips->isVisibleTo(m_widget))
        m_chips->setFolder(m_folder, m_widget->pane()->unsortedItems());
}

} // namespace orwick
