#pragma once

#include "platform/FileManager.h"
#include "scan/TargetScan.h"
#include "scan/targets/TargetContext.h"
#include "storage/StorageCategory.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

class RuleRegistry;

// The scanner of the developer and AI categories: the developer stage of the target table,
// run with a measurer that lets unreadable folders pass unnoticed.
class DeveloperTargets {
public:
    struct Options {
        QString homeURL;
        std::optional<QStringList> applicationsURLs; // default: /Applications, ~/Applications, on Linux /opt
        std::optional<QStringList> projectRoots;     // default: eight usual folders below the home
        std::shared_ptr<const FileManager> fileManager;
        std::shared_ptr<RuleRegistry> ruleRegistry;
        std::function<bool(const QString&)> isProcessRunning; // default: defaultProcessChecker
        std::optional<RiskClassifier> riskClassifier;         // default: on the same home, registry and file manager
        std::shared_ptr<ThermalGovernor> thermalGovernor;     // paces the measuring; none: all processors
    };

    explicit DeveloperTargets(Options options);

    // Works through the requested developer categories in the table's order, one family at a
    // time, checking for cancellation before each. Throws CancellationError.
    [[nodiscard]] std::vector<DiscoveredItem> scan(const CategorySet& categories, const ScanProgressCallback& progress,
                                                   std::stop_token stop = {}) const;

    [[nodiscard]] const QString& homeURL() const { return m_context.homeURL; }
    [[nodiscard]] const QStringList& applicationsURLs() const { return m_context.applicationsURLs; }
    [[nodiscard]] const QStringList& projectRoots() const { return m_context.projectRoots; }

    [[nodiscard]] static QStringList defaultApplicationsURLs(const QString& home);

private:
    TargetContext m_context;
    std::shared_ptr<RuleRegistry> m_ruleRegistry;
    RiskClassifier m_riskClassifier;
    ItemMeasurer m_measurer;
};

} // namespace kestrow
