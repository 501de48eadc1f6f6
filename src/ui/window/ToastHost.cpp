#include "ui/window/ToastHost.h"

#include "ui/theme/Theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTimer>

namespace orwick {

namespace {
constexpr int kShownMs = 4000;
constexpr int kShownWithActionMs = 7000;
} // namespace

ToastHost::ToastHost(QWidget* window) : QWidget(window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents, false);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 8, 10, 8);
    layout->setSpacing(12);
    m_label = new QLabel(this);
    m_button = new QPushButton(this);
    m_button->setFlat(true);
    m_button->setFocusPolicy(Qt::NoFocus);
    m_button->setCursor(Qt::PointingHandCursor);
    QPalette palette = m_label->palette();
    palette.setColor(QPalette::WindowText, theme::toastText());
    palette.setColor(QPalette::ButtonText, theme::accent().lighter(theme::isDark() ? 80 : 150));
    m_label->setPalette(palette);
    m_button->setPalette(palette);
    QFont bold = m_button->font();
    bold.setBold(true);
    m_button->setFont(bold);
    layout->addWidget(m_label);
    layout->addWidget(m_button);
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, &QWidget::hide);
    connect(m_button, &QPushButton::clicked, this, [this] {
        hide();
        if (auto action = std::exchange(m_action, {}))
            action();
    });
    window->installEventFilter(this);
    hide();
}

void ToastHost::show(const QString& message, const QString& actionTitle, std::function<void()> action)
{
    m_label->setText(message);
    m_action = std::move(action);
    m_button->setText(actionTitle);
    m_button->setVisible(!actionTitle.isEmpty() && m_action);
    adjustSize();
    place();
    QWidget::show();
    raise();
    m_timer->start(m_button->isVisible() ? kShownWithActionMs : kShownMs);
}

void ToastHost::dismiss()
{
    m_timer->stop();
    m_action = {};
    hide();
}

QString ToastHost::currentMessage() const { return isVisible() ? m_label->text() : QString(); }

void ToastHost::place()
{
    const QWidget* window = parentWidget();
    const QSize size = sizeHint();
    move((window->width() - size.width()) / 2, window->height() - size.height() - 36);
    resize(size);
}

bool ToastHost::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible())
        place();
    return QWidget::eventFilter(watched, event);
}

void ToastHost::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme::toastBackground());
    painter.drawRoundedRect(rect(), theme::cornerRadius() * 1.5, theme::cornerRadius() * 1.5);
}

} // namespace orwick
