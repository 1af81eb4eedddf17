#include "apps/AppUninstaller.h"

#include "apps/AppUninstallerError.h"
#include "apps/UninstallerError.h"
#include "platform/ProcessFolders.h"

namespace kestrow {

AppUninstaller::AppUninstaller(Options options)
    : m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<const FileManager>())
    , m_appScanner(std::move(options.appScanner))
    , m_runningAppsProvider(std::move(options.runningAppsProvider))
    , m_home(options.homeURL.isEmpty() ? ProcessFolders::home() : std::move(options.homeURL))
{
    m_trashPipeline = options.trashPipeline ? std::move(options.trashPipeline)
                                            : std::make_shared<const TrashPipeline>(TrashPipeline::Options{
                                                  .fileManager = m_fileManager,
                                                  .auditLogger = std::move(options.auditLogger),
                                                  .homeURL = m_home,
                                              });
    m_dependencyResolver = options.dependencyResolver
                               ? std::move(options.dependencyResolver)
                               : std::make_shared<const DependencyResolver>(
                                     DependencyResolver::Options{.homeURL = m_home, .fileManager = m_fileManager});
    m_protectedAppGuard = options.protectedAppGuard
                              ? std::move(options.protectedAppGuard)
                              : std::make_shared<const ProtectedAppGuard>(ProtectedAppGuard::Options{
                                    .fileManager = m_fileManager, .runningAppsProvider = m_runningAppsProvider});
}

void AppUninstaller::validateAppProtection(const InstalledApp& app) const
{
    const QString path = app.bundlePath.toLower();
    const bool isProtected =
        app.isSystemApp || app.isProtected ||
        m_protectedAppGuard->evaluateProtection(app.bundlePath, app.bundleIdentifier).isProtected ||
        path == QLatin1String("/system") || path.startsWith(QLatin1String("/system/")) ||
        (app.bundleIdentifier.startsWith(QLatin1String("com.apple.")) && !path.startsWith(m_home.toLower()));
    if (isProtected)
        throw AppUninstallerError::systemAppProtected(app.displayName, app.bundleIdentifier);
}

UninstallSummary AppUninstaller::uninstall(const InstalledApp& app, bool dryRun, const UninstallOptions& options) const
{
    validateAppProtection(app);
    const bool running = app.isRunning || (m_runningAppsProvider && m_runningAppsProvider(app.bundleIdentifier)) ||
                         m_protectedAppGuard->isRunning(app.bundleIdentifier);
    if (running) {
        if (!options.force)
            throw AppUninstallerError::applicationIsRunning(app.displayName, app.bundleIdentifier);
        (void)m_protectedAppGuard->terminate(app.bundleIdentifier, true);
    }

    const AppFootprint footprint = m_dependencyResolver->resolveDependencies(app);
    if (!footprint.canUninstall() && !options.force)
        throw AppUninstallerError::uninstallationBlocked(
            footprint.blockingReason().value_or(QStringLiteral("Application cannot be uninstalled.")));

    // Only what is still there at this moment: an item gone since the footprint is no target.
    QStringList targets;
    const bool bundleTargeted = options.includeBundle && m_fileManager->fileExists(app.bundlePath);
    if (bundleTargeted)
        targets.append(app.bundlePath);
    // What belongs to the application itself beside its bundle (a Linux program's own entry and
    // icons) goes with the bundle; the rest is its data.
    for (const ResolvedDependency& dependency : footprint.dependencies()) {
        const bool wanted = dependency.location == DependencyLocation::applicationBundle ? options.includeBundle
                                                                                         : options.includeDependencies;
        if (wanted && dependency.path != app.bundlePath && m_fileManager->fileExists(dependency.path))
            targets.append(dependency.path);
    }

    UninstallSummary summary{
        .id = QUuid::createUuid(),
        .appName = app.displayName,
        .bundleIdentifier = app.bundleIdentifier,
        .bundlePath = app.bundlePath,
        .dryRun = dryRun,
    };
    if (targets.isEmpty()) {
        summary.timestamp = QDateTime::currentDateTimeUtc();
        return summary;
    }

    const TrashSummary run = !dryRun && options.permanentPurge
                                 ? m_trashPipeline->purgePermanently(targets, true, client)
                                 : m_trashPipeline->trash(targets, dryRun, client);
    if (bundleTargeted) {
        for (const TrashItemRecord& record : run.records()) {
            if (record.sourcePath != app.bundlePath)
                continue;
            if (record.status != TrashItemStatus::success && record.status != TrashItemStatus::simulated)
                throw UninstallerError::deletionFailed(app.bundlePath, record.errorMessage.value_or(QStringLiteral(
                                                                           "Failed to delete application bundle.")));
            break;
        }
    }
    for (const TrashItemRecord& record : run.records())
        if (record.status == TrashItemStatus::success || record.status == TrashItemStatus::simulated)
            summary.deletedPaths.append(record.sourcePath);
    summary.freedAllocatedBytes = run.totalAllocatedBytesFreed();
    summary.freedLogicalBytes = run.totalLogicalBytesFreed();
    summary.records = run.records();
    summary.timestamp = QDateTime::currentDateTimeUtc();
    return summary;
}

UninstallSummary AppUninstaller::uninstall(const QString& bundleIdentifier, bool dryRun,
                                           const UninstallOptions& options) const
{
    if (!m_appScanner)
        throw AppUninstallerError::applicationNotFound(
            QStringLiteral("AppScanner dependency is required to resolve bundle identifier '") + bundleIdentifier +
            QStringLiteral("'."));
    for (const InstalledApp& app : m_appScanner->scanInstalledApps(false))
        if (app.bundleIdentifier == bundleIdentifier)
            return uninstall(app, dryRun, options);
    throw AppUninstallerError::applicationNotFound(QStringLiteral("No installed application with bundle identifier '") +
                                                   bundleIdentifier + QStringLiteral("' was found."));
}

} // namespace kestrow
