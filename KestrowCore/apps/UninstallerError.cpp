#include "apps/UninstallerError.h"

namespace kestrow {

UninstallerError::UninstallerError(Case kind, QString first, QString second, QString third)
    : m_case(kind)
    , m_first(std::move(first))
    , m_second(std::move(second))
    , m_third(std::move(third))
{
}

UninstallerError UninstallerError::applicationNotFound(QString path)
{
    return {Case::applicationNotFound, std::move(path)};
}

UninstallerError UninstallerError::bundleInspectionFailed(QString path, QString reason)
{
    return {Case::bundleInspectionFailed, std::move(path), std::move(reason)};
}

UninstallerError UninstallerError::protectedSystemApp(QString bundleIdentifier, QString path, QString reason)
{
    return {Case::protectedSystemApp, std::move(bundleIdentifier), std::move(path), std::move(reason)};
}

UninstallerError UninstallerError::applicationRunning(QString bundleIdentifier, QString name)
{
    return {Case::applicationRunning, std::move(bundleIdentifier), std::move(name)};
}

UninstallerError UninstallerError::uninstallationFailed(QString path, QString underlyingError)
{
    return {Case::uninstallationFailed, std::move(path), std::move(underlyingError)};
}

UninstallerError UninstallerError::permissionDenied(QString path)
{
    return {Case::permissionDenied, std::move(path)};
}

UninstallerError UninstallerError::deletionFailed(QString path, QString reason)
{
    return {Case::deletionFailed, std::move(path), std::move(reason)};
}

QString UninstallerError::description() const
{
    switch (m_case) {
    case Case::applicationNotFound:
        return QStringLiteral("Application bundle not found at path: ") + m_first;
    case Case::bundleInspectionFailed:
        return QStringLiteral("Failed to inspect application bundle at '") + m_first + QStringLiteral("': ") + m_second;
    case Case::protectedSystemApp:
        return QStringLiteral("Refusing uninstallation of protected system application '") + m_first +
               QStringLiteral("' at '") + m_second + QStringLiteral("': ") + m_third;
    case Case::applicationRunning:
        return QStringLiteral("Cannot uninstall '") + m_second + QStringLiteral("' (") + m_first +
               QStringLiteral(") because it is currently running.");
    case Case::uninstallationFailed:
        return QStringLiteral("Failed to uninstall application at '") + m_first + QStringLiteral("': ") + m_second;
    case Case::permissionDenied:
        return QStringLiteral("Access denied to application bundle at '") + m_first +
               QStringLiteral("'. Full Disk Access may be required.");
    case Case::deletionFailed:
        return QStringLiteral("Failed to delete item at '") + m_first + QStringLiteral("': ") + m_second;
    }
    return {};
}

} // namespace kestrow
