#include "notes/ColumnsFile.h"

#include "platform/JsonFile.h"
#include "platform/XdgPaths.h"

#include <cstdio>
#include <unistd.h>

namespace orwick {

FilePath ColumnsFile::location() { return xdg::orwickDataDir().child(QStringLiteral("columns.json")); }

ColumnsFile ColumnsFile::read(const FilePath& path)
{
    ColumnsFile file;
    const auto document = readJsonFile(path);
    if (!document || !document->isObject()) {
        if (::access(path.c_str(), F_OK) != 0)
            return file; // none yet
        const FilePath aside = path.parent().child(QStringLiteral("columns.damaged.json"));
        const bool kept = ::rename(path.c_str(), aside.c_str()) == 0;
        file.message = kept ? QStringLiteral("Orwick couldn’t read its column settings, so folders show their default "
                                             "columns. The damaged file was kept as “%1”.")
                                  .arg(aside.abbreviated())
                            : QStringLiteral("Orwick couldn’t read its column settings (“%1”), so folders show their "
                                             "default columns.")
                                  .arg(path.abbreviated());
        return file;
    }
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
    return writeJsonFile(path, QJsonDocument(object));
}

} // namespace orwick
