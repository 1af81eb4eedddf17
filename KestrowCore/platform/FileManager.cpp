#include "platform/FileManager.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrow {

namespace {

std::int64_t nanoseconds(const struct timespec& time)
{
    return static_cast<std::int64_t>(time.tv_sec) * 1000000000LL + time.tv_nsec;
}

FileStatus toStatus(const struct stat& info)
{
    FileStatus status;
    if (S_ISREG(info.st_mode))
        status.type = FileStatus::Type::regular;
    else if (S_ISDIR(info.st_mode))
        status.type = FileStatus::Type::directory;
    else if (S_ISLNK(info.st_mode))
        status.type = FileStatus::Type::symbolicLink;
    status.size = info.st_size;
    status.allocatedSize = static_cast<std::int64_t>(info.st_blocks) * 512;
    status.device = static_cast<std::uint64_t>(info.st_dev);
    status.inode = static_cast<std::uint64_t>(info.st_ino);
    status.linkCount = static_cast<std::uint64_t>(info.st_nlink);
#if defined(__APPLE__)
    status.accessedNanoseconds = nanoseconds(info.st_atimespec);
    status.modifiedNanoseconds = nanoseconds(info.st_mtimespec);
#else
    status.accessedNanoseconds = nanoseconds(info.st_atim);
    status.modifiedNanoseconds = nanoseconds(info.st_mtim);
#endif
    status.mode = static_cast<std::uint32_t>(info.st_mode & 07777);
    return status;
}

int openDirectoryAt(int parent, const char* name)
{
    int fd;
    do {
        fd = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    } while (fd < 0 && errno == EINTR);
    return fd;
}

// Depth-first walk over directory descriptors: one openat per folder, one fstatat per entry
// whose type the directory listing does not already settle. The path text is kept only to
// name unreadable folders.
class Walker {
public:
    Walker(WalkSink& sink, std::stop_token stop)
        : m_sink(sink)
        , m_stop(std::move(stop))
    {
    }

    void walkDirectory(int fd, std::string& path)
    {
        DIR* directory = ::fdopendir(fd);
        if (!directory) {
            ::close(fd);
            return;
        }
        const int dirFd = ::dirfd(directory);
        errno = 0;
        while (const dirent* entry = ::readdir(directory)) {
            const char* name = entry->d_name;
            if (name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0)))
                continue;
            if (entry->d_type == DT_LNK)
                continue; // links count for nothing and are never entered
            if (entry->d_type == DT_DIR) {
                descend(dirFd, name, path);
            } else {
                struct stat info;
                if (::fstatat(dirFd, name, &info, AT_SYMLINK_NOFOLLOW) == 0) {
                    if (S_ISREG(info.st_mode))
                        m_sink.regularFile(toStatus(info));
                    else if (S_ISDIR(info.st_mode))
                        descend(dirFd, name, path); // file systems that give no type in listings
                }
                // A file that vanished between listing and stat is skipped.
            }
            if (m_stop.stop_requested()) {
                ::closedir(directory);
                return;
            }
            errno = 0;
        }
        if (errno != 0 && errno != ENOENT)
            m_sink.unreadableDirectory(QFile::decodeName(QByteArray::fromStdString(path)), errno);
        ::closedir(directory);
    }

    void descend(int parentFd, const char* name, std::string& path)
    {
        const size_t mark = path.size();
        path.push_back('/');
        path.append(name);
        const int child = openDirectoryAt(parentFd, name);
        if (child >= 0)
            walkDirectory(child, path);
        else if (errno != ENOENT && errno != ELOOP && errno != ENOTDIR)
            m_sink.unreadableDirectory(QFile::decodeName(QByteArray::fromStdString(path)), errno);
        path.resize(mark);
    }

private:
    WalkSink& m_sink;
    std::stop_token m_stop;
};

} // namespace

std::optional<FileStatus> FileManager::status(const QString& path, bool followLinks) const
{
    struct stat info;
    const QByteArray native = QFile::encodeName(path);
    if ((followLinks ? ::stat(native.constData(), &info) : ::lstat(native.constData(), &info)) != 0)
        return std::nullopt;
    return toStatus(info);
}

bool FileManager::fileExists(const QString& path, bool* isDirectory) const
{
    struct stat info;
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &info) != 0)
        return false;
    if (isDirectory)
        *isDirectory = S_ISDIR(info.st_mode);
    return true;
}

DirectoryListing FileManager::contentsOfDirectory(const QString& path, bool skipHidden) const
{
    DirectoryListing listing;
    DIR* directory = ::opendir(QFile::encodeName(path).constData());
    if (!directory) {
        listing.errorCode = errno;
        return listing;
    }
    const int dirFd = ::dirfd(directory);
    errno = 0;
    while (const dirent* entry = ::readdir(directory)) {
        const char* name = entry->d_name;
        if (name[0] == '.' && (skipHidden || name[1] == 0 || (name[1] == '.' && name[2] == 0))) {
            errno = 0;
            continue;
        }
        DirectoryEntry item{QFile::decodeName(name), entry->d_type == DT_DIR, entry->d_type == DT_LNK};
        if (entry->d_type == DT_UNKNOWN) {
            struct stat info;
            if (::fstatat(dirFd, name, &info, AT_SYMLINK_NOFOLLOW) == 0) {
                item.isDirectory = S_ISDIR(info.st_mode);
                item.isSymbolicLink = S_ISLNK(info.st_mode);
            }
        }
        listing.entries.push_back(std::move(item));
        errno = 0;
    }
    if (errno != 0)
        listing.errorCode = errno;
    ::closedir(directory);
    std::sort(listing.entries.begin(), listing.entries.end(),
              [](const DirectoryEntry& a, const DirectoryEntry& b) { return a.name < b.name; });
    return listing;
}

void FileManager::walk(const QString& root, WalkSink& sink, std::stop_token stop) const
{
    std::string path = QFile::encodeName(root).toStdString();
    int fd;
    do {
        // The root itself may be reached through a link, as an ordinary open would.
        fd = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        sink.unreadableDirectory(root, errno);
        return;
    }
    Walker(sink, std::move(stop)).walkDirectory(fd, path);
}

} // namespace kestrow
