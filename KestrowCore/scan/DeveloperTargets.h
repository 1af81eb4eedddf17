#pragma once

#include "platform/FileManager.h"
#include "scan/TargetScan.h"
#include "storage/StorageCategory.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

class RuleRegistry;

// The scanner of the developer and AI categories: package manager caches, model stores,
// Docker disks, Xcode products and stray dependencies, each at its known locations.
class DeveloperTargets {
public:
    struct Options {
        QString homeURL;
        std::optional<QStringList> applicationsURLs; // default: /Applications and ~/Applications
        std::optional<QStringList> projectRoots;     // default: eight usual folders below the home
        std::shared_ptr<const FileManager> fileManager;
        std::shared_ptr<RuleRegistry> ruleRegistry;
        std::function<bool(const QString&)> isProcessRunning; // default: defaultProcessChecker
        ClassifyFunction riskClassifier;                    // default: the category's own tier
    };

    explicit DeveloperTargets(Options options);

    // Works through the requested developer categories in a fixed order, one sub-scan at a
    // time, checking for cancellation before each. Throws CancellationError.
    [[nodiscard]] std::vector<DiscoveredItem> scan(const CategorySet& categories, const ScanProgressCallback& progress,
                                                   std::stop_token stop = {}) const;

    [[nodiscard]] const QString& homeURL() const { return m_homeURL; }
    [[nodiscard]] const QStringList& applicationsURLs() const { return m_applicationsURLs; }
    [[nodiscard]] const QStringList& projectRoots() const { return m_projectRoots; }

    [[nodiscard]] static QStringList defaultApplicationsURLs(const QString& home);

private:
    void scanUVCaches(TargetScan& scan) const;

    [[nodiscard]] QString home(const QString& relative) const;

    QString m_homeURL;
    QStringList m_applicationsURLs;
    QStringList m_projectRoots;
    std::shared_ptr<const FileManager> m_fileManager;
    std::function<bool(const QString&)> m_isProcessRunning;
    std::shared_ptr<RuleRegistry> m_ruleRegistry;
    ClassifyFunction m_riskClassifier;
    ItemMeasurer m_measurer;
};

} // namespace kestrow
