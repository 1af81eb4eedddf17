#include "scan/targets/KnownFolder.h"

#include "platform/PathText.h"

namespace kestrow {

void KnownFolder::emitEach(TargetScan& scan, const QString& root, std::initializer_list<KnownFolder> folders,
                           const QString& ruleId, QLatin1String neverTarget)
{
    for (const KnownFolder& folder : folders) {
        const QString path = PathText::appending(root, folder.relative);
        if (path.contains(neverTarget))
            continue;
        scan.emitIfContent({.path = path,
                            .category = StorageCategory::developerCache,
                            .description = folder.description,
                            .defaultRuleId = ruleId});
    }
}

} // namespace kestrow
