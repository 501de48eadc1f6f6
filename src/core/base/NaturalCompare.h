#pragma once
// The order people expect for names: case-insensitive, accents folded, digit runs by value
// ("file2" before "file10"), then by character. It does not depend on the process locale
// (QCollator's numeric mode does nothing under C.UTF-8) and never calls a collator per
// comparison: fold each name once, then compare the folded texts.

#include <QString>
#include <QStringView>
#include <string>

namespace orwick {

// A name prepared for natural comparison (folded case and accents).
struct NaturalKey {
    QString folded;
};

// Appends the folded form of `name` to `out` (ASCII names fold without allocating).
void appendNaturalFold(QStringView name, QString& out);

inline NaturalKey naturalKey(const QString& name)
{
    NaturalKey key;
    appendNaturalFold(name, key.folded);
    return key;
}

// Compares two folded texts; <0, 0, >0 like strcmp.
int naturalCompareFolded(QStringView a, QStringView b);

// Appends a sort key of a folded text whose plain unit-by-unit order is the natural order
// (digit runs become a marker, their significant length, the digits and the count of leading
// zeros), so that sorting many names compares flat arrays.
void appendNaturalSortKey(QStringView folded, std::u16string& out);

inline int naturalCompare(const NaturalKey& a, const NaturalKey& b) { return naturalCompareFolded(a.folded, b.folded); }
inline int naturalCompare(const QString& a, const QString& b) { return naturalCompare(naturalKey(a), naturalKey(b)); }

} // namespace orwick
