#include "ui/preview/PreviewImageView.h"

#include <QPainter>

namespace orwick {

PreviewImageView::PreviewImageView(QWidget* parent) : QWidget(parent)
{
    setMinimumSize(40, 40);
}

void PreviewImageView::setImage(QImage image, bool paper)
{
    m_image = std::move(image);
    m_paper = paper;
    update();
}

void PreviewImageView::paintEvent(QPaintEvent*)
{
    if (m_image.isNull())
        return;
    QPainter painter(this);
    const qreal ratio = devicePixelRatioF();
    QSizeF shown = QSizeF(m_image.size()) / ratio;
    const QSizeF room = QSizeF(size()) - QSizeF(16, 16);
    if (shown.width() > room.width() || shown.height() > room.height())
        shown = shown.scaled(room.expandedTo(QSizeF(1, 1)), Qt::KeepAspectRatio);
    const QRectF target(QPointF((width() - shown.width()) / 2, 8), shown);
    if (m_paper)
        painter.fillRect(target, Qt::white);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, m_image);
}

} // namespace orwick
