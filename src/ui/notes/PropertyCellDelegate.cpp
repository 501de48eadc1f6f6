#include "ui/notes/PropertyCellDelegate.h"

#include "ui/notes/DateCellEditor.h"
#include "ui/notes/PropertyColumnsModel.h"
#include "ui/theme/Theme.h"
#include "ui/views/FileListModel.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>

namespace orwick {

namespace {

std::optional<PropertyType> typeOf(const QModelIndex& index)
{
    const QVariant type = index.data(PropertyColumnsModel::PropertyTypeRole);
    return type.isValid() ? std::optional(PropertyType(type.toInt())) : std::nullopt;
}

bool drawsChips(const QModelIndex& index)
{
    const auto type = typeOf(index);
    return type == PropertyType::select || type == PropertyType::list;
}

constexpr int kChipPadding = 6; // text to the chip's edge
constexpr int kChipSpacing = 4;
constexpr int kCellMargin = 4;

void paintChip(QPainter* painter, const QRect& rect, const QString& text, const QColor& background)
{
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect), rect.height() / 2.5, rect.height() / 2.5);
    painter->fillPath(shape, background);
    painter->setPen(theme::chipText(background));
    const QRect textRect = rect.adjusted(kChipPadding, 0, -kChipPadding, 0);
    painter->drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter,
                      painter->fontMetrics().elidedText(text, Qt::ElideRight, textRect.width()));
}

} // namespace

QList<PropertyCellDelegate::Chip> PropertyCellDelegate::chipsOf(const QModelIndex& index)
{
    const QVariant stored = index.data(PropertyColumnsModel::PropertyValueRole);
    if (!stored.canConvert<PropertyValue>())
        return {};
    const PropertyValue value = stored.value<PropertyValue>();
    const QStringList texts = typeOf(index) == PropertyType::list ? value.list() : QStringList{value.text()};
    const QVariantMap colors = index.data(PropertyColumnsModel::OptionColorRole).toMap();
    QList<Chip> chips;
    for (const QString& text : texts) {
        if (text.trimmed().isEmpty())
            continue;
        const auto color = colors.constFind(text);
        chips.append({text, color == colors.constEnd() ? std::nullopt : std::optional(color->toInt())});
    }
    return chips;
}

void PropertyCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    RowDelegate::paint(painter, option, index);
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    if (!typeOf(index) || !view || !view->hasFocus() || view->currentIndex() != index
        || !index.data(FileListModel::CursorRole).toBool())
        return;
    painter->save();
    painter->setPen(QPen(theme::cursorRing(), 2));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(cellsRect(option.rect, index).adjusted(1, 1, -2, -2));
    painter->restore();
}

void PropertyCellDelegate::paintCell(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    if (!drawsChips(index)) {
        RowDelegate::paintCell(painter, option, index);
        return;
    }
    const QList<Chip> chips = chipsOf(index);
    if (chips.isEmpty())
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setFont(option.font);
    const QFontMetrics metrics = painter->fontMetrics();
    const int height = std::min(option.rect.height() - 4, metrics.height() + 4);
    const QRect area = option.rect.adjusted(kCellMargin, 0, -kCellMargin, 0);
    const QString more = QStringLiteral("…");
    const int moreWidth = metrics.horizontalAdvance(more) + kChipSpacing;
    int x = area.left();
    for (qsizetype i = 0; i < chips.size(); ++i) {
        // A pixel or two over the advance: eliding measures a little wider than it.
        const int natural = metrics.horizontalAdvance(chips[i].text) + 2 * kChipPadding + 2;
        const bool last = i + 1 == chips.size();
        int room = area.right() + 1 - x - (last ? 0 : moreWidth);
        // Less room than a letter and an ellipsis: only the ellipsis says there is more.
        const int smallest = 2 * kChipPadding + metrics.horizontalAdvance(chips[i].text.left(1) + more);
        if (room < std::min(natural, smallest)) {
            painter->setPen(theme::dimText());
            painter->drawText(QRect(x, option.rect.top(), area.right() + 1 - x, option.rect.height()),
                              Qt::AlignLeft | Qt::AlignVCenter, more);
            break;
        }
        const int width = std::min(natural, room);
        const QRect chip(x, option.rect.top() + (option.rect.height() - height) / 2, width, height);
        paintChip(painter, chip, chips[i].text, theme::optionColor(chips[i].color));
        x += width + kChipSpacing;
        if (width < natural)
            break; // elided: nothing fits after it
    }
    painter->restore();
}

QWidget* PropertyCellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const auto type = typeOf(index);
    if (type == PropertyType::date)
        return new DateCellEditor(parent);
    if (type == PropertyType::select) {
        auto* editor = new QComboBox(parent);
        editor->setEditable(true);
        editor->setInsertPolicy(QComboBox::NoInsert);
        editor->addItems(index.data(PropertyColumnsModel::OptionsRole).toStringList());
        return editor;
    }
    QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
    if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        if (type == PropertyType::list)
            line->setPlaceholderText(QStringLiteral("Items separated by commas"));
        if (type == PropertyType::number)
            line->setAlignment(Qt::AlignRight);
    }
    return editor;
}

void PropertyCellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* date = qobject_cast<DateCellEditor*>(editor)) {
        const QVariant stored = index.data(PropertyColumnsModel::PropertyValueRole);
        const auto day = stored.canConvert<PropertyValue>() ? stored.value<PropertyValue>().date() : std::nullopt;
        date->setDay(day.value_or(QDate::currentDate()));
        return;
    }
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        combo->setCurrentText(index.data(Qt::EditRole).toString());
        return;
    }
    QStyledItemDelegate::setEditorData(editor, index);
}

void PropertyCellDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    if (auto* date = qobject_cast<DateCellEditor*>(editor)) {
        // An emptied field removes the property.
        model->setData(index, date->day() ? QVariant(*date->day()) : QVariant(QString()), Qt::EditRole);
        return;
    }
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        model->setData(index, combo->currentText(), Qt::EditRole);
        return;
    }
    QStyledItemDelegate::setModelData(editor, model, index);
}

} // namespace orwick
