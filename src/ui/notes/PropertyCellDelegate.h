#pragma once
// PropertyCellDelegate: draws the table's rows like every other view (selection, caret, group
// headings) and a property cell as its type wants it — select values and list items as chips
// in their options' colours, a checkbox as a box; other types as the model's formatted text.
// Editing in place uses an editor that fits the type: a date field with a calendar for dates (that
// Delete empties, removing the property; see DateCellEditor), a
// combo box of the column's options (typing a new one adds it) for selects, a line for the rest.
// Cells of the file list's own columns are drawn as before and are not edited here. The view's
// current cell, when it is a property cell on the cursor's row, wears a thin ring while the view
// has the focus, so that the keys' target shows.

#include "ui/views/RowDelegate.h"

namespace orwick {

class PropertyCellDelegate : public RowDelegate {
    Q_OBJECT
public:
    using RowDelegate::RowDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

    // The chips a cell shows: each text with the colour index of its option, if it has one.
    struct Chip {
        QString text;
        std::optional<int> color;
    };
    static QList<Chip> chipsOf(const QModelIndex& index);

protected:
    void paintCell(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace orwick
