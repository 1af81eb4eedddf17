#pragma once

#include <utility>

namespace kestrow {

// Owns one open file descriptor and closes it when it goes. Move-only.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) noexcept
        : m_fd(fd)
    {
    }
    UniqueFd(UniqueFd&& other) noexcept
        : m_fd(std::exchange(other.m_fd, -1))
    {
    }
    UniqueFd& operator=(UniqueFd&& other) noexcept
    {
        reset(std::exchange(other.m_fd, -1));
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    ~UniqueFd() { reset(); }

    [[nodiscard]] int get() const noexcept { return m_fd; }
    [[nodiscard]] bool isOpen() const noexcept { return m_fd >= 0; }
    // Gives up ownership: the caller closes what comes back.
    [[nodiscard]] int release() noexcept { return std::exchange(m_fd, -1); }
    // Closes what is held (a failing close is ignored: the descriptor is gone either way).
    void reset(int fd = -1) noexcept;

private:
    int m_fd = -1;
};

} // namespace kestrow
