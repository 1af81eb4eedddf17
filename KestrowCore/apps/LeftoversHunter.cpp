#include "apps/LeftoversHunter.h"

#include "apps/Whitelist.h"
#include "platform/PathText.h"
#include "platform/ProcessFolders.h"
#include "support/KestrowError.h"
#include "support/TimeStamp.h"

namespace kestrow {

namespace {

struct CandidateFolder {
    DependencyLocation location;
    const char* relative;
};

// In the order the scan visits them and reports its results.
constexpr std::array<CandidateFolder, 10> candidateFolders{{
    {DependencyLocation::applicationSupport, "Library/Application Support"},
    {DependencyLocation::caches, "Library/Caches"},
    {DependencyLocation::preferences, "Library/Preferences"},
    {DependencyLocation::containers, "Library/Containers"},
    {DependencyLocation::savedApplicationState, "Library/Saved Application State"},
    {DependencyLocation::webKit, "Library/WebKit"},
    {DependencyLocation::httpStorages, "Library/HTTPStorages"},
    {DependencyLocation::applicationScripts, "Library/Application Scripts"},
    {DependencyLocation::launchAgents, "Library/LaunchAgents"},
    {DependencyLocation::groupContainers, "Library/Group Containers"},
}};

// Entries below this confidence are never reported.
constexpr double reportedConfidence = 0.7;

void throwIfStopped(const std::stop_token& stop)
{
    if (stop.stop_requested())
        throw CancellationError();
}

QString withoutEnding(const QString& name, const QString& ending)
{
    return name.endsWith(ending) ? name.left(name.size() - ending.size()) : name;
}

// Regular files below a folder: their bytes and their latest change.
class FolderSizes final : public WalkSink {
public:
    void regularFile(const FileStatus& status) override
    {
        allocatedBytes += status.allocatedSize;
        logicalBytes += status.size;
        const QDateTime modified = TimeStamp::fromUnixNanoseconds(status.modifiedNanoseconds);
        if (!lastModifiedDate || modified > *lastModifiedDate)
            lastModifiedDate = modified;
    }
    void unreadableDirectory(const QString&, int) override {}

    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;
    std::optional<QDateTime> lastModifiedDate;
};

} // namespace

LeftoversHunter::LeftoversHunter(Options options)
    : m_home(options.homeURL.isEmpty() ? ProcessFolders::home() : std::move(options.homeURL))
    , m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<const FileManager>())
    , m_appScanner(std::move(options.appScanner))
    , m_appsProvider(std::move(options.appsProvider))
{
}

std::vector<AppLeftover>
LeftoversHunter::scanForLeftovers(const std::optional<std::vector<InstalledApp>>& installedApps,
                                  const Progress& progress, std::stop_token stop) const
{
    throwIfStopped(stop);
    std::vector<InstalledApp> apps;
    if (installedApps)
        apps = *installedApps;
    else if (m_appsProvider)
        apps = m_appsProvider();
    else if (m_appScanner)
        apps = m_appScanner->scanInstalledApps(false, stop);
    const InstalledAppsIndex index(apps);

    std::vector<AppLeftover> found;
    for (std::size_t done = 0; done < candidateFolders.size(); ++done) {
        const CandidateFolder& folder = candidateFolders[done];
        throwIfStopped(stop);
        if (progress)
            progress(QStringLiteral("Scanning ") + folder.location.displayName(),
                     static_cast<double>(done) / static_cast<double>(candidateFolders.size()));
        scanCandidateLocation(PathText::appending(m_home, QString::fromLatin1(folder.relative)), folder.location, index,
                              found);
    }
    if (progress)
        progress(QStringLiteral("Complete"), 1.0);
    return found;
}

LeftoversHunter::Identifier LeftoversHunter::parseIdentifier(const QString& fileName, DependencyLocation location)
{
    QString name = fileName;
    if (location == DependencyLocation::preferences)
        name = withoutEnding(withoutEnding(name, QStringLiteral(".plist.lockfile")), QStringLiteral(".plist"));
    else if (location == DependencyLocation::savedApplicationState)
        name = withoutEnding(name, QStringLiteral(".savedState"));
    const bool isIdentifier =
        name.split(QLatin1Char('.'), Qt::SkipEmptyParts).size() >= 2 && !name.contains(QLatin1Char(' '));
    return {name, isIdentifier ? std::optional<QString>(name) : std::nullopt};
}

LeftoversHunter::OrphanVerdict LeftoversHunter::evaluateOrphan(const QString& name,
                                                               const std::optional<QString>& bundleID,
                                                               DependencyLocation location, const QString& path) const
{
    if (bundleID) {
        const QString quoted = QLatin1Char('\'') + *bundleID + QStringLiteral("'.");
        switch (location) {
        case DependencyLocation::caches:
        case DependencyLocation::savedApplicationState:
        case DependencyLocation::webKit:
        case DependencyLocation::httpStorages:
            return {1.0, QStringLiteral("Cache or state directory for uninstalled bundle identifier ") + quoted,
                    RiskTier::safeToDelete};
        case DependencyLocation::preferences:
            return {1.0, QStringLiteral("Preferences plist belongs to uninstalled bundle identifier ") + quoted,
                    RiskTier::safeToDelete};
        case DependencyLocation::containers:
        case DependencyLocation::applicationScripts:
            return {0.95, QStringLiteral("Sandbox container for uninstalled bundle identifier ") + quoted,
                    RiskTier::safeToDelete};
        case DependencyLocation::groupContainers:
            return {0.85, QStringLiteral("App Group container for uninstalled bundle identifier ") + quoted,
                    RiskTier::reviewRequired};
        case DependencyLocation::launchAgents:
            return {0.85, QStringLiteral("Orphaned LaunchAgent plist for uninstalled application ") + quoted,
                    RiskTier::reviewRequired};
        default:
            return {0.9, QStringLiteral("Orphaned dependency item for uninstalled bundle identifier ") + quoted,
                    RiskTier::safeToDelete};
        }
    }
    bool isDirectory = false;
    const QString kind = m_fileManager->fileExists(path, &isDirectory) && isDirectory ? QStringLiteral("directory")
                                                                                      : QStringLiteral("item");
    const QString unclaimed = QStringLiteral("' has no corresponding installed application.");
    if (location == DependencyLocation::applicationSupport)
        return {0.9, QStringLiteral("Application Support ") + kind + QStringLiteral(" '") + name + unclaimed,
                RiskTier::safeToDelete};
    if (location == DependencyLocation::caches)
        return {0.9, QStringLiteral("Cache ") + kind + QStringLiteral(" '") + name + unclaimed, RiskTier::safeToDelete};
    return {0.75, QStringLiteral("Item '") + name + unclaimed, RiskTier::reviewRequired};
}

void LeftoversHunter::scanCandidateLocation(const QString& base, DependencyLocation location,
                                            const InstalledAppsIndex& index, std::vector<AppLeftover>& found) const
{
    // A folder that is missing or cannot be listed holds no leftovers that can be seen.
    const DirectoryListing listing = m_fileManager->contentsOfDirectory(base, true);
    if (!listing.ok())
        return;
    for (const DirectoryEntry& entry : listing.entries) {
        const Identifier parsed = parseIdentifier(entry.name, location);
        if (Whitelist::isProtected(parsed.name, parsed.bundleID))
            continue;
        if (index.matchesInstalledApp(entry.name) || (parsed.bundleID && index.matchesInstalledApp(*parsed.bundleID)) ||
            index.matchesInstalledApp(parsed.name))
            continue;
        const QString path = PathText::appending(base, entry.name);
        const OrphanVerdict verdict = evaluateOrphan(parsed.name, parsed.bundleID, location, path);
        if (verdict.confidence < reportedConfidence)
            continue;
        const ItemMetrics metrics = computeItemMetrics(path);
        if (metrics.allocatedBytes == 0 && metrics.logicalBytes == 0 && !m_fileManager->fileExists(path))
            continue;
        found.push_back(AppLeftover{
            .id = QUuid::createUuid(),
            .candidateAppName = parsed.name,
            .bundleIdentifier = parsed.bundleID,
            .path = path,
            .location = location,
            .allocatedSizeBytes = metrics.allocatedBytes,
            .logicalSizeBytes = metrics.logicalBytes != 0 ? metrics.logicalBytes : metrics.allocatedBytes,
            .lastModifiedDate = metrics.lastModifiedDate,
            .confidence = verdict.confidence,
            .orphanReason = verdict.reason,
            .suggestedRiskTier = verdict.tier,
        });
    }
}

LeftoversHunter::ItemMetrics LeftoversHunter::computeItemMetrics(const QString& path) const
{
    const std::optional<FileStatus> status = m_fileManager->status(path);
    if (!status)
        return {};
    if (!status->isDirectory())
        return {status->allocatedSize, status->size, TimeStamp::fromUnixNanoseconds(status->modifiedNanoseconds)};
    FolderSizes sizes;
    m_fileManager->walk(path, sizes);
    return {sizes.allocatedBytes, sizes.logicalBytes, sizes.lastModifiedDate};
}

} // namespace kestrow
