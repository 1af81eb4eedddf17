#include "scan/targets/PipCacheScanner.h"

namespace kestrow {

void PipCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    for (const char* relative : {".cache/pip", "Library/Caches/pip"})
        scan.emitIfContent({.path = context.home(QLatin1String(relative)),
                            .category = StorageCategory::developerCache,
                            .description = QStringLiteral("pip HTTP Response and Wheel Cache"),
                            .defaultRuleId = QStringLiteral("dev.pip.cache")});
}

} // namespace kestrow
