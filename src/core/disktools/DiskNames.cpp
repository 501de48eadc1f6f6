#include "disktools/DiskNames.h"

#include "base/Formatting.h"
#include "files/FileCategory.h"

namespace orwick {

bool isPackageFolderName(QByteArrayView name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || dot == name.size() - 1 || name.size() - dot > 16)
        return false;
    return isPackageExtension(QString::fromUtf8(name.sliced(dot + 1)).toLower());
}

QString byteCountText(qint64 bytes) { return formatByteCount(bytes); }

} // namespace orwick
