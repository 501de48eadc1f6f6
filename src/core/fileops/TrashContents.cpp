#include "fileops/TrashContents.h"

#include "base/Formatting.h"
#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "platform/AllTrashes.h"
#include "platform/ForEachEntry.h"

namespace orwick {

QString TrashContents::summary() const { return itemCount(items.size()) + QStringLiteral(", ") + formatByteCount(bytes); }

TrashContents TrashContents::measure(const CancelFlag* cancel) { return measure(trash::allTrashFolders(), cancel); }

TrashContents TrashContents::measure(const QList<FilePath>& trashFolders, const CancelFlag* cancel)
{
    TrashContents contents;
    for (const FilePath& folder : trashFolders) {
        const FilePath files = folder.child(QByteArrayView("files"));
        forEachEntry(files, cancel, [&](QByteArrayView name, unsigned char) {
            const FilePath item = files.child(name);
            contents.items.append(item);
            contents.bytes += treeBytes(item);
        });
    }
    return contents;
}

} // namespace orwick
