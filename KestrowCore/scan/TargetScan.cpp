#include "scan/TargetScan.h"

#include "support/KestrowError.h"

#include <QUuid>

namespace kestrow {

TargetScan::TargetScan(const ItemMeasurer& measurer, const RiskClassifier& riskClassifier,
                       const ScanProgressCallback& progress, std::stop_token stop)
    : m_measurer(measurer)
    , m_riskClassifier(&riskClassifier)
    , m_progress(progress)
    , m_stop(std::move(stop))
{
}

TargetScan::TargetScan(const ItemMeasurer& measurer, const ScanProgressCallback& progress, std::stop_token stop)
    : m_measurer(measurer)
    , m_riskClassifier(nullptr)
    , m_progress(progress)
    , m_stop(std::move(stop))
{
}

void TargetScan::emit(const Location& location, const MeasuredMetrics& metrics)
{
    Q_ASSERT_X(m_riskClassifier, "TargetScan::emit", "a scan of already tiered items emits with emitUnclassified");
    const RiskClassificationResult classification =
        m_riskClassifier->classify(location.path, location.category, location.isOrphaned);
    DiscoveredItem item{
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
    emitUnclassified(std::move(item));
}

void TargetScan::emitUnclassified(DiscoveredItem item)
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

bool TargetScan::emitIfContent(const Location& location)
{
    const MeasuredMetrics metrics = measure(location.path);
    if (!metrics.hasContent())
        return false;
    emit(location, metrics);
    return true;
}

void TargetScan::checkCancellation() const
{
    if (m_stop.stop_requested())
        throw CancellationError();
}

} // namespace kestrow
