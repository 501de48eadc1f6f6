#include "ui/window/ToastHost.h"

#include "ui/text/LiteralText.h"
#include "ui/theme/Theme.h"
#include "ui/theme/ThemeApplier.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <algorithm>

namespace orwick {

namespace {
constexpr int kShownMs = 4000;
constexpr int kShownWithActionMs = 7000;
constexpr int kWidestMessage = 720; // wider messages wrap
constexpr int kWindowMargin = 40;   // kept free on each side of a narrow window
} // namespace

ToastHost::ToastHost(QWidget* window) : QWidget(window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents, false);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 8, 10, 8);
    layout->setSpacing(12);
    m_label = new QLabel(this);
    m_label->setTextFormat(Qt::PlainText); // messages name files, whose names may look like markup
    layout->addWidget(m_label, 1);
    for (int i = 0; i < kMostActions; ++i) {
        auto* button = new QPushButton(this);
        button->setFlat(true);
        button->setFocusPolicy(Qt::NoFocus);
        button->setCursor(Qt::PointingHandCursor);
        QFont bold = button->font();
        bold.setBold(true);
        button->setFont(bold);
        layout->addWidget(button);
        connect(button, &QPushButton::clicked, this, [this, i] {
            hide();
            const QList<ToastAction> actions = std::exchange(m_actions, {});
            if (i < actions.size() && actions[i].run)
                actions[i].run();
        });
        m_buttons[i] = button;
    }
    // Toasts stand out from the window: the theme's text colour is their ground.
    theme::whenChanged(this, [this] {
        QPalette palette = m_label->palette();
        palette.setColor(QPalette::WindowText, theme::toastText());
        palette.setColor(QPalette::ButtonText, theme::accent().lighter(theme::isDark() ? 80 : 150));
        m_label->setPalette(palette);
        for (QPushButton* button : findChildren<QPushButton*>())
            button->setPalette(palette);
    });
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, &QWidget::hide);
    window->installEventFilter(this);
    hide();
}

void ToastHost::show(const QString& message, const QString& actionTitle, std::function<void()> action)
{
    QList<ToastAction> actions;
    if (!actionTitle.isEmpty() && action)
        actions.append({actionTitle, std::move(action)});
    show(message, actions);
}

void ToastHost::show(const QString& message, const QList<ToastAction>& actions)
{
    m_label->setText(message);
    m_actions = actions.mid(0, kMostActions);
    for (int i = 0; i < kMostActions; ++i) {
        m_buttons[i]->setVisible(i < m_actions.size());
        m_buttons[i]->setText(i < m_actions.size() ? literalText(m_actions[i].title) : QString());
    }
    place();
    QWidget::show();
    raise();
    m_timer->start(m_actions.isEmpty() ? kShownMs : kShownWithActionMs);
}

void ToastHost::dismiss()
{
    m_timer->stop();
    m_actions.clear();
    hide();
}

QString ToastHost::currentMessage() const { return isVisible() ? m_label->text() : QString(); }

void ToastHost::place()
{
    const QWidget* window = parentWidget();
    // The label wraps within what is left of the widest toast the window has room for.
    int buttons = 0;
    for (QPushButton* button : m_buttons)
        if (!button->isHidden())
            buttons += button->sizeHint().width() + layout()->spacing();
    const int widest = std::min(kWidestMessage, window->width() - 2 * kWindowMargin);
    const QMargins margins = layout()->contentsMargins();
    const int labelWidth = std::max(80, widest - buttons - margins.left() - margins.right());
    // A message that fits stays on one line as wide as its text; only a longer one wraps. (A
    // wrapping label sized from a measured advance can still break the last word: the advance
    // is rounded, the label's layout isn't.)
    m_label->setWordWrap(false);
    m_label->setMinimumWidth(0);
    m_label->setMaximumWidth(QWIDGETSIZE_MAX);
    const int oneLine = m_label->sizeHint().width();
    m_label->setWordWrap(oneLine > labelWidth);
    m_label->setFixedWidth(std::min(oneLine, labelWidth));
    layout()->invalidate();
    QSize size = sizeHint();
    if (layout()->hasHeightForWidth())
        size.setHeight(std::max(size.height(), layout()->totalHeightForWidth(size.width())));
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
