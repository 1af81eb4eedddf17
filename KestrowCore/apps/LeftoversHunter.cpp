#include "apps/LeftoversHunter.h"

#include "apps/Whitelist.h"
#include "platform/DesktopApplications.h"
#include "platform/DesktopEntryFile.h"
#include "platform/InstalledSoftwareNames.h"
#include "platform/PathText.h"
#include "platform/ProcessFolders.h"
#include "platform/XdgBaseFolders.h"
#include "support/KestrowError.h"
#include "support/TimeStamp.h"

namespace kestrow {

namespace {

struct LibraryFolder {
    DependencyLocation location;
    const char* relative;
};

// In the order the scan visits them and reports its results.
constexpr std::array<LibraryFolder, 10> libraryFolders{{
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

// The row for an identifier in a place that no row of its own describes.
LeftoversHunter::OrphanVerdict orphanedDependency(const QString& bundleID)
{
    return {0.9,
            QStringLiteral("Orphaned dependency item for uninstalled bundle identifier '") + bundleID +
                QStringLiteral("'."),
            RiskTier::safeToDelete};
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
    , m_host(options.host.value_or(currentHostSystem()))
    , m_softwareRoot(options.softwareRoot ? std::move(*options.softwareRoot) : SoftwareRoot::system())
{
}

std::vector<LeftoversHunter::CandidateFolder> LeftoversHunter::candidateFolders() const
{
    std::vector<CandidateFolder> folders;
    if (m_host != HostSystem::gnuLinux) {
        for (const LibraryFolder& folder : libraryFolders)
            folders.push_back({folder.location, PathText::appending(m_home, QString::fromLatin1(folder.relative))});
        return folders;
    }
    const XdgBaseFolders xdg = XdgBaseFolders::forHome(m_home);
    return {
        {DependencyLocation::preferences, xdg.configHome},
        {DependencyLocation::applicationSupport, xdg.dataHome},
        {DependencyLocation::caches, xdg.cacheHome},
        {DependencyLocation::savedApplicationState, xdg.stateHome},
        {DependencyLocation::containers, PathText::appending(m_home, QStringLiteral(".var/app"))},
        {DependencyLocation::launchAgents, PathText::appending(xdg.configHome, QStringLiteral("autostart"))},
    };
}

InstalledAppsIndex LeftoversHunter::linuxIndex(const std::vector<InstalledApp>& apps) const
{
    InstalledAppsIndex index(apps);
    QSet<QString> names = InstalledSoftwareNames(m_fileManager, m_softwareRoot, m_home).all();
    // Every entry counts, the system's, hidden and undisplayed ones too: each names something
    // installed.
    for (const DesktopApplication& entry : DesktopApplications(m_fileManager, m_softwareRoot, m_home).entries()) {
        names.insert(entry.desktopId);
        names.insert(entry.name);
        for (const std::optional<QString>& name :
             {entry.startupWMClass, entry.flatpakId, entry.snapName, entry.program, entry.tryExec})
            if (name && !name->isEmpty())
                names.insert(PathText::lastComponent(*name));
    }
    index.addInstalledNames(names);
    return index;
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
    const InstalledAppsIndex index = m_host == HostSystem::gnuLinux ? linuxIndex(apps) : InstalledAppsIndex(apps);

    const std::vector<CandidateFolder> folders = candidateFolders();
    std::vector<AppLeftover> found;
    for (std::size_t done = 0; done < folders.size(); ++done) {
        const CandidateFolder& folder = folders[done];
        throwIfStopped(stop);
        if (progress)
            progress(QStringLiteral("Scanning ") + folder.location.displayName(),
                     static_cast<double>(done) / static_cast<double>(folders.size()));
        scanCandidateLocation(folder.path, folder.location, index, found);
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
            return orphanedDependency(*bundleID);
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

LeftoversHunter::Identifier LeftoversHunter::parseLinuxIdentifier(const QString& fileName, DependencyLocation location,
                                                                  bool isDirectory)
{
    static const QStringList settingsEndings{
        QStringLiteral(".conf"), QStringLiteral(".ini"),    QStringLiteral(".json"), QStringLiteral(".xml"),
        QStringLiteral(".cfg"),  QStringLiteral(".toml"),   QStringLiteral(".yaml"), QStringLiteral(".yml"),
        QStringLiteral(".db"),   QStringLiteral(".sqlite"), QStringLiteral(".log"),  QStringLiteral(".lock")};
    QString name = fileName;
    if (location == DependencyLocation::launchAgents) {
        name = withoutEnding(name, QStringLiteral(".desktop"));
    } else if (!isDirectory) {
        for (const QString& ending : settingsEndings)
            if (name.endsWith(ending) && name.size() > ending.size()) {
                name.chop(ending.size());
                break;
            }
    }
    const bool isIdentifier =
        name.split(QLatin1Char('.'), Qt::SkipEmptyParts).size() >= 2 && !name.contains(QLatin1Char(' '));
    return {name, isIdentifier ? std::optional<QString>(name) : std::nullopt};
}

LeftoversHunter::OrphanVerdict LeftoversHunter::evaluateLinuxOrphan(const QString& name,
                                                                    const std::optional<QString>& bundleID,
                                                                    DependencyLocation location,
                                                                    const QString& path) const
{
    // The rows written for the Library's preference files and launch agents speak of property
    // lists; Linux's settings and autostart entries take the general row.
    const bool generalRow = location == DependencyLocation::preferences || location == DependencyLocation::launchAgents;
    OrphanVerdict verdict =
        generalRow && bundleID ? orphanedDependency(*bundleID) : evaluateOrphan(name, bundleID, location, path);
    if (location != DependencyLocation::caches)
        verdict.tier = RiskTier::reviewRequired;
    return verdict;
}

bool LeftoversHunter::startsAnInstalledProgram(const QString& entryPath) const
{
    const std::optional<DesktopEntryFile> entry = DesktopEntryFile::read(*m_fileManager, entryPath);
    if (!entry)
        return false;
    const QString group = QStringLiteral("Desktop Entry");
    const std::optional<QString> exec = entry->string(group, QStringLiteral("Exec"));
    const std::optional<QStringList> arguments = exec ? DesktopEntryFile::execArguments(*exec) : std::nullopt;
    if (!arguments || arguments->isEmpty())
        return false;
    const DesktopApplications applications(m_fileManager, m_softwareRoot, m_home);
    const std::optional<QString> program = applications.programPath(arguments->first());
    return program && m_fileManager->fileExists(*program);
}

void LeftoversHunter::scanCandidateLocation(const QString& base, DependencyLocation location,
                                            const InstalledAppsIndex& index, std::vector<AppLeftover>& found) const
{
    // A folder that is missing or cannot be listed holds no leftovers that can be seen.
    const DirectoryListing listing = m_fileManager->contentsOfDirectory(base, true);
    if (!listing.ok())
        return;
    const bool onLinux = m_host == HostSystem::gnuLinux;
    for (const DirectoryEntry& entry : listing.entries) {
        const Identifier parsed = onLinux ? parseLinuxIdentifier(entry.name, location, entry.isDirectory)
                                          : parseIdentifier(entry.name, location);
        if (Whitelist::isProtected(parsed.name, parsed.bundleID) ||
            (onLinux &&
             (Whitelist::isLinuxDesktopComponent(entry.name) || Whitelist::isLinuxDesktopComponent(parsed.name))))
            continue;
        if (index.matchesInstalledApp(entry.name) || (parsed.bundleID && index.matchesInstalledApp(*parsed.bundleID)) ||
            index.matchesInstalledApp(parsed.name))
            continue;
        // KDE names a program's settings file after it with "rc" added: "kateeditorrc".
        if (onLinux && !entry.isDirectory && parsed.name.endsWith(QLatin1String("rc")) && parsed.name.size() > 2 &&
            index.matchesInstalledApp(parsed.name.chopped(2)))
            continue;
        const QString path = PathText::appending(base, entry.name);
        if (onLinux && location == DependencyLocation::launchAgents && startsAnInstalledProgram(path))
            continue;
        const OrphanVerdict verdict = onLinux ? evaluateLinuxOrphan(parsed.name, parsed.bundleID, location, path)
                                              : evaluateOrphan(parsed.name, parsed.bundleID, location, path);
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
