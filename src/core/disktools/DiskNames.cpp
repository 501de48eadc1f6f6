#include "disktools/DiskNames.h"

#include "files/FileCategory.h"

#include <QLocale>

namespace orwick {

bool isPackageFolderName(QByteArrayView name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || dot == name.size() - 1 || name.size() - dot > 16)
        return false;
    return isPackageExtension(QString::fromUtf8(name.sliced(dot + 1)).toLower());
}

QString byteCountText(qint64 bytes)
{
    if (bytes == 1)
        return QStringLiteral("1 byte");
    if (bytes < 1000)
        return QLocale().toString(bytes) + QStringLiteral(" bytes");
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

} // namespace orwick
