#pragma once

#include "storage/StorageCategory.h"
#include "support/JsonValue.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace kestrow {

// One progress report: it describes the item just found, not a running total.
struct ScanProgress {
    StorageCategory currentCategory = StorageCategory::developerCache;
    QString currentPath;
    std::int64_t itemsFound = 0;
    std::int64_t totalAllocatedBytesScanned = 0;
    std::int64_t totalLogicalBytesScanned = 0;
    std::optional<double> fractionCompleted;

    [[nodiscard]] JsonValue toJson() const;
    [[nodiscard]] static ScanProgress fromJson(const JsonValue& json); // throws JsonDecodingError

    friend bool operator==(const ScanProgress&, const ScanProgress&) = default;
};

// Called on the scanning thread; must return quickly.
using ScanProgressCallback = std::function<void(const ScanProgress&)>;

} // namespace kestrow
