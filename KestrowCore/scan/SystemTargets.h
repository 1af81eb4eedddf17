#pragma once

#include "platform/FileManager.h"
#include "scan/TargetScan.h"
#include "scan/targets/TargetContext.h"
#include "storage/StorageCategory.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

class RuleRegistry;

// What the system scanner gives back: its items and the non-fatal warnings of its walks.
struct SystemTargetsOutcome {
    std::vector<DiscoveredItem> items;
    QStringList warnings;
};

// The scanner of the system categories: the system stage of the target table. Unlike the
// developer scanner it notices folders it may not read.
class SystemTargets {
public:
    struct Options {
        QString homeURL;
        std::shared_ptr<const FileManager> fileManager;
        std::shared_ptr<RuleRegistry> ruleRegistry;
        std::optional<RiskClassifier> riskClassifier;     // default: on the same home, registry and file manager
        std::shared_ptr<ThermalGovernor> thermalGovernor; // paces the measuring; none: all processors
    };

    explicit SystemTargets(Options options);

    // Throws CancellationError.
    [[nodiscard]] SystemTargetsOutcome scan(const CategorySet& categories, const ScanProgressCallback& progress,
                                            std::stop_token stop = {}) const;

    [[nodiscard]] const QString& homeURL() const { return m_context.homeURL; }

private:
    TargetContext m_context;
    std::shared_ptr<RuleRegistry> m_ruleRegistry;
    RiskClassifier m_riskClassifier;
    ItemMeasurer m_measurer;
};

} // namespace kestrow
