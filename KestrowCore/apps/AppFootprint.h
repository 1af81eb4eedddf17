#pragma once

#include "apps/DependencyLocation.h"
#include "apps/InstalledApp.h"
#include "apps/ResolvedDependency.h"

#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestrow {

// Everything on the disk that belongs to one application, with the totals and the verdict on
// whether it may be uninstalled, all derived from the application and its dependencies.
class AppFootprint {
public:
    AppFootprint(InstalledApp app, std::vector<ResolvedDependency> dependencies);

    [[nodiscard]] const InstalledApp& app() const { return m_app; }
    [[nodiscard]] const std::vector<ResolvedDependency>& dependencies() const { return m_dependencies; }
    // Include the record's own bundle figures when no bundle item was found on the disk.
    [[nodiscard]] std::int64_t totalAllocatedSizeBytes() const { return m_totalAllocatedSizeBytes; }
    [[nodiscard]] std::int64_t totalLogicalSizeBytes() const { return m_totalLogicalSizeBytes; }
    [[nodiscard]] int totalItemCount() const { return m_totalItemCount; }
    [[nodiscard]] int itemCount(DependencyLocation location) const;
    [[nodiscard]] bool canUninstall() const { return !m_blockingReason.has_value(); }
    [[nodiscard]] const std::optional<QString>& blockingReason() const { return m_blockingReason; }

    // Keys are the field names; `itemCountByLocation` holds the locations that have items,
    // keyed by their stored text, in declaration order.
    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;

private:
    InstalledApp m_app;
    std::vector<ResolvedDependency> m_dependencies;
    std::int64_t m_totalAllocatedSizeBytes = 0;
    std::int64_t m_totalLogicalSizeBytes = 0;
    int m_totalItemCount = 0;
    std::array<int, DependencyLocation::count> m_itemCountByLocation{};
    std::optional<QString> m_blockingReason;
};

} // namespace kestrow
