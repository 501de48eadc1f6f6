#pragma once
// startDetached(): the one way to run work that may block in the kernel for good — a read on a
// network mount whose server went away can't be cancelled — so it can't be on a pool whose end
// the application waits for. The work gets a thread of its own, left to end when it can.
//
// At the application's end such threads are given a short while (kDetachedGraceMs) to finish,
// so that one still reading the drive list doesn't run on while the program's statics are being
// destroyed; one held by a dead server is left behind (and can post nothing: GuiDelivery.h).

#include <functional>

namespace orwick {

constexpr int kDetachedGraceMs = 500;

void startDetached(std::function<void()> work);

// Waits until no detached work runs, or `limitMs` has passed; true when none runs.
bool waitForDetachedWork(int limitMs);

} // namespace orwick
