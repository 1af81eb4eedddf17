#include "scan/targets/UVCacheScanner.h"

namespace kestrow {

void UVCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const QString ruleId = QStringLiteral("dev.uv.cache");
    for (const char* relative : {".cache/uv", "Library/Caches/uv"}) {
        const TargetScan::Location whole{.path = context.home(QLatin1String(relative)),
                                         .category = StorageCategory::developerCache,
                                         .description = QStringLiteral("uv Package and Wheel Archives"),
                                         .defaultRuleId = ruleId};
        // Each cache folder is its own item; loose files at the top are not counted.
        context.forEntriesOrWhole(scan, whole, [&](const DirectoryEntry& entry, const QString& path) {
            if (entry.isDirectory)
                scan.emitIfContent({.path = path,
                                    .category = StorageCategory::developerCache,
                                    .description = QStringLiteral("uv Cache (") + entry.name + QLatin1Char(')'),
                                    .defaultRuleId = ruleId});
        });
    }
}

} // namespace kestrow
