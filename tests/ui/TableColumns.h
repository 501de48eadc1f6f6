#pragma once
// Finding a table's column by its header title, for tests that address property columns by key.

#include <QAbstractItemModel>

namespace orwick::test {

// The logical column whose header reads `title`, or -1.
inline int columnTitled(const QAbstractItemModel* model, const QString& title)
{
    for (int column = 0; column < model->columnCount(); ++column)
        if (model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString() == title)
            return column;
    return -1;
}

} // namespace orwick::test
