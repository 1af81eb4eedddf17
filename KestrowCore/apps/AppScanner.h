#pragma once

#include "apps/AppArchitecture.h"
#include "apps/InstalledApp.h"
#include "apps/ProtectedAppGuard.h"
#include "platform/DesktopApplications.h"
#include "platform/FileManager.h"
#include "platform/HostSystem.h"
#include "platform/SoftwareRoot.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

// The inventory of installed applications: finds the ".app" bundles in the application
// folders, reads each one's Info.plist and executable head, has the guard judge it, measures
// it, and gives one InstalledApp per bundle, sorted by name. A bundle that can't be read is
// still listed with what could be seen. On Linux the applications are the desktop entries of
// the home, the system, Flatpak and Snap, and the home's AppImages; the system's entries are
// its system applications. Immutable; applications are inspected in parallel on a bounded pool.
class AppScanner {
public:
    using RunningAppsProvider = ProtectedAppGuard::RunningAppsProvider;
    // How many of `total` bundles have been inspected; called from the inspecting threads, one
    // call at a time.
    using Progress = std::function<void(std::size_t inspected, std::size_t total)>;

    struct Options {
        // Absent: /Applications, then the home's. On Linux, given folders hold the user's desktop
        // entries and AppImages instead of the home's usual places.
        std::optional<QStringList> applicationsURLs;
        std::optional<QStringList> systemApplicationsURLs; // absent: the system's three folders; unused on Linux
        std::shared_ptr<const FileManager> fileManager;
        QString homeURL;                         // empty: the user's home
        RunningAppsProvider runningAppsProvider; // absent: the platform's, looked at once per scan
        // Judges each bundle; absent: one built on the same file manager and provider.
        std::shared_ptr<const ProtectedAppGuard> protectedAppGuard;
        int maxConcurrentInspections;             // 0: one per processor
        std::optional<HostSystem> host;           // absent: the one this runs on
        std::optional<SoftwareRoot> softwareRoot; // Linux; absent: the machine's own
    };

    explicit AppScanner(Options options = {});

    [[nodiscard]] const QStringList& applicationsURLs() const { return m_applicationsURLs; }
    [[nodiscard]] const QStringList& systemApplicationsURLs() const { return m_systemApplicationsURLs; }

    // The applications of the application folders, without the system's.
    [[nodiscard]] std::vector<InstalledApp> listInstalledApps(std::stop_token stop = {}) const;
    // Throws CancellationError when `stop` is requested before the end.
    [[nodiscard]] std::vector<InstalledApp> scanInstalledApps(bool includeSystemApps, std::stop_token stop = {},
                                                              const Progress& progress = {}) const;
    // Nothing only when nothing is at `bundlePath`.
    [[nodiscard]] std::optional<InstalledApp> inspectBundle(const QString& bundlePath) const;
    [[nodiscard]] AppArchitecture detectArchitecture(const std::optional<QString>& executablePath) const;
    // The bundles below `roots`, at most `maxDepth` folders down, each once however many links
    // lead to it; never inside a bundle.
    [[nodiscard]] QStringList discoverAppBundles(const QStringList& roots, int maxDepth) const;

private:
    [[nodiscard]] std::optional<InstalledApp> inspect(const QString& bundlePath,
                                                      const RunningAppsProvider& isRunning) const;
    using Inspection = std::function<std::optional<InstalledApp>(std::size_t index, const RunningAppsProvider&)>;
    // Inspects `count` applications on the pool and sorts what they gave by name.
    [[nodiscard]] std::vector<InstalledApp> inspectAll(std::size_t count, const Inspection& inspectOne,
                                                       const std::stop_token& stop, const Progress& progress) const;
    [[nodiscard]] std::optional<QString> resolveIconPath(const QString& bundlePath, const QString& iconFile,
                                                         const QString& iconName) const;

    QStringList m_applicationsURLs;
    QStringList m_systemApplicationsURLs;
    std::shared_ptr<const FileManager> m_fileManager;
    RunningAppsProvider m_runningAppsProvider;
    std::shared_ptr<const ProtectedAppGuard> m_protectedAppGuard;
    int m_maxConcurrentInspections;
    HostSystem m_host;
    QString m_home;
    SoftwareRoot m_softwareRoot;
};

} // namespace kestrow
