#pragma once

#include "apps/AppFootprint.h"
#include "apps/InstalledApp.h"
#include "platform/FileManager.h"
#include "platform/HostSystem.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace kestrow {

class FootprintMeasurer;

// What on this disk belongs to one application: the bundle, and the entries of the home's
// Library that a name or identifier of the application names exactly, or that an identifier
// claims by a prefix ending at a "." or by a suffix after one. Nothing is matched by
// similarity, names of the Library's own layout and Apple's identifiers never match, and
// nothing reached through a link out of the home or the bundle is claimed. On Linux the same
// rules search the XDG folders, the Flatpak and Snap data folders and the autostart entries,
// with the program's name and window class as further names, and claim the user's own entry
// and icons of the application. Immutable; each call has its own run state, so calls may run
// in parallel.
class DependencyResolver {
public:
    // The application's group identifiers from its entitlements, for a bundle path.
    using EntitlementsReader = std::function<QStringList(const QString& bundlePath)>;

    struct Options {
        QString homeURL; // empty: the user's home
        std::shared_ptr<const FileManager> fileManager;
        EntitlementsReader entitlementsReader; // absent where the platform has no entitlements
        std::optional<HostSystem> host;        // absent: the one this runs on
    };

    // The names and identifiers that an application's items may carry.
    struct SearchCandidates {
        QString primaryBundleId;
        QString primaryDisplayName;
        std::optional<QString> bundleName;
        QStringList candidateNames;
        QStringList candidateBundleIds;
        QStringList vendorSubpaths; // "Vendor/Name", matched as a path of two folders
        QStringList appGroupIds;
    };

    explicit DependencyResolver(Options options = {});

    // Never fails: what cannot be read counts as not there.
    [[nodiscard]] AppFootprint resolveDependencies(const InstalledApp& app) const;
    [[nodiscard]] SearchCandidates generateSearchCandidates(const InstalledApp& app) const;

private:
    class Run;

    QString m_home;
    std::shared_ptr<const FileManager> m_fileManager;
    EntitlementsReader m_entitlementsReader;
    HostSystem m_host;
};

} // namespace kestrow
