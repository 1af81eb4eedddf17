#pragma once

#include "storage/DiscoveredItem.h"
#include "storage/ScanProgress.h"
#include "storage/ScanResult.h"

#include <variant>

namespace kestrow {

// What a scan stream delivers: progress while scanning, then every item, then the result.
struct ScanProgressEvent {
    std::variant<ScanProgress, DiscoveredItem, ScanResult> value;

    [[nodiscard]] bool isProgress() const { return std::holds_alternative<ScanProgress>(value); }
    [[nodiscard]] bool isItemDiscovered() const { return std::holds_alternative<DiscoveredItem>(value); }
    [[nodiscard]] bool isCompleted() const { return std::holds_alternative<ScanResult>(value); }
    [[nodiscard]] const ScanProgress& progress() const { return std::get<ScanProgress>(value); }
    [[nodiscard]] const DiscoveredItem& itemDiscovered() const { return std::get<DiscoveredItem>(value); }
    [[nodiscard]] const ScanResult& completed() const { return std::get<ScanResult>(value); }
};

} // namespace kestrow
