#pragma once
// TerminalSplit: one tab's page — its pane grid over its terminal panel, with a draggable
// divider. The panel shows while the tab's TabTerminals is shown, at the height kept for the
// tab; closing it gives the keyboard back to the active pane when the terminal had it.

#include <QSplitter>

namespace orwick {

class PaneGrid;
class TabState;
class TabTerminals;
class TerminalPanel;

class TerminalSplit : public QSplitter {
    Q_OBJECT
public:
    // Takes `grid` as its top part.
    TerminalSplit(TabState* tab, PaneGrid* grid, QWidget* parent = nullptr);

    PaneGrid* grid() const { return m_grid; }
    TerminalPanel* panel() const { return m_panel; }
    // The page that holds `grid`, or null.
    static TerminalSplit* of(PaneGrid* grid);

private:
    void place();

    PaneGrid* m_grid;
    TabTerminals* m_terminals;
    TerminalPanel* m_panel;
};

} // namespace orwick
