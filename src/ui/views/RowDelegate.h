#pragma once
// Draws a row cell of any view with the pane's selection and cursor (read from the model's
// roles), in the theme's colours, instead of the view's own selection model.

#include <QStyledItemDelegate>

namespace orwick {

class RowDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    // The part of a row's `rect` that holds its cells: below the day heading's band, if it has one.
    static QRect cellsRect(const QRect& rect, const QModelIndex& index);

protected:
    // Draws a cell's own content over the row's background (the selection, the caret bar).
    virtual void paintCell(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    // In a listing from many folders, the item's folder after its name.
    void paintLocation(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
};

} // namespace orwick
