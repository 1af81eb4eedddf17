#include "scan/targets/BunCacheScanner.h"

namespace kestrow {

void BunCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    scan.emitIfContent({.path = context.home(QStringLiteral(".bun/install/cache")),
                        .category = StorageCategory::developerCache,
                        .description = QStringLiteral("Bun Package Install Cache"),
                        .defaultRuleId = QStringLiteral("dev.bun.cache")});
}

} // namespace kestrow
