#include "ui/views/FileListView.h"

#include "ui/pane/PaneKeys.h"
#include "ui/theme/ThemedStyle.h"
#include "ui/views/RowDelegate.h"
#include "ui/views/ViewInput.h"

#include <QEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <algorithm>

namespace orwick {

FileListView::FileListView(FileListModel* model, QWidget* parent) : QTreeView(parent), m_model(model)
{
    setModel(model);
    setItemDelegate(new RowDelegate(this));
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setItemsExpandable(false);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFrameShape(QFrame::NoFrame);
    setIconSize(QSize(18, 18));
    // The pane's cursor is drawn by the delegate; the view's own focus frame would be a second one.
    setAllColumnsShowFocus(false);
    setTextElideMode(Qt::ElideMiddle);

    QHeaderView* head = header();
    head->setStretchLastSection(false);
    head->setSectionResizeMode(FileListModel::NameColumn, QHeaderView::Stretch);
    head->setSectionResizeMode(FileListModel::ModifiedColumn, QHeaderView::Interactive);
    head->setSectionResizeMode(FileListModel::SizeColumn, QHeaderView::Interactive);
    head->setSectionResizeMode(FileListModel::KindColumn, QHeaderView::Interactive);
    head->setSectionResizeMode(FileListModel::OriginalLocationColumn, QHeaderView::Interactive);
    head->setSectionResizeMode(FileListModel::DeletedColumn, QHeaderView::Interactive);
    placeTrashColumns();
    fitColumns();
    // The header's own later passes size a column it hid to nothing; only a shown width is the user's.
    connect(head, &QHeaderView::sectionResized, this, [this](int column, int, int newSize) {
        if (m_fitting || column == FileListModel::NameColumn || newSize <= 0 || header()->isSectionHidden(column))
            return;
        m_userSized = true;
        if (FileListModel::isTrashColumn(column))
            m_trashWidths.insert(column, newSize);
    });
    head->setSectionsClickable(true);
    head->setSortIndicatorShown(true);
    head->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    PaneState* pane = model->pane();
    showSortIndicator();
    connect(pane, &PaneState::arrangementOptionsChanged, this, &FileListView::showSortIndicator);
    connect(head, &QHeaderView::sectionClicked, this, [this, pane](int column) {
        if (const auto key = FileListModel::sortKeyFor(column))
            pane->sort(*key);
        showSortIndicator();
    });
    // Day headings make some rows taller; rows are uniform otherwise (fast with many items).
    auto followGrouping = [this, pane] { setUniformRowHeights(!pane->groupByDate()); };
    followGrouping();
    connect(pane, &PaneState::arrangementOptionsChanged, this, followGrouping);
    connect(pane, &PaneState::selectionChanged, this, &FileListView::followSelection);
    connect(pane, &PaneState::itemsChanged, this, &FileListView::followSelection);
    // The Trash's columns come and go with the Trash.
    connect(pane, &PaneState::locationChanged, this, [this, pane] {
        if (pane->showsTrash() != m_showsTrash)
            fitColumns();
    });
}

void FileListView::placeTrashColumns()
{
    QHeaderView* head = header();
    head->moveSection(head->visualIndex(FileListModel::OriginalLocationColumn), 1);
    head->moveSection(head->visualIndex(FileListModel::DeletedColumn), 2);
}

void FileListView::showSortIndicator()
{
    const PaneState* pane = m_model->pane();
    if (m_outsideSortColumn)
        header()->setSortIndicator(*m_outsideSortColumn, m_outsideSortOrder);
    else
        header()->setSortIndicator(FileListModel::columnFor(pane->sortKey()),
                                   pane->sortAscending() ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void FileListView::setOutsideSort(std::optional<int> column, Qt::SortOrder order)
{
    m_outsideSortColumn = column;
    m_outsideSortOrder = order;
    showSortIndicator();
}

void FileListView::followSelection()
{
    followCursor(this, this);
}

void FileListView::keyPressEvent(QKeyEvent* event)
{
    PaneKeyContext context;
    context.pageRows = pageRowsOf(this);
    context.vimPendingG = &m_vimPendingG;
    if (handlePaneKey(*m_model->pane(), event, context)) {
        event->accept();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void FileListView::mousePressEvent(QMouseEvent* event) { pressOnView(this, *m_model->pane(), event); }

void FileListView::mouseDoubleClickEvent(QMouseEvent* event) { doubleClickOnView(this, *m_model->pane(), event); }

void FileListView::focusInEvent(QFocusEvent* event)
{
    QTreeView::focusInEvent(event);
    viewport()->update();
}

void FileListView::focusOutEvent(QFocusEvent* event)
{
    QTreeView::focusOutEvent(event);
    viewport()->update();
}

void FileListView::showEvent(QShowEvent* event)
{
    QTreeView::showEvent(event);
    followSelection();
}

void FileListView::resizeEvent(QResizeEvent* event)
{
    QTreeView::resizeEvent(event);
    fitColumns();
}

void FileListView::changeEvent(QEvent* event)
{
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitColumns();
}

void FileListView::leaveOut(int column, bool leftOut)
{
    if (leftOut == m_leftOut.contains(column))
        return;
    if (leftOut)
        m_leftOut.insert(column);
    else
        m_leftOut.remove(column);
    if (column == FileListModel::SizeColumn) // never hidden for room
        header()->setSectionHidden(column, leftOut);
    fitColumns();
}

void FileListView::fitColumns()
{
    QHeaderView* head = header();
    m_showsTrash = m_model->pane()->showsTrash();
    const QFontMetrics rows = fontMetrics();
    const QFontMetrics titles = head->fontMetrics();
    // A cell's text sits between the delegate's margins; a title beside its sort mark.
    const int cellPadding = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1) + 12;
    const int titlePadding = 2 * style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, head)
                             + style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, head) + 8;
    const auto titleWidth = [&](int column) { return titles.horizontalAdvance(FileListModel::columnTitle(column)) + titlePadding; };
    auto fit = [&](int column, std::initializer_list<const char*> samples) {
        int width = titleWidth(column);
        for (const char* sample : samples)
            width = std::max(width, rows.horizontalAdvance(QLatin1StringView(sample)) + cellPadding);
        return width;
    };
    const char* dates[] = {"Yesterday 00:00", "30 Sep 2026 00:00"};
    // The columns that may give way for room, the last to go first: a preferred width, and the
    // least a column that can be cut (Original Location, Kind) keeps before it leaves; a date
    // is never cut (a cut date tells nothing).
    struct Wanted {
        int column;
        int preferred;
        int least;
    };
    const int deleted = fit(FileListModel::DeletedColumn, {dates[0], dates[1]});
    const int modified = fit(FileListModel::ModifiedColumn, {dates[0], dates[1]});
    const Wanted wanted[] = {
        {FileListModel::DeletedColumn, deleted, deleted},
        {FileListModel::OriginalLocationColumn, fit(FileListModel::OriginalLocationColumn, {"~/Documents/Projects"}),
         titleWidth(FileListModel::OriginalLocationColumn)},
        {FileListModel::ModifiedColumn, modified, modified},
        {FileListModel::KindColumn, fit(FileListModel::KindColumn, {"Markdown document"}), titleWidth(FileListModel::KindColumn)},
    };
    const int size = fit(FileListModel::SizeColumn, {"999.9 MB", "999 bytes"}) + ThemedStyle::columnGutter(rows);
    // Shows a column when it fits, belongs here and isn't left out; says whether it shows.
    const auto place = [&](int column, bool fits) {
        const bool shown = fits && !m_leftOut.contains(column) && (m_showsTrash || !FileListModel::isTrashColumn(column));
        head->setSectionHidden(column, !shown);
        return shown;
    };
    m_fitting = true;
    if (m_userSized) { // the user's widths, and every column in sight
        for (const Wanted& column : wanted) {
            // The Trash's columns come back at the width the user gave them, else their own.
            const bool appears = head->isSectionHidden(column.column) && FileListModel::isTrashColumn(column.column);
            if (place(column.column, true) && appears)
                head->resizeSection(column.column, m_trashWidths.value(column.column, column.preferred));
        }
        m_fitting = false;
        return;
    }
    // A narrow pane: Name keeps a third of the width; Kind gives way first, down to its title's
    // width and then out of sight, then Date Modified leaves, then the Trash's columns, until the
    // pane is wider again.
    int room = viewport()->width() - viewport()->width() / 3 - size;
    bool roomLeft = true;
    for (const Wanted& column : wanted) {
        const int width = std::min(column.preferred, room);
        const bool wants = !m_leftOut.contains(column.column) && (m_showsTrash || !FileListModel::isTrashColumn(column.column));
        if (!wants) {
            place(column.column, false);
            continue;
        }
        roomLeft = roomLeft && width >= column.least;
        if (place(column.column, roomLeft)) {
            head->resizeSection(column.column, width);
            room -= width;
        }
    }
    head->resizeSection(FileListModel::SizeColumn, size);
    m_fitting = false;
}

} // namespace orwick
