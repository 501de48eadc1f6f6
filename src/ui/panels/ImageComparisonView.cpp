#include "ui/panels/ImageComparisonView.h"

#include "commands/ViewKeys.h"
#include "ui/theme/Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace orwick {

ImageComparisonView::ImageComparisonView(const FilePath& left, const FilePath& right, QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMinimumHeight(200);
    const TaskSlot::Ticket ticket = m_task.start();
    runInBackground(this, [left, right] {
        Loaded loaded{ImageDiff::load(left), ImageDiff::load(right), std::nullopt};
        loaded.result = ImageDiff::compare(loaded.left, loaded.right);
        return loaded;
    }, [this, ticket](Loaded loaded) {
        if (!m_task.isCurrent(ticket))
            return;
        m_task.finish(ticket);
        m_loaded = true;
        m_leftImage = std::move(loaded.left);
        m_rightImage = std::move(loaded.right);
        m_result = std::move(loaded.result);
        updateFooter();
        update();
        Q_EMIT compared();
    });
    QMetaObject::invokeMethod(this, [this] { updateFooter(); }, Qt::QueuedConnection);
}

ImageComparisonView::~ImageComparisonView() { stop(); }

QString ImageComparisonView::modeTitle(Mode mode)
{
    switch (mode) {
    case Mode::sideBySide: return QStringLiteral("Side by side");
    case Mode::slider: return QStringLiteral("Slider");
    case Mode::difference: return QStringLiteral("Difference");
    }
    return {};
}

QString ImageComparisonView::summary() const
{
    if (!m_loaded)
        return QStringLiteral("Comparing…");
    return m_result ? ImageDiff::summary(*m_result) : ImageDiff::unreadableMessage();
}

void ImageComparisonView::setMode(Mode mode)
{
    m_mode = mode;
    updateFooter();
    update();
}

void ImageComparisonView::updateFooter() { Q_EMIT footerChanged(modeTitle(m_mode) + QStringLiteral(" · ") + summary()); }

QRect ImageComparisonView::fitted(const QSize& image, const QRect& area) const
{
    if (image.isEmpty() || area.isEmpty())
        return {};
    QSize size = image;
    if (size.width() > area.width() || size.height() > area.height())
        size = size.scaled(area.size(), Qt::KeepAspectRatio);
    return QRect(area.center() - QPoint(size.width() / 2, size.height() / 2), size);
}

void ImageComparisonView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRect area = rect().adjusted(4, 4, -4, -4);
    if (!m_loaded || !m_result) {
        painter.setPen(theme::dimText());
        painter.drawText(area, Qt::AlignCenter, summary());
        return;
    }
    switch (m_mode) {
    case Mode::sideBySide: {
        const QRect leftArea(area.left(), area.top(), area.width() / 2 - 4, area.height());
        const QRect rightArea(area.left() + area.width() / 2 + 4, area.top(), area.width() / 2 - 4, area.height());
        painter.drawImage(fitted(m_leftImage.size(), leftArea), m_leftImage);
        painter.drawImage(fitted(m_rightImage.size(), rightArea), m_rightImage);
        break;
    }
    case Mode::slider: {
        // Both at the left one's size; the right one shows to the right of the slider.
        const QRect target = fitted(m_leftImage.size(), area);
        painter.drawImage(target, m_leftImage);
        const int split = target.left() + int(target.width() * m_slider);
        painter.save();
        painter.setClipRect(QRect(QPoint(split, target.top()), target.bottomRight()));
        painter.drawImage(target, m_rightImage);
        painter.restore();
        painter.setPen(QPen(theme::accent(), 2));
        painter.drawLine(split, target.top(), split, target.bottom());
        break;
    }
    case Mode::difference: painter.drawImage(fitted(m_result->image.size(), area), m_result->image); break;
    }
}

void ImageComparisonView::keyPressEvent(QKeyEvent* event)
{
    using A = ViewKeyAction;
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::fileComparison, event->keyCombination());
    if (action == A::comparePictureView) {
        setMode(m_mode == Mode::sideBySide ? Mode::slider : m_mode == Mode::slider ? Mode::difference : Mode::sideBySide);
        return;
    }
    if (m_mode == Mode::slider && (action == A::compareSliderLeft || action == A::compareSliderRight)) {
        m_slider = std::clamp(m_slider + (action == A::compareSliderLeft ? -0.05 : 0.05), 0.0, 1.0);
        update();
        return;
    }
    QWidget::keyPressEvent(event);
}

void ImageComparisonView::mousePressEvent(QMouseEvent* event) { mouseMoveEvent(event); }

void ImageComparisonView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_mode != Mode::slider || !m_loaded)
        return;
    const QRect target = fitted(m_leftImage.size(), rect().adjusted(4, 4, -4, -4));
    if (target.width() > 0) {
        m_slider = std::clamp(double(event->position().x() - target.left()) / target.width(), 0.0, 1.0);
        update();
    }
}

} // namespace orwick
