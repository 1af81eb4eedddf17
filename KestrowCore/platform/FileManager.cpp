#include "platform/FileManager.h"

#include "platform/FreedesktopTrash.h"
#include "platform/NativePath.h"
#include "platform/TrashError.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
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
            m_sink.unreadableDirectory(NativePath::decode(QByteArray::fromStdString(path)), errno);
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
            m_sink.unreadableDirectory(NativePath::decode(QByteArray::fromStdString(path)), errno);
        path.resize(mark);
    }

private:
    WalkSink& m_sink;
    std::stop_token m_stop;
};

// Deletes what the open folder `fd` holds, depth first, without following links. Returns 0,
// or the errno of the first entry that would not go, with its path in `failedPath`.
int removeContents(int fd, std::string& path, std::string& failedPath)
{
    DIR* directory = ::fdopendir(fd);
    if (!directory) {
        const int error = errno;
        ::close(fd);
        failedPath = path;
        return error;
    }
    const int dirFd = ::dirfd(directory);
    int error = 0;
    // Some file systems skip entries when a folder changes while it is read, so the folder is
    // read again until a pass finds nothing left.
    bool removedAny = true;
    while (error == 0 && removedAny) {
        removedAny = false;
        ::rewinddir(directory);
        errno = 0;
        while (const dirent* entry = ::readdir(directory)) {
            const char* name = entry->d_name;
            if (name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0)))
                continue;
            bool isDirectory = entry->d_type == DT_DIR;
            if (entry->d_type == DT_UNKNOWN) {
                struct stat info;
                isDirectory = ::fstatat(dirFd, name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(info.st_mode);
            }
            const size_t mark = path.size();
            path.push_back('/');
            path.append(name);
            if (isDirectory) {
                const int child = openDirectoryAt(dirFd, name);
                error = child < 0 ? errno : removeContents(child, path, failedPath);
            }
            // Something that vanished meanwhile is gone already.
            if (error == 0 && ::unlinkat(dirFd, name, isDirectory ? AT_REMOVEDIR : 0) != 0 && errno != ENOENT)
                error = errno;
            if (error != 0) {
                if (failedPath.empty())
                    failedPath = path;
                break;
            }
            removedAny = true;
            path.resize(mark);
            errno = 0;
        }
        if (error == 0 && errno != 0) {
            error = errno;
            failedPath = path;
        }
    }
    ::closedir(directory);
    return error;
}

} // namespace

FileManager::FileManager(std::shared_ptr<const SystemCalls> systemCalls)
    : m_systemCalls(systemCalls ? std::move(systemCalls) : SystemCalls::real())
#if !defined(__APPLE__)
    , m_trash(std::make_shared<const FreedesktopTrash>(m_systemCalls))
#endif
{
}

AnchorOutcome FileManager::anchor(const QString& path) const
{
    const QByteArray native = NativePath::encode(path);
    if (!native.startsWith('/'))
        return {std::nullopt, EINVAL};
    qsizetype end = native.size();
    while (end > 1 && native.at(end - 1) == '/')
        --end; // "dir/" names the entry "dir", a link as much as a folder
    const qsizetype slash = native.lastIndexOf('/', end - 1);
    const QByteArray name = native.mid(slash + 1, end - slash - 1);
    if (name.isEmpty() || name == "." || name == "..")
        return {std::nullopt, EINVAL};
    const QByteArray folderPath = slash == 0 ? QByteArray("/") : native.left(slash);

    const SystemCalls& calls = *m_systemCalls;
    const int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;
    UniqueFd folder(calls.openConstrained(AT_FDCWD, folderPath.constData(), folderFlags, SystemCalls::noSymbolicLinks));
    if (!folder.isOpen() && errno == ENOSYS) {
        // No openat2: the same walk done by hand, one component at a time.
        folder = UniqueFd(calls.openAt(AT_FDCWD, "/", folderFlags));
        for (const QByteArray& component : folderPath.split('/')) {
            if (!folder.isOpen())
                break;
            if (component.isEmpty() || component == ".")
                continue;
            if (component == "..") {
                errno = ELOOP;
                folder.reset();
                break;
            }
            folder = UniqueFd(calls.openAt(folder.get(), component.constData(), folderFlags));
        }
    }
    if (!folder.isOpen())
        return {std::nullopt, errno};

    FileStatus status;
    if (calls.statAt(folder.get(), name.constData(), AT_SYMLINK_NOFOLLOW, status) != 0)
        return {std::nullopt, errno};
    return {AnchoredItem{std::move(folder), name,
                         NativePath::decode(folderPath.endsWith('/') ? folderPath + name : folderPath + '/' + name),
                         status},
            0};
}

int FileManager::verifyAnchored(const AnchoredItem& item) const
{
    FileStatus now;
    if (m_systemCalls->statAt(item.parent.get(), item.name.constData(), AT_SYMLINK_NOFOLLOW, now) != 0)
        return errno;
    return now.isSameObject(item.status) && now.type == item.status.type ? 0 : ESTALE;
}

std::optional<FileStatus> FileManager::status(const QString& path, bool followLinks) const
{
    struct stat info;
    const QByteArray native = NativePath::encode(path);
    if ((followLinks ? ::stat(native.constData(), &info) : ::lstat(native.constData(), &info)) != 0)
        return std::nullopt;
    return toStatus(info);
}

bool FileManager::fileExists(const QString& path, bool* isDirectory) const
{
    struct stat info;
    if (path.isEmpty() || ::stat(NativePath::encode(path).constData(), &info) != 0)
        return false;
    if (isDirectory)
        *isDirectory = S_ISDIR(info.st_mode);
    return true;
}

DirectoryListing FileManager::contentsOfDirectory(const QString& path, bool skipHidden) const
{
    DirectoryListing listing;
    DIR* directory = ::opendir(NativePath::encode(path).constData());
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
        DirectoryEntry item{NativePath::decode(name), entry->d_type == DT_DIR, entry->d_type == DT_LNK};
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
    std::string path = NativePath::encode(root).toStdString();
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

FileOperationResult FileManager::trashItem(const QString& path) const
{
    AnchorOutcome anchored = anchor(path);
    if (anchored.item)
        return trashItem(*anchored.item);
    const int error = anchored.errorCode;
    const QString reason = error == ELOOP || error == ENOTDIR
                               ? QStringLiteral("a folder on its path is a symbolic link or not a folder")
                               : TrashError::systemText(error);
    return {false, std::nullopt, TrashError{TrashError::Case::unreachable, path, {}, reason}.description()};
}

FileOperationResult FileManager::removeItem(const QString& path) const
{
    std::string native = NativePath::encode(path).toStdString();
    std::string failedPath;
    int error = 0;
    struct stat info;
    if (::lstat(native.c_str(), &info) != 0) {
        error = errno;
    } else if (S_ISDIR(info.st_mode)) {
        int fd;
        do {
            fd = ::open(native.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        } while (fd < 0 && errno == EINTR);
        error = fd < 0 ? errno : removeContents(fd, native, failedPath);
        if (error == 0 && ::rmdir(native.c_str()) != 0)
            error = errno;
    } else if (::unlink(native.c_str()) != 0) {
        error = errno;
    }
    if (error == 0)
        return {true, std::nullopt, {}};
    const QString failed = failedPath.empty() ? path : NativePath::decode(QByteArray::fromStdString(failedPath));
    return {false, std::nullopt,
            QStringLiteral("Could not remove \u201c%1\u201d: %2")
                .arg(failed, QString::fromStdString(std::generic_category().message(error)))};
}

void FileManager::walk(const AnchoredItem& item, WalkSink& sink, std::stop_token stop) const
{
    walk(item.path, sink, std::move(stop));
}

FileOperationResult FileManager::trashItem(const AnchoredItem& item) const
{
    if (const int error = verifyAnchored(item)) {
        const QString reason =
            error == ESTALE ? QStringLiteral("another item has taken its name") : TrashError::systemText(error);
        return {false, std::nullopt, TrashError{TrashError::Case::changed, item.path, {}, reason}.description()};
    }
#if defined(__APPLE__)
    QFile file(item.path);
    if (!file.moveToTrash())
        return {false, std::nullopt, file.errorString()};
    return {true, file.fileName(), {}};
#else
    return m_trash->trash(item);
#endif
}

FileOperationResult FileManager::removeItem(const AnchoredItem& item) const
{
    return removeItem(item.path);
}

FileManager::RegularFileRead FileManager::readRegularFile(const QString& path, qsizetype maxBytes,
                                                          bool followLinks) const
{
    RegularFileRead result;
    const auto fail = [&result](int errorCode) {
        result.bytes.clear();
        result.errorCode = errorCode;
        result.errorDescription = QString::fromStdString(std::generic_category().message(errorCode));
        return std::move(result);
    };
    const auto notRegular = [&result](const FileStatus& status) {
        result.errorCode = status.isDirectory() ? EISDIR : status.isSymbolicLink() ? ELOOP : EINVAL;
        result.errorDescription = status.isSymbolicLink() ? QStringLiteral("it is a symbolic link")
                                                          : QStringLiteral("it is not a regular file");
        return std::move(result);
    };
    const QByteArray native = NativePath::encode(path);
    const SystemCalls& calls = *m_systemCalls;
    const int linkFlag = followLinks ? 0 : AT_SYMLINK_NOFOLLOW;
    FileStatus status;
    // Looked at first, so that a FIFO or a device is not even opened; then checked again on
    // what was opened, in case the name changed hands in between.
    if (calls.statAt(AT_FDCWD, native.constData(), linkFlag, status) != 0)
        return fail(errno);
    if (!status.isRegularFile())
        return notRegular(status);
    const int openFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | (followLinks ? 0 : O_NOFOLLOW);
    const UniqueFd file(calls.openAt(AT_FDCWD, native.constData(), openFlags));
    if (!file.isOpen())
        return fail(errno);
    if (calls.statAt(file.get(), "", AT_EMPTY_PATH, status) != 0)
        return fail(errno);
    if (!status.isRegularFile())
        return notRegular(status);
    result.opened = true;
    result.bytes.resize(std::max<qsizetype>(maxBytes, 0));
    qsizetype filled = 0;
    while (filled < result.bytes.size()) {
        const ssize_t count =
            calls.read(file.get(), result.bytes.data() + filled, static_cast<size_t>(result.bytes.size() - filled));
        if (count < 0)
            return fail(errno);
        if (count == 0)
            break;
        filled += count;
    }
    result.bytes.truncate(filled);
    return result;
}

} // namespace kestrow
