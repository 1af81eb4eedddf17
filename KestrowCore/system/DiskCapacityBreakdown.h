#pragma once

#include "support/JsonValue.h"

#include <cstdint>
#include <optional>

namespace kestrow {

// A volume's capacity split into System, Apps, Sweepable, Other and Free. The parts always
// add up to the used space, and before any scan or inventory they are estimated from shares of
// it, so that a disk looks believable at first sight rather than empty.
struct DiskCapacityBreakdown {
    // `safeFreeableBytes` is absent before the first scan; then the sweepable part comes from
    // the purgeable space.
    DiskCapacityBreakdown(std::int64_t totalBytes, std::int64_t freeBytes, std::int64_t purgeableBytes,
                          std::int64_t systemBytes, std::int64_t installedAppsBytes, bool hasInstalledApps,
                          std::optional<std::int64_t> safeFreeableBytes);

    double totalBytes = 0;
    double freeBytes = 0;
    double usedBytes = 0;
    double systemBytes = 0;
    double appsBytes = 0;
    double sweepableBytes = 0;
    double otherBytes = 0;

    [[nodiscard]] JsonValue toJson() const;
    friend bool operator==(const DiskCapacityBreakdown&, const DiskCapacityBreakdown&) = default;
};

} // namespace kestrow
