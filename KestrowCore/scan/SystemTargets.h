#pragma once

#include "platform/FileManager.h"
#include "scan/TargetScan.h"
#include "storage/StorageCategory.h"

#include <QStringList>

#include <memory>
#include <stop_token>
#include <vector>

namespace kestrow {

class RuleRegistry;

// What the system scanner gives back: its items and the non-fatal warnings of its walks.
struct SystemTargetsOutcome {
    std::vector<DiscoveredItem> items;
    QStringList warnings;
};

// The scanner of the system categories: user caches, logs, crash reports, Mail downloads
// and browser caches. Unlike the developer scanner it notices folders it may not read.
class SystemTargets {
public:
    struct Options {
        QString homeURL;
        std::shared_ptr<const FileManager> fileManager;
        std::shared_ptr<RuleRegistry> ruleRegistry;
        ClassifyFunction riskClassifier; // default: the category's own tier
    };

    explicit SystemTargets(Options options);

    // Throws CancellationError.
    [[nodiscard]] SystemTargetsOutcome scan(const CategorySet& categories, const ScanProgressCallback& progress,
                                            std::stop_token stop = {}) const;

    [[nodiscard]] const QString& homeURL() const { return m_homeURL; }

private:
    QString m_homeURL;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<RuleRegistry> m_ruleRegistry;
    ClassifyFunction m_riskClassifier;
    ItemMeasurer m_measurer;
};

} // namespace kestrow
