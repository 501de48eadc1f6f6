#include "ui/views/ColumnsView.h"

#include "ui/theme/Theme.h"
#include "ui/views/FolderColumnModel.h"
#include "ui/views/RowDelegate.h"
#include "ui/views/ViewInput.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

namespace orwick {
namespace {

constexpr int kNextColumnDelayMs = 120; // the cursor may be passing through

void styleColumn(QListView* column)
{
    column->setUniformItemSizes(true);
    column->setSelectionMode(QAbstractItemView::NoSelection);
    column->setEditTriggers(QAbstractItemView::NoEditTriggers);
    column->setFrameShape(QFrame::NoFrame);
    column->setIconSize(QSize(18, 18));
    column->setTextElideMode(Qt::ElideMiddle);
    column->setFixedWidth(ColumnsView::kColumnWidth);
    column->setItemDelegate(new RowDelegate(column));
}

// The pane's own folder: keys and clicks go to the pane.
class CurrentColumn : public QListView {
public:
    explicit CurrentColumn(FileListModel* model, QWidget* parent) : QListView(parent), m_model(model)
    {
        setModel(model);
        setModelColumn(FileListModel::NameColumn);
        styleColumn(this);
        // Day headings make their rows taller: uniform sizes would lay the heading over the row.
        PaneState* pane = model->pane();
        auto followGrouping = [this, pane] { setUniformItemSizes(!pane->groupByDate()); };
        followGrouping();
        connect(pane, &PaneState::arrangementOptionsChanged, this, followGrouping);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        PaneKeyContext context;
        context.levelMoves = true;
        context.pageRows = pageRowsOf(this);
        context.vimPendingG = &m_vimPendingG;
        if (handlePaneKey(*m_model->pane(), event, context)) {
            event->accept();
            return;
        }
        QListView::keyPressEvent(event);
    }
    void mousePressEvent(QMouseEvent* event) override { pressOnView(this, *m_model->pane(), event); }
    void mouseDoubleClickEvent(QMouseEvent* event) override { doubleClickOnView(this, *m_model->pane(), event); }
    // The other views give way to the pane's message; here the enclosing columns stay, so the
    // pane's own column says why it is empty ("Nothing matches …", "This folder is empty").
    void paintEvent(QPaintEvent* event) override
    {
        QListView::paintEvent(event);
        const PaneState& pane = *m_model->pane();
        if (m_model->rowCount() > 0)
            return;
        QPainter painter(viewport());
        painter.setPen(theme::dimText());
        painter.drawText(viewport()->rect().adjusted(12, 0, -12, 0), Qt::AlignCenter | Qt::TextWordWrap,
                         pane.isLoading() ? pane.loadingText() : pane.emptyText());
    }

private:
    FileListModel* m_model;
    bool m_vimPendingG = false;
};

} // namespace

ColumnsView::ColumnsView(FileListModel* model, QWidget* parent) : QScrollArea(parent), m_model(model)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_row = new QWidget(this);
    m_layout = new QHBoxLayout(m_row);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(1);
    m_current = new CurrentColumn(model, m_row);
    m_layout->addWidget(m_current);
    m_layout->addStretch(1);
    setWidget(m_row);
    setFocusProxy(m_current);

    m_nextDelay.setSingleShot(true);
    m_nextDelay.setInterval(kNextColumnDelayMs);
    connect(&m_nextDelay, &QTimer::timeout, this, &ColumnsView::updateNextColumn);

    PaneState* pane = model->pane();
    connect(pane, &PaneState::locationChanged, this, &ColumnsView::rebuild);
    connect(pane, &PaneState::selectionChanged, this, &ColumnsView::followSelection);
    connect(pane, &PaneState::itemsChanged, this, &ColumnsView::followSelection);
    connect(pane, &PaneState::loadProgressChanged, m_current->viewport(), qOverload<>(&QWidget::update));
    rebuild();
}

void ColumnsView::focusInEvent(QFocusEvent* event)
{
    QScrollArea::focusInEvent(event);
    m_current->setFocus(event->reason());
}

QListView* ColumnsView::makeSideColumn(FolderColumnModel* model)
{
    auto* column = new QListView(m_row);
    model->setParent(column);
    column->setModel(model);
    styleColumn(column);
    column->setFocusPolicy(Qt::NoFocus);
    PaneState* pane = m_model->pane();
    // A click in a side column goes to the folder clicked, or reveals the file clicked.
    connect(column, &QAbstractItemView::clicked, this, [pane, model](const QModelIndex& index) {
        const FileItem* item = model->itemAt(index.row());
        if (!item)
            return;
        if (item->isFolder)
            pane->navigate(item->destination);
        else
            pane->reveal({item->url});
    });
    connect(model, &FolderColumnModel::loaded, column, [column, model] {
        const int marked = model->markedRow();
        if (marked >= 0)
            column->scrollTo(model->index(marked), QAbstractItemView::PositionAtCenter);
    });
    return column;
}

void ColumnsView::rebuild()
{
    qDeleteAll(m_ancestors);
    m_ancestors.clear();
    delete m_next;
    m_next = nullptr;
    m_nextFolder = {};
    // Each side column reads its folder: a pane in another view doesn't read them at every move.
    m_stale = !isVisible();
    if (m_stale)
        return;
    PaneState* pane = m_model->pane();
    if (!pane->listing()) {
        // Every level from the root down to the folder's parent, each marking the way down.
        QList<FilePath> levels;
        for (FilePath level = pane->url(); !level.isRoot();) {
            const FilePath parent = level.parent();
            levels.prepend(level);
            level = parent;
        }
        FilePath folder = FilePath::fromNative("/");
        const FolderColumnModel::Options options{pane->sortKey(), pane->sortAscending(), pane->showHidden()};
        for (const FilePath& marked : levels) {
            QListView* column = makeSideColumn(new FolderColumnModel(folder, marked, options));
            m_layout->insertWidget(int(m_ancestors.size()), column);
            m_ancestors.append(column);
            folder = marked;
        }
    }
    layoutColumns();
    followSelection();
}

void ColumnsView::updateNextColumn()
{
    PaneState* pane = m_model->pane();
    const FileItem* item = pane->cursor() ? pane->item(*pane->cursor()) : nullptr;
    const FilePath folder = item && item->isFolder && pane->selection().size() <= 1 ? item->destination : FilePath();
    if (folder == m_nextFolder)
        return;
    delete m_next;
    m_next = nullptr;
    m_nextFolder = folder;
    if (!folder.isEmpty()) {
        const FolderColumnModel::Options options{pane->sortKey(), pane->sortAscending(), pane->showHidden()};
        m_next = makeSideColumn(new FolderColumnModel(folder, {}, options));
        m_layout->insertWidget(m_layout->indexOf(m_current) + 1, m_next);
    }
    layoutColumns();
}

void ColumnsView::layoutColumns()
{
    const int columns = int(m_ancestors.size()) + 1 + (m_next ? 1 : 0);
    m_row->setMinimumWidth(columns * (kColumnWidth + 1));
    keepInSight();
}

void ColumnsView::keepInSight()
{
    // After the row's new width has reached the scroll bar: a pass of the event loop later, and
    // only once shown (a hidden row has no width to scroll along).
    QMetaObject::invokeMethod(this, [this] {
        if (!isVisible())
            return;
        m_row->layout()->activate();
        ensureWidgetVisible(m_current, 0, 0);
        if (m_next)
            ensureWidgetVisible(m_next, 0, 0);
    }, Qt::QueuedConnection);
}

void ColumnsView::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    keepInSight();
}

void ColumnsView::followSelection()
{
    if (!isVisible())
        return;
    followCursor(m_current, this);
    m_nextDelay.start();
}

void ColumnsView::showEvent(QShowEvent* event)
{
    QScrollArea::showEvent(event);
    if (m_stale)
        rebuild();
    followSelection();
    keepInSight();
}

} // namespace orwick
