#include "scan/targets/UserCacheScanner.h"

#include "platform/PathText.h"
#include "scan/ScanTargetTable.h"
#include "scan/targets/ProtectedFolder.h"

#include <algorithm>

namespace kestrow {

namespace {

// Name parts of the browsers' own cache folders, which the browser sub-scan reports.
bool isBrowserCacheName(const QString& lower)
{
    constexpr QLatin1String tokens[] = {
        QLatin1String("google"),
        QLatin1String("chrome"),
        QLatin1String("firefox"),
        QLatin1String("microsoft edge"),
        QLatin1String("company.thebrowser.browser"),
        QLatin1String("com.apple.safari"),
        QLatin1String("bravesoftware"),
        QLatin1String("com.operasoftware.opera"),
        QLatin1String("vivaldi"),
    };
    return std::any_of(std::begin(tokens), std::end(tokens),
                       [&](QLatin1String token) { return lower.contains(token); });
}

// Caches the developer scanner reports.
bool isDeveloperCacheName(const QString& lower)
{
    constexpr QLatin1String names[] = {
        QLatin1String("uv"),       QLatin1String("pip"),   QLatin1String("pnpm"),     QLatin1String("yarn"),
        QLatin1String("go-build"), QLatin1String("cargo"), QLatin1String("homebrew"), QLatin1String("gradle"),
    };
    return std::find(std::begin(names), std::end(names), lower) != std::end(names);
}

TargetScan::Location userCache(const QString& path, const QString& description)
{
    return TargetScan::Location::at(path, StorageCategory::systemCaches, description, "sys.user.caches");
}

// Each entry of an XDG cache folder is one item, but those another family reports.
void scanCacheEntries(TargetScan& scan, const TargetContext& context, const QString& folder,
                      const std::function<QString(const QString& name)>& describe)
{
    const DirectoryListing listing = context.fileManager->contentsOfDirectory(folder, true);
    for (const DirectoryEntry& entry : listing.entries) {
        scan.checkCancellation();
        if (!ScanTargetTable::claimedCacheNames().contains(entry.name))
            scan.emitIfContent(userCache(PathText::appending(folder, entry.name), describe(entry.name)));
    }
}

// The cache folder of an application in a sandbox (Flatpak, Snap) is one item, unless it holds
// something another family reports: then each other entry is one.
void scanSandboxCache(TargetScan& scan, const TargetContext& context, const QString& folder, const QString& app,
                      const QString& sandbox)
{
    const DirectoryListing listing = context.fileManager->contentsOfDirectory(folder, true);
    if (!listing.ok())
        return;
    const bool holdsClaimed = std::any_of(listing.entries.begin(), listing.entries.end(), [](const DirectoryEntry& e) {
        return ScanTargetTable::claimedCacheNames().contains(e.name);
    });
    if (!holdsClaimed) {
        scan.emitIfContent(userCache(folder, app + QStringLiteral(" Cache (") + sandbox + QLatin1Char(')')));
        return;
    }
    scanCacheEntries(scan, context, folder, [&](const QString& name) -> QString {
        return app + QStringLiteral(" Cache (") + sandbox + QStringLiteral(", ") + name + QLatin1Char(')');
    });
}

void scanLinuxCaches(TargetScan& scan, const TargetContext& context)
{
    scanCacheEntries(scan, context, context.home(QStringLiteral(".cache")),
                     [](const QString& name) -> QString { return name + QStringLiteral(" Cache"); });

    const QString flatpaks = context.home(QStringLiteral(".var/app"));
    for (const DirectoryEntry& app : context.fileManager->contentsOfDirectory(flatpaks, true).entries) {
        scan.checkCancellation();
        if (app.isDirectory)
            scanSandboxCache(scan, context,
                             PathText::appending(PathText::appending(flatpaks, app.name), QStringLiteral("cache")),
                             app.name, QStringLiteral("Flatpak"));
    }

    // A Snap's cache lies in its folder for all revisions, "common", and in each revision's
    // own; "current" is a link to one of them.
    const QString snaps = context.home(QStringLiteral("snap"));
    for (const DirectoryEntry& snap : context.fileManager->contentsOfDirectory(snaps, true).entries) {
        if (!snap.isDirectory)
            continue;
        const QString snapFolder = PathText::appending(snaps, snap.name);
        for (const DirectoryEntry& revision : context.fileManager->contentsOfDirectory(snapFolder, true).entries) {
            scan.checkCancellation();
            if (!revision.isDirectory)
                continue;
            const QString sandbox = revision.name == QLatin1String("common")
                                        ? QStringLiteral("Snap")
                                        : QString(QStringLiteral("Snap revision ") + revision.name);
            scanSandboxCache(
                scan, context,
                PathText::appending(PathText::appending(snapFolder, revision.name), QStringLiteral(".cache")),
                snap.name, sandbox);
        }
    }
}

} // namespace

void UserCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const char* ruleId = "sys.user.caches";
    const QString caches = context.home(QStringLiteral("Library/Caches"));
    const std::vector<DirectoryEntry> entries = ProtectedFolder::listTopFolder(
        scan, context,
        TargetScan::Location::at(caches, StorageCategory::systemCaches, QStringLiteral("User Caches"), ruleId));
    for (const DirectoryEntry& entry : entries) {
        scan.checkCancellation();
        const QString lower = entry.name.toLower();
        if (isBrowserCacheName(lower) || isDeveloperCacheName(lower))
            continue;
        const QString path = PathText::appending(caches, entry.name);
        // A plain file fails to list too, and is measured like any other entry.
        if (ProtectedFolder::isRefusal(context.fileManager->contentsOfDirectory(path, false)))
            ProtectedFolder::reportRefusal(
                scan, entry.name, TargetScan::Location::at(path, StorageCategory::systemCaches, entry.name, ruleId));
        else
            scan.emitIfContent(TargetScan::Location::at(path, StorageCategory::systemCaches,
                                                        entry.name + QStringLiteral(" Cache"), ruleId));
    }
    if (context.isLinux())
        scanLinuxCaches(scan, context);
}

} // namespace kestrow
