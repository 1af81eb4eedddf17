#pragma once

#include "platform/FileManager.h"
#include "rules/RuleDefinition.h"
#include "scan/ItemMeasurer.h"
#include "scan/ThermalGovernor.h"
#include "storage/DiscoveredItem.h"
#include "storage/ScanProgress.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

namespace kestrow {

class RuleRegistry;

// The last stage of a scan: finds on disk what enabled rules describe and no scanner knows,
// above all rules that users and agents added. Each rule's patterns become existing paths,
// each path is measured with the one walker and emitted with the rule's own category and
// tier; the classifier is not asked.
class RuleStage {
public:
    struct Options {
        QString homeURL;
        std::shared_ptr<const FileManager> fileManager;
        std::shared_ptr<ThermalGovernor> thermalGovernor; // default: the running machine's
    };

    explicit RuleStage(Options options);

    // Runs the registry's active rules of the requested categories, less the built-in rules
    // whose locations the target table covers. A governor checkpoint comes before each rule,
    // pattern and path. Throws CancellationError.
    [[nodiscard]] std::vector<DiscoveredItem> scanRegistryRules(const RuleRegistry& registry,
                                                                const CategorySet& categories,
                                                                const ScanProgressCallback& progress,
                                                                std::stop_token stop = {}) const;

private:
    void checkpoint(const std::stop_token& stop) const;
    // The existing paths a pattern names, each once, in the order found. "X/**" names X
    // itself. Never fails: unreadable branches give nothing; a stop ends it early.
    [[nodiscard]] QStringList resolveMatchingPaths(const QString& pattern, const std::stop_token& stop) const;
    // The paths below `from` that match segments[index...]. Wild segments never match hidden
    // names and never pass through a symbolic link.
    [[nodiscard]] QStringList resolveSegments(const QString& from, const QStringList& segments, qsizetype index,
                                              const std::stop_token& stop) const;
    // Calls `visit` for every folder below `root`, depth first, leaving out hidden entries and
    // never entering a link; unreadable folders are passed over.
    void forEachDirectoryBelow(const QString& root, const std::function<void(const QString&)>& visit,
                               const std::stop_token& stop) const;
    [[nodiscard]] bool isExcluded(const RuleDefinition& rule, const QString& path) const;

    QString m_homeURL;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<ThermalGovernor> m_thermalGovernor;
    ItemMeasurer m_measurer;
};

} // namespace kestrow
