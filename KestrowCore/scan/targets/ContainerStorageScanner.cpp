#include "scan/targets/ContainerStorageScanner.h"

namespace kestrow {

void ContainerStorageScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    struct Store {
        const char* relative;
        const char* description;
        const char* ruleId;
    };
    constexpr Store stores[] = {
        {".local/share/docker", "Rootless Docker Data Root", "linux.docker.rootless"},
        {".local/share/containers/storage", "Podman Container Storage", "linux.podman.storage"},
        {".local/share/containers/podman/machine", "Podman Machine Images", "linux.podman.machine"},
    };
    for (const Store& store : stores)
        scan.emitIfContent(TargetScan::Location::at(context.home(QLatin1String(store.relative)),
                                                    StorageCategory::dockerVM, QLatin1String(store.description),
                                                    store.ruleId));
}

} // namespace kestrow
