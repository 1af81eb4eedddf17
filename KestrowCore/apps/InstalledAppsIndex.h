#pragma once

#include "apps/InstalledApp.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QUuid>

#include <vector>

namespace kestrow {

// Every way an installed application may be named in the Library, built once per leftovers
// scan, and the test of whether a name belongs to one of them.
class InstalledAppsIndex {
public:
    explicit InstalledAppsIndex(const std::vector<InstalledApp>& apps);

    // Names of installed software that has no application record (packages, programs, Flatpak
    // ids, Snaps): each claims what its name, its identifier parts, its normalised form and its
    // tokens claim. A library package speaks for its name without "lib" too ("libgegl-0.4-0"
    // for "gegl-0.4").
    void addInstalledNames(const QSet<QString>& names);

    // Tests, first true wins: the identifier, the group form, names and identifier parts,
    // the same without trailing digits, the normalised forms, an identifier of an application
    // extended or shortened at a ".", and 80 % of the name's tokens in one application's.
    [[nodiscard]] bool matchesInstalledApp(const QString& identifier) const;

    QSet<QString> exactBundleIDs;
    QSet<QString> exactDisplayNames;
    QSet<QString> bundleBasenames;
    QSet<QString> bundleLastComponents;
    QSet<QString> normalizedAppTokens;
    QHash<QString, QSet<QUuid>> tokenToAppIDs;
    QHash<QString, QSet<QUuid>> reverseDNSPrefixes;
    std::vector<QSet<QString>> appDiscreteTokenSets;

private:
    void addLastPart(const QString& identifier);
};

} // namespace kestrow
