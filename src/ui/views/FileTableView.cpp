#include "ui/views/FileTableView.h"

#include <QHeaderView>

namespace orwick {

FileTableView::FileTableView(FileListModel* model, QWidget* parent) : FileListView(model, parent)
{
    setAlternatingRowColors(true);
    setTextElideMode(Qt::ElideRight);
    QHeaderView* head = header();
    head->setSectionsMovable(true);
    head->setFirstSectionMovable(false);
    head->setStretchLastSection(true);
    for (int column = 0; column < model->columnCount(); ++column)
        head->setSectionResizeMode(column, QHeaderView::Interactive);
    head->resizeSection(FileListModel::NameColumn, 320);
}

} // namespace orwick
