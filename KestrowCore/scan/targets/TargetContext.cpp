#include "scan/targets/TargetContext.h"

#include "platform/PathText.h"

namespace kestrow {

QString TargetContext::home(const QString& relative) const
{
    if (relative.startsWith(QLatin1Char('/')))
        return relative;
    const std::pair<QLatin1String, const QString*> moved[] = {
        {QLatin1String(".cache"), &xdg.cacheHome},
        {QLatin1String(".config"), &xdg.configHome},
        {QLatin1String(".local/share"), &xdg.dataHome},
    };
    for (const auto& [prefix, folder] : moved) {
        if (folder->isEmpty() || !relative.startsWith(prefix))
            continue;
        if (relative.size() == prefix.size())
            return *folder;
        if (relative.at(prefix.size()) == QLatin1Char('/'))
            return PathText::appending(*folder, relative.mid(prefix.size() + 1));
    }
    return PathText::appending(homeURL, relative);
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
