// Fuzzes the reader of frecency.json, the record of visited folders. Any JSON must read without
// crashing; every entry has an absolute folder, a positive visit weight and a time; and a record
// written reads back exactly, so a save never changes a ranking.

#include "FuzzCheck.h"
#include "commands/Frecency.h"

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const auto entries = Frecency::fromJson(QJsonDocument::fromJson(fuzz::bytesOf(bytes, size)));
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        check(it.key().native().startsWith('/'), "a remembered folder is absolute");
        check(it->count > 0.0 && std::isfinite(it->count), "a visit weight is positive");
    }
    check(Frecency::fromJson(Frecency::toJson(entries)) == entries, "a record written reads back the same");
    return 0;
}
