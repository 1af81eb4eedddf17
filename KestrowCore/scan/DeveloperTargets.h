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
        std::optional<RiskClassifier> riskClassifier;         // default: on the same home, registry and file manager
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
    // Package caches: DeveloperTargetsPackageCaches.cpp.
    void scanPackageManagerCaches(TargetScan& scan) const;
    void scanHomebrewCaches(TargetScan& scan) const;
    void scanGradleCaches(TargetScan& scan) const;
    void scanGitWorktrees(TargetScan& scan) const;
    // Model stores, Docker disks, Xcode products, stray dependencies:
    // DeveloperTargetsModelsAndTools.cpp.
    void scanAIModelWeights(TargetScan& scan) const;
    void scanDockerVMs(TargetScan& scan) const;
    void scanXcodeArtifacts(TargetScan& scan) const;
    void scanStrayNodeModules(TargetScan& scan) const;
    [[nodiscard]] bool isDockerAppInstalled() const;
    [[nodiscard]] bool isDockerDaemonRunning() const;

    // If `whole.path` exists, lists it (hidden entries left out when `skipHidden`) and hands
    // each entry with its path to `forEntry`; when the listing fails or is empty, the folder
    // as a whole becomes the item `whole` if it has content.
    void forEntriesOrWhole(TargetScan& scan, const TargetScan::Location& whole,
                           const std::function<void(const DirectoryEntry& entry, const QString& path)>& forEntry,
                           bool skipHidden = true) const;

    [[nodiscard]] QString home(const QString& relative) const;

    QString m_homeURL;
    QStringList m_applicationsURLs;
    QStringList m_projectRoots;
    std::shared_ptr<const FileManager> m_fileManager;
    std::function<bool(const QString&)> m_isProcessRunning;
    std::shared_ptr<RuleRegistry> m_ruleRegistry;
    RiskClassifier m_riskClassifier;
    ItemMeasurer m_measurer;
};

} // namespace kestrow
