#include "notes/BoardView.h"

namespace orwick {

namespace {
const QString kNoValue = QStringLiteral("No value");
}

BoardView BoardView::make(const DatabaseColumns& database, const FileItems& items)
{
    BoardView board;
    board.choices = database.keysOf({PropertyType::select, PropertyType::list});
    const std::optional<QString>& groupBy = database.settings.groupBy;
    if (!groupBy || groupBy->isEmpty()) {
        board.problem = board.choices.isEmpty() ? QStringLiteral("A board needs a select or list property to group by.")
                                                : QStringLiteral("Choose the property the board groups by.");
        return board;
    }
    board.key = *groupBy;
    const PropertyColumn* column = database.column(*groupBy);
    if (!column) {
        board.problem = QStringLiteral("The board groups by “%1”, which no item has any more.").arg(*groupBy);
        return board;
    }
    if (column->type != PropertyType::select && column->type != PropertyType::list) {
        board.problem = QStringLiteral("The board groups by “%1”, which is a %2 property, not a select or list.")
                            .arg(*groupBy, propertyTypeName(column->type));
        if (column->type == PropertyType::text) { // free text: its values can become the options
            board.convertible = *groupBy;
            for (const FileItem& item : items)
                if (const auto value = database.value(item.url, *groupBy))
                    if (const QString text = value->text().trimmed(); !text.isEmpty() && !board.foundValues.contains(text))
                        board.foundValues.append(text);
        }
        return board;
    }
    board.type = column->type;
    for (const QString& key : database.settings.shown)
        if (key != *groupBy)
            board.shown.append(key);

    board.lanes.append({std::nullopt, kNoValue, std::nullopt, {}});
    QHash<QString, int> laneByOption;
    for (const QString& option : column->options) {
        laneByOption.insert(option, int(board.lanes.size()));
        std::optional<int> color;
        if (const auto found = column->colors.constFind(option); found != column->colors.constEnd())
            color = *found;
        board.lanes.append({option, option, color, {}});
    }
    for (int index = 0; index < items.size(); ++index) {
        const auto value = database.value(items.at(index).url, *groupBy);
        QStringList options = value ? value->list() : QStringList();
        if (column->type == PropertyType::select && options.size() > 1)
            options = {value->text().trimmed()};
        bool placed = false;
        for (const QString& option : options) {
            int lane = laneByOption.value(option, -1);
            if (lane < 0) { // a value the options don't list yet
                lane = int(board.lanes.size());
                laneByOption.insert(option, lane);
                board.lanes.append({option, option, std::nullopt, {}});
            }
            if (!board.lanes[lane].cards.contains(index))
                board.lanes[lane].cards.append(index);
            placed = true;
        }
        if (!placed)
            board.lanes[0].cards.append(index);
    }
    return board;
}

int BoardView::laneOf(const std::optional<QString>& option) const
{
    for (int i = 0; i < lanes.size(); ++i)
        if (lanes.at(i).option == option)
            return i;
    return -1;
}

std::optional<std::optional<PropertyValue>> BoardView::movedValue(const std::optional<PropertyValue>& current, int from,
                                                                  int to) const
{
    if (from == to || to < 0 || to >= lanes.size())
        return std::nullopt;
    const std::optional<QString>& target = lanes.at(to).option;
    if (type == PropertyType::select)
        return target ? std::optional(PropertyValue::ofText(*target)) : std::optional<PropertyValue>();
    QStringList list = current ? current->list() : QStringList();
    const std::optional<QString> source = from >= 0 && from < lanes.size() ? lanes.at(from).option : std::nullopt;
    if (!target)
        list.removeAll(source.value_or(QString()));
    else if (const qsizetype at = source ? list.indexOf(*source) : -1; at >= 0)
        list[at] = *target;
    else
        list.append(*target);
    list.removeDuplicates();
    if (list.isEmpty())
        return std::optional<PropertyValue>();
    return std::optional(PropertyValue::ofList(list));
}

PropertyMap BoardView::newItemValues(int lane) const
{
    PropertyMap values;
    if (lane < 0 || lane >= lanes.size() || !lanes.at(lane).option)
        return values;
    const QString& option = *lanes.at(lane).option;
    values.insert(key, type == PropertyType::list ? PropertyValue::ofList({option}) : PropertyValue::ofText(option));
    return values;
}

FolderColumns BoardView::keepingLanes(FolderColumns settings) const
{
    if (key.isEmpty() || !problem.isEmpty())
        return settings;
    QStringList options = settings.options.value(key);
    for (const BoardLane& lane : lanes)
        if (lane.option && !options.contains(*lane.option))
            options.append(*lane.option);
    if (options != settings.options.value(key))
        settings.options.insert(key, options);
    if (!settings.types.contains(key))
        settings.types.insert(key, type);
    return settings;
}

} // namespace orwick
