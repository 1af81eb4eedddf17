#include "scan/targets/RustupToolchainScanner.h"

namespace kestrow {

void RustupToolchainScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const QString ruleId = QStringLiteral("linux.rustup.toolchains");
    const TargetScan::Location whole{.path = context.home(QStringLiteral(".rustup/toolchains")),
                                     .category = StorageCategory::developerCache,
                                     .description = QStringLiteral("rustup Toolchains"),
                                     .defaultRuleId = ruleId};
    // One item per toolchain, so that the one in use can be kept.
    context.forEntriesOrWhole(scan, whole, [&](const DirectoryEntry& entry, const QString& path) {
        if (entry.isDirectory)
            scan.emitIfContent({.path = path,
                                .category = StorageCategory::developerCache,
                                .description = QStringLiteral("rustup Toolchain (") + entry.name + QLatin1Char(')'),
                                .defaultRuleId = ruleId});
    });
}

} // namespace kestrow
