#include "ui/rename/BatchRenameRowDelegate.h"

#include "ui/rename/BatchRenameModel.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QPainter>

namespace orwick {

namespace {
constexpr int kMargin = 8;
constexpr int kArrowWidth = 28;
} // namespace

void BatchRenameRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem base = option;
    initStyleOption(&base, index);
    base.text.clear();
    QApplication::style()->drawControl(QStyle::CE_ItemViewItem, &base, painter, option.widget);

    const QFontMetrics metrics(option.font);
    const int line = metrics.height();
    const QRect inner = option.rect.adjusted(kMargin, 2, -kMargin, -2);
    const int half = (inner.width() - kArrowWidth) / 2;
    const QRect oldRect(inner.left(), inner.top(), half, line);
    const QRect arrowRect(oldRect.right(), inner.top(), kArrowWidth, line);
    const QRect newRect(arrowRect.right(), inner.top(), inner.right() - arrowRect.right(), line);
    const bool selected = option.state & QStyle::State_Selected;
    const QColor text = selected ? option.palette.highlightedText().color() : theme::text();
    const QColor dim = selected ? text : theme::dimText();

    const QString oldName = index.data(Qt::DisplayRole).toString();
    const QString newName = index.data(BatchRenameModel::newNameRole).toString();
    const QString problem = index.data(BatchRenameModel::problemRole).toString();
    const bool changes = index.data(BatchRenameModel::changesRole).toBool();

    painter->save();
    painter->setFont(option.font);
    painter->setPen(changes ? dim : text);
    painter->drawText(oldRect, Qt::AlignLeft | Qt::AlignVCenter, metrics.elidedText(oldName, Qt::ElideMiddle, oldRect.width()));
    painter->setPen(dim);
    painter->drawText(arrowRect, Qt::AlignCenter, QStringLiteral("→"));
    painter->setPen(changes ? text : dim);
    QFont bold = option.font;
    bold.setBold(changes && problem.isEmpty());
    painter->setFont(bold);
    painter->drawText(newRect, Qt::AlignLeft | Qt::AlignVCenter,
                      QFontMetrics(bold).elidedText(newName, Qt::ElideMiddle, newRect.width()));
    if (!problem.isEmpty()) {
        painter->setFont(option.font);
        painter->setPen(selected ? text : theme::negative());
        const QRect problemRect(newRect.left(), newRect.bottom() + 1, newRect.width(), line);
        painter->drawText(problemRect, Qt::AlignLeft | Qt::AlignVCenter, metrics.elidedText(problem, Qt::ElideRight, problemRect.width()));
    }
    painter->restore();
}

QSize BatchRenameRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return {200, 2 * QFontMetrics(option.font).height() + 6};
}

} // namespace orwick
