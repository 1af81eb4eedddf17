#include "scan/TargetScan.h"

#include "support/KestrowError.h"

#include <QUuid>

namespace kestrow {

TargetScan::TargetScan(const ItemMeasurer& measurer, const RiskClassifier& riskClassifier,
                       const ScanProgressCallback& progress, std::stop_token stop)
    : m_riskClassifier(&riskClassifier)
    , m_progress(progress)
    , m_stop(stop)
    , m_batch(measurer, std::move(stop))
{
}

TargetScan::TargetScan(const ItemMeasurer& measurer, const ScanProgressCallback& progress, std::stop_token stop)
    : m_riskClassifier(nullptr)
    , m_progress(progress)
    , m_stop(stop)
    , m_batch(measurer, std::move(stop))
{
}

MeasuredMetrics TargetScan::measure(const QString& path)
{
    return m_batch.take(m_batch.add(path));
}

DiscoveredItem TargetScan::classified(const Location& location, const MeasuredMetrics& metrics) const
{
    Q_ASSERT_X(m_riskClassifier, "TargetScan::emit", "a scan of already tiered items emits with emitUnclassified");
    const RiskClassificationResult classification =
        m_riskClassifier->classify(location.path, location.category, location.isOrphaned);
    return DiscoveredItem{
        .id = QUuid::createUuid(),
        .path = location.path,
        .category = location.category,
        .riskTier = classification.riskTier,
        .logicalSizeBytes = metrics.logicalBytes,
        .allocatedSizeBytes = metrics.allocatedBytes,
        .fileCount = metrics.fileCount,
        .lastAccessedDate = metrics.lastAccessedDate,
        .lastModifiedDate = metrics.lastModifiedDate,
        .isOrphaned = location.isOrphaned,
        .isLocked = location.isLocked,
        .requiresFullDiskAccess = metrics.requiresFullDiskAccess,
        .itemDescription = location.description,
        .ruleId = classification.matchedRuleId ? classification.matchedRuleId : location.defaultRuleId,
    };
}

void TargetScan::emit(const Location& location, const MeasuredMetrics& metrics)
{
    m_emissions.push_back({.measurement = std::nullopt, .make = {}, .item = classified(location, metrics)});
    settle(false);
}

void TargetScan::emitUnclassified(DiscoveredItem item)
{
    m_emissions.push_back({.measurement = std::nullopt, .make = {}, .item = std::move(item)});
    settle(false);
}

void TargetScan::emitIfContent(const Location& location)
{
    emitMeasured(location.path, [this, location](const MeasuredMetrics& metrics) -> std::optional<DiscoveredItem> {
        if (!metrics.hasContent())
            return std::nullopt;
        return classified(location, metrics);
    });
}

void TargetScan::emitMeasured(const QString& path, ItemMaker make)
{
    m_emissions.push_back({.measurement = m_batch.add(path), .make = std::move(make), .item = std::nullopt});
    settle(false);
}

void TargetScan::settle(bool wait)
{
    while (!m_emissions.empty()) {
        Emission& next = m_emissions.front();
        if (next.measurement) {
            if (!wait && !m_batch.isReady(*next.measurement))
                return;
            next.item = next.make(m_batch.take(*next.measurement));
        }
        if (next.item)
            report(std::move(*next.item));
        m_emissions.pop_front();
    }
}

void TargetScan::report(DiscoveredItem item)
{
    if (m_progress)
        m_progress(ScanProgress{
            .currentCategory = item.category,
            .currentPath = item.path,
            .itemsFound = 1,
            .totalAllocatedBytesScanned = item.allocatedSizeBytes,
            .totalLogicalBytesScanned = item.logicalSizeBytes,
            .fractionCompleted = std::nullopt,
        });
    m_items.push_back(std::move(item));
}

std::vector<DiscoveredItem> TargetScan::takeItems()
{
    settle(true);
    checkCancellation();
    return std::move(m_items);
}

void TargetScan::checkCancellation() const
{
    if (m_stop.stop_requested())
        throw CancellationError();
}

} // namespace kestrow
