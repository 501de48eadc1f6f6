#include "platform/ThreadPriority.h"

#include <cerrno>
#include <sys/resource.h>
#include <unistd.h>

namespace orwick {

namespace {
constexpr int kNiceness = 10;
} // namespace

void lowerThisThreadsPriority()
{
    thread_local bool lowered = false;
    if (lowered)
        return;
    lowered = true;
    // On Linux a thread is a task of its own: PRIO_PROCESS with its thread id sets this one only.
    // A thread that is nicer already (Orwick started with `nice`) stays as it is.
    const id_t thread = static_cast<id_t>(::gettid());
    errno = 0;
    const int current = ::getpriority(PRIO_PROCESS, thread);
    if (errno == 0 && current < kNiceness)
        ::setpriority(PRIO_PROCESS, thread, kNiceness);
}

} // namespace orwick
