// Fuzzes the reader of columns.json and its per-folder settings. Any JSON must read without
// crashing; every entry is either a folder's settings or kept as it was; and what is written reads
// back the same, so a save never changes or loses a folder's columns, filters or colours.

#include "FuzzCheck.h"
#include "notes/ColumnsFile.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace orwick;
using fuzz::check;

namespace {

void checkFolder(const QJsonObject& object)
{
    const auto columns = FolderColumns::fromJson(object);
    if (!columns)
        return;
    const QJsonObject written = columns->toJson();
    const auto again = FolderColumns::fromJson(written);
    check(again.has_value(), "written settings read");
    check(*again == *columns, "written settings read back the same");
    check(again->toJson() == written, "writing twice is writing once");

    // The edits a user makes keep the settings readable.
    FolderColumns edited = *columns;
    for (const QString& key : columns->shown) {
        edited.renameKey(key, key + QStringLiteral(" 2"));
        check(FolderColumns::fromJson(edited.toJson()).has_value(), "settings read after a rename");
        edited.removeKey(key + QStringLiteral(" 2"));
        check(!edited.shown.contains(key + QStringLiteral(" 2")), "a removed key is not shown");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QJsonDocument document = QJsonDocument::fromJson(fuzz::bytesOf(bytes, size));
    const QJsonObject object = document.object();
    checkFolder(object);
    for (auto it = object.begin(); it != object.end(); ++it)
        if (it.value().isObject())
            checkFolder(it.value().toObject());

    const ColumnsFile file = ColumnsFile::fromJson(object);
    check(file.folders.size() + file.unreadable.size() == object.size(), "every entry is read or kept");
    for (auto it = file.unreadable.begin(); it != file.unreadable.end(); ++it)
        check(object.value(it.key()) == it.value(), "an entry that can't be read is kept as it was");
    for (auto it = file.folders.begin(); it != file.folders.end(); ++it)
        check(object.contains(it.key().text()), "a folder's settings stay under its own key");
    const QJsonObject written = file.toJson();
    check(written.size() == object.size(), "writing keeps every entry");
    const ColumnsFile again = ColumnsFile::fromJson(written);
    check(again.folders == file.folders && again.unreadable == file.unreadable, "what is written reads back the same");
    return 0;
}
