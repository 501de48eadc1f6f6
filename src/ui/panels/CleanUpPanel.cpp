#include "ui/panels/CleanUpPanel.h"

#include "commands/ViewKeys.h"
#include "disktools/DiskNames.h"
#include "state/PaneState.h"
#include "ui/panels/PanelTrash.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace orwick {

CleanUpPanel::CleanUpPanel(PaneState* pane, QWidget* window)
    : PanelSheet(QStringLiteral("Clean Up Build Folders"), pane->url().abbreviated(), window), m_pane(pane), m_folder(pane->url())
{
    m_trash = new QPushButton(QStringLiteral("Move to Trash"), this);
    m_trash->setToolTip(QStringLiteral("Move the ticked folders to the Trash (Ctrl+Z puts them back)"));
    connect(m_trash, &QPushButton::clicked, this, &CleanUpPanel::trashTicked);
    tools()->addWidget(m_trash);

    m_stack = new QStackedWidget(this);
    m_placeholder = new QLabel(this);
    m_placeholder->setAlignment(Qt::AlignCenter);
    m_list = new QTreeWidget(this);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setColumnCount(3);
    m_list->setHeaderLabels({QStringLiteral("Folder"), QStringLiteral("Kind"), QStringLiteral("Size")});
    // The folder takes the room; the kind and the size keep what their words need.
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    m_list->installEventFilter(this);
    connect(m_list, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int) {
        if (m_filling)
            return;
        const int index = m_list->indexOfTopLevelItem(item);
        if (index >= 0 && size_t(index) < m_rows.size())
            m_rows[size_t(index)].ticked = item->checkState(0) == Qt::Checked;
        updateFooter();
    });
    m_stack->addWidget(m_placeholder);
    m_stack->addWidget(m_list);
    body()->addWidget(m_stack);
    m_totals = new QLabel(this);
    body()->addWidget(m_totals);
    setFooter(QStringLiteral("Projects rebuild these when needed. Undo (Ctrl+Z) puts them back. Space ticks, Delete moves the ticked to the Trash."));
    search();
    present();
}

CleanUpPanel::~CleanUpPanel() { stopWork(); }

void CleanUpPanel::stopWork() { m_task.cancel(); }

void CleanUpPanel::search()
{
    const TaskSlot::Ticket ticket = m_task.start();
    m_isScanning = true;
    m_placeholder->setText(QStringLiteral("Looking for node_modules, build output and caches…"));
    m_stack->setCurrentWidget(m_placeholder);
    updateFooter();
    runInBackground(this, [folder = m_folder, token = ticket.token] {
        return BuildJunk::find(folder, BuildJunk::searchDepth, *token);
    }, [this, ticket](std::vector<BuildJunk::Found> found) {
        if (!m_task.isCurrent(ticket))
            return;
        m_task.finish(ticket);
        // A folder found again (after an undo) keeps the tick the user gave it.
        QSet<FilePath> unticked;
        for (const Row& row : m_rows)
            if (!row.ticked)
                unticked.insert(row.found.url);
        m_rows.clear();
        for (BuildJunk::Found& f : found) {
            const bool ticked = !unticked.contains(f.url);
            m_rows.push_back({std::move(f), std::nullopt, ticked});
        }
        fill();
        measure();
    });
}

void CleanUpPanel::measure()
{
    if (m_rows.empty()) {
        m_isScanning = false;
        updateFooter();
        return;
    }
    const TaskSlot::Ticket ticket = m_task.start();
    std::vector<BuildJunk::Found> folders;
    for (const Row& row : m_rows)
        folders.push_back(row.found);
    runInBackground(this, [folders, token = ticket.token] {
        return BuildJunk::measureAll(folders, *token);
    }, [this, ticket, folders](std::vector<qint64> sizes) {
        if (!m_task.isCurrent(ticket))
            return;
        m_task.finish(ticket);
        m_isScanning = false;
        // Rows may have left meanwhile: match by place.
        for (size_t i = 0; i < folders.size(); ++i)
            for (Row& row : m_rows)
                if (row.found.url == folders[i].url)
                    row.size = sizes[i];
        fill();
    });
}

void CleanUpPanel::fill()
{
    if (m_rows.empty()) {
        m_placeholder->setText(QStringLiteral("Nothing to clean up here"));
        m_stack->setCurrentWidget(m_placeholder);
        updateFooter();
        return;
    }
    m_filling = true;
    const int wasCurrent = m_list->currentItem() ? m_list->indexOfTopLevelItem(m_list->currentItem()) : 0;
    const bool hadFocus = m_list->hasFocus() || m_stack->currentWidget() != m_list;
    m_list->clear();
    for (const Row& row : m_rows) {
        auto* item = new QTreeWidgetItem(m_list);
        item->setText(0, relativeText(m_folder, row.found.url));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(0, row.ticked ? Qt::Checked : Qt::Unchecked);
        item->setText(1, row.found.kind);
        item->setText(2, row.size ? byteCountText(*row.size) : QStringLiteral("Still looking…"));
        item->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
    }
    m_filling = false;
    m_stack->setCurrentWidget(m_list);
    // The keyboard stays on the same place in the list (the next row after a trashed one).
    m_list->setCurrentItem(m_list->topLevelItem(std::min(wasCurrent, m_list->topLevelItemCount() - 1)));
    if (hadFocus)
        m_list->setFocus();
    updateFooter();
}

bool CleanUpPanel::eventFilter(QObject* watched, QEvent* event)
{
    using A = ViewKeyAction;
    if (watched == m_list && event->type() == QEvent::ShortcutOverride) {
        // Delete trashes the ticked folders here, not the pane's selection (the window's key).
        if (ViewKeys::matches(A::cleanUpTrash, static_cast<QKeyEvent*>(event)->keyCombination())) {
            event->accept();
            return true;
        }
    }
    if (watched != m_list || event->type() != QEvent::KeyPress)
        return PanelSheet::eventFilter(watched, event);
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::cleanUp, static_cast<QKeyEvent*>(event)->keyCombination());
    if (!action)
        return PanelSheet::eventFilter(watched, event);
    QTreeWidgetItem* current = m_list->currentItem();
    switch (*action) {
    case A::cleanUpTick:
        if (current)
            current->setCheckState(0, current->checkState(0) == Qt::Checked ? Qt::Unchecked : Qt::Checked);
        return true;
    case A::cleanUpTrash:
        trashTicked();
        return true;
    case A::cleanUpShow:
        if (current) {
            // Shows the folder in the pane, as the treemap does for a file.
            const int row = m_list->indexOfTopLevelItem(current);
            if (row >= 0 && size_t(row) < m_rows.size()) {
                const FilePath folder = m_rows[size_t(row)].found.url;
                closeSheet();
                m_pane->reveal({folder});
            }
        }
        return true;
    default: return PanelSheet::eventFilter(watched, event);
    }
}

void CleanUpPanel::trashTicked()
{
    QList<FilePath> ticked;
    for (const Row& row : m_rows)
        if (row.ticked)
            ticked.append(row.found.url);
    if (ticked.isEmpty() || m_trashing)
        return;
    m_trashing = true;
    updateFooter();
    trashForPanel(this, ticked, QStringLiteral("Clean Up Build Folders"), [this](const std::vector<FilePath>& moved) {
        m_trashing = false;
        std::erase_if(m_rows, [&](const Row& row) {
            return std::find(moved.begin(), moved.end(), row.found.url) != moved.end();
        });
        fill();
    }, [this] { search(); }); // undone or redone: look again
}

void CleanUpPanel::updateFooter()
{
    qint64 bytes = 0;
    int ticked = 0;
    for (const Row& row : m_rows) {
        if (row.ticked) {
            ++ticked;
            bytes += row.size.value_or(0);
        }
    }
    m_totals->setText(m_rows.empty() ? QString()
                                     : QStringLiteral("%1 of %2 folders ticked · %3%4")
                                           .arg(ticked)
                                           .arg(m_rows.size())
                                           .arg(byteCountText(bytes), m_isScanning ? QStringLiteral(" so far") : QString()));
    m_trash->setEnabled(ticked > 0 && !m_trashing);
}

} // namespace orwick
