#include "async/GuiDelivery.h"

#include <mutex>

namespace orwick {

namespace {

struct Gate {
    std::mutex lock; // not a reader-writer lock: a stream of posts would keep the end waiting
    bool open = false;
};

// Never destroyed: a detached thread may still post while the program's statics are going.
Gate& gate()
{
    static Gate* const gate = new Gate;
    return *gate;
}

void closeGate()
{
    std::lock_guard locked(gate().lock);
    gate().open = false;
}

// Runs as each application object is made, on its thread; the application's end closes the
// gate before anything of it is taken apart.
void openGate()
{
    {
        std::lock_guard locked(gate().lock);
        gate().open = true;
    }
    qAddPostRoutine(closeGate);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(openGate)

ApplicationHold::ApplicationHold()
{
    gate().lock.lock();
    m_open = gate().open;
}

ApplicationHold::~ApplicationHold() { gate().lock.unlock(); }

} // namespace orwick
