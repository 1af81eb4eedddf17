#include "presentation/MaintenanceTaskCard.h"

#include "system/MaintenanceTasks.h"

namespace kestrow {

namespace {

// What the purgeable task asks the system to give back, in decimal gigabytes.
constexpr std::int64_t purgeableTargetGigabytes = 10;

} // namespace

std::vector<MaintenanceTaskCard> MaintenanceTaskCard::standardCards(const QString& volumePath)
{
    return {
        {QStringLiteral("dns"), QStringLiteral("DNS cache"), QStringLiteral("Flush DNS cache"),
         QStringLiteral("Clears the system resolver cache."), QStringLiteral("network"),
         QStringLiteral("Flushing DNS…"), [] { return MaintenanceTasks().flushDNSCache(); }},
        {QStringLiteral("purgeable"), QStringLiteral("Storage"), QStringLiteral("Free purgeable space"),
         QStringLiteral("Asks APFS to release locally cached snapshots."), QStringLiteral("internaldrive"),
         QStringLiteral("Freeing space…"),
         [] { return MaintenanceTasks().freePurgeableSpace(purgeableTargetGigabytes); }},
        {QStringLiteral("spotlight"), QStringLiteral("Search"), QStringLiteral("Reindex Spotlight"),
         QStringLiteral("Rebuilds the Spotlight index for this volume."), QStringLiteral("magnifyingglass"),
         QStringLiteral("Reindexing Spotlight…"),
         [volumePath] { return MaintenanceTasks().triggerSpotlightReindex(volumePath); }},
    };
}

} // namespace kestrow
