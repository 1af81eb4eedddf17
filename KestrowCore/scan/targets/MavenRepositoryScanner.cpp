#include "scan/targets/MavenRepositoryScanner.h"

namespace kestrow {

void MavenRepositoryScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    scan.emitIfContent({.path = context.home(QStringLiteral(".m2/repository")),
                        .category = StorageCategory::developerCache,
                        .description = QStringLiteral("Maven Local Repository"),
                        .defaultRuleId = QStringLiteral("linux.maven.repository")});
}

} // namespace kestrow
