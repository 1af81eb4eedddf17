#include "platform/TopDirectory.h"

#include <fcntl.h>

namespace kestrow {

std::optional<TopDirectory> TopDirectory::of(const SystemCalls& calls, int folder, const QByteArray& path,
                                             int& errorCode)
{
    const int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;
    TopDirectory top{UniqueFd(calls.openAt(folder, ".", flags)), path};
    FileStatus here;
    if (!top.folder.isOpen() || calls.statAt(top.folder.get(), ".", AT_SYMLINK_NOFOLLOW, here) != 0) {
        errorCode = errno;
        return std::nullopt;
    }
    while (!here.isMountRoot && top.path != "/") {
        UniqueFd above(calls.openAt(top.folder.get(), "..", flags));
        FileStatus aboveStatus;
        if (!above.isOpen() || calls.statAt(above.get(), ".", AT_SYMLINK_NOFOLLOW, aboveStatus) != 0) {
            errorCode = errno;
            return std::nullopt;
        }
        // Kernels that do not mark mount roots still show the change of mount one step up.
        if (aboveStatus.isSameObject(here) || !onSameMount(aboveStatus, here))
            break;
        top.folder = std::move(above);
        here = aboveStatus;
        top.path.truncate(std::max<qsizetype>(1, top.path.lastIndexOf('/')));
    }
    return top;
}

bool TopDirectory::onSameMount(const FileStatus& a, const FileStatus& b)
{
    return a.mountId != 0 && b.mountId != 0 ? a.mountId == b.mountId : a.device == b.device;
}

} // namespace kestrow
