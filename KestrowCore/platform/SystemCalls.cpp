#include "platform/SystemCalls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#if defined(__linux__)
#include <linux/openat2.h>
#include <sys/syscall.h>
#endif

namespace kestrow {

namespace {

std::int64_t nanoseconds(std::int64_t seconds, std::int64_t fraction)
{
    return seconds * 1000000000LL + fraction;
}

FileStatus::Type typeOf(std::uint32_t mode)
{
    if (S_ISREG(mode))
        return FileStatus::Type::regular;
    if (S_ISDIR(mode))
        return FileStatus::Type::directory;
    if (S_ISLNK(mode))
        return FileStatus::Type::symbolicLink;
    return FileStatus::Type::other;
}

} // namespace

std::shared_ptr<const SystemCalls> SystemCalls::real()
{
    static const auto calls = std::make_shared<const SystemCalls>();
    return calls;
}

int SystemCalls::openAt(int folder, const char* name, int flags, mode_t mode) const
{
    return retryOnInterrupt([&] { return ::openat(folder, name, flags | O_CLOEXEC, mode); });
}

int SystemCalls::openConstrained(int folder, const char* name, int flags, std::uint32_t resolve, mode_t mode) const
{
#if defined(__linux__) && defined(SYS_openat2)
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags | O_CLOEXEC);
    how.mode = (flags & (O_CREAT | O_TMPFILE)) ? mode : 0;
    how.resolve = RESOLVE_NO_MAGICLINKS;
    if (resolve & noSymbolicLinks)
        how.resolve |= RESOLVE_NO_SYMLINKS;
    if (resolve & noMountCrossing)
        how.resolve |= RESOLVE_NO_XDEV;
    // EAGAIN: the kernel saw a concurrent rename and asks for a retry.
    int fd;
    do {
        fd = static_cast<int>(::syscall(SYS_openat2, folder, name, &how, sizeof how));
    } while (fd == -1 && (errno == EINTR || errno == EAGAIN));
    return fd;
#else
    (void)folder, (void)name, (void)flags, (void)resolve, (void)mode;
    errno = ENOSYS;
    return -1;
#endif
}

int SystemCalls::statAt(int folder, const char* name, int flags, FileStatus& status) const
{
#if defined(__linux__)
    struct statx info;
    const unsigned int mask = STATX_BASIC_STATS | STATX_MNT_ID;
    if (retryOnInterrupt([&] { return ::statx(folder, name, flags, mask, &info); }) != 0)
        return -1;
    status.type = typeOf(info.stx_mode);
    status.size = static_cast<std::int64_t>(info.stx_size);
    status.allocatedSize = static_cast<std::int64_t>(info.stx_blocks) * 512;
    status.device = (static_cast<std::uint64_t>(info.stx_dev_major) << 32) | info.stx_dev_minor;
    status.inode = info.stx_ino;
    status.linkCount = info.stx_nlink;
    status.accessedNanoseconds = nanoseconds(info.stx_atime.tv_sec, info.stx_atime.tv_nsec);
    status.modifiedNanoseconds = nanoseconds(info.stx_mtime.tv_sec, info.stx_mtime.tv_nsec);
    status.mode = info.stx_mode & 07777;
    status.ownerId = info.stx_uid;
    status.mountId = (info.stx_mask & STATX_MNT_ID) ? info.stx_mnt_id : 0;
    status.isMountRoot =
        (info.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) && (info.stx_attributes & STATX_ATTR_MOUNT_ROOT);
    return 0;
#else
    struct stat info;
    const int result = (flags & AT_EMPTY_PATH) && name[0] == 0
                           ? retryOnInterrupt([&] { return ::fstat(folder, &info); })
                           : retryOnInterrupt([&] { return ::fstatat(folder, name, &info, flags & ~AT_EMPTY_PATH); });
    if (result != 0)
        return -1;
    status.type = typeOf(info.st_mode);
    status.size = info.st_size;
    status.allocatedSize = static_cast<std::int64_t>(info.st_blocks) * 512;
    status.device = static_cast<std::uint64_t>(info.st_dev);
    status.inode = static_cast<std::uint64_t>(info.st_ino);
    status.linkCount = static_cast<std::uint64_t>(info.st_nlink);
    status.accessedNanoseconds = nanoseconds(info.st_atimespec.tv_sec, info.st_atimespec.tv_nsec);
    status.modifiedNanoseconds = nanoseconds(info.st_mtimespec.tv_sec, info.st_mtimespec.tv_nsec);
    status.mode = info.st_mode & 07777;
    status.ownerId = info.st_uid;
    status.mountId = 0;
    status.isMountRoot = false;
    return 0;
#endif
}

int SystemCalls::renameAt(int fromFolder, const char* from, int toFolder, const char* to, bool noReplace) const
{
#if defined(__linux__)
    const unsigned int flags = noReplace ? RENAME_NOREPLACE : 0;
    return retryOnInterrupt([&] { return ::renameat2(fromFolder, from, toFolder, to, flags); });
#else
    const unsigned int flags = noReplace ? RENAME_EXCL : 0;
    return retryOnInterrupt([&] { return ::renameatx_np(fromFolder, from, toFolder, to, flags); });
#endif
}

int SystemCalls::unlinkAt(int folder, const char* name, int flags) const
{
    return retryOnInterrupt([&] { return ::unlinkat(folder, name, flags); });
}

int SystemCalls::makeDirectoryAt(int folder, const char* name, mode_t mode) const
{
    return retryOnInterrupt([&] { return ::mkdirat(folder, name, mode); });
}

ssize_t SystemCalls::readLinkAt(int folder, const char* name, char* buffer, size_t size) const
{
    return retryOnInterrupt([&] { return ::readlinkat(folder, name, buffer, size); });
}

#if defined(__linux__)
ssize_t SystemCalls::readDirectory(int folder, void* buffer, size_t size) const
{
    return retryOnInterrupt([&] { return static_cast<ssize_t>(::syscall(SYS_getdents64, folder, buffer, size)); });
}
#endif

ssize_t SystemCalls::read(int fd, void* buffer, size_t size) const
{
    return retryOnInterrupt([&] { return ::read(fd, buffer, size); });
}

ssize_t SystemCalls::readAt(int fd, void* buffer, size_t size, off_t offset) const
{
    return retryOnInterrupt([&] { return ::pread(fd, buffer, size, offset); });
}

ssize_t SystemCalls::write(int fd, const void* data, size_t size) const
{
    return retryOnInterrupt([&] { return ::write(fd, data, size); });
}

int SystemCalls::sync(int fd) const
{
    return retryOnInterrupt([&] { return ::fsync(fd); });
}

int SystemCalls::truncate(int fd, off_t length) const
{
    return retryOnInterrupt([&] { return ::ftruncate(fd, length); });
}

int SystemCalls::changeMode(int fd, mode_t mode) const
{
    return retryOnInterrupt([&] { return ::fchmod(fd, mode); });
}

int SystemCalls::lock(int fd, int operation) const
{
    return retryOnInterrupt([&] { return ::flock(fd, operation); });
}

} // namespace kestrow
