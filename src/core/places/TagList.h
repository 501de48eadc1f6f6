#pragma once
// TagList: the tags of one file as its "user.xdg.tags" attribute holds them, read the forgiving
// way and written back the plain way. A value; what the attribute means lives here only.
//
// Reading copes with what other programs write: names separated by commas (or semicolons,
// newlines or NULs), spaces around them, empty items, the same tag twice (kept once, first
// spelling wins), bytes that are not UTF-8 (kept as they are; shown with U+FFFD). Every name is
// kept, whether Orwick knows it or not, so changing one tag never costs another program's.
// Writing joins the names with commas, as Dolphin writes them; a list without names is no
// attribute at all. Names compare without letter case, and Grey is Gray (FinderTag::sameName).

#include "places/FinderTag.h"

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <optional>

namespace orwick {

class TagList {
public:
    TagList() = default;
    static TagList parse(QByteArrayView attribute);
    // The attribute to write; nothing when there are no tags (the attribute is removed).
    std::optional<QByteArray> toAttribute() const;

    bool isEmpty() const { return m_items.isEmpty(); }
    qsizetype size() const { return m_items.size(); }
    const QList<QByteArray>& items() const { return m_items; }
    // Each name as text, in the attribute's order.
    QStringList names() const;
    // The colour indices of the colour tags among them, in the attribute's order.
    QList<int> colors() const;
    bool contains(const QString& name) const;

    // Adds the tag at the end (a colour tag in its own spelling); false when it was there.
    bool add(const QString& name);
    // Removes the tag in whatever spelling it has; false when it wasn't there.
    bool remove(const QString& name);

    bool operator==(const TagList&) const = default;

private:
    QList<QByteArray> m_items;
};

} // namespace orwick
