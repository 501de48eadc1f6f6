#pragma once
// Thumbnails of pictures for the grid: made off the GUI thread from a scaled read, kept in a
// cache bounded by pixels, newest requests first (what was just scrolled to is made before what
// scrolled past). Asking never waits: it returns what is cached, else nothing and starts the
// work. ready() follows each finished thumbnail, on the GUI thread.

#include "files/FileItem.h"

#include <QCache>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QThreadPool>

namespace orwick {

class Thumbnails : public QObject {
    Q_OBJECT
public:
    explicit Thumbnails(QObject* parent = nullptr);
    ~Thumbnails() override;

    // True for items a thumbnail is made of (pictures that are not too large to read).
    static bool hasThumbnail(const FileItem& item);
    // The cached thumbnail no larger than `edge` pixels on its longer side, or a null image
    // while it is being made (or when the file can't be read).
    QImage thumbnail(const FileItem& item, int edge);

Q_SIGNALS:
    void ready(const orwick::FilePath& url);

private:
    QCache<QByteArray, QImage> m_cache;
    QSet<QByteArray> m_pending;
    QSet<QByteArray> m_failed;
    QThreadPool m_pool;
    int m_priority = 0;
};

} // namespace orwick
