#include "ui/views/CategoryIcons.h"

#include "ui/theme/Theme.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>

namespace orwick {

namespace {

// A one- or two-letter mark inside the page, so categories differ by more than colour.
QString mark(FileCategory category)
{
    switch (category) {
    case FileCategory::image: return QStringLiteral("◩");
    case FileCategory::video: return QStringLiteral("▶");
    case FileCategory::audio: return QStringLiteral("♪");
    case FileCategory::pdf: return QStringLiteral("P");
    case FileCategory::archive: return QStringLiteral("Z");
    case FileCategory::code: return QStringLiteral("{}");
    case FileCategory::data: return QStringLiteral("≡");
    case FileCategory::text: return QStringLiteral("T");
    case FileCategory::diskImage: return QStringLiteral("◎");
    case FileCategory::app: return QStringLiteral("A");
    case FileCategory::package: return QStringLiteral("▣");
    default: return {};
    }
}

QPixmap draw(FileCategory category, int size, bool link, bool broken)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    QColor tint = theme::categoryTint(category);
    if (broken)
        tint.setAlphaF(0.4f);
    const qreal s = size;
    if (category == FileCategory::folder) {
        QPainterPath path;
        path.moveTo(s * 0.08, s * 0.25);
        path.lineTo(s * 0.40, s * 0.25);
        path.lineTo(s * 0.48, s * 0.33);
        path.lineTo(s * 0.92, s * 0.33);
        path.lineTo(s * 0.92, s * 0.82);
        path.lineTo(s * 0.08, s * 0.82);
        path.closeSubpath();
        p.fillPath(path, tint);
    } else {
        QPainterPath page;
        page.moveTo(s * 0.2, s * 0.08);
        page.lineTo(s * 0.62, s * 0.08);
        page.lineTo(s * 0.82, s * 0.28);
        page.lineTo(s * 0.82, s * 0.92);
        page.lineTo(s * 0.2, s * 0.92);
        page.closeSubpath();
        QColor fill = tint;
        fill.setAlphaF(fill.alphaF() * 0.18f);
        p.fillPath(page, fill);
        p.setPen(QPen(tint, std::max(1.0, s / 16)));
        p.drawPath(page);
        const QString letter = mark(category);
        if (!letter.isEmpty()) {
            QFont font = p.font();
            font.setPixelSize(int(s * 0.36));
            font.setBold(true);
            p.setFont(font);
            p.drawText(QRectF(s * 0.2, s * 0.3, s * 0.62, s * 0.58), Qt::AlignCenter, letter);
        }
    }
    if (link) {
        p.setPen(QPen(theme::text(), std::max(1.0, s / 14)));
        p.drawLine(QPointF(s * 0.1, s * 0.9), QPointF(s * 0.35, s * 0.65));
        p.drawLine(QPointF(s * 0.35, s * 0.65), QPointF(s * 0.2, s * 0.65));
        p.drawLine(QPointF(s * 0.35, s * 0.65), QPointF(s * 0.35, s * 0.8));
    }
    return pixmap;
}

QIcon makeIcon(FileCategory category, bool link, bool broken)
{
    QIcon icon;
    for (int size : {16, 24, 32, 48, 64, 128})
        icon.addPixmap(draw(category, size, link, broken));
    return icon;
}

// The icons are drawn in the theme's tints: a new theme draws them afresh.
QHash<int, QIcon>& iconCache(bool links)
{
    static QHash<int, QIcon> plain, linked;
    static int drawnFor = -1;
    if (drawnFor != theme::revision()) {
        drawnFor = theme::revision();
        plain.clear();
        linked.clear();
    }
    return links ? linked : plain;
}

} // namespace

QIcon categoryIcon(FileCategory category)
{
    QHash<int, QIcon>& cache = iconCache(false);
    auto found = cache.find(int(category));
    if (found == cache.end())
        found = cache.insert(int(category), makeIcon(category, false, false));
    return *found;
}

QIcon itemIcon(const FileItem& item)
{
    if (!item.isSymlink())
        return categoryIcon(item.category);
    QHash<int, QIcon>& links = iconCache(true);
    const int key = int(item.category) * 2 + (item.brokenTarget ? 1 : 0);
    auto found = links.find(key);
    if (found == links.end())
        found = links.insert(key, makeIcon(item.category, true, item.brokenTarget.has_value()));
    return *found;
}

} // namespace orwick
