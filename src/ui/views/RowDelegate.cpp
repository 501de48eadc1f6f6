#include "ui/views/RowDelegate.h"

#include "ui/theme/Theme.h"
#include "ui/views/FileListModel.h"
#include "ui/views/GitMarks.h"

#include <QAbstractItemView>
#include <QPainter>

namespace orwick {

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const bool selected = index.data(FileListModel::SelectedRole).toBool();
    const bool cursor = index.data(FileListModel::CursorRole).toBool();
    if (selected)
        painter->fillRect(option.rect, theme::selection());
    if (cursor) {
        const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
        if (view && view->hasFocus()) {
            // A thin bar under the caret row: visible whether or not it is selected.
            QRect bar = option.rect;
            bar.setTop(bar.bottom() - 1);
            painter->fillRect(bar, theme::cursorRing());
        }
    }
    QStyleOptionViewItem plain = option;
    plain.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver);
    plain.rect.setRight(plain.rect.right() - gitMarkWidth(index));
    QStyledItemDelegate::paint(painter, plain, index);
    paintGitMark(painter, option.rect, index);
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(std::max(size.height(), theme::rowHeight()));
    return size;
}

} // namespace orwick
