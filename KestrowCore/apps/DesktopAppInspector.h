#pragma once

#include "apps/InstalledApp.h"
#include "apps/ProtectedAppGuard.h"
#include "platform/DesktopApplications.h"
#include "platform/FileManager.h"

#include <memory>

namespace kestrow {

// Turns a Linux application, as its desktop entry or AppImage describes it, into an
// InstalledApp: what an uninstall would remove, the program and its processor, the icon, the
// sizes, and the verdict. Package-managed programs are protected by where their entry or
// program lies, Flatpaks and Snaps because their own tools remove them; AppImages and the
// user's own programs are not. Immutable.
class DesktopAppInspector {
public:
    DesktopAppInspector(std::shared_ptr<const FileManager> fileManager,
                        std::shared_ptr<const DesktopApplications> applications,
                        std::shared_ptr<const ProtectedAppGuard> guard, QString snapMounts);

    [[nodiscard]] InstalledApp inspect(const DesktopApplication& application,
                                       const ProtectedAppGuard::RunningAppsProvider& isRunning) const;
    // What an uninstall would remove: the AppImage, the Flatpak's deployment, the Snap's
    // folder, or the entry itself.
    [[nodiscard]] QString bundlePath(const DesktopApplication& application) const;
    [[nodiscard]] std::optional<QString> executablePath(const DesktopApplication& application) const;
    [[nodiscard]] ProtectionEvaluation protection(const DesktopApplication& application,
                                                  const std::optional<QString>& executable) const;

private:
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<const DesktopApplications> m_applications;
    std::shared_ptr<const ProtectedAppGuard> m_guard;
    QString m_snapMounts;
};

} // namespace kestrow
