#pragma once
// A file descriptor that closes itself. release() hands it back to the caller, for a close()
// whose result matters (a network or full disk may only report a failed write there).

#include <unistd.h>
#include <utility>

namespace orwick {

class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : m_fd(fd) {}
    ~UniqueFd()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    UniqueFd(UniqueFd&& other) noexcept : m_fd(other.release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept
    {
        if (this != &other) {
            if (m_fd >= 0)
                ::close(m_fd);
            m_fd = other.release();
        }
        return *this;
    }

    int get() const { return m_fd; }
    bool ok() const { return m_fd >= 0; }
    int release() { return std::exchange(m_fd, -1); }

private:
    int m_fd = -1;
};

} // namespace orwick
