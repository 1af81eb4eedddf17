#include "scan/targets/ProtectedFolder.h"

#include "system/TCCIsolationHelper.h"

#include <QUuid>

namespace kestrow {

bool ProtectedFolder::isRefusal(const DirectoryListing& listing)
{
    return !listing.ok() && TCCIsolationHelper::isPermissionOrTCCError(listing.errorCode);
}

void ProtectedFolder::reportRefusal(TargetScan& scan, const QString& label, const TargetScan::Location& location)
{
    scan.warn(TCCIsolationHelper::fdaWarning(label, location.path));
    // Not classified: nothing could be seen to classify. Mail may hold the only copy of an
    // attachment, so its stand-in asks for review like its items.
    scan.emitUnclassified(DiscoveredItem{
        .id = QUuid::createUuid(),
        .path = location.path,
        .category = location.category,
        .riskTier =
            location.category == StorageCategory::mailDownloads ? RiskTier::reviewRequired : RiskTier::safeToDelete,
        .requiresFullDiskAccess = true,
        .itemDescription = location.description + QStringLiteral(" (Requires Full Disk Access)"),
        .ruleId = location.defaultRuleId,
    });
}

void ProtectedFolder::emitUnlessRefused(TargetScan& scan, const TargetContext& context,
                                        const TargetScan::Location& location)
{
    if (!context.fileManager->fileExists(location.path))
        return;
    if (isRefusal(context.fileManager->contentsOfDirectory(location.path, true)))
        reportRefusal(scan, location.description, location);
    else
        scan.emitIfContent(location);
}

std::vector<DirectoryEntry> ProtectedFolder::listTopFolder(TargetScan& scan, const TargetContext& context,
                                                           const TargetScan::Location& location)
{
    if (!context.fileManager->fileExists(location.path))
        return {};
    DirectoryListing listing = context.fileManager->contentsOfDirectory(location.path, true);
    if (isRefusal(listing))
        reportRefusal(scan, location.description, location);
    return std::move(listing.entries);
}

} // namespace kestrow
