#include "scan/targets/NpmCacheScanner.h"

#include "platform/PathText.h"

namespace kestrow {

void NpmCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const QString ruleId = QStringLiteral("dev.npm.cache");
    const QString root = context.home(QStringLiteral(".npm"));
    if (!context.fileManager->fileExists(root))
        return;
    bool emitted = false;
    for (const char* name : {"_cacache", "_npx", "_logs", "_prebuilds"}) {
        const QString subfolder = QLatin1String(name);
        emitted |=
            scan.emitIfContent({.path = PathText::appending(root, subfolder),
                                .category = StorageCategory::developerCache,
                                .description = QStringLiteral("npm Download Cache (") + subfolder + QLatin1Char(')'),
                                .defaultRuleId = ruleId});
    }
    if (!emitted)
        scan.emitIfContent({.path = root,
                            .category = StorageCategory::developerCache,
                            .description = QStringLiteral("npm Package Cache"),
                            .defaultRuleId = ruleId});
}

} // namespace kestrow
