#include "platform/UniqueFd.h"

#include <unistd.h>

namespace kestrow {

void UniqueFd::reset(int fd) noexcept
{
    if (m_fd >= 0)
        ::close(m_fd); // not retried on EINTR: on Linux the descriptor is released regardless
    m_fd = fd;
}

} // namespace kestrow
