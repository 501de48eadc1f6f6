// Fuzzes the reader of trash-log.json, which says where Put Back returns each item. Any JSON must
// read without crashing; every entry it gives has two absolute paths without NUL (Put Back acts
// on them); and the entries the log writes read back exactly.

#include "FuzzCheck.h"
#include "fileops/TrashLog.h"

#include <QJsonObject>

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QHash<FilePath, FilePath> entries = TrashLog::entriesIn(QJsonDocument::fromJson(fuzz::bytesOf(bytes, size)));
    QJsonObject written;
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        for (const FilePath& path : {it.key(), it.value()}) {
            check(path.native().startsWith('/'), "a logged path is absolute");
            check(!path.native().contains('\0'), "a logged path holds no NUL");
        }
        // The log's own format: paths as text, under "entries".
        written.insert(it.key().text(), it.value().text());
    }
    const auto again = TrashLog::entriesIn(QJsonDocument(QJsonObject{{QStringLiteral("entries"), written}}));
    check(again == entries, "the entries a log writes read back the same");
    return 0;
}
