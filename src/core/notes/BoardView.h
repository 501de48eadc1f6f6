#pragma once
// BoardView: a folder's items as lanes of cards, one lane per option of the folder's `groupBy`
// property (a select or list property: its options in the folder's order, with their colours)
// after a "No value" lane for items without one. An item whose list holds several options sits
// in each of their lanes. Moving a card works out the one value the item gets (movedValue) and
// the settings that keep every lane shown (keepingLanes); a card added to a lane starts with that
// lane's option (newItemValues). A `groupBy` that is
// missing, gone or of another type gives no lanes but a problem sentence and the keys that
// could be chosen instead; a text property also names the values found in it, the options it
// would have as a select (FolderColumns::makeSelect). Pure; safe on any thread.

#include "notes/DatabaseColumns.h"

namespace orwick {

struct BoardLane {
    std::optional<QString> option; // none: the "No value" lane
    QString title;
    std::optional<int> color;      // the option's colour index
    QList<int> cards;              // indexes into the items, in the items' order
    bool operator==(const BoardLane&) const = default;
};

struct BoardView {
    QString key;
    PropertyType type = PropertyType::select;
    QList<BoardLane> lanes;
    QString problem;      // empty when the board can be drawn
    QStringList choices;  // the select and list keys a board could group by
    std::optional<QString> convertible; // the text key grouped by, which could become a select
    QStringList foundValues;            // its distinct values in the items, in the order met
    QStringList shown;    // the properties a card shows besides its title

    static BoardView make(const DatabaseColumns& database, const FileItems& items);

    // The lane index of an option (none: "No value"), or -1.
    int laneOf(const std::optional<QString>& option) const;

    // The value an item has after its card moves from lane `from` to lane `to`: for a select,
    // the new lane's option (no value in "No value"); for a list, the old lane's option replaced
    // by the new one's (kept in place, not doubled, dropped when moved to "No value"). Nothing
    // changes (std::nullopt outer) when from and to are the same lane.
    std::optional<std::optional<PropertyValue>> movedValue(const std::optional<PropertyValue>& current, int from,
                                                           int to) const;
    // The initial properties of an item made in a lane.
    PropertyMap newItemValues(int lane) const;
    // The folder's settings with this board's lanes kept, stored along with a moved card so that a
    // lane the card leaves empty stays for cards to come back to (options the notes' values alone
    // give go with their last value): the key typed as the board reads it when the settings don't
    // type it, and every lane's option listed, after those listed already, in the lanes' order.
    FolderColumns keepingLanes(FolderColumns settings) const;
};

} // namespace orwick
