#pragma once

#include "platform/FileManager.h"
#include "scan/DeveloperTargets.h"
#include "scan/ScanEventStream.h"
#include "scan/SystemTargets.h"
#include "scan/ThermalGovernor.h"
#include "storage/ScanResult.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

class RuleRegistry;

// The one entry point of a scan: runs the stages one after another under the governor,
// merges what they find into one deduplicated list and summarises it. One scan runs at a
// time per engine.
class DeepScanEngine {
public:
    struct Options {
        QString homeURL;
        std::optional<QStringList> applicationsURLs;
        std::optional<QStringList> projectRoots;
        std::shared_ptr<const FileManager> fileManager;
        std::shared_ptr<RuleRegistry> ruleRegistry;
        std::function<bool(const QString&)> isProcessRunning;
        std::shared_ptr<ThermalGovernor> thermalGovernor;
    };

    explicit DeepScanEngine(Options options);

    // Scans the requested categories (none or empty: all sixteen). Stage failures become
    // warnings; a requested stop throws CancellationError and nothing is returned.
    [[nodiscard]] ScanResult scan(const std::optional<CategorySet>& categories = std::nullopt,
                                  const ScanProgressCallback& progress = {}, std::stop_token stop = {});

    // The same scan on a thread of its own, delivered as events: progress while scanning,
    // then every item, then the result. The engine must outlive the stream.
    [[nodiscard]] std::unique_ptr<ScanEventStream>
    scanStream(const std::optional<CategorySet>& categories = std::nullopt);

    // Merges items of equal standardised path and sorts them, largest first.
    [[nodiscard]] static std::vector<DiscoveredItem> deduplicate(const std::vector<DiscoveredItem>& items);

    // What the anomaly stage looks for: folders of 100 MiB and more, two levels below its roots.
    static constexpr std::int64_t anomalyMinSizeBytes = 104857600;
    static constexpr int anomalySearchDepth = 2;

    [[nodiscard]] const QString& homeURL() const { return m_homeURL; }
    [[nodiscard]] const QStringList& applicationsURLs() const { return m_applicationsURLs; }

private:
    // The anomaly stage: the detector's findings as items, each reported as found.
    [[nodiscard]] std::vector<DiscoveredItem> anomalyItems(const ScanProgressCallback& progress,
                                                           const std::stop_token& stop) const;

    QString m_homeURL;
    QStringList m_applicationsURLs;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<RuleRegistry> m_ruleRegistry;
    std::function<bool(const QString&)> m_isProcessRunning;
    std::shared_ptr<ThermalGovernor> m_thermalGovernor;
    DeveloperTargets m_developerTargets;
    SystemTargets m_systemTargets;
    std::mutex m_operation;
};

} // namespace kestrow
