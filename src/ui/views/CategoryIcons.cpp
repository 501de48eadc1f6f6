#include "ui/views/CategoryIcons.h"

#include "ui/theme/Theme.h"

#include <QApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
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

// Draws the icon at the size it is asked for, when first asked: a list needs one small size and
// a start would otherwise draw six, up to 128 pixels with its mark, for every category it shows.
class DrawnIconEngine : public QIconEngine {
public:
    DrawnIconEngine(FileCategory category, bool link, bool broken) : m_category(category), m_link(link), m_broken(broken) {}

    QIconEngine* clone() const override { return new DrawnIconEngine(m_category, m_link, m_broken); }
    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override
    {
        const int side = std::min(size.width(), size.height());
        return {side, side};
    }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {QSize(16, 16), QSize(24, 24), QSize(32, 32), QSize(48, 48), QSize(64, 64), QSize(128, 128)};
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        const int side = std::min(size.width(), size.height());
        if (side <= 0)
            return {};
        const qint64 key = qint64(side) * 8 + int(mode);
        if (const auto found = m_drawn.constFind(key); found != m_drawn.constEnd())
            return *found;
        QPixmap drawn = draw(m_category, side, m_link, m_broken);
        if (mode != QIcon::Normal) { // as the style dims any icon (a disabled row, say)
            QStyleOption option;
            drawn = QApplication::style()->generatedIconPixmap(mode, drawn, &option);
        }
        m_drawn.insert(key, drawn);
        return drawn;
    }
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal scale = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        QPixmap drawn = pixmap(rect.size() * scale, mode, state);
        drawn.setDevicePixelRatio(scale);
        painter->drawPixmap(rect, drawn);
    }

private:
    FileCategory m_category;
    bool m_link, m_broken;
    QHash<qint64, QPixmap> m_drawn;
};

QIcon makeIcon(FileCategory category, bool link, bool broken)
{
    return QIcon(new DrawnIconEngine(category, link, broken));
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
