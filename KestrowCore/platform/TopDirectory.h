#pragma once

#include "platform/FileStatus.h"
#include "platform/SystemCalls.h"
#include "platform/UniqueFd.h"

#include <QByteArray>

#include <optional>

namespace kestrow {

// The folder where the file system (or bind mount) holding a given folder is attached: the
// top directory whose Trash takes the items of that mount.
class TopDirectory {
public:
    UniqueFd folder;
    QByteArray path; // the given folder's path with the components below the top taken off

    // Climbs from `folder`, reached by `path`, through ".." for as long as the mount stays
    // the same. On failure gives nothing and sets `errorCode`.
    [[nodiscard]] static std::optional<TopDirectory> of(const SystemCalls& calls, int folder, const QByteArray& path,
                                                        int& errorCode);

    // By mount where the system names mounts, else by device.
    [[nodiscard]] static bool onSameMount(const FileStatus& a, const FileStatus& b);
};

} // namespace kestrow
