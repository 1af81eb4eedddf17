#include "scan/targets/UserCacheScanner.h"

#include "platform/PathText.h"
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
}

} // namespace kestrow
