#pragma once

#include "apps/AppLeftover.h"
#include "apps/AppScanner.h"
#include "apps/InstalledApp.h"
#include "apps/InstalledAppsIndex.h"
#include "platform/FileManager.h"
#include "platform/HostSystem.h"
#include "platform/SoftwareRoot.h"
#include "storage/RiskTier.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

// Finds what uninstalled applications left in the home's Library: every entry of ten Library
// folders that no installed application could own and no whitelist protects, with how sure
// it is, why, and a suggested tier. On Linux it searches the XDG folders, the Flatpak data
// folders and the autostart entries, against everything installed (all desktop entries,
// packages, Flatpaks, Snaps and the programs on the search path), and only caches may be safe
// to clean. Reads only; keeps nothing between scans.
class LeftoversHunter {
public:
    // The installed applications, as a host has them; may throw.
    using AppsProvider = std::function<std::vector<InstalledApp>()>;
    // A label ("Scanning Caches", "Complete") and the share of the scan done.
    using Progress = std::function<void(const QString& label, double fraction)>;

    struct Options {
        QString homeURL; // empty: the user's home
        std::shared_ptr<const FileManager> fileManager;
        std::shared_ptr<const AppScanner> appScanner; // asked when there is no provider
        AppsProvider appsProvider;                    // absent: the scanner's list, or none without a scanner
        std::optional<HostSystem> host;               // absent: the one this runs on
        std::optional<SoftwareRoot> softwareRoot;     // Linux; absent: the machine's own
    };

    struct Identifier {
        QString name;
        std::optional<QString> bundleID;
    };

    struct OrphanVerdict {
        double confidence = 0;
        QString reason;
        RiskTier tier = RiskTier::reviewRequired;
    };

    explicit LeftoversHunter(Options options = {});

    // The leftovers in the order the folders are visited. `installedApps` when given, else
    // the provider's, else the scanner's. Throws CancellationError when `stop` is requested, before any
    // result is given, and whatever the provider throws.
    [[nodiscard]] std::vector<AppLeftover>
    scanForLeftovers(const std::optional<std::vector<InstalledApp>>& installedApps, const Progress& progress = {},
                     std::stop_token stop = {}) const;

    // The name an entry stands for, without the ending its folder gives it, and that name as an
    // identifier when it is one ("a.b", no space).
    [[nodiscard]] static Identifier parseIdentifier(const QString& fileName, DependencyLocation location);
    [[nodiscard]] OrphanVerdict evaluateOrphan(const QString& name, const std::optional<QString>& bundleID,
                                               DependencyLocation location, const QString& path) const;
    // The Linux form of both: a settings file's ending ("editor.conf", KDE's "editorrc") is no
    // part of the name, nor an autostart entry's ".desktop".
    [[nodiscard]] static Identifier parseLinuxIdentifier(const QString& fileName, DependencyLocation location,
                                                         bool isDirectory);
    // The same rows, leaning to the safe side: only a cache is safe to clean; settings, data,
    // state, sandboxes and autostart entries need a review.
    [[nodiscard]] OrphanVerdict evaluateLinuxOrphan(const QString& name, const std::optional<QString>& bundleID,
                                                    DependencyLocation location, const QString& path) const;

private:
    struct ItemMetrics {
        std::int64_t allocatedBytes = 0;
        std::int64_t logicalBytes = 0;
        std::optional<QDateTime> lastModifiedDate;
    };

    struct CandidateFolder {
        DependencyLocation location;
        QString path;
    };

    [[nodiscard]] std::vector<CandidateFolder> candidateFolders() const;
    [[nodiscard]] InstalledAppsIndex linuxIndex(const std::vector<InstalledApp>& apps) const;
    void scanCandidateLocation(const QString& base, DependencyLocation location, const InstalledAppsIndex& index,
                               std::vector<AppLeftover>& found) const;
    // An autostart entry whose program is still there starts something installed.
    [[nodiscard]] bool startsAnInstalledProgram(const QString& entryPath) const;
    [[nodiscard]] ItemMetrics computeItemMetrics(const QString& path) const;

    QString m_home;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<const AppScanner> m_appScanner;
    AppsProvider m_appsProvider;
    HostSystem m_host;
    SoftwareRoot m_softwareRoot;
};

} // namespace kestrow
