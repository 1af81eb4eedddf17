#include "scan/targets/HomebrewCacheScanner.h"

#include "platform/PathText.h"
#include "scan/targets/KnownFolder.h"

namespace kestrow {

namespace {

TargetScan::Location cacheLocation(const QString& path, const QString& description, const QString& ruleId)
{
    return {
        .path = path, .category = StorageCategory::developerCache, .description = description, .defaultRuleId = ruleId};
}

void addMetrics(MeasuredMetrics& total, const MeasuredMetrics& part)
{
    const auto latest = [](std::optional<QDateTime>& held, const std::optional<QDateTime>& seen) {
        if (seen && (!held || *seen > *held))
            held = seen;
    };
    total.allocatedBytes += part.allocatedBytes;
    total.logicalBytes += part.logicalBytes;
    total.fileCount += part.fileCount;
    latest(total.lastAccessedDate, part.lastAccessedDate);
    latest(total.lastModifiedDate, part.lastModifiedDate);
    total.requiresFullDiskAccess = total.requiresFullDiskAccess || part.requiresFullDiskAccess;
}

bool isIncompleteDownload(const QString& name)
{
    // The extension as the platform sees it: a leading dot starts no extension.
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const bool extensionMatches = dot > 0 && name.mid(dot + 1).toLower() == QLatin1String("incomplete");
    return extensionMatches || name.endsWith(QLatin1String(".incomplete"));
}

// Unfinished downloads are items of their own; the finished bottles and packages are summed
// into one item for the folder.
void scanDownloads(TargetScan& scan, const FileManager& fileManager, const QString& downloads)
{
    const QString cacheRuleId = QStringLiteral("dev.homebrew.cache");
    const DirectoryListing listing = fileManager.contentsOfDirectory(downloads, false);
    if (!listing.ok()) {
        scan.emitIfContent(cacheLocation(downloads, QStringLiteral("Homebrew Download Cache"), cacheRuleId));
        return;
    }
    QStringList finished;
    for (const DirectoryEntry& entry : listing.entries) {
        const QString path = PathText::appending(downloads, entry.name);
        if (isIncompleteDownload(entry.name))
            scan.emitIfContent(cacheLocation(path, QStringLiteral("Homebrew Incomplete Download: ") + entry.name,
                                             QStringLiteral("dev.homebrew.incomplete")));
        else
            finished.append(path);
    }
    if (finished.isEmpty())
        return;
    MeasuredMetrics total;
    for (const QString& path : finished)
        addMetrics(total, scan.measure(path));
    if (total.fileCount >= 1 && (total.allocatedBytes > 0 || total.logicalBytes >= 1))
        scan.emit(cacheLocation(downloads, QStringLiteral("Homebrew Downloaded Bottles & Packages"), cacheRuleId),
                  total);
}

} // namespace

void HomebrewCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const FileManager& fileManager = *context.fileManager;
    const QString ruleId = QStringLiteral("dev.homebrew.cache");
    const QString root = context.home(QStringLiteral("Library/Caches/Homebrew"));
    if (!fileManager.fileExists(root))
        return;
    bool sawKnownFolder = false;

    const QString downloads = PathText::appending(root, QStringLiteral("downloads"));
    if (fileManager.fileExists(downloads)) {
        sawKnownFolder = true;
        scanDownloads(scan, fileManager, downloads);
    }

    constexpr KnownFolder folders[] = {
        {QLatin1String("Cask"), QLatin1String("Homebrew Cask Download Cache")},
        {QLatin1String("api"), QLatin1String("Homebrew API Metadata Cache")},
    };
    for (const KnownFolder& folder : folders) {
        const QString path = PathText::appending(root, folder.relative);
        if (!fileManager.fileExists(path))
            continue;
        sawKnownFolder = true;
        scan.emitIfContent(cacheLocation(path, folder.description, ruleId));
    }

    if (!sawKnownFolder)
        scan.emitIfContent(cacheLocation(root, QStringLiteral("Homebrew Formula & Cask Cache"), ruleId));
}

} // namespace kestrow
