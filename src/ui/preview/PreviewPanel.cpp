#include "ui/preview/PreviewPanel.h"

#include "ui/preview/PreviewFollower.h"
#include "ui/preview/PreviewLoad.h"
#include "ui/preview/PreviewView.h"

#include <QVBoxLayout>

namespace orwick {

PreviewPanel::PreviewPanel(WindowState* window, QWidget* parent) : QFrame(parent)
{
    setFrameShape(QFrame::NoFrame);
    setMinimumWidth(200);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_view = new PreviewView(this);
    layout->addWidget(m_view);
    m_follower = new PreviewFollower(window, m_view, this);
    connect(m_view, &PreviewView::taskToggleRequested, this, &PreviewPanel::taskToggleRequested);
}

void PreviewPanel::updateBox()
{
    // Pictures are decoded for the panel's size in device pixels, rounded up so that small
    // changes of width don't decode again.
    const qreal ratio = devicePixelRatioF();
    const int side = int(std::max(width(), height()) * ratio);
    const int rounded = (side + 255) / 256 * 256;
    m_follower->load()->setBox(QSize(rounded, rounded), std::max(120, width() - 48));
}

void PreviewPanel::showEvent(QShowEvent* event)
{
    QFrame::showEvent(event);
    updateBox();
    m_follower->setActive(true);
}

void PreviewPanel::hideEvent(QHideEvent* event)
{
    QFrame::hideEvent(event);
    m_follower->setActive(false);
}

void PreviewPanel::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    updateBox();
}

} // namespace orwick
