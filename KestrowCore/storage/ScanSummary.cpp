#include "storage/ScanSummary.h"

#include "support/ByteCountFormatter.h"
#include "support/JsonDecoder.h"

#include <algorithm>
#include <array>
#include <optional>

namespace kestrow {

namespace {

// Adds the allocated size to the freeable figure its tier counts in; keep items count in neither.
void addFreeable(RiskTier tier, std::int64_t bytes, std::int64_t& safe, std::int64_t& review)
{
    if (tier == RiskTier::safeToDelete)
        safe += bytes;
    else if (tier == RiskTier::reviewRequired)
        review += bytes;
}

} // namespace

ScanSummary ScanSummary::from(const std::vector<DiscoveredItem>& items)
{
    ScanSummary summary;
    std::array<std::optional<CategorySummary>, StorageCategory::count> groups;
    for (const DiscoveredItem& item : items) {
        auto& group = groups[static_cast<size_t>(StorageCategory::Value(item.category))];
        if (!group)
            group = CategorySummary{.category = item.category, .riskTier = item.riskTier};
        group->riskTier = std::max(group->riskTier, item.riskTier);
        group->itemCount += 1;
        group->totalLogicalBytes += item.logicalSizeBytes;
        group->totalAllocatedBytes += item.allocatedSizeBytes;
        addFreeable(item.riskTier, item.allocatedSizeBytes, group->safeToDeleteBytes, group->reviewRequiredBytes);
        group->requiresFullDiskAccess = group->requiresFullDiskAccess || item.requiresFullDiskAccess;

        summary.totalItems += 1;
        summary.totalLogicalBytes += item.logicalSizeBytes;
        summary.totalAllocatedBytes += item.allocatedSizeBytes;
        addFreeable(item.riskTier, item.allocatedSizeBytes, summary.safeFreeableBytes, summary.reviewFreeableBytes);
        summary.requiresFullDiskAccess = summary.requiresFullDiskAccess || item.requiresFullDiskAccess;
    }
    for (auto& group : groups)
        if (group)
            summary.categoryBreakdown.push_back(*group);
    std::stable_sort(summary.categoryBreakdown.begin(), summary.categoryBreakdown.end(),
                     [](const CategorySummary& a, const CategorySummary& b) {
                         return a.totalAllocatedBytes > b.totalAllocatedBytes;
                     });
    return summary;
}

QString ScanSummary::formattedAllocatedBytes() const
{
    return ByteCountFormatter::format(totalAllocatedBytes);
}
QString ScanSummary::formattedSafeFreeableBytes() const
{
    return ByteCountFormatter::format(safeFreeableBytes);
}
QString ScanSummary::formattedReviewFreeableBytes() const
{
    return ByteCountFormatter::format(reviewFreeableBytes);
}

JsonValue ScanSummary::toJson() const
{
    JsonValue::Array breakdown;
    for (const CategorySummary& category : categoryBreakdown)
        breakdown.push_back(category.toJson());
    return JsonValue::object({
        {QStringLiteral("totalItems"), totalItems},
        {QStringLiteral("totalLogicalBytes"), totalLogicalBytes},
        {QStringLiteral("totalAllocatedBytes"), totalAllocatedBytes},
        {QStringLiteral("safeFreeableBytes"), safeFreeableBytes},
        {QStringLiteral("reviewFreeableBytes"), reviewFreeableBytes},
        {QStringLiteral("requiresFullDiskAccess"), requiresFullDiskAccess},
        {QStringLiteral("categoryBreakdown"), breakdown},
    });
}

ScanSummary ScanSummary::fromJson(const JsonValue& json)
{
    const JsonDecoder in(json, QStringLiteral("ScanSummary"));
    ScanSummary summary{
        .totalItems = in.integer(QStringLiteral("totalItems")),
        .totalLogicalBytes = in.integer(QStringLiteral("totalLogicalBytes")),
        .totalAllocatedBytes = in.integer(QStringLiteral("totalAllocatedBytes")),
        .safeFreeableBytes = in.integer(QStringLiteral("safeFreeableBytes")),
        .reviewFreeableBytes = in.integer(QStringLiteral("reviewFreeableBytes")),
        .requiresFullDiskAccess = in.boolean(QStringLiteral("requiresFullDiskAccess")),
        .categoryBreakdown = {},
    };
    for (const JsonValue& category : in.array(QStringLiteral("categoryBreakdown")))
        summary.categoryBreakdown.push_back(CategorySummary::fromJson(category));
    return summary;
}

} // namespace kestrow
