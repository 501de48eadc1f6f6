#include "platform/ThreadPriority.h"

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
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kNiceness);
}

} // namespace orwick
