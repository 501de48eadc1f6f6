#pragma once
// Name rules the disk walkers share: which folders are packages (shown and measured as one
// file), and how bytes are worded for people.

#include <QByteArrayView>
#include <QString>

namespace orwick {

// A folder whose lower-cased extension is a package extension ("Photos.photoslibrary", "X.APP").
bool isPackageFolderName(QByteArrayView name);

// A byte count as the file list words it (formatByteCount): decimal units ("12 bytes", "3.4 MB"),
// so a panel and the list beside it say the same size the same way.
QString byteCountText(qint64 bytes);

} // namespace orwick
