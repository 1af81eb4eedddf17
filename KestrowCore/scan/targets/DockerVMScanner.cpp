#include "scan/targets/DockerVMScanner.h"

#include "platform/PathText.h"

#include <algorithm>

namespace kestrow {

namespace {

bool isDockerAppInstalled(const TargetContext& context)
{
    return std::any_of(context.applicationsURLs.begin(), context.applicationsURLs.end(), [&](const QString& folder) {
        return context.fileManager->fileExists(PathText::appending(folder, QStringLiteral("Docker.app")));
    });
}

bool isDockerDaemonRunning(const TargetContext& context)
{
    for (const char* name : {"Docker", "com.docker.virtualization", "com.docker.backend", "vpnkit", "docker"}) {
        if (context.isProcessRunning(QLatin1String(name)))
            return true;
    }
    return false;
}

} // namespace

void DockerVMScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const QString vms = context.home(QStringLiteral("Library/Containers/com.docker.docker/Data/vms"));
    if (!context.fileManager->fileExists(vms))
        return;
    const DirectoryListing listing = context.fileManager->contentsOfDirectory(vms, true);
    if (!listing.ok())
        return;
    QStringList disks;
    for (const DirectoryEntry& entry : listing.entries) {
        for (const char* relative : {"data/Docker.raw", "Docker.raw", "data/Docker.qcow2"}) {
            const QString disk = PathText::appending(PathText::appending(vms, entry.name), QLatin1String(relative));
            if (context.fileManager->fileExists(disk))
                disks.append(disk);
        }
    }
    if (disks.isEmpty())
        return;

    // A disk is left behind only when Docker is neither installed nor running; a running
    // daemon holds it open.
    const bool isRunning = isDockerDaemonRunning(context);
    const bool isOrphaned = !isDockerAppInstalled(context) && !isRunning;
    const QString description = QStringLiteral("Docker VM Disk Image [") +
                                (isOrphaned ? QStringLiteral("Orphaned (Docker.app uninstalled & inactive)")
                                            : QStringLiteral("Active (Docker.app installed or running)")) +
                                QLatin1Char(']');
    for (const QString& disk : disks) {
        MeasuredMetrics metrics = scan.measure(disk);
        metrics.fileCount = 1;
        scan.emit({.path = disk,
                   .category = StorageCategory::dockerVM,
                   .description = description,
                   .defaultRuleId = QStringLiteral("dev.docker.orphaned_vm"),
                   .isOrphaned = isOrphaned,
                   .isLocked = isRunning},
                  metrics);
    }
}

} // namespace kestrow
