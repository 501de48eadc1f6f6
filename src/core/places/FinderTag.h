#pragma once
// FinderTag: one tag as the sidebar, the palette and the file rows show it — its name and its
// colour. Seven colour tags are built in (Red, Orange, Yellow, Green, Blue, Purple, Gray);
// every other name is a user's own tag and has no colour (index 0).
//
// The colour indices are the ones the tag colours have always had on the desktop that made
// them common (0 none, 1 gray, 2 green, 3 purple, 4 blue, 5 yellow, 6 red, 7 orange), so a
// value written by another program keeps its meaning. "Grey" is read as Gray.

#include <QList>
#include <QString>
#include <optional>

namespace orwick {

struct FinderTag {
    QString name;
    int color = 0;

    bool isColor() const { return color != 0; }
    bool operator==(const FinderTag&) const = default;

    // The tag named `name`: a colour tag (in its own spelling) when the name is one, in any
    // letter case; else a user tag with the name as given (trimmed).
    static FinderTag named(const QString& name);
    // The colour tags in the order menus list them.
    static const QList<FinderTag>& colors();
    // The colour index of a name, when it is a colour tag.
    static std::optional<int> colorIndex(const QString& name);
    // Whether two names are the same tag: letter case aside, and Grey is Gray.
    static bool sameName(const QString& a, const QString& b);
};

} // namespace orwick
