#pragma once
// WindowTabBar: the window's row of tabs, one per tab of its WindowState, each showing its active
// pane's folder name and a close mark. A QTabBar (movable, elided in the middle) that MainWindow
// fills with setTabs() and that forwards the user's picks through QTabBar's own signals:
// currentChanged, tabMoved, and tabCloseRequested when a tab's close mark is clicked.
//
// What makes a bar of many tabs cheap to open:
// - The close marks are drawn by the bar (the style's tab close indicator, hovered and pressed
//   like a button) instead of being a button widget per tab, which each had to be made,
//   polished, placed and painted on its own. Room for the mark is kept in every tab, and the
//   title is laid out beside it as the style lays a title beside a tab button. While a tab is
//   dragged to another place the marks are hidden.
// - A tab's size is measured once per title (and state that changes it) and then taken from a
//   table, instead of asking the style and measuring every title each time a tab is added; the
//   table is emptied when the font or the style changes.
// - setTabs() touches only the tabs whose title or tooltip changed.
//
// Squeezed by many tabs, a tab keeps room for a title of up to ten letters whole, and for the
// first and last letters of a longer one; beyond that the bar scrolls.

#include <QHash>
#include <QTabBar>
#include <QTimer>

namespace orwick {

class WindowTabBar : public QTabBar {
    Q_OBJECT
public:
    explicit WindowTabBar(QWidget* parent = nullptr);

    struct Tab {
        QString title;
        QString toolTip;
    };
    // Makes the bar show `tabs` in order: tabs are added or removed at the end, and a title or
    // tooltip is set only where it differs.
    void setTabs(const QList<Tab>& tabs);

    // Where the close mark of the tab at `index` is drawn (empty while a tab is dragged).
    QRect closeRect(int index) const;

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    void initStyleOption(QStyleOptionTab* option, int tabIndex) const override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // What a tab's size depends on besides the bar's font and style.
    struct SizeKey {
        QString title;
        bool selected = false;
        int edge = 0; // first, last, the only one, or between (styles may round the ends)
        bool minimum = false;
        bool operator==(const SizeKey&) const = default;
    };
    friend size_t qHash(const SizeKey& key, size_t seed)
    {
        return qHashMulti(seed, key.title, key.selected, key.edge, key.minimum);
    }
    SizeKey keyFor(int index, bool minimum) const;
    QSize closeSize() const;
    QSize withCloseMark(QSize size) const;
    int closeMarkAt(const QPoint& position) const;
    void setHoveredClose(int index);

    mutable QHash<SizeKey, QSize> m_sizes;
    int m_hoveredClose = -1;
    int m_pressedClose = -1; // drawn sunken: pressed, and the mouse still on it
    bool m_pressOnClose = false; // the press being held went to a close mark…
    int m_closePress = -1;       // …of this tab
    QPoint m_pressPosition;
    bool m_dragging = false; // a tab is being moved: no marks until it has settled
    QTimer m_settling;
};

} // namespace orwick
