// Fuzzes the reader of shelf.json, the items gathered on the shelf. Any JSON must read without
// crashing; every item is an absolute path and none is there twice; and a shelf written reads
// back exactly, so a save never loses or reorders an item (names that aren't UTF-8 included).

#include "FuzzCheck.h"
#include "places/Shelf.h"

#include <QSet>

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QList<FilePath> items = Shelf::fromJson(QJsonDocument::fromJson(fuzz::bytesOf(bytes, size)));
    QSet<FilePath> seen;
    for (const FilePath& item : items) {
        check(item.native().startsWith('/'), "a shelved item is an absolute path");
        check(!seen.contains(item), "an item is on the shelf once");
        seen.insert(item);
    }
    check(Shelf::fromJson(Shelf::toJson(items)) == items, "a shelf written reads back the same");
    return 0;
}
