#include "ui/preview/QuickLook.h"

#include "commands/CommandCatalog.h"
#include "ui/pane/PaneWidget.h"
#include "ui/preview/PreviewFollower.h"
#include "ui/preview/PreviewLoad.h"
#include "ui/preview/PreviewView.h"

#include <QAbstractItemView>
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
    parentWindow->installEventFilter(this);
    qApp->installEventFilter(this);
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

// Space on a pane's list (not while a checkbox cell of the table has the keyboard).
bool QuickLook::isPaneSpace(QObject* watched, QEvent* event) const
{
    if (event->type() != QEvent::KeyPress || watched != QApplication::focusWidget())
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() != Qt::Key_Space || (key->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier || key->isAutoRepeat())
        return false;
    auto* view = qobject_cast<QAbstractItemView*>(watched);
    if (!view || view->window() != parentWidget())
        return false;
    if (view->currentIndex().flags() & Qt::ItemIsUserCheckable)
        return false;
    for (QObject* up = view->parent(); up; up = up->parent())
        if (qobject_cast<PaneWidget*>(up))
            return true;
    return false;
}

bool QuickLook::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isOpen())
        setGeometry(parentWidget()->rect());
    if (isPaneSpace(watched, event)) {
        CommandCatalog::run(QStringLiteral("quickLook"), *m_window);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void QuickLook::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
}

} // namespace orwick
