#include "ui/tabs/WindowTabBar.h"

#include <QEvent>

namespace orwick {

WindowTabBar::WindowTabBar(QWidget* parent) : QTabBar(parent)
{
    setMovable(true);
    setTabsClosable(true);
    setDocumentMode(true);
    setExpanding(false);
    setFocusPolicy(Qt::NoFocus);
    setElideMode(Qt::ElideMiddle);
}

void WindowTabBar::setTabs(const QList<Tab>& tabs)
{
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
}

WindowTabBar::SizeKey WindowTabBar::keyFor(int index, bool minimum) const
{
    const int edge = (index == 0 ? 1 : 0) | (index == count() - 1 ? 2 : 0);
    return {tabText(index), index == currentIndex(), edge, tabButton(index, LeftSide) != nullptr,
            tabButton(index, RightSide) != nullptr, minimum};
}

QSize WindowTabBar::tabSizeHint(int index) const
{
    // QTabBar asks for the minimum with the title shortened in place: measured, not looked up.
    if (m_measuringMinimum)
        return QTabBar::tabSizeHint(index);
    const SizeKey key = keyFor(index, false);
    if (const auto found = m_sizes.constFind(key); found != m_sizes.constEnd())
        return *found;
    const QSize size = QTabBar::tabSizeHint(index);
    m_sizes.insert(key, size);
    return size;
}

QSize WindowTabBar::minimumTabSizeHint(int index) const
{
    const SizeKey key = keyFor(index, true);
    if (const auto found = m_sizes.constFind(key); found != m_sizes.constEnd())
        return *found;
    m_measuringMinimum = true;
    const QSize size = QTabBar::minimumTabSizeHint(index);
    m_measuringMinimum = false;
    m_sizes.insert(key, size);
    return size;
}

void WindowTabBar::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        m_sizes.clear();
    QTabBar::changeEvent(event);
}

} // namespace orwick
