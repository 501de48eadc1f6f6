#include "images/ImagePdf.h"

#include "images/ImageRead.h"
#include "images/LongestSide.h"
#include "platform/UniqueFd.h"

#include <QBuffer>
#include <QFile>
#include <QPageLayout>
#include <QPainter>
#include <QPdfDocument>
#include <QPdfWriter>
#include <fcntl.h>

namespace orwick {

namespace {

// PDF readers refuse pages larger than 200 inches on a side; a huge picture's page shrinks to it.
constexpr qreal kLargestPagePoints = 14400;
// The margin around an item on an A4 or Letter page: half an inch.
constexpr qreal kPageMarginPoints = 36;

QString quoted(const FilePath& file) { return QStringLiteral("“%1”").arg(file.fileName()); }

// A PDF says so in its first kilobyte ("%PDF-"); a file named .pdf is taken as one too, so a
// damaged one is told as a damaged PDF.
bool isPdf(const FilePath& file)
{
    QFile device;
    if (openPictureFile(device, file) && device.read(1024).contains("%PDF-"))
        return true;
    return file.extension().compare(QStringLiteral("pdf"), Qt::CaseInsensitive) == 0;
}

// Writes the items' pages one after another. Every page is laid out before it is begun, since
// the writer takes a page's size from the layout set when the page starts.
class PdfPages {
public:
    explicit PdfPages(PdfPageSize size) : m_size(size), m_writer(&m_buffer)
    {
        // A buffer in memory, not a file: the bytes go to disk through the engine (or the clipboard).
        m_buffer.open(QIODevice::WriteOnly);
        m_writer.setCreator(QStringLiteral("Orwick"));
        m_writer.setResolution(72); // painter units are points
    }

    // One page showing `image`, for an item `points` large.
    bool add(const QImage& image, QSizeF points)
    {
        const QPageLayout layout = layoutFor(points);
        m_writer.setPageLayout(layout);
        if (m_painter.isActive())
            m_writer.newPage();
        else if (!m_painter.begin(&m_writer))
            return false;
        const QRectF page = layout.fullRectPoints();
        const QRectF room = m_size == PdfPageSize::fit ? page : page.adjusted(kPageMarginPoints, kPageMarginPoints, -kPageMarginPoints, -kPageMarginPoints);
        QSizeF shown = points.scaled(room.size(), Qt::KeepAspectRatio);
        if (m_size != PdfPageSize::fit && points.width() <= room.width() && points.height() <= room.height())
            shown = points; // a small picture keeps its size, centred
        QRectF target(QPointF(), shown);
        target.moveCenter(room.center());
        m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
        m_painter.drawImage(target, image);
        return true;
    }

    QByteArray finish()
    {
        m_painter.end();
        m_buffer.close();
        return m_buffer.data();
    }

private:
    QPageLayout layoutFor(QSizeF points) const
    {
        const QPageLayout::Orientation turn = points.width() > points.height() ? QPageLayout::Landscape : QPageLayout::Portrait;
        if (m_size == PdfPageSize::a4)
            return QPageLayout(QPageSize(QPageSize::A4), turn, QMarginsF());
        if (m_size == PdfPageSize::letter)
            return QPageLayout(QPageSize(QPageSize::Letter), turn, QMarginsF());
        QSizeF page = points;
        if (page.width() > kLargestPagePoints || page.height() > kLargestPagePoints)
            page = page.scaled(kLargestPagePoints, kLargestPagePoints, Qt::KeepAspectRatio);
        page = page.expandedTo(QSizeF(1, 1));
        // The page size as given (not snapped to a paper size a few points away), upright; the
        // orientation turns it back for a wide item.
        const QSizeF upright(std::min(page.width(), page.height()), std::max(page.width(), page.height()));
        return QPageLayout(QPageSize(upright, QPageSize::Point, QString(), QPageSize::ExactMatch), turn, QMarginsF());
    }

    PdfPageSize m_size;
    QBuffer m_buffer;
    QPdfWriter m_writer;
    QPainter m_painter;
};

// A page drawn by Qt PDF, laid on white (Qt PDF leaves the paper transparent).
QImage onWhite(const QImage& drawn)
{
    QImage page(drawn.size(), QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    painter.drawImage(0, 0, drawn);
    return page;
}

Status addPicture(PdfPages& pages, const FilePath& item, const CancelFlag& cancel)
{
    auto picture = readPicture(item, longestSideAtMost(kPdfPictureLongestSide), cancel);
    if (!picture)
        return failure(picture.error());
    // At 72 pixels to the inch, a pixel of the picture is a point of the page.
    if (!pages.add(picture->image, QSizeF(picture->size)))
        return failure(QStringLiteral("The PDF couldn’t be written."));
    return {};
}

Status addPdfPages(PdfPages& pages, const FilePath& item, const CancelFlag& cancel)
{
    // Opened by its bytes and handed over as /proc/self/fd/N, so any file name works.
    UniqueFd fd(::open(item.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!fd.ok())
        return failure(QStringLiteral("Can’t read %1.").arg(quoted(item)));
    QPdfDocument document;
    const QPdfDocument::Error error = document.load(QStringLiteral("/proc/self/fd/%1").arg(fd.get()));
    if (error == QPdfDocument::Error::IncorrectPassword)
        return failure(QStringLiteral("%1 is protected by a password, so its pages can’t be combined.").arg(quoted(item)));
    if (error != QPdfDocument::Error::None || document.pageCount() < 1)
        return failure(QStringLiteral("%1 can’t be read: the PDF is damaged or has no pages.").arg(quoted(item)));
    for (int index = 0; index < document.pageCount(); ++index) {
        if (cancel.isCancelled())
            return failure(QString());
        const QSizeF points = document.pagePointSize(index);
        if (points.isEmpty())
            return failure(QStringLiteral("Page %1 of %2 can’t be read: the PDF is damaged.").arg(index + 1).arg(quoted(item)));
        const QSize pixels = longestSideAtMost(kPdfPictureLongestSide)((points * kPdfRedrawDpi / 72).toSize().expandedTo(QSize(1, 1)));
        const QImage drawn = document.render(index, pixels);
        if (drawn.isNull())
            return failure(QStringLiteral("Page %1 of %2 can’t be drawn: the PDF is damaged.").arg(index + 1).arg(quoted(item)));
        if (!pages.add(onWhite(drawn), points))
            return failure(QStringLiteral("The PDF couldn’t be written."));
    }
    return {};
}

} // namespace

Result<QByteArray> combineIntoPdf(const QList<FilePath>& items, PdfPageSize size, const CancelFlag& cancel)
{
    if (items.isEmpty())
        return failure(QStringLiteral("There is nothing to combine into a PDF."));
    PdfPages pages(size);
    for (const FilePath& item : items) {
        if (cancel.isCancelled())
            return failure(QString());
        const Status added = isPdf(item) ? addPdfPages(pages, item, cancel) : addPicture(pages, item, cancel);
        if (!added)
            return failure(added.error());
    }
    return pages.finish();
}

} // namespace orwick
