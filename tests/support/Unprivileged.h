#pragma once
// Unprivileged: for as long as it lives, a test that runs as root runs as the user "nobody"
// (effective user 65534), so that folder and file permissions hold for it as they do for a user.
// glibc changes the effective user of every thread of the process at once, so work that runs on
// pool threads is covered too. Run as any other user, it changes nothing.
//
// What the test reads must be reachable by "nobody": make it on a ScratchMount with "mode=0755",
// not under the temporary home, which only its owner may enter.

#include <unistd.h>

namespace orwick::test {

class Unprivileged {
public:
    Unprivileged() : m_wasRoot(::geteuid() == 0) { m_ok = !m_wasRoot || ::seteuid(kNobody) == 0; }
    ~Unprivileged()
    {
        if (m_wasRoot && m_ok)
            [[maybe_unused]] const int back = ::seteuid(0);
    }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

    bool ok() const { return m_ok; }

private:
    static constexpr uid_t kNobody = 65534;
    bool m_wasRoot;
    bool m_ok;
};

} // namespace orwick::test
