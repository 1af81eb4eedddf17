#include "apps/DesktopAppInspector.h"

#include "apps/AppArchitecture.h"
#include "apps/BundleStorage.h"
#include "platform/ExecutableHeadReader.h"
#include "platform/PathText.h"

namespace kestrow {

DesktopAppInspector::DesktopAppInspector(std::shared_ptr<const FileManager> fileManager,
                                         std::shared_ptr<const DesktopApplications> applications,
                                         std::shared_ptr<const ProtectedAppGuard> guard, QString snapMounts)
    : m_fileManager(std::move(fileManager))
    , m_applications(std::move(applications))
    , m_guard(std::move(guard))
    , m_snapMounts(std::move(snapMounts))
{
}

QString DesktopAppInspector::bundlePath(const DesktopApplication& application) const
{
    if (application.appImagePath)
        return *application.appImagePath;
    if (application.flatpakDeployment)
        return *application.flatpakDeployment;
    if (application.snapName)
        return PathText::appending(m_snapMounts, *application.snapName);
    return application.entryPath.value_or(QString());
}

std::optional<QString> DesktopAppInspector::executablePath(const DesktopApplication& application) const
{
    if (application.appImagePath)
        return application.appImagePath;
    if (application.flatpakDeployment && application.program) {
        const QString inside = PathText::appending(*application.flatpakDeployment,
                                                   QStringLiteral("current/active/files/bin/") + *application.program);
        return m_fileManager->fileExists(inside) ? std::optional<QString>(inside) : std::nullopt;
    }
    if (application.tryExec)
        if (std::optional<QString> path = m_applications->programPath(*application.tryExec))
            return path;
    return application.program ? m_applications->programPath(*application.program) : std::nullopt;
}

ProtectionEvaluation DesktopAppInspector::protection(const DesktopApplication& application,
                                                     const std::optional<QString>& executable) const
{
    if (application.origin == DesktopApplicationOrigin::flatpak && application.flatpakId)
        return ProtectedAppGuard::flatpakProtection(*application.flatpakId, application.flatpakUserInstallation);
    if (application.origin == DesktopApplicationOrigin::snap && application.snapName)
        return ProtectedAppGuard::snapProtection(*application.snapName);
    const QString bundle = bundlePath(application);
    if (const ProtectionEvaluation verdict = m_guard->evaluateProtection(bundle, application.desktopId);
        verdict.isProtected)
        return verdict;
    // An entry of the user's own that starts a program of the package manager's.
    if (executable && application.origin != DesktopApplicationOrigin::appImage)
        if (const ProtectionEvaluation verdict = m_guard->evaluateProtection(*executable, application.desktopId);
            verdict.isProtected)
            return verdict;
    // A system data folder is the package manager's wherever it lies.
    if (application.origin == DesktopApplicationOrigin::system)
        return ProtectionEvaluation::from(QStringLiteral("Application resides in protected system directory '") +
                                          bundle.left(bundle.lastIndexOf(QLatin1String("/applications/"))) +
                                          QLatin1Char('\''));
    return ProtectionEvaluation::from(std::nullopt);
}

InstalledApp DesktopAppInspector::inspect(const DesktopApplication& application,
                                          const ProtectedAppGuard::RunningAppsProvider& isRunning) const
{
    const QString bundle = bundlePath(application);
    const std::optional<QString> executable = executablePath(application);
    const ProtectionEvaluation verdict = protection(application, executable);
    const BundleStorage storage = BundleStorage::measure(*m_fileManager, bundle);
    const AppArchitecture architecture =
        executable ? AppArchitecture::fromProcessors(ExecutableHeadReader::readFile(*m_fileManager, *executable))
                   : AppArchitecture(AppArchitecture::unknown);
    const QString identifier =
        application.flatpakId ? *application.flatpakId : application.snapName.value_or(application.desktopId);
    const bool running =
        isRunning(identifier) || (application.program && isRunning(PathText::lastComponent(*application.program)));
    return InstalledApp{
        .id = QUuid::createUuid(),
        .bundleIdentifier = identifier,
        .bundlePath = bundle,
        .displayName = application.name,
        .version = application.version.value_or(QStringLiteral("Unknown")),
        .shortVersion = application.version,
        .isSystemApp = verdict.isProtected,
        .isRunning = running,
        .bundleSizeBytes = storage.allocatedBytes,
        .logicalSizeBytes = storage.logicalBytes > 0 ? storage.logicalBytes : storage.allocatedBytes,
        .architecture = architecture.rawValue(),
        .iconPath = application.icon ? m_applications->iconPath(*application.icon) : std::nullopt,
        .executablePath = executable,
        .isProtected = verdict.isProtected,
        .protectionReason = verdict.reason,
        .bundleName = application.startupWMClass,
    };
}

} // namespace kestrow
