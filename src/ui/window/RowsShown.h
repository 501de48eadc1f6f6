#pragma once
// whenRowsShown(): calls `shown` once a pane's rows are on screen — the end of the window's first
// update after the pane's next arrangement (after its load) that painted the active pane, or of
// the window's first paint at all when the rows came before it. "On screen" means painted and
// flushed to the window, so what runs next competes with nothing the user waits to see: the
// start-up traces take their time here, and a restored tab's other panes begin to read here.
//
// While it waits it watches every event of the application (a few milliseconds, at a start).

#include <functional>

namespace orwick {

class MainWindow;
class PaneState;

void whenRowsShown(MainWindow& window, PaneState* pane, std::function<void()> shown);

} // namespace orwick
