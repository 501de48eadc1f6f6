#include "fileops/TrashContents.h"

#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "files/Formatting.h"
#include "platform/AllTrashes.h"

#include <dirent.h>

namespace orwick {

QString TrashContents::summary() const { return itemCount(items.size()) + QStringLiteral(", ") + formatByteCount(bytes); }

TrashContents TrashContents::measure(const CancelFlag* cancel) { return measure(trash::allTrashFolders(), cancel); }

TrashContents TrashContents::measure(const QList<FilePath>& trashFolders, const CancelFlag* cancel)
{
    TrashContents contents;
    for (const FilePath& folder : trashFolders) {
        const FilePath files = folder.child(QByteArrayView("files"));
        DIR* dir = ::opendir(files.c_str());
        if (!dir)
            continue;
        while (const dirent* entry = ::readdir(dir)) {
            if (cancel && cancel->isCancelled())
                break;
            const QByteArrayView name(entry->d_name);
            if (name == "." || name == "..")
                continue;
            const FilePath item = files.child(name);
            contents.items.append(item);
            contents.bytes += treeBytes(item);
        }
        ::closedir(dir);
    }
    return contents;
}

} // namespace orwick
