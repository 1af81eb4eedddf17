#include "scan/targets/CondaPackageScanner.h"

namespace kestrow {

void CondaPackageScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    for (const char* relative : {"miniconda3/pkgs", "anaconda3/pkgs", "miniforge3/pkgs", ".conda/pkgs"})
        scan.emitIfContent(
            {.path = context.home(QLatin1String(relative)),
             .category = StorageCategory::developerCache,
             .description = QStringLiteral("conda Package Cache (~/") + QLatin1String(relative) + QLatin1Char(')'),
             .defaultRuleId = QStringLiteral("linux.conda.packages")});
}

} // namespace kestrow
