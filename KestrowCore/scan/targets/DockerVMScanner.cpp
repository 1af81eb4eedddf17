#include "scan/targets/DockerVMScanner.h"

#include "platform/PathText.h"

#include <algorithm>

namespace kestrow {

namespace {

// Docker Desktop as one system installs it: where its VMs' disks lie, what it is called in
// an applications folder and in the item's status, and the rule of its disks.
struct DockerDesktop {
    const char* vms;
    const char* application;
    const char* name;
    const char* ruleId;
};

constexpr DockerDesktop macDesktop{"Library/Containers/com.docker.docker/Data/vms", "Docker.app", "Docker.app",
                                   "dev.docker.orphaned_vm"};
// The Linux package installs below /opt, which is among the default applications folders.
constexpr DockerDesktop linuxDesktop{".docker/desktop/vms", "docker-desktop", "Docker Desktop",
                                     "linux.docker.desktop_vm"};

bool isInstalled(const TargetContext& context, const DockerDesktop& desktop)
{
    return std::any_of(context.applicationsURLs.begin(), context.applicationsURLs.end(), [&](const QString& folder) {
        return context.fileManager->fileExists(PathText::appending(folder, QLatin1String(desktop.application)));
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

void scanDisks(TargetScan& scan, const TargetContext& context, const DockerDesktop& desktop)
{
    const QString vms = context.home(QLatin1String(desktop.vms));
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
    const bool isOrphaned = !isInstalled(context, desktop) && !isRunning;
    const QLatin1String name(desktop.name);
    const QString status =
        isOrphaned ? QString(QStringLiteral("Orphaned (") + name + QStringLiteral(" uninstalled & inactive)"))
                   : QString(QStringLiteral("Active (") + name + QStringLiteral(" installed or running)"));
    const QString description = QStringLiteral("Docker VM Disk Image [") + status + QLatin1Char(']');
    for (const QString& disk : disks) {
        MeasuredMetrics metrics = scan.measure(disk);
        metrics.fileCount = 1;
        scan.emit({.path = disk,
                   .category = StorageCategory::dockerVM,
                   .description = description,
                   .defaultRuleId = QLatin1String(desktop.ruleId),
                   .isOrphaned = isOrphaned,
                   .isLocked = isRunning},
                  metrics);
    }
}

} // namespace

void DockerVMScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    scanDisks(scan, context, macDesktop);
    if (context.isLinux())
        scanDisks(scan, context, linuxDesktop);
}

} // namespace kestrow
