#include "ui/preview/PreviewImageView.h"

#include <QPainter>

namespace orwick {

namespace {
constexpr int kMargin = 8; // around the picture, in device-independent pixels
} // namespace

PreviewImageView::PreviewImageView(QWidget* parent) : QWidget(parent)
{
    setMinimumSize(40, 40);
}

void PreviewImageView::setImage(QImage image, bool paper, QImage fitted)
{
    m_image = std::move(image);
    m_fitted = std::move(fitted);
    m_paper = paper;
    update();
}

QSize PreviewImageView::room() const
{
    const QSize logical = (size() - QSize(2 * kMargin, 2 * kMargin)).expandedTo(QSize(1, 1));
    return (QSizeF(logical) * devicePixelRatioF()).toSize();
}

QSize PreviewImageView::shownSize(QSize size, QSize room)
{
    if (size.width() <= room.width() && size.height() <= room.height())
        return size;
    return size.scaled(room.expandedTo(QSize(1, 1)), Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

void PreviewImageView::paintEvent(QPaintEvent*)
{
    if (m_image.isNull())
        return;
    const QSize shown = shownSize(m_image.size(), room());
    if (m_fitted.size() != shown)
        m_fitted = shown == m_image.size() ? m_image : m_image.scaled(shown, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const qreal ratio = devicePixelRatioF();
    const QSizeF logical = QSizeF(shown) / ratio;
    const QRectF target(QPointF((width() - logical.width()) / 2, kMargin), logical);
    QPainter painter(this);
    if (m_paper)
        painter.fillRect(target, Qt::white);
    painter.drawImage(target, m_fitted); // one device pixel for each: a blit
}

} // namespace orwick
