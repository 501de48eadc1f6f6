#include "fileops/UniqueName.h"

#include "platform/DirectoryReader.h"

#include <sys/stat.h>

namespace orwick {

bool pathExists(const FilePath& path)
{
    struct stat st;
    return lstat(path.c_str(), &st) == 0;
}

FilePath uniqueURL(const FilePath& wanted, bool copySuffix)
{
    const QByteArray name = wanted.fileNameBytes();
    const QString extension = wanted.extension();
    const qsizetype dot = extension.isEmpty() ? -1 : name.lastIndexOf('.');
    const QByteArray base = dot < 0 ? name : name.left(dot);
    const QByteArray suffix = dot < 0 ? QByteArray() : name.mid(dot); // ".ext" as written
    const FilePath folder = wanted.parent();
    int count = 1;
    if (!copySuffix) {
        if (!pathExists(wanted))
            return wanted;
        count = 2;
    }
    for (;; ++count) {
        QByteArray candidate = base;
        if (copySuffix)
            candidate += " copy";
        if (count >= 2)
            candidate += ' ' + QByteArray::number(count);
        candidate += suffix;
        const FilePath path = folder.child(QByteArrayView(candidate));
        if (!pathExists(path))
            return path;
    }
}

bool isSameVolume(const FilePath& a, const FilePath& b)
{
    FilePath existing = b;
    std::optional<EntryStat> second = statPath(existing);
    while (!second && !existing.isRoot()) {
        existing = existing.parent();
        second = statPath(existing);
    }
    const auto first = statPath(a);
    return first && second && first->device == second->device;
}

} // namespace orwick
