#include "ui/notes/PropertyColumnsModel.h"

#include <QLocale>
#include <cmath>
#include <QUndoStack>

namespace orwick {

namespace {

// What a typed cell's edited text stands for; an empty text removes the property.
std::optional<PropertyValue> valueFromEdit(const QVariant& edited, PropertyType type)
{
    if (edited.typeId() == QMetaType::QDate)
        return PropertyValue::ofText(propertytext::formatDate(edited.toDate()));
    const QString text = edited.toString().trimmed();
    if (text.isEmpty())
        return std::nullopt;
    switch (type) {
    case PropertyType::number:
        if (const auto number = propertytext::parseDecimal(text))
            return PropertyValue::ofNumber(*number);
        return PropertyValue::ofText(text);
    case PropertyType::checkbox: return PropertyValue::ofBool(PropertyValue::ofText(text).text().toLower() == u"true");
    case PropertyType::list: return PropertyValue::ofList(PropertyValue::ofText(text).list());
    case PropertyType::date:
    case PropertyType::select:
    case PropertyType::text: return PropertyValue::ofText(text);
    }
    return PropertyValue::ofText(text);
}

QString displayNumber(double number)
{
    const QLocale locale;
    if (std::trunc(number) == number && std::abs(number) < 1e15)
        return locale.toString(qint64(number));
    return locale.toString(number, 'g', QLocale::FloatingPointShortest);
}

} // namespace

PropertyColumnsModel::PropertyColumnsModel(FileProperties* store, int urlRole, QObject* parent)
    : QIdentityProxyModel(parent)
    , m_store(store)
    , m_urlRole(urlRole)
    , m_rowRoles{urlRole}
{
    connect(store, &FileProperties::columnsChanged, this, [this](const FilePath& folder) {
        if (folder == m_folder)
            reloadColumns();
    });
    connect(store, &FileProperties::valuesChanged, this, &PropertyColumnsModel::refreshCells);
    connect(this, &QAbstractItemModel::modelReset, this, &PropertyColumnsModel::refreshCells);
}

void PropertyColumnsModel::setFolder(const FilePath& folder)
{
    m_folder = folder;
    reloadColumns();
}

int PropertyColumnsModel::sourceColumns() const { return sourceModel() ? sourceModel()->columnCount() : 0; }

FilePath PropertyColumnsModel::urlAt(int row) const
{
    if (!sourceModel())
        return {};
    return sourceModel()->index(row, 0).data(m_urlRole).value<FilePath>();
}

FileItems PropertyColumnsModel::rowItems() const
{
    FileItems items;
    const int rows = sourceModel() ? sourceModel()->rowCount() : 0;
    items.reserve(rows);
    for (int row = 0; row < rows; ++row) {
        FileItem item;
        item.url = urlAt(row);
        items.append(item);
    }
    return items;
}

void PropertyColumnsModel::reloadColumns()
{
    beginResetModel();
    m_columns = m_store && !m_folder.isEmpty() ? m_store->shownColumns(m_folder, folderItems()) : QList<PropertyColumn>();
    endResetModel();
}

void PropertyColumnsModel::refreshCells()
{
    if (m_columns.isEmpty() || !m_store)
        return;
    // Guessed types follow the values; the columns themselves stay.
    const QList<PropertyColumn> columns = m_store->shownColumns(m_folder, folderItems());
    if (columns.size() == m_columns.size())
        m_columns = columns;
    const int rows = rowCount();
    if (rows > 0)
        Q_EMIT dataChanged(index(0, sourceColumns()), index(rows - 1, columnCount() - 1));
}

const PropertyColumn* PropertyColumnsModel::propertyColumn(int column) const
{
    const int at = column - sourceColumns();
    return at >= 0 && at < m_columns.size() ? &m_columns[at] : nullptr;
}

int PropertyColumnsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : sourceColumns() + int(m_columns.size());
}

QModelIndex PropertyColumnsModel::index(int row, int column, const QModelIndex& parent) const
{
    if (column < sourceColumns())
        return QIdentityProxyModel::index(row, column, parent);
    if (parent.isValid() || row < 0 || row >= rowCount() || column >= columnCount())
        return {};
    return createIndex(row, column);
}

QModelIndex PropertyColumnsModel::parent(const QModelIndex& child) const
{
    return child.column() < sourceColumns() ? QIdentityProxyModel::parent(child) : QModelIndex();
}

QModelIndex PropertyColumnsModel::sibling(int row, int column, const QModelIndex& idx) const
{
    return index(row, column, parent(idx));
}

QModelIndex PropertyColumnsModel::mapToSource(const QModelIndex& proxy) const
{
    if (proxy.isValid() && proxy.column() >= sourceColumns())
        return {};
    return QIdentityProxyModel::mapToSource(proxy);
}

QModelIndex PropertyColumnsModel::buddy(const QModelIndex& index) const
{
    return propertyColumn(index.column()) ? index : QIdentityProxyModel::buddy(index);
}

QVariant PropertyColumnsModel::data(const QModelIndex& index, int role) const
{
    const PropertyColumn* column = propertyColumn(index.column());
    if (!column)
        return QIdentityProxyModel::data(index, role);
    if (m_rowRoles.contains(role))
        return sourceModel() ? sourceModel()->index(index.row(), 0).data(role) : QVariant();
    if (role == PropertyTypeRole)
        return int(column->type);
    if (role == OptionsRole)
        return column->options;
    if (role == OptionColorRole) {
        QVariantMap colors;
        for (auto it = column->colors.begin(); it != column->colors.end(); ++it)
            colors.insert(it.key(), it.value());
        return colors;
    }
    const auto value = m_store ? m_store->value(urlAt(index.row()), column->key) : std::nullopt;
    if (role == Qt::CheckStateRole && column->type == PropertyType::checkbox)
        return value && value->isChecked() ? Qt::Checked : Qt::Unchecked;
    if (!value)
        return {};
    switch (role) {
    case PropertyValueRole: return QVariant::fromValue(*value);
    case Qt::EditRole: return value->text();
    case Qt::ToolTipRole: return value->text();
    case Qt::DisplayRole:
        if (column->type == PropertyType::checkbox)
            return {};
        if (column->type == PropertyType::date)
            if (const auto day = value->date())
                return QLocale().toString(*day, QLocale::ShortFormat);
        if (column->type == PropertyType::list)
            return value->list().join(QStringLiteral(", "));
        if (column->type == PropertyType::number)
            if (const auto number = value->number())
                return displayNumber(*number);
        return value->text();
    case Qt::TextAlignmentRole:
        if (column->type == PropertyType::number && value->number())
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    default: return {};
    }
}

bool PropertyColumnsModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const PropertyColumn* column = propertyColumn(index.column());
    if (!column || !m_store)
        return QIdentityProxyModel::setData(index, value, role);
    std::optional<PropertyValue> newValue;
    if (role == Qt::CheckStateRole && column->type == PropertyType::checkbox)
        newValue = PropertyValue::ofBool(value.toInt() == Qt::Checked);
    else if (role == Qt::EditRole)
        newValue = valueFromEdit(value, column->type);
    else
        return false;
    const Status written = m_store->set(column->key, newValue, {urlAt(index.row())}, m_undo);
    if (!written) {
        Q_EMIT writeFailed(written.error());
        return false;
    }
    return true;
}

Qt::ItemFlags PropertyColumnsModel::flags(const QModelIndex& index) const
{
    const PropertyColumn* column = propertyColumn(index.column());
    if (!column)
        return QIdentityProxyModel::flags(index);
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (column->type == PropertyType::checkbox)
        return flags | Qt::ItemIsUserCheckable;
    return flags | Qt::ItemIsEditable;
}

QVariant PropertyColumnsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal)
        if (const PropertyColumn* column = propertyColumn(section))
            return role == Qt::DisplayRole ? QVariant(column->key) : QVariant();
    return QIdentityProxyModel::headerData(section, orientation, role);
}

} // namespace orwick
