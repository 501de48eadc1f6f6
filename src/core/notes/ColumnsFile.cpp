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
    const QJsonObject object = document->object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        const auto columns = it.value().isObject() ? FolderColumns::fromJson(it.value().toObject()) : std::nullopt;
        if (columns && it.key().startsWith(u'/'))
            file.folders.insert(FilePath::fromText(it.key()), *columns);
        else
            file.unreadable.insert(it.key(), it.value());
    }
    return file;
}

Status ColumnsFile::write(const FilePath& path) const
{
    QJsonObject object = unreadable;
    for (auto it = folders.begin(); it != folders.end(); ++it)
        if (isValidUtf8(it.key().native()))
            object.insert(it.key().text(), it.value().toJson());
    const auto written = storeAt(path).update([&object](const std::optional<QJsonDocument>&) { return QJsonDocument(object); });
    if (!written)
        return failure(written.error());
    return {};
}

} // namespace orwick
