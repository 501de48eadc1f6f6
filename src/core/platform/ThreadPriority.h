#pragma once
// Lowering a worker thread's share of the CPU, for work the user glances at while moving on (the
// preview panel's loads, thumbnails): on a busy machine such a thread gives the CPU to the GUI
// thread first, so a keystroke is never late behind a preview being read. The thread still runs
// at once on an idle core.

namespace orwick {

// Makes the calling thread nice (10, as `nice` does by default), unless it is nicer already.
// Once per thread; later calls cost a thread-local test. Best effort: a refusal leaves the
// thread as it was.
void lowerThisThreadsPriority();

} // namespace orwick
