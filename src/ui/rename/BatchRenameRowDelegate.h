#pragma once
// BatchRenameRowDelegate: draws one row of the batch rename preview — the old name, an arrow and
// the new name on the first line, the problem (when there is one) below them in the theme's
// failure colour. Every row has the same height, so ten thousand rows scroll as one.

#include <QStyledItemDelegate>

namespace orwick {

class BatchRenameRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace orwick
