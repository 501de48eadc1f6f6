#include "ui/rename/BatchRenameModel.h"

namespace orwick {

BatchRenameModel::BatchRenameModel(const QList<FilePath>& items, QObject* parent)
    : QAbstractListModel(parent), m_items(items)
{
    setRule(BatchRename{});
}

BatchRenameModel::~BatchRenameModel() { m_task.cancel(); }

void BatchRenameModel::setRule(const BatchRename& rule)
{
    m_renamer = std::make_shared<const BatchRenamer>(rule);
    m_quick.clear();
    m_failures.clear();
    m_pending = true;
    if (!m_items.isEmpty())
        Q_EMIT dataChanged(index(0), index(int(m_items.size()) - 1));

    const TaskSlot::Ticket ticket = m_task.start();
    runInBackground(this, [renamer = m_renamer, items = m_items, token = ticket.token] {
        return previewRenames(*renamer, items, token);
    }, [this, ticket](RenamePreview preview) {
        if (!m_task.isCurrent(ticket) || preview.cancelled)
            return;
        m_task.finish(ticket);
        m_preview = std::move(preview);
        m_pending = false;
        m_quick.clear();
        if (!m_items.isEmpty())
            Q_EMIT dataChanged(index(0), index(int(m_items.size()) - 1));
        Q_EMIT previewChanged();
    });
}

void BatchRenameModel::setFailures(const QHash<FilePath, QString>& failures)
{
    m_failures = failures;
    if (!m_items.isEmpty())
        Q_EMIT dataChanged(index(0), index(int(m_items.size()) - 1));
}

int BatchRenameModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : int(m_items.size()); }

const BatchRenameEntry& BatchRenameModel::entry(int row) const
{
    if (!m_pending && size_t(row) < m_preview.entries.size())
        return m_preview.entries[size_t(row)];
    auto found = m_quick.find(row);
    if (found == m_quick.end())
        found = m_quick.insert(row, quickEntry(*m_renamer, m_items[row], row, int(m_items.size())));
    return *found;
}

QVariant BatchRenameModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_items.size())
        return {};
    const FilePath& item = m_items[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return visibleName(item.fileNameBytes());
    case Qt::ToolTipRole:
        return item.text();
    case newNameRole:
        return visibleName(entry(index.row()).newName);
    case problemRole:
        if (const auto failed = m_failures.constFind(item); failed != m_failures.constEnd())
            return *failed;
        return entry(index.row()).problem;
    case changesRole:
        return entry(index.row()).changes();
    default:
        return {};
    }
}

} // namespace orwick
