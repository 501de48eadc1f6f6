#pragma once
// The order people expect for names: case-insensitive, digit runs by value ("file2" before
// "file10"), then by character. It does not depend on the process locale (QCollator's numeric
// mode does nothing under C.UTF-8) and never calls a collator per comparison: make a key once
// per item, then compare keys.

#include <QString>

namespace orwick {

// A name prepared for natural comparison (folded case and accents).
struct NaturalKey {
    QString folded;
};

NaturalKey naturalKey(const QString& name);

// <0, 0, >0 like strcmp.
int naturalCompare(const NaturalKey& a, const NaturalKey& b);
inline int naturalCompare(const QString& a, const QString& b) { return naturalCompare(naturalKey(a), naturalKey(b)); }

} // namespace orwick
