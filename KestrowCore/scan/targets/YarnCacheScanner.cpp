#include "scan/targets/YarnCacheScanner.h"

namespace kestrow {

void YarnCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    scan.emitIfContent({.path = context.home(QStringLiteral(".cache/yarn")),
                        .category = StorageCategory::developerCache,
                        .description = QStringLiteral("Yarn Package Cache")});
}

} // namespace kestrow
