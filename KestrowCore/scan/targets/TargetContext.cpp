#include "scan/targets/TargetContext.h"

#include "platform/PathText.h"

namespace kestrow {

QString TargetContext::home(const QString& relative) const
{
    return relative.startsWith(QLatin1Char('/')) ? relative : PathText::appending(homeURL, relative);
}

void TargetContext::forEntriesOrWhole(
    TargetScan& scan, const TargetScan::Location& whole,
    const std::function<void(const DirectoryEntry& entry, const QString& path)>& forEntry, bool skipHidden) const
{
    if (!fileManager->fileExists(whole.path))
        return;
    const DirectoryListing listing = fileManager->contentsOfDirectory(whole.path, skipHidden);
    if (!listing.ok() || listing.entries.empty()) {
        scan.emitIfContent(whole);
        return;
    }
    for (const DirectoryEntry& entry : listing.entries)
        forEntry(entry, PathText::appending(whole.path, entry.name));
}

} // namespace kestrow
