#include "terminal/ChildReaper.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace orwick {

namespace {
constexpr qint64 kPatienceMs = 3000; // then SIGKILL
constexpr int kPollMs = 100;         // where there is no pidfd to say when
} // namespace

struct ChildReaper::Child {
    pid_t pid;
    int pidfd;
    QElapsedTimer since;
    bool killed = false;
    QSocketNotifier* notifier = nullptr;
};

ChildReaper& ChildReaper::shared()
{
    static ChildReaper* reaper = new ChildReaper(QCoreApplication::instance());
    return *reaper;
}

ChildReaper::ChildReaper(QObject* parent) : QObject(parent), m_timer(new QTimer(this))
{
    m_timer->setInterval(kPollMs);
    connect(m_timer, &QTimer::timeout, this, [this] {
        poll();
        if (m_children.isEmpty())
            m_timer->stop();
    });
}

ChildReaper::~ChildReaper()
{
    for (Child* child : std::as_const(m_children)) {
        delete child->notifier;
        if (child->pidfd >= 0)
            ::close(child->pidfd);
        delete child;
    }
}

void ChildReaper::adopt(pid_t pid, int pidfd)
{
    auto* child = new Child{pid, pidfd, {}, false, nullptr};
    child->since.start();
    m_children.append(child);
    if (pidfd >= 0) {
        child->notifier = new QSocketNotifier(qintptr(pidfd), QSocketNotifier::Read, this);
        connect(child->notifier, &QSocketNotifier::activated, this, &ChildReaper::poll);
    }
    if (!m_timer->isActive())
        m_timer->start(); // also for the SIGKILL of a child that ignores SIGHUP
    poll();
}

void ChildReaper::poll()
{
    for (qsizetype i = m_children.size() - 1; i >= 0; --i) {
        Child* child = m_children[i];
        int status = 0;
        const pid_t done = ::waitpid(child->pid, &status, WNOHANG);
        if (done == child->pid || (done < 0 && errno == ECHILD)) {
            delete child->notifier;
            if (child->pidfd >= 0)
                ::close(child->pidfd);
            delete child;
            m_children.removeAt(i);
        } else if (!child->killed && child->since.elapsed() > kPatienceMs) {
            ::kill(child->pid, SIGKILL);
            child->killed = true;
        }
    }
}

} // namespace orwick

#include "moc_ChildReaper.cpp"
