#include "platform/OpenedFolder.h"

#include <fcntl.h>

namespace kestrow {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY;

QByteArray parentOf(const QByteArray& path)
{
    qsizetype end = path.size();
    while (end > 1 && path.at(end - 1) == '/')
        --end;
    const qsizetype slash = path.lastIndexOf('/', end - 1);
    if (slash < 0)
        return ".";
    return slash == 0 ? QByteArray("/") : path.left(slash);
}

// Makes `path`, its absent parents first; 0 or the errno of the folder that could not be made.
int makeFolders(const SystemCalls& calls, const QByteArray& path, mode_t mode)
{
    if (calls.makeDirectoryAt(AT_FDCWD, path.constData(), mode) != 0) {
        if (errno == EEXIST)
            return 0; // made by someone else meanwhile
        if (errno != ENOENT)
            return errno;
        const QByteArray parent = parentOf(path);
        if (parent == path)
            return ENOENT;
        if (const int error = makeFolders(calls, parent, mode); error != 0)
            return error;
        if (calls.makeDirectoryAt(AT_FDCWD, path.constData(), mode) != 0)
            return errno == EEXIST ? 0 : errno;
    }
    const UniqueFd made(calls.openAt(AT_FDCWD, path.constData(), folderFlags | O_NOFOLLOW));
    if (made.isOpen())
        (void)calls.changeMode(made.get(), mode);
    return 0;
}

} // namespace

OpenedFolder OpenedFolder::open(const SystemCalls& calls, const QByteArray& path, std::optional<mode_t> createMode)
{
    UniqueFd fd(calls.openAt(AT_FDCWD, path.constData(), folderFlags));
    if (fd.isOpen())
        return {std::move(fd), 0, false};
    const int openError = errno;
    // Made only when nothing is there: something that is not a folder is not replaced.
    FileStatus existing;
    if (!createMode)
        return {UniqueFd(), openError, false};
    if (calls.statAt(AT_FDCWD, path.constData(), 0, existing) == 0) {
        // Another process may have made it since the open failed: one more try decides.
        fd = UniqueFd(calls.openAt(AT_FDCWD, path.constData(), folderFlags));
        return fd.isOpen() ? OpenedFolder{std::move(fd), 0, false} : OpenedFolder{UniqueFd(), errno, false};
    }
    if (const int error = makeFolders(calls, path, *createMode); error != 0)
        return {UniqueFd(), error, true};
    fd = UniqueFd(calls.openAt(AT_FDCWD, path.constData(), folderFlags));
    if (!fd.isOpen())
        return {UniqueFd(), errno, true};
    return {std::move(fd), 0, false};
}

} // namespace kestrow
