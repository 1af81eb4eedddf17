#include "scan/targets/NpmCacheScanner.h"

#include "platform/PathText.h"

namespace kestrow {

void NpmCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const QString ruleId = QStringLiteral("dev.npm.cache");
    const QString root = context.home(QStringLiteral(".npm"));
    if (!context.fileManager->fileExists(root))
        return;
    // The whole cache stands in only when none of its known parts holds anything, so each part
    // is measured before the next.
    bool emitted = false;
    for (const char* name : {"_cacache", "_npx", "_logs", "_prebuilds"}) {
        const QString subfolder = QLatin1String(name);
        const QString path = PathText::appending(root, subfolder);
        const MeasuredMetrics metrics = scan.measure(path);
        if (!metrics.hasContent())
            continue;
        scan.emit({.path = path,
                   .category = StorageCategory::developerCache,
                   .description = QStringLiteral("npm Download Cache (") + subfolder + QLatin1Char(')'),
                   .defaultRuleId = ruleId},
                  metrics);
        emitted = true;
    }
    if (!emitted)
        scan.emitIfContent({.path = root,
                            .category = StorageCategory::developerCache,
                            .description = QStringLiteral("npm Package Cache"),
                            .defaultRuleId = ruleId});
}

} // namespace kestrow
