#include "FileOpsFixture.h"

#include "fileops/ItemCopier.h"
#include "platform/DirectoryReader.h"
#include "platform/XdgPaths.h"

#include <algorithm>

namespace orwick::test {

QList<QByteArray> FileOpsTest::names(const FilePath& folder)
{
    QList<QByteArray> list;
    std::vector<DirEntry> entries;
    if (auto handle = DirectoryHandle::open(folder))
        handle->readEntries(entries);
    for (const DirEntry& entry : entries)
        list.append(entry.name);
    std::sort(list.begin(), list.end());
    return list;
}

QList<QByteArray> FileOpsTest::leftovers(const FilePath& folder)
{
    QList<QByteArray> found = names(folder);
    found.removeIf([](const QByteArray& name) { return !name.startsWith('.') || name.startsWith(".Trash"); });
    return found;
}

bool FileOpsTest::emptyTrash()
{
    return removeTree(xdg::homeTrash()).has_value()
        && removeTree(xdg::orwickDataDir().child(QByteArrayView("trash-log.json"))).has_value();
}

FilePath FileOpsTest::homeTrashFiles() const { return xdg::homeTrash().child(QByteArrayView("files")); }

} // namespace orwick::test
