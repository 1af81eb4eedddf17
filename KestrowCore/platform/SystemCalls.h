#pragma once

#include "platform/FileStatus.h"

#include <cerrno>
#include <cstdint>
#include <memory>
#include <sys/types.h>

namespace kestrow {

// Calls `call` again for as long as it fails with EINTR, and returns its last result.
template <typename Call> auto retryOnInterrupt(Call call)
{
    decltype(call()) result;
    do {
        result = call();
    } while (result == -1 && errno == EINTR);
    return result;
}

// The system calls that the core's file-system work goes through, one virtual function
// each, so that a test can derive from this and make one of them fail with a chosen errno
// (ENOSPC, EXDEV, EACCES, ENAMETOOLONG...). Each returns what the system call returns and
// leaves errno set on failure, as the system does; EINTR is retried inside. Stateless: one
// instance serves any number of threads.
class SystemCalls {
public:
    virtual ~SystemCalls() = default;

    // The real calls; shared, immutable.
    [[nodiscard]] static std::shared_ptr<const SystemCalls> real();

    // Where a name lies when opened relative to a folder.
    enum Resolve : std::uint32_t {
        noSymbolicLinks = 1u << 0, // no component may be a symbolic link (ELOOP)
        noMountCrossing = 1u << 1, // no component may be a mount point (EXDEV)
    };

    virtual int openAt(int folder, const char* name, int flags, mode_t mode = 0) const;
    // openat2 on Linux: `name` is resolved under the constraints of `resolve`. Fails with
    // ENOSYS where the kernel has no openat2; callers then fall back to openAt.
    virtual int openConstrained(int folder, const char* name, int flags, std::uint32_t resolve, mode_t mode = 0) const;
    // lstat (AT_SYMLINK_NOFOLLOW in `flags`) or stat of `name` below `folder`; an empty
    // `name` with AT_EMPTY_PATH describes `folder` itself.
    virtual int statAt(int folder, const char* name, int flags, FileStatus& status) const;
    // `noReplace`: fails with EEXIST rather than replacing what is at `to`.
    virtual int renameAt(int fromFolder, const char* from, int toFolder, const char* to, bool noReplace = false) const;
    virtual int unlinkAt(int folder, const char* name, int flags) const;
    virtual int makeDirectoryAt(int folder, const char* name, mode_t mode) const;
    virtual ssize_t readLinkAt(int folder, const char* name, char* buffer, size_t size) const;
#if defined(__linux__)
    // getdents64: as many whole entries of the open `folder` as fit in `buffer` (8-byte
    // aligned), from where the last call left off; 0 at the end.
    virtual ssize_t readDirectory(int folder, void* buffer, size_t size) const;
#endif
    virtual ssize_t read(int fd, void* buffer, size_t size) const;
    virtual ssize_t readAt(int fd, void* buffer, size_t size, off_t offset) const;
    virtual ssize_t write(int fd, const void* data, size_t size) const;
    virtual int sync(int fd) const;
    virtual int truncate(int fd, off_t length) const;
    virtual int changeMode(int fd, mode_t mode) const;
    // flock: LOCK_EX, LOCK_SH, LOCK_UN, with LOCK_NB to not wait.
    virtual int lock(int fd, int operation) const;
};

} // namespace kestrow
