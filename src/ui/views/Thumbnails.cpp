#include "ui/views/Thumbnails.h"

#include "async/GuiDelivery.h"
#include "images/ImageRead.h"
#include "platform/MountTable.h"
#include "platform/ThreadPriority.h"

#include <QPointer>

namespace orwick {
namespace {

constexpr qint64 kMaxSourceBytes = 200LL * 1024 * 1024;
constexpr int kCachePixels = 64 * 1024 * 1024; // about 256 MB of ARGB at most

QByteArray keyOf(const FileItem& item, int edge)
{
    return item.url.native() + '\0' + QByteArray::number(item.modified) + '\0' + QByteArray::number(edge);
}

// Through the picture tools' reader: opened by the path's bytes, upright, a damaged or cut-short
// picture refused, a large one decoded scaled (JPEG, SVG) or refused past the bounded size.
QImage readScaled(const FilePath& path, int edge)
{
    const CancelFlag never;
    auto picture = readPicture(path, [edge](QSize full) {
        return full.width() > edge || full.height() > edge ? full.scaled(edge, edge, Qt::KeepAspectRatio) : full;
    }, never);
    if (!picture)
        return {};
    QImage image = std::move(picture->image);
    if (image.width() > edge || image.height() > edge)
        image = smoothlyScaled(std::move(image), QSize(edge, edge), Qt::KeepAspectRatio);
    return image;
}

} // namespace

Thumbnails::Thumbnails(QObject* parent) : QObject(parent)
{
    m_cache.setMaxCost(kCachePixels);
    m_pool.setMaxThreadCount(2);
}

Thumbnails::~Thumbnails()
{
    m_pool.clear();
    m_pool.waitForDone();
}

bool Thumbnails::hasThumbnail(const FileItem& item)
{
    return item.category == FileCategory::image && !item.isFolder && item.size.value_or(0) > 0
        && *item.size <= kMaxSourceBytes && !item.brokenTarget;
}

QImage Thumbnails::thumbnail(const FileItem& item, int edge)
{
    const QByteArray key = keyOf(item, edge);
    if (const QImage* cached = m_cache.object(key))
        return *cached;
    if (m_pending.contains(key) || m_failed.contains(key))
        return {};
    // Pictures on a server are not read for thumbnails: a server that stops answering would
    // hold a reader here, and the window's closing with it.
    if (isOnNetworkMount(item.destination)) {
        m_failed.insert(key);
        return {};
    }
    m_pending.insert(key);
    QPointer<Thumbnails> self(this);
    const FilePath path = item.destination;
    const FilePath url = item.url;
    // Later requests get higher priority: what is on screen now is made first.
    m_pool.start([self, key, path, url, edge] {
        lowerThisThreadsPriority(); // a thumbnail is glance work: the GUI thread goes first
        QImage image = readScaled(path, edge);
        deliverToGui(self, [key, url, image = std::move(image)](Thumbnails& thumbnails) {
            thumbnails.m_pending.remove(key);
            if (image.isNull()) {
                thumbnails.m_failed.insert(key);
                return;
            }
            thumbnails.m_cache.insert(key, new QImage(image), int(std::min<qint64>(qint64(image.width()) * image.height(), kCachePixels)));
            Q_EMIT thumbnails.ready(url);
        });
    }, ++m_priority);
    return {};
}

} // namespace orwick
