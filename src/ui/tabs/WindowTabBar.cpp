#include "ui/tabs/WindowTabBar.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionTab>
#include <QToolTip>

namespace orwick {

namespace {
// Room QTabBar leaves beside a tab button, besides the button itself.
constexpr int kButtonPadding = 4;
// How long a dropped tab takes to slide into its place (QTabBar's animation, and a little more).
constexpr int kSettleMs = 300;
// How many letters of a title a squeezed tab keeps room for.
constexpr qsizetype kTitleKept = 10;
} // namespace

WindowTabBar::WindowTabBar(QWidget* parent) : QTabBar(parent)
{
    setMovable(true);
    setDocumentMode(true);
    setExpanding(false);
    setFocusPolicy(Qt::NoFocus);
    setElideMode(Qt::ElideMiddle);
    setAttribute(Qt::WA_Hover);
    setMouseTracking(true);
    m_settling.setSingleShot(true);
    m_settling.setInterval(kSettleMs);
    connect(&m_settling, &QTimer::timeout, this, [this] {
        m_dragging = false;
        update();
    });
}

void WindowTabBar::setTabs(const QList<Tab>& tabs)
{
    const bool counting = tabs.size() != count();
    if (counting)
        m_hoveredClose = -1;
    while (count() > tabs.size())
        removeTab(count() - 1);
    for (int i = 0; i < tabs.size(); ++i) {
        if (i == count()) {
            addTab(tabs[i].title);
        } else if (tabText(i) != tabs[i].title) {
            setTabText(i, tabs[i].title);
        }
        if (tabToolTip(i) != tabs[i].toolTip)
            setTabToolTip(i, tabs[i].toolTip);
    }
    // QTabBar tells the layout its size has changed only while it is visible; tabs set while the
    // window isn't shown yet would leave the bar at the size the layout last asked it for.
    if (counting)
        updateGeometry();
}

// --- Sizes

QSize WindowTabBar::closeSize() const
{
    return {style()->pixelMetric(QStyle::PM_TabCloseIndicatorWidth, nullptr, this),
            style()->pixelMetric(QStyle::PM_TabCloseIndicatorHeight, nullptr, this)};
}

QSize WindowTabBar::withCloseMark(QSize size) const
{
    const QSize mark = closeSize();
    const int frame = style()->pixelMetric(QStyle::PM_TabBarTabVSpace, nullptr, this);
    return {size.width() + mark.width() + kButtonPadding, std::max(size.height(), mark.height() + frame)};
}

WindowTabBar::SizeKey WindowTabBar::keyFor(int index, bool minimum) const
{
    const int edge = (index == 0 ? 1 : 0) | (index == count() - 1 ? 2 : 0);
    return {tabText(index), index == currentIndex(), edge, minimum};
}

QSize WindowTabBar::tabSizeHint(int index) const
{
    const SizeKey key = keyFor(index, false);
    if (const auto found = m_sizes.constFind(key); found != m_sizes.constEnd())
        return *found;
    const QSize size = withCloseMark(QTabBar::tabSizeHint(index));
    m_sizes.insert(key, size);
    return size;
}

QSize WindowTabBar::minimumTabSizeHint(int index) const
{
    const SizeKey key = keyFor(index, true);
    if (const auto found = m_sizes.constFind(key); found != m_sizes.constEnd())
        return *found;
    // QTabBar would squeeze a tab to three letters ("f...s"), and then shorten "files" to a lone
    // "…" in that room: a tab keeps room for a short title whole, a long one's first and last
    // letters around the ellipsis, and a bar of many tabs scrolls before it says nothing.
    const QString title = tabText(index);
    const QString kept = title.size() <= kTitleKept ? title
                                                    : title.left(kTitleKept / 2) + QChar(0x2026) + title.right(kTitleKept / 2 - 1);
    const QSize whole = tabSizeHint(index);
    const int saved = fontMetrics().horizontalAdvance(title) - fontMetrics().horizontalAdvance(kept);
    const QSize size(whole.width() - std::max(0, saved), whole.height());
    m_sizes.insert(key, size);
    return size;
}

void WindowTabBar::initStyleOption(QStyleOptionTab* option, int tabIndex) const
{
    QTabBar::initStyleOption(option, tabIndex);
    if (tabIndex < 0 || tabIndex >= count())
        return;
    // The title is laid out beside the close mark, as the style lays it beside a tab button. A
    // tab as wide as it asked to be shows its title whole; a narrower one shortens it there.
    option->rightButtonSize = closeSize();
    const auto asked = m_sizes.constFind(keyFor(tabIndex, false));
    if (asked != m_sizes.constEnd() && option->rect.width() >= asked->width())
        return;
    const QRect text = style()->subElementRect(QStyle::SE_TabBarTabText, option, this);
    option->text = fontMetrics().elidedText(tabText(tabIndex), elideMode(), text.width(), Qt::TextShowMnemonic);
}

// --- Close marks

QRect WindowTabBar::closeRect(int index) const
{
    if (m_dragging || index < 0 || index >= count())
        return {};
    // Where the style puts a tab's right button: it depends on the tab's place and state, not
    // on its title, so no title is measured for it.
    QStyleOptionTab option;
    option.initFrom(this);
    option.rect = tabRect(index);
    option.shape = shape();
    option.documentMode = documentMode();
    option.rightButtonSize = closeSize();
    if (index == currentIndex())
        option.state |= QStyle::State_Selected;
    return style()->subElementRect(QStyle::SE_TabBarTabRightButton, &option, this);
}

int WindowTabBar::closeMarkAt(const QPoint& position) const
{
    const int index = tabAt(position);
    return index >= 0 && closeRect(index).contains(position) ? index : -1;
}

void WindowTabBar::setHoveredClose(int index)
{
    if (std::exchange(m_hoveredClose, index) != index)
        update();
}

void WindowTabBar::paintEvent(QPaintEvent* event)
{
    QTabBar::paintEvent(event);
    if (m_dragging)
        return;
    QPainter painter(this);
    for (int i = 0; i < count(); ++i) {
        const QRect rect = closeRect(i);
        if (!rect.intersects(event->rect()))
            continue;
        // As a tab button draws itself: raised under the mouse, sunken while pressed.
        QStyleOption mark;
        mark.initFrom(this);
        mark.rect = rect;
        mark.state &= ~QStyle::State_MouseOver;
        mark.state |= QStyle::State_AutoRaise;
        if (i == m_pressedClose)
            mark.state |= QStyle::State_Sunken;
        else if (i == m_hoveredClose && m_pressedClose < 0 && isEnabled())
            mark.state |= QStyle::State_Raised | QStyle::State_MouseOver;
        if (i == currentIndex())
            mark.state |= QStyle::State_Selected;
        style()->drawPrimitive(QStyle::PE_IndicatorTabClose, &mark, &painter, this);
    }
}

void WindowTabBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        const QPoint at = event->position().toPoint();
        if (const int index = closeMarkAt(at); index >= 0) {
            // A press on a close mark neither selects nor drags its tab.
            m_pressOnClose = true;
            m_closePress = index;
            m_pressedClose = index;
            update();
            event->accept();
            return;
        }
        m_pressPosition = at;
    }
    QTabBar::mousePressEvent(event);
}

void WindowTabBar::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint at = event->position().toPoint();
    if (m_pressOnClose) {
        const int shown = closeRect(m_closePress).contains(at) ? m_closePress : -1;
        if (std::exchange(m_pressedClose, shown) != shown)
            update();
        event->accept();
        return;
    }
    if ((event->buttons() & Qt::LeftButton) && isMovable() && !m_dragging
        && (at - m_pressPosition).manhattanLength() >= QApplication::startDragDistance()) {
        m_dragging = true; // the tab's image moves without its mark; the others slide
        m_hoveredClose = -1;
        update();
    }
    if (!(event->buttons() & Qt::LeftButton))
        setHoveredClose(closeMarkAt(at));
    QTabBar::mouseMoveEvent(event);
}

void WindowTabBar::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_pressOnClose && event->button() == Qt::LeftButton) {
        const int index = m_closePress;
        const bool onIt = closeRect(index).contains(event->position().toPoint());
        m_pressOnClose = false;
        m_closePress = -1;
        m_pressedClose = -1;
        update();
        event->accept();
        if (onIt)
            Q_EMIT tabCloseRequested(index);
        return;
    }
    QTabBar::mouseReleaseEvent(event);
    if (m_dragging)
        m_settling.start(); // the marks come back once the tabs have slid into place
}

bool WindowTabBar::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        if (!m_pressOnClose && !(QApplication::mouseButtons() & Qt::LeftButton))
            setHoveredClose(closeMarkAt(static_cast<QHoverEvent*>(event)->position().toPoint()));
        break;
    case QEvent::HoverLeave:
        setHoveredClose(-1);
        break;
    case QEvent::ToolTip: {
        auto* help = static_cast<QHelpEvent*>(event);
        if (const int index = closeMarkAt(help->pos()); index >= 0) {
            QToolTip::showText(help->globalPos(), tr("Close Tab"), this, closeRect(index));
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QTabBar::event(event);
}

void WindowTabBar::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        m_sizes.clear();
    QTabBar::changeEvent(event);
}

} // namespace orwick
