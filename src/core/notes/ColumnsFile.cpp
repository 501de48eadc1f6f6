#include "notes/ColumnsFile.h"

#include "platform/StoreFile.h"
#include "platform/XdgPaths.h"

namespace orwick {

namespace {

StoreFile storeAt(const FilePath& path)
{
    return StoreFile(path, {QStringLiteral("its column settings"), QStringLiteral("folders show their default columns")});
}

} // namespace

FilePath ColumnsFile::location() { return xdg::orwickDataDir().child(QStringLiteral("columns.json")); }

ColumnsFile ColumnsFile::read(const FilePath& path)
{
    ColumnsFile file;
    const auto document = storeAt(path).read();
    if (!document)
        return file;
    return fromJson(document->object());
}

ColumnsFile ColumnsFile::fromJson(const QJsonObject& object)
{
    ColumnsFile file;
    for (auto it = object.begin(); it != object.end(); ++it) {
        const auto columns = it.value().isObject() ? FolderColumns::fromJson(it.value().toObject()) : std::nullopt;
        // A key is a folder's path exactly as written (a name may end in a space); any other
        // spelling ("/a/", "a") is kept as it is rather than merged into another folder's entry.
        const FilePath folder = FilePath::fromNative(it.key().toUtf8());
        if (columns && it.key().startsWith(u'/') && !it.key().contains(u'\0') && folder.text() == it.key())
            file.folders.insert(folder, *columns);
        else
            file.unreadable.insert(it.key(), it.value());
    }
    return file;
}

QJsonObject ColumnsFile::toJson() const
{
    QJsonObject object = unreadable;
    for (auto it = folders.begin(); it != folders.end(); ++it)
        if (isValidUtf8(it.key().native()))
            object.insert(it.key().text(), it.value().toJson());
    return object;
}

Status ColumnsFile::write(const FilePath& path) const
{
    const QJsonObject object = toJson();
    const auto written = storeAt(path).update([&object](const std::optional<QJsonDocument>&) { return QJsonDocument(object); });
    if (!written)
        return failure(written.error());
    return {};
}

} // namespace orwick
