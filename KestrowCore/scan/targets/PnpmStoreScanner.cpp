#include "scan/targets/PnpmStoreScanner.h"

namespace kestrow {

void PnpmStoreScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    for (const char* relative : {".local/share/pnpm/store", "Library/pnpm/store", ".pnpm-store"})
        scan.emitIfContent(
            {.path = context.home(QLatin1String(relative)),
             .category = StorageCategory::developerCache,
             .description = QStringLiteral("pnpm Virtual Store (~/") + QLatin1String(relative) + QLatin1Char(')'),
             .defaultRuleId = QStringLiteral("dev.pnpm.store")});
    // On Linux pnpm keeps package metadata apart from the store, in the XDG cache folder.
    if (context.isLinux())
        scan.emitIfContent({.path = context.home(QStringLiteral(".cache/pnpm")),
                            .category = StorageCategory::developerCache,
                            .description = QStringLiteral("pnpm Metadata Cache"),
                            .defaultRuleId = QStringLiteral("dev.pnpm.store")});
}

} // namespace kestrow
