#pragma once
// The list view: one row per arranged item with Name, Date Modified, Size and Kind. Draws the
// pane's selection and forwards keys and clicks to the pane; holds no selection of its own.

#include "ui/views/FileListModel.h"

#include <QTreeView>

namespace orwick {

class FileListView : public QTreeView {
    Q_OBJECT
public:
    FileListView(FileListModel* model, QWidget* parent = nullptr);

    // Brings the cursor's row into view and redraws the selection.
    void followSelection();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    FileListModel* m_model;
    bool m_vimPendingG = false;
};

} // namespace orwick
