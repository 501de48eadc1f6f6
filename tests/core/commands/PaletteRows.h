#pragma once
// What the palette's tests read off ranked rows: the section headings in order, a section by its
// heading (null when there is none), and the ids of a section's rows.

#include "commands/PaletteRanking.h"

#include <QStringList>

namespace orwick::test {

inline QStringList headings(const QList<PaletteSection>& sections)
{
    QStringList result;
    for (const PaletteSection& section : sections)
        result.append(section.heading);
    return result;
}

inline const PaletteSection* section(const QList<PaletteSection>& sections, const QString& heading)
{
    for (const PaletteSection& s : sections)
        if (s.heading == heading)
            return &s;
    return nullptr;
}

inline QStringList ids(const QList<PaletteItem>& items)
{
    QStringList result;
    for (const PaletteItem& item : items)
        result.append(item.id);
    return result;
}

} // namespace orwick::test
