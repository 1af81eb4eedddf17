#include "scan/targets/BuildToolCacheScanner.h"

#include "platform/PathText.h"

namespace kestrow {

void BuildToolCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    struct Tool {
        const char* relative;
        const char* description;
        const char* ruleId; // the tool's rule elsewhere, if it has one
    };
    constexpr Tool tools[] = {
        {".cache/go-build", "Go Build Cache", "dev.go.cache"},
        {".cache/bazel", "Bazel Output & Repository Cache", nullptr},
        {".cache/ccache", "ccache Compiler Cache", nullptr},
        {".cache/sccache", "sccache Compiler Cache", nullptr},
        {".cache/node-gyp", "node-gyp Node.js Headers Cache", nullptr},
        {".cache/typescript", "TypeScript Type Definitions Cache", nullptr},
        {".cache/electron", "Electron Download Cache", nullptr},
        {".cache/electron-builder", "electron-builder Download Cache", nullptr},
        {".cache/pre-commit", "pre-commit Hook Environments Cache", nullptr},
        {".cache/ms-playwright", "Playwright Browser Binaries Cache", nullptr},
        {".cache/Cypress", "Cypress Binary Cache", nullptr},
        {".cache/deno", "Deno Module & Compilation Cache", nullptr},
        {".cache/composer", "Composer Package Cache", nullptr},
    };
    for (const Tool& tool : tools) {
        scan.checkCancellation();
        TargetScan::Location location{.path = context.home(QLatin1String(tool.relative)),
                                      .category = StorageCategory::developerCache,
                                      .description = QLatin1String(tool.description)};
        if (tool.ruleId)
            location.defaultRuleId = QLatin1String(tool.ruleId);
        scan.emitIfContent(location);
    }

    // ccache's older place lies right in the home, where nothing may be removed whole: its
    // cache folders are offered one by one, and its settings file stays.
    const QString oldCcache = context.home(QStringLiteral(".ccache"));
    for (const DirectoryEntry& entry : context.fileManager->contentsOfDirectory(oldCcache, true).entries) {
        if (entry.isDirectory)
            scan.emitIfContent(
                {.path = PathText::appending(oldCcache, entry.name),
                 .category = StorageCategory::developerCache,
                 .description = QStringLiteral("ccache Compiler Cache (~/.ccache/") + entry.name + QLatin1Char(')')});
    }
}

} // namespace kestrow
