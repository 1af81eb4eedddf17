#pragma once

#include "platform/SystemCalls.h"
#include "platform/UniqueFd.h"

#include <QByteArray>

#include <optional>
#include <sys/types.h>

namespace kestrow {

// A folder opened by its path, to open its entries by name. Links on the way are followed as
// an ordinary open follows them.
struct OpenedFolder {
    UniqueFd fd;
    int errorCode = 0;           // errno when `fd` is not open
    bool creationFailed = false; // the folder was absent and could not be made

    // With `createMode` an absent folder is made first, its absent parents too, each with that
    // mode exactly (the umask notwithstanding); what exists is left as it is. A path through a
    // file is absent too, and making it then fails with ENOTDIR.
    [[nodiscard]] static OpenedFolder open(const SystemCalls& calls, const QByteArray& path,
                                           std::optional<mode_t> createMode = std::nullopt);
};

} // namespace kestrow
