#include "scan/targets/EditorCacheScanner.h"

#include "platform/PathText.h"

namespace kestrow {

void EditorCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    // JetBrains keeps one cache folder per product and version; each is its own item.
    context.forEntriesOrWhole(scan,
                              {.path = context.home(QStringLiteral(".cache/JetBrains")),
                               .category = StorageCategory::developerCache,
                               .description = QStringLiteral("JetBrains IDE Caches")},
                              [&](const DirectoryEntry& entry, const QString& path) {
                                  if (entry.isDirectory)
                                      scan.emitIfContent({.path = path,
                                                          .category = StorageCategory::developerCache,
                                                          .description = QStringLiteral("JetBrains Cache (") +
                                                                         entry.name + QLatin1Char(')')});
                              });

    // VS Code and its forks keep caches among the user's settings and extensions in one
    // folder: only these folders of it are caches.
    const std::pair<const char*, const char*> editors[] = {
        {"Code", "Visual Studio Code"},
        {"Code - OSS", "Code - OSS"},
        {"VSCodium", "VSCodium"},
        {"Cursor", "Cursor"},
    };
    for (const auto& [folder, name] : editors) {
        scan.checkCancellation();
        const QString root = context.home(QStringLiteral(".config/") + QLatin1String(folder));
        if (!context.fileManager->fileExists(root))
            continue;
        for (const char* cache : {"Cache", "CachedData", "CachedExtensionVSIXs", "Code Cache", "GPUCache"})
            scan.emitIfContent({.path = PathText::appending(root, QLatin1String(cache)),
                                .category = StorageCategory::developerCache,
                                .description = QLatin1String(name) + QStringLiteral(" Cache (") + QLatin1String(cache) +
                                               QLatin1Char(')')});
    }
}

} // namespace kestrow
