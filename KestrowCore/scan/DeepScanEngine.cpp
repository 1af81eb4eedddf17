#include "scan/DeepScanEngine.h"

#include "analysis/AnomalyDetector.h"
#include "platform/PathText.h"
#include "scan/RuleStage.h"
#include "scan/ScanTargetTable.h"

#include <QDateTime>
#include <QHash>
#include <QUuid>

#include <algorithm>
#include <functional>

namespace kestrow {

namespace {

CategorySet intersection(const CategorySet& a, const CategorySet& b)
{
    CategorySet result;
    std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::inserter(result, result.end()));
    return result;
}

// What one stage of a scan gives back.
struct StageOutcome {
    std::vector<DiscoveredItem> items;
    QStringList warnings;
};

// One stage of a scan: it runs when it has work, and its failures are told by its prefix.
struct Stage {
    const char* warningPrefix;
    bool hasWork;
    std::function<StageOutcome()> run;
};

void checkCancellation(const std::stop_token& stop)
{
    if (stop.stop_requested())
        throw CancellationError();
}

// Runs one stage; any failure but cancellation becomes a warning with the stage's prefix.
template <typename Body> void runStage(const char* prefix, QStringList& warnings, Body&& stage)
{
    try {
        stage();
    } catch (const CancellationError&) {
        throw;
    } catch (const KestrowError& error) {
        warnings.append(QLatin1String(prefix) + error.description());
    } catch (const std::exception& error) {
        warnings.append(QLatin1String(prefix) + QString::fromLocal8Bit(error.what()));
    }
}

std::optional<QDateTime> later(const std::optional<QDateTime>& a, const std::optional<QDateTime>& b)
{
    if (!a)
        return b;
    if (!b)
        return a;
    return std::max(*a, *b);
}

DiscoveredItem merge(const DiscoveredItem& existing, const DiscoveredItem& incoming)
{
    const bool incomingLeads =
        incoming.riskTier > existing.riskTier ||
        (incoming.riskTier == existing.riskTier && existing.allocatedSizeBytes < incoming.allocatedSizeBytes);
    const DiscoveredItem& primary = incomingLeads ? incoming : existing;
    const DiscoveredItem& secondary = incomingLeads ? existing : incoming;
    return DiscoveredItem{
        .id = primary.id,
        .path = primary.path,
        .category = primary.category,
        .riskTier = std::max(existing.riskTier, incoming.riskTier),
        .logicalSizeBytes = std::max(existing.logicalSizeBytes, incoming.logicalSizeBytes),
        .allocatedSizeBytes = std::max(existing.allocatedSizeBytes, incoming.allocatedSizeBytes),
        .fileCount = std::max(existing.fileCount, incoming.fileCount),
        .lastAccessedDate = later(existing.lastAccessedDate, incoming.lastAccessedDate),
        .lastModifiedDate = later(existing.lastModifiedDate, incoming.lastModifiedDate),
        .isOrphaned = existing.isOrphaned && incoming.isOrphaned,
        .isLocked = existing.isLocked || incoming.isLocked,
        .requiresFullDiskAccess = existing.requiresFullDiskAccess || incoming.requiresFullDiskAccess,
        .itemDescription = primary.itemDescription,
        .ruleId = primary.ruleId ? primary.ruleId : secondary.ruleId,
    };
}

// An anomaly as a scan reports it: an orphan of its suggested category and tier, named by the
// rule it proposes.
DiscoveredItem itemFromAnomaly(const StorageAnomaly& anomaly)
{
    return DiscoveredItem{
        .id = anomaly.id,
        .path = anomaly.path,
        .category = anomaly.suggestedCategory,
        .riskTier = anomaly.suggestedRiskTier,
        .logicalSizeBytes = anomaly.logicalSizeBytes,
        .allocatedSizeBytes = anomaly.allocatedSizeBytes,
        .fileCount = anomaly.fileCount,
        .lastAccessedDate = std::nullopt,
        .lastModifiedDate = std::nullopt,
        .isOrphaned = true,
        .isLocked = false,
        .requiresFullDiskAccess = false,
        .itemDescription = anomaly.anomalyDescription,
        .ruleId = anomaly.proposedRule ? std::optional(anomaly.proposedRule->id) : std::nullopt,
    };
}

} // namespace

DeepScanEngine::DeepScanEngine(Options options)
    : m_homeURL(std::move(options.homeURL))
    , m_applicationsURLs(options.applicationsURLs.value_or(DeveloperTargets::defaultApplicationsURLs(m_homeURL)))
    , m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
    , m_ruleRegistry(std::move(options.ruleRegistry))
    , m_isProcessRunning(std::move(options.isProcessRunning))
    , m_thermalGovernor(options.thermalGovernor ? std::move(options.thermalGovernor) : ThermalGovernor::makeDefault())
    , m_developerTargets({.homeURL = m_homeURL,
                          .applicationsURLs = m_applicationsURLs,
                          .projectRoots = std::move(options.projectRoots),
                          .fileManager = m_fileManager,
                          .ruleRegistry = m_ruleRegistry,
                          .isProcessRunning = m_isProcessRunning,
                          .riskClassifier = RiskClassifier(m_homeURL, m_ruleRegistry, m_fileManager),
                          .thermalGovernor = m_thermalGovernor})
    , m_systemTargets({.homeURL = m_homeURL,
                       .fileManager = m_fileManager,
                       .ruleRegistry = m_ruleRegistry,
                       .riskClassifier = RiskClassifier(m_homeURL, m_ruleRegistry, m_fileManager),
                       .thermalGovernor = m_thermalGovernor})
{
}

ScanResult DeepScanEngine::scan(const std::optional<CategorySet>& categories, const ScanProgressCallback& progress,
                                std::stop_token stop)
{
    std::lock_guard operation(m_operation);
    const QDateTime startedAt = QDateTime::currentDateTimeUtc();
    const QUuid scanId = QUuid::createUuid();
    CategorySet requested;
    if (categories && !categories->empty()) {
        requested = *categories;
    } else {
        const auto all = StorageCategory::allCases();
        requested.insert(all.begin(), all.end());
    }

    std::vector<DiscoveredItem> items;
    QStringList warnings;
    ThermalGovernor& governor = *m_thermalGovernor;
    checkCancellation(stop);
    governor.checkpoint(stop);

    // The stages in the order they run; each stage that has work passes a checkpoint first.
    const CategorySet developer =
        intersection(requested, ScanTargetTable::categories(ScanTargetTable::Stage::developer));
    const CategorySet system = intersection(requested, ScanTargetTable::categories(ScanTargetTable::Stage::system));
    const Stage stages[] = {
        {"Developer targets scan error: ", !developer.empty(),
         [&] { return StageOutcome{.items = m_developerTargets.scan(developer, progress, stop)}; }},
        {"System targets scan error: ", !system.empty(),
         [&] {
             SystemTargetsOutcome outcome = m_systemTargets.scan(system, progress, stop);
             return StageOutcome{.items = std::move(outcome.items), .warnings = std::move(outcome.warnings)};
         }},
        {"Anomaly scan error: ",
         m_ruleRegistry != nullptr &&
             (requested.contains(StorageCategory::unknownAnomaly) || requested.contains(StorageCategory::dynamicRule)),
         [&] { return StageOutcome{.items = anomalyItems(progress, stop)}; }},
        // The rule stage runs whatever was requested; it picks the rules of the requested categories.
        {"Dynamic rules scan error: ", m_ruleRegistry != nullptr,
         [&] {
             const RuleStage ruleStage(
                 {.homeURL = m_homeURL, .fileManager = m_fileManager, .thermalGovernor = m_thermalGovernor});
             return StageOutcome{.items = ruleStage.scanRegistryRules(*m_ruleRegistry, requested, progress, stop)};
         }},
    };
    for (const Stage& stage : stages) {
        if (!stage.hasWork)
            continue;
        checkCancellation(stop);
        governor.checkpoint(stop);
        runStage(stage.warningPrefix, warnings, [&] {
            auto outcome = governor.withPermit(stop, stage.run);
            items.insert(items.end(), outcome.items.begin(), outcome.items.end());
            warnings.append(outcome.warnings);
        });
    }

    ScanResult result;
    result.scanId = scanId;
    result.startedAt = startedAt;
    result.items = deduplicate(items);
    result.summary = ScanSummary::from(result.items);
    result.warnings = warnings;
    result.scannedCategories.assign(requested.begin(), requested.end());
    std::sort(result.scannedCategories.begin(), result.scannedCategories.end(),
              [](StorageCategory a, StorageCategory b) { return a.rawValue() < b.rawValue(); });
    result.completedAt = QDateTime::currentDateTimeUtc();
    result.durationSeconds = static_cast<double>(startedAt.msecsTo(result.completedAt)) / 1000.0;
    return result;
}

std::vector<DiscoveredItem> DeepScanEngine::anomalyItems(const ScanProgressCallback& progress,
                                                         const std::stop_token& stop) const
{
    const AnomalyDetector detector(
        AnomalyDetectorConfiguration(anomalyMinSizeBytes,
                                     AnomalyDetectorConfiguration::defaultInspectionRoots(m_homeURL),
                                     anomalySearchDepth, m_homeURL),
        m_ruleRegistry, m_fileManager);
    std::vector<DiscoveredItem> items;
    for (const StorageAnomaly& anomaly : detector.detectAnomalies(stop)) {
        items.push_back(itemFromAnomaly(anomaly));
        if (progress)
            progress(ScanProgress{.currentCategory = anomaly.suggestedCategory,
                                  .currentPath = anomaly.path,
                                  .itemsFound = 1,
                                  .totalAllocatedBytesScanned = anomaly.allocatedSizeBytes,
                                  .totalLogicalBytesScanned = anomaly.logicalSizeBytes,
                                  .fractionCompleted = std::nullopt});
    }
    return items;
}

std::unique_ptr<ScanEventStream> DeepScanEngine::scanStream(const std::optional<CategorySet>& categories)
{
    return std::make_unique<ScanEventStream>(
        [this, categories](const std::function<void(ScanProgressEvent)>& yield, std::stop_token stop) {
            const ScanResult result = scan(
                categories, [&yield](const ScanProgress& progress) { yield({progress}); }, stop);
            for (const DiscoveredItem& item : result.items)
                yield({item});
            yield({result});
        });
}

std::vector<DiscoveredItem> DeepScanEngine::deduplicate(const std::vector<DiscoveredItem>& items)
{
    std::vector<DiscoveredItem> merged;
    QHash<QString, size_t> indexByKey;
    merged.reserve(items.size());
    for (const DiscoveredItem& item : items) {
        const QString key = PathText::removingDotComponents(item.path);
        const auto found = indexByKey.constFind(key);
        if (found == indexByKey.constEnd()) {
            indexByKey.insert(key, merged.size());
            merged.push_back(item);
        } else {
            merged[*found] = merge(merged[*found], item);
        }
    }
    std::stable_sort(merged.begin(), merged.end(), [](const DiscoveredItem& a, const DiscoveredItem& b) {
        return a.allocatedSizeBytes > b.allocatedSizeBytes;
    });
    return merged;
}

} // namespace kestrow
