#include "apps/AppUninstallerError.h"

#include "platform/HostSystem.h"

namespace kestrow {

AppUninstallerError::AppUninstallerError(Case kind, QString first, QString second)
    : m_case(kind)
    , m_first(std::move(first))
    , m_second(std::move(second))
{
}

AppUninstallerError AppUninstallerError::systemAppProtected(QString name, QString bundleId)
{
    return {Case::systemAppProtected, std::move(name), std::move(bundleId)};
}

AppUninstallerError AppUninstallerError::applicationIsRunning(QString name, QString bundleId)
{
    return {Case::applicationIsRunning, std::move(name), std::move(bundleId)};
}

AppUninstallerError AppUninstallerError::applicationNotFound(QString message)
{
    return {Case::applicationNotFound, std::move(message)};
}

AppUninstallerError AppUninstallerError::uninstallationBlocked(QString reason)
{
    return {Case::uninstallationBlocked, std::move(reason)};
}

AppUninstallerError AppUninstallerError::pipelineFailure(QString message)
{
    return {Case::pipelineFailure, std::move(message)};
}

AppUninstallerError AppUninstallerError::deletionFailed(QString path, QString reason)
{
    return {Case::deletionFailed, std::move(path), std::move(reason)};
}

QString AppUninstallerError::description() const
{
    switch (m_case) {
    case Case::systemAppProtected:
        // Elsewhere what protects an application is not macOS: the system's packages, Flatpak, Snap.
        return QStringLiteral("Application '") + m_first + QStringLiteral("' (") + m_second +
               (currentHostSystem() == HostSystem::macOS
                    ? QStringLiteral(") is a protected macOS system component and cannot be uninstalled.")
                    : QStringLiteral(") is protected and cannot be uninstalled."));
    case Case::applicationIsRunning:
        return QStringLiteral("Application '") + m_first + QStringLiteral("' (") + m_second +
               QStringLiteral(") is currently running. Please terminate the process before uninstalling.");
    case Case::applicationNotFound:
        return QStringLiteral("Application bundle not found: ") + m_first;
    case Case::uninstallationBlocked:
        return QStringLiteral("Uninstallation blocked: ") + m_first;
    case Case::pipelineFailure:
        return QStringLiteral("Trash pipeline execution failed: ") + m_first;
    case Case::deletionFailed:
        return QStringLiteral("Failed to delete item at '") + m_first + QStringLiteral("': ") + m_second;
    }
    return {};
}

} // namespace kestrow
