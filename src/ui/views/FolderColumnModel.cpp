#include "ui/views/FolderColumnModel.h"

#include "async/Background.h"
#include "files/DirectoryLoader.h"
#include "places/FinderTags.h"
#include "ui/theme/Theme.h"
#include "ui/views/CategoryIcons.h"
#include "ui/views/FileListModel.h"
#include "ui/views/TagDots.h"

namespace orwick {

FolderColumnModel::FolderColumnModel(const FilePath& folder, const FilePath& marked, Options options, QObject* parent)
    : QAbstractListModel(parent), m_folder(folder), m_marked(marked)
{
    runInBackground(this, [folder, options] {
        ListingResult result = DirectoryLoader::load(folder, options.showHidden);
        if (!result.error) {
            ArrangeInput input;
            input.items = std::move(result.items);
            input.sortKey = options.sortKey;
            input.ascending = options.ascending;
            input.folder = folder;
            if (auto arranged = arrange(input))
                result.items = std::move(arranged->items);
        }
        return result;
    }, [this](ListingResult result) {
        beginResetModel();
        m_items = std::move(result.items);
        m_error = result.error;
        endResetModel();
        Q_EMIT loaded();
        if (!m_error) // the rows' tag dots, as for the pane's own folder
            FinderTags::shared().refreshFolder(m_folder);
    });
    connect(&FinderTags::shared(), &FinderTags::changed, this, [this] {
        if (!m_items.isEmpty())
            Q_EMIT dataChanged(index(0), index(int(m_items.size()) - 1), {TagColorsRole});
    });
}

const FileItem* FolderColumnModel::itemAt(int row) const
{
    return row >= 0 && row < m_items.size() ? &m_items[row] : nullptr;
}

int FolderColumnModel::markedRow() const
{
    for (int row = 0; row < m_items.size(); ++row)
        if (m_items[row].url == m_marked)
            return row;
    return -1;
}

int FolderColumnModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : int(m_items.size()); }

QVariant FolderColumnModel::data(const QModelIndex& index, int role) const
{
    const FileItem* item = itemAt(index.row());
    if (!item)
        return {};
    switch (role) {
    case Qt::DisplayRole: return item->name;
    case Qt::DecorationRole: return itemIcon(*item);
    case Qt::ForegroundRole:
        if (item->isHidden)
            return theme::dimText();
        break;
    case FileListModel::UrlRole: return QVariant::fromValue(item->url);
    case FileListModel::SelectedRole: return item->url == m_marked;
    case FileListModel::CursorRole: return false;
    case FileListModel::IsFolderRole: return item->isFolder;
    case FileListModel::CategoryRole: return int(item->category);
    case TagColorsRole:
        if (const QList<int> colors = FinderTags::shared().tagsOf(item->url).colors(); !colors.isEmpty())
            return QVariant::fromValue(colors);
        break;
    }
    return {};
}

} // namespace orwick
