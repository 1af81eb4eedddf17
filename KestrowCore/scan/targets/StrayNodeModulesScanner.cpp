#include "scan/targets/StrayNodeModulesScanner.h"

namespace kestrow {

void StrayNodeModulesScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    // Only the home's own node_modules belongs to no project; those inside projects are theirs.
    scan.emitIfContent({.path = context.home(QStringLiteral("node_modules")),
                        .category = StorageCategory::strayDependencies,
                        .description = QStringLiteral("Stray node_modules in User Home Root Directory"),
                        .defaultRuleId = QStringLiteral("dev.stray.node_modules"),
                        .isOrphaned = true});
}

} // namespace kestrow
