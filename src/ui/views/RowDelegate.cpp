#include "ui/views/RowDelegate.h"

#include "files/Arrangement.h"
#include "ui/theme/Theme.h"
#include "ui/theme/ThemedStyle.h"
#include "ui/views/FileListModel.h"
#include "ui/views/GitMarks.h"
#include "ui/views/TagDots.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>

namespace orwick {

namespace {

// A row that starts a day group carries its heading in a band above its cells.
std::optional<Heading> headingOf(const QModelIndex& index)
{
    const QVariant heading = index.data(FileListModel::HeadingRole);
    return heading.isValid() ? std::optional(heading.value<Heading>()) : std::nullopt;
}

int headingBandHeight() { return theme::rowHeight() + 6; }

void paintHeading(QPainter* painter, const QStyleOptionViewItem& option, const Heading& heading, bool firstColumn)
{
    QRect band = option.rect;
    band.setHeight(headingBandHeight());
    painter->save();
    painter->fillRect(band, option.palette.window());
    painter->setPen(theme::separator());
    painter->drawLine(band.bottomLeft(), band.bottomRight());
    if (firstColumn) {
        QFont bold = option.font;
        bold.setBold(true);
        painter->setFont(bold);
        painter->setPen(theme::text());
        const QRect text = band.adjusted(8, 4, -8, 0);
        painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter, heading.title);
        const int titleWidth = QFontMetrics(bold).horizontalAdvance(heading.title);
        painter->setFont(option.font);
        painter->setPen(theme::dimText());
        painter->drawText(text.adjusted(titleWidth + 8, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, QString::number(heading.count));
    }
    painter->restore();
}

} // namespace

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& givenOption, const QModelIndex& index) const
{
    QStyleOptionViewItem option = givenOption;
    if (const auto heading = headingOf(index)) {
        paintHeading(painter, option, *heading, index.column() == 0);
        option.rect = cellsRect(option.rect, index);
    }
    const bool selected = index.data(FileListModel::SelectedRole).toBool();
    const bool cursor = index.data(FileListModel::CursorRole).toBool();
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    const bool focused = view && view->hasFocus();
    if (selected) // a pane without the keyboard shows its selection dimmer
        painter->fillRect(option.rect, focused ? theme::selection() : theme::selectionUnfocused());
    if (cursor) {
        if (focused) {
            // A thin bar under the caret row: visible whether or not it is selected.
            QRect bar = option.rect;
            bar.setTop(bar.bottom() - 1);
            painter->fillRect(bar, theme::cursorRing());
        }
    }
    QStyleOptionViewItem plain = option;
    plain.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver);
    // A name is cut in its middle, so its end and extension stay; a kind or a property's text
    // reads from its start ("Applicati…", not "Appli…n log").
    if (index.column() != FileListModel::NameColumn)
        plain.textElideMode = Qt::ElideRight;
    const int gitWidth = gitMarkWidth(index);
    plain.rect.setRight(plain.rect.right() - gitWidth - tagDotsWidth(index));
    if (index.data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight) // a size keeps its gutter before the next column
        plain.rect.setRight(plain.rect.right() - ThemedStyle::columnGutter(option.fontMetrics));
    paintCell(painter, plain, index);
    paintLocation(painter, plain, index);
    paintTagDots(painter, option.rect.right() - gitWidth, option.rect.center().y(), index);
    paintGitMark(painter, option.rect, index);
}

void RowDelegate::paintLocation(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QString location = index.data(FileListModel::LocationRole).toString();
    if (location.isEmpty())
        return;
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStyle* style = cell.widget ? cell.widget->style() : QApplication::style();
    const QRect text = style->subElementRect(QStyle::SE_ItemViewItemText, &cell, cell.widget);
    // After the name, dimmed, shortened in the middle so both ends of the path stay readable.
    const QRect where = text.adjusted(cell.fontMetrics.horizontalAdvance(cell.text) + 16, 0, -4, 0);
    if (where.width() < 40)
        return;
    painter->save();
    painter->setPen(theme::dimText());
    painter->drawText(where, Qt::AlignLeft | Qt::AlignVCenter, cell.fontMetrics.elidedText(location, Qt::ElideMiddle, where.width()));
    painter->restore();
}

void RowDelegate::paintCell(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
}

QRect RowDelegate::cellsRect(const QRect& rect, const QModelIndex& index)
{
    return headingOf(index) ? rect.adjusted(0, headingBandHeight(), 0, 0) : rect;
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(std::max(size.height(), theme::rowHeight()));
    if (headingOf(index))
        size.setHeight(size.height() + headingBandHeight());
    return size;
}

} // namespace orwick
