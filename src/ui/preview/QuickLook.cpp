#include "ui/preview/QuickLook.h"

#include "ui/preview/PreviewFollower.h"
#include "ui/preview/PreviewLoad.h"
#include "ui/preview/PreviewView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace orwick {

QuickLook::QuickLook(WindowState* window, QWidget* parentWindow) : QWidget(parentWindow), m_window(window)
{
    hide();
    setFocusPolicy(Qt::StrongFocus);
    setAutoFillBackground(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(48, 32, 48, 32);
    m_view = new PreviewView(this);
    layout->addWidget(m_view);
    m_follower = new PreviewFollower(window, m_view, this);
    connect(m_view, &PreviewView::taskToggleRequested, this, &QuickLook::taskToggleRequested);
    connect(window, &WindowState::quickLookRequested, this, [this] { isOpen() ? close() : open(); });
    parentWindow->installEventFilter(this); // follows the window's size
}

void QuickLook::open()
{
    if (isOpen())
        return;
    m_returnFocus = QApplication::focusWidget();
    setGeometry(parentWidget()->rect());
    const qreal ratio = devicePixelRatioF();
    m_follower->load()->setBox((size() * ratio).expandedTo(QSize(256, 256)), std::min(900, width() - 140));
    show();
    raise();
    setFocus(Qt::OtherFocusReason);
    m_follower->setActive(true);
}

void QuickLook::close()
{
    if (!isOpen())
        return;
    m_follower->setActive(false);
    hide();
    if (m_returnFocus && m_returnFocus->isVisible())
        m_returnFocus->setFocus(Qt::OtherFocusReason);
    m_returnFocus = nullptr;
}

void QuickLook::keyPressEvent(QKeyEvent* event)
{
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!plain) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Space: close(); break;
    case Qt::Key_Up:
    case Qt::Key_Left: m_window->activePane()->moveCursor(-1, false); break;
    case Qt::Key_Down:
    case Qt::Key_Right: m_window->activePane()->moveCursor(1, false); break;
    default: QWidget::keyPressEvent(event); return;
    }
    event->accept();
}

bool QuickLook::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isOpen())
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void QuickLook::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
}

} // namespace orwick
