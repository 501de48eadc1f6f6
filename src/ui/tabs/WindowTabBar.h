#pragma once
// WindowTabBar: the window's row of tabs, one per tab of its WindowState, each showing its active
// pane's folder name. A QTabBar (movable, closable, elided in the middle) that MainWindow fills
// with setTabs() and that forwards the user's picks through QTabBar's own signals.
//
// Sizing a tab asks the style and measures its title, and QTabBar sizes every tab again each
// time one is added or renamed: a window restored with many tabs would measure them all once per
// tab added. Here a tab's size is measured once per title (and state that changes it) and then
// taken from a table, so laying out the bar costs a lookup per tab; the table is emptied when
// the font or the style changes. setTabs() touches only the tabs whose title or tooltip changed.

#include <QHash>
#include <QTabBar>

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

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    void changeEvent(QEvent* event) override;

private:
    // What a tab's size depends on besides the bar's font and style.
    struct SizeKey {
        QString title;
        bool selected = false;
        int edge = 0; // first, last, the only one, or between (styles may round the ends)
        bool leftButton = false;
        bool rightButton = false;
        bool minimum = false;
        bool operator==(const SizeKey&) const = default;
    };
    friend size_t qHash(const SizeKey& key, size_t seed)
    {
        return qHashMulti(seed, key.title, key.selected, key.edge, key.leftButton, key.rightButton, key.minimum);
    }
    SizeKey keyFor(int index, bool minimum) const;

    mutable QHash<SizeKey, QSize> m_sizes;
    mutable bool m_measuringMinimum = false;
};

} // namespace orwick
