#include "ui/views/FileListModel.h"

#include "base/Formatting.h"
#include "ui/theme/Theme.h"
#include "ui/views/CategoryIcons.h"

#include <QDateTime>

namespace orwick {

FileListModel::FileListModel(PaneState* pane, QObject* parent) : QAbstractTableModel(parent), m_pane(pane)
{
    connect(pane, &PaneState::itemsChanged, this, [this] {
        beginResetModel();
        m_now = QDateTime::currentMSecsSinceEpoch();
        endResetModel();
    });
    // Measured folder sizes fill the size column as they come in.
    connect(pane->folderSizes(), &FolderSizes::changed, this, [this] {
        if (rowCount() > 0)
            Q_EMIT dataChanged(index(0, SizeColumn), index(rowCount() - 1, SizeColumn), {Qt::DisplayRole});
    });
    connect(pane, &PaneState::arrangementOptionsChanged, this, [this] { Q_EMIT headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1); });
}

int FileListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !m_pane ? 0 : int(m_pane->items().size());
}

int FileListModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

const FileItem* FileListModel::itemAt(int row) const
{
    if (!m_pane || row < 0 || row >= m_pane->items().size())
        return nullptr;
    return &m_pane->items()[row];
}

QVariant FileListModel::data(const QModelIndex& index, int role) const
{
    const FileItem* item = itemAt(index.row());
    if (!item)
        return {};
    for (const Decorator& decorator : m_decorators)
        if (QVariant extra = decorator(*item, index.column(), role); extra.isValid())
            return extra;
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case NameColumn: return item->name;
        case ModifiedColumn: return formatDate(item->modified, m_now);
        case SizeColumn: return sizeText(*item);
        case KindColumn: return item->kind;
        case OriginalLocationColumn: return item->trashedFrom.isEmpty() ? QStringLiteral("—") : item->trashedFrom.parent().abbreviated();
        case DeletedColumn: return formatDate(item->deleted, m_now);
        }
        break;
    case Qt::DecorationRole:
        if (index.column() == NameColumn)
            return itemIcon(*item);
        break;
    case Qt::ToolTipRole:
        if (index.column() == OriginalLocationColumn && !item->trashedFrom.isEmpty())
            return item->trashedFrom.abbreviated(); // the name it had there too
        if (showsLocations() && index.column() == NameColumn)
            return item->url.abbreviated();
        if (item->brokenTarget)
            return QStringLiteral("Broken link to %1").arg(*item->brokenTarget);
        if (item->isSymlink())
            return QStringLiteral("Link to %1").arg(item->destination.abbreviated());
        break;
    case Qt::ForegroundRole:
        if (index.column() != NameColumn || item->isHidden || item->brokenTarget)
            return theme::dimText();
        break;
    case Qt::TextAlignmentRole:
        if (index.column() == SizeColumn)
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        break;
    case UrlRole: return QVariant::fromValue(item->url);
    case SelectedRole: return m_pane->selection().contains(item->url);
    case CursorRole: return m_pane->cursor() == item->url;
    case CategoryRole: return int(item->category);
    case IsFolderRole: return item->isFolder;
    case HiddenRole: return item->isHidden;
    case LocationRole:
        if (index.column() == NameColumn && showsLocations())
            return item->url.parent().abbreviated();
        return {};
    case HeadingRole: {
        const auto heading = m_pane->headings().constFind(index.row());
        return heading == m_pane->headings().constEnd() ? QVariant() : QVariant::fromValue(*heading);
    }
    }
    return {};
}

bool FileListModel::showsLocations() const
{
    const auto& listing = m_pane->listing();
    return listing && (listing->kind == Listing::Kind::search || listing->kind == Listing::Kind::tag || listing->kind == Listing::Kind::recents);
}

QString FileListModel::sizeText(const FileItem& item) const
{
    if (item.size)
        return formatByteCount(*item.size);
    if (const std::optional<qint64> measured = m_pane->folderSizes()->size(item.url))
        return formatByteCount(*measured);
    if (m_pane->folderSizes()->isPending(item.url))
        return QStringLiteral("Calculating…");
    if (m_pane->folderSizes()->isUnreadable(item.url))
        return QStringLiteral("Can’t read"); // its size isn't known, which is not zero
    return QStringLiteral("—");
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole && section == SizeColumn)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter); // over its right-aligned numbers, however wide
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return columnTitle(section);
}

QString FileListModel::columnTitle(int column)
{
    switch (column) {
    case NameColumn: return QStringLiteral("Name");
    case ModifiedColumn: return QStringLiteral("Date Modified");
    case SizeColumn: return QStringLiteral("Size");
    case KindColumn: return QStringLiteral("Kind");
    case OriginalLocationColumn: return QStringLiteral("Original Location");
    case DeletedColumn: return QStringLiteral("Date Deleted");
    }
    return {};
}

int FileListModel::columnFor(SortKey key)
{
    switch (key) {
    case SortKey::name: return NameColumn;
    case SortKey::modified: return ModifiedColumn;
    case SortKey::size: return SizeColumn;
    case SortKey::kind: return KindColumn;
    case SortKey::originalLocation: return OriginalLocationColumn;
    case SortKey::dateDeleted: return DeletedColumn;
    }
    return NameColumn;
}

std::optional<SortKey> FileListModel::sortKeyFor(int column)
{
    switch (column) {
    case NameColumn: return SortKey::name;
    case ModifiedColumn: return SortKey::modified;
    case SizeColumn: return SortKey::size;
    case KindColumn: return SortKey::kind;
    case OriginalLocationColumn: return SortKey::originalLocation;
    case DeletedColumn: return SortKey::dateDeleted;
    }
    return std::nullopt;
}

void FileListModel::addDecorator(Decorator decorator) { m_decorators.append(std::move(decorator)); }

void FileListModel::refreshDecorations()
{
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

} // namespace orwick
