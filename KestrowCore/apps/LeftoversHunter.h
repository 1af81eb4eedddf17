#pragma once

#include "apps/AppLeftover.h"
#include "apps/AppScanner.h"
#include "apps/InstalledApp.h"
#include "apps/InstalledAppsIndex.h"
#include "platform/FileManager.h"
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
// it is, why, and a suggested tier. Reads only; keeps nothing between scans.
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

private:
    struct ItemMetrics {
        std::int64_t allocatedBytes = 0;
        std::int64_t logicalBytes = 0;
        std::optional<QDateTime> lastModifiedDate;
    };

    void scanCandidateLocation(const QString& base, DependencyLocation location, const InstalledAppsIndex& index,
                               std::vector<AppLeftover>& found) const;
    [[nodiscard]] ItemMetrics computeItemMetrics(const QString& path) const;

    QString m_home;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<const AppScanner> m_appScanner;
    AppsProvider m_appsProvider;
};

} // namespace kestrow
