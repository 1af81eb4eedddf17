#pragma once

#include "apps/AppArchitecture.h"
#include "apps/InstalledApp.h"
#include "apps/ProtectedAppGuard.h"
#include "platform/FileManager.h"

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
// still listed with what could be seen. Immutable; bundles are inspected in parallel on a
// bounded pool.
class AppScanner {
public:
    using RunningAppsProvider = ProtectedAppGuard::RunningAppsProvider;
    // How many of `total` bundles have been inspected; called from the inspecting threads, one
    // call at a time.
    using Progress = std::function<void(std::size_t inspected, std::size_t total)>;

    struct Options {
        std::optional<QStringList> applicationsURLs;       // absent: /Applications, then the home's
        std::optional<QStringList> systemApplicationsURLs; // absent: the system's three folders
        std::shared_ptr<const FileManager> fileManager;
        QString homeURL;                         // empty: the user's home
        RunningAppsProvider runningAppsProvider; // absent: the platform's, looked at once per scan
        // Judges each bundle; absent: one built on the same file manager and provider.
        std::shared_ptr<const ProtectedAppGuard> protectedAppGuard;
        int maxConcurrentInspections; // 0: one per processor
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
    [[nodiscard]] std::optional<QString> resolveIconPath(const QString& bundlePath, const QString& iconFile,
                                                         const QString& iconName) const;
    struct BundleStorage {
        std::int64_t allocatedBytes = 0;
        std::int64_t logicalBytes = 0;
    };
    [[nodiscard]] BundleStorage measureBundleStorage(const QString& bundlePath) const;

    QStringList m_applicationsURLs;
    QStringList m_systemApplicationsURLs;
    std::shared_ptr<const FileManager> m_fileManager;
    RunningAppsProvider m_runningAppsProvider;
    std::shared_ptr<const ProtectedAppGuard> m_protectedAppGuard;
    int m_maxConcurrentInspections;
};

} // namespace kestrow
