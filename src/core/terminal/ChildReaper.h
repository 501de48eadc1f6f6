#pragma once
// ChildReaper: waits for children whose owner has gone (a closed terminal's shell after its
// SIGHUP) so that none stays a zombie. A child still there after a few seconds gets SIGKILL.
// GUI thread; the process-wide instance lives as long as the application.

#include <QObject>
#include <QTimer>
#include <sys/types.h>

namespace orwick {

class ChildReaper : public QObject {
    Q_OBJECT
public:
    static ChildReaper& shared();
    // Takes over waiting for `pid`; `pidfd` (owned from now on, may be -1) says when it ended.
    void adopt(pid_t pid, int pidfd);
    int waiting() const { return int(m_children.size()); }
    // Children still running when the application ends are left to init, which reaps them.
    ~ChildReaper() override;

private:
    explicit ChildReaper(QObject* parent);
    struct Child;
    void poll();
    QList<Child*> m_children;
    QTimer* m_timer;
};

} // namespace orwick
