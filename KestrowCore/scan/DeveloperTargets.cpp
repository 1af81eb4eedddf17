#include "scan/DeveloperTargets.h"

#include "scan/DefaultProcessChecker.h"
#include "support/PathText.h"

namespace kestrow {

DeveloperTargets::DeveloperTargets(Options options)
    : m_homeURL(std::move(options.homeURL))
    , m_applicationsURLs(options.applicationsURLs.value_or(defaultApplicationsURLs(m_homeURL)))
    , m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
    , m_isProcessRunning(options.isProcessRunning ? std::move(options.isProcessRunning) : defaultProcessChecker)
    , m_ruleRegistry(std::move(options.ruleRegistry))
    , m_riskClassifier(options.riskClassifier ? std::move(*options.riskClassifier)
                                              : RiskClassifier(m_homeURL, m_ruleRegistry, m_fileManager))
    , m_measurer(*m_fileManager)
{
    if (options.projectRoots) {
        m_projectRoots = *options.projectRoots;
    } else {
        for (const char* folder : {"Developer", "Projects", "Workspace", "src", "Code", "Development", "repos", "git"})
            m_projectRoots.append(home(QLatin1String(folder)));
    }
}

QStringList DeveloperTargets::defaultApplicationsURLs(const QString& home)
{
    return {QStringLiteral("/Applications"), PathText::appending(home, QStringLiteral("Applications"))};
}

QString DeveloperTargets::home(const QString& relative) const
{
    return PathText::appending(m_homeURL, relative);
}

std::vector<DiscoveredItem> DeveloperTargets::scan(const CategorySet& categories, const ScanProgressCallback& progress,
                                                   std::stop_token stop) const
{
    TargetScan scan(m_measurer, m_riskClassifier, progress, std::move(stop));
    if (categories.contains(StorageCategory::developerCache)) {
        scan.checkCancellation();
        scanUVCaches(scan);
        scan.checkCancellation();
        scanPackageManagerCaches(scan);
        scan.checkCancellation();
        scanHomebrewCaches(scan);
        scan.checkCancellation();
        scanGradleCaches(scan);
        scan.checkCancellation();
        scanGitWorktrees(scan);
    }
    if (categories.contains(StorageCategory::aiModelWeights)) {
        scan.checkCancellation();
        scanAIModelWeights(scan);
    }
    if (categories.contains(StorageCategory::dockerVM)) {
        scan.checkCancellation();
        scanDockerVMs(scan);
    }
    if (categories.contains(StorageCategory::xcodeArtifacts)) {
        scan.checkCancellation();
        scanXcodeArtifacts(scan);
    }
    if (categories.contains(StorageCategory::strayDependencies)) {
        scan.checkCancellation();
        scanStrayNodeModules(scan);
    }
    return scan.takeItems();
}

void DeveloperTargets::forEntriesOrWhole(
    TargetScan& scan, const TargetScan::Location& whole,
    const std::function<void(const DirectoryEntry& entry, const QString& path)>& forEntry, bool skipHidden) const
{
    if (!m_fileManager->fileExists(whole.path))
        return;
    const DirectoryListing listing = m_fileManager->contentsOfDirectory(whole.path, skipHidden);
    if (!listing.ok() || listing.entries.empty()) {
        scan.emitIfContent(whole);
        return;
    }
    for (const DirectoryEntry& entry : listing.entries)
        forEntry(entry, PathText::appending(whole.path, entry.name));
}

void DeveloperTargets::scanUVCaches(TargetScan& scan) const
{
    const QString ruleId = QStringLiteral("dev.uv.cache");
    for (const char* relative : {".cache/uv", "Library/Caches/uv"}) {
        const TargetScan::Location whole{.path = home(QLatin1String(relative)),
                                         .category = StorageCategory::developerCache,
                                         .description = QStringLiteral("uv Package and Wheel Archives"),
                                         .defaultRuleId = ruleId};
        // Each cache folder is its own item; loose files at the top are not counted.
        forEntriesOrWhole(scan, whole, [&](const DirectoryEntry& entry, const QString& path) {
            if (entry.isDirectory)
                scan.emitIfContent({.path = path,
                                    .category = StorageCategory::developerCache,
                                    .description = QStringLiteral("uv Cache (") + entry.name + QLatin1Char(')'),
                                    .defaultRuleId = ruleId});
        });
    }
}

} // namespace kestrow
