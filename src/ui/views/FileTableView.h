#pragma once
// The table view: the list's rows as a table — every column resizable and movable, alternating
// row shading, a sortable header (a click sorts, a second click flips). Property columns of
// notes join the model's columns later; the table shows whatever columns the model has.

#include "ui/views/FileListView.h"

namespace orwick {

class FileTableView : public FileListView {
    Q_OBJECT
public:
    FileTableView(FileListModel* model, QWidget* parent = nullptr);
};

} // namespace orwick
