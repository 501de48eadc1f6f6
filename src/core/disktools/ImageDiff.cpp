#include "disktools/ImageDiff.h"

#include "images/ImageRead.h"
#include "images/LongestSide.h"

#include <QPainter>
#include <algorithm>
#include <cstdlib>

namespace orwick::ImageDiff {

QImage load(const FilePath& file, int maxPixels)
{
    // Through the picture tools' reader, so both sides are upright as the preview shows them.
    auto picture = readPicture(file, longestSideAtMost(maxPixels), CancelFlag());
    return picture ? std::move(picture->image) : QImage();
}

std::optional<Result> compare(const QImage& left, const QImage& right)
{
    if (left.isNull() || right.isNull())
        return std::nullopt;
    Result result;
    result.sameSize = left.size() == right.size();
    const QImage a = left.convertToFormat(QImage::Format_RGBA8888);
    QImage b(left.size(), QImage::Format_RGBA8888);
    if (result.sameSize) {
        b = right.convertToFormat(QImage::Format_RGBA8888);
    } else {
        b.fill(Qt::transparent);
        QPainter painter(&b);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(QRect(QPoint(0, 0), left.size()), right);
    }
    QImage out(left.size(), QImage::Format_RGBA8888);
    qint64 differing = 0;
    for (int y = 0; y < a.height(); ++y) {
        const uchar* pa = a.constScanLine(y);
        const uchar* pb = b.constScanLine(y);
        uchar* po = out.scanLine(y);
        for (int x = 0; x < a.width(); ++x, pa += 4, pb += 4, po += 4) {
            int d = 0;
            for (int c = 0; c < 4; ++c)
                d = std::max(d, std::abs(int(pa[c]) - int(pb[c])));
            const int g = ((3 * pa[0] + 6 * pa[1] + pa[2]) * 8739 >> 18) + 40;
            if (d < kThreshold) {
                po[0] = po[1] = po[2] = uchar(g);
            } else {
                ++differing;
                po[0] = uchar(std::min(d, 135) + 120);
                po[1] = po[2] = uchar(g / 3);
            }
            po[3] = 255;
        }
    }
    const qint64 all = qint64(a.width()) * a.height();
    result.changed = all == 0 ? 0 : double(differing) / double(all);
    result.image = out;
    return result;
}

QString summary(const Result& result)
{
    QString text;
    if (result.changed == 0)
        text = QStringLiteral("No pixels differ");
    else if (result.changed * 100 < 0.1)
        text = QStringLiteral("Under 0.1% of pixels differ");
    else
        text = QString::asprintf("%.1f%% of pixels differ", result.changed * 100);
    if (!result.sameSize)
        text += QStringLiteral(" · different shapes, compared at the left one's size");
    return text + QStringLiteral(" · S switches view");
}

QString unreadableMessage() { return QStringLiteral("Couldn't read these pictures"); }

} // namespace orwick::ImageDiff
