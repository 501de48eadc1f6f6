#pragma once
// The action behind a task box in a previewed note: the task on one line of the note is toggled
// (TaskDates::toggle: the box flipped, the done date added or dropped, a recurring task's next
// occurrence added) through the file operations engine, as one undoable change ("Toggle Task")
// on the window's undo stack. Failures reach the window's messages through the engine.

#include "base/FilePath.h"

#include <functional>

namespace orwick {

class WindowState;

namespace actions {

// `done` runs on the GUI thread once the change was applied (or refused).
void toggleTask(WindowState& window, const FilePath& note, int line, std::function<void()> done = {});

} // namespace actions

} // namespace orwick
