#include "scan/DeveloperTargets.h"

#include "scan/CategoryDefaultClassifier.h"
#include "scan/DefaultProcessChecker.h"
#include "support/PathText.h"

namespace kestrow {

DeveloperTargets::DeveloperTargets(Options options)
    : m_homeURL(std::move(options.homeURL))
    , m_applicationsURLs(options.applicationsURLs.value_or(defaultApplicationsURLs(m_homeURL)))
    , m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
    , m_isProcessRunning(options.isProcessRunning ? std::move(options.isProcessRunning) : defaultProcessChecker)
    , m_ruleRegistry(std::move(options.ruleRegistry))
    , m_riskClassifier(options.riskClassifier ? std::move(options.riskClassifier) : categoryDefaultClassifier())
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
    }
    return scan.takeItems();
}

void DeveloperTargets::scanUVCaches(TargetScan& scan) const
{
    const QString ruleId = QStringLiteral("dev.uv.cache");
    for (const char* relative : {".cache/uv", "Library/Caches/uv"}) {
        const QString root = home(QLatin1String(relative));
        if (!m_fileManager->fileExists(root))
            continue;
        const DirectoryListing listing = m_fileManager->contentsOfDirectory(root, true);
        if (listing.ok() && !listing.entries.empty()) {
            // Each cache folder is its own item; loose files at the top are not counted.
            for (const DirectoryEntry& entry : listing.entries) {
                if (!entry.isDirectory)
                    continue;
                scan.emitIfContent({.path = PathText::appending(root, entry.name),
                                    .category = StorageCategory::developerCache,
                                    .description = QStringLiteral("uv Cache (") + entry.name + QLatin1Char(')'),
                                    .defaultRuleId = ruleId});
            }
        } else {
            scan.emitIfContent({.path = root,
                                .category = StorageCategory::developerCache,
                                .description = QStringLiteral("uv Package and Wheel Archives"),
                                .defaultRuleId = ruleId});
        }
    }
}

} // namespace kestrow
