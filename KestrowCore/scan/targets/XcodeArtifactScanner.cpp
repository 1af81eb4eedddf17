#include "scan/targets/XcodeArtifactScanner.h"

namespace kestrow {

void XcodeArtifactScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const auto xcodeLocation = [](const QString& path, const QString& description, const char* ruleId) {
        return TargetScan::Location{.path = path,
                                    .category = StorageCategory::xcodeArtifacts,
                                    .description = description,
                                    .defaultRuleId = QLatin1String(ruleId)};
    };
    const char* derivedData = "dev.xcode.derived_data";
    context.forEntriesOrWhole(scan,
                              xcodeLocation(context.home(QStringLiteral("Library/Developer/Xcode/DerivedData")),
                                            QStringLiteral("Xcode DerivedData Build Cache"), derivedData),
                              [&](const DirectoryEntry& entry, const QString& path) {
                                  if (entry.isDirectory)
                                      scan.emitIfContent(xcodeLocation(
                                          path, QStringLiteral("Xcode DerivedData: ") + entry.name, derivedData));
                              });
    scan.emitIfContent(xcodeLocation(context.home(QStringLiteral("Library/Developer/Xcode/Archives")),
                                     QStringLiteral("Xcode Release Archives (.xcarchive)"), "dev.xcode.archives"));
    scan.emitIfContent(xcodeLocation(context.home(QStringLiteral("Library/Developer/CoreSimulator/Caches")),
                                     QStringLiteral("Xcode Simulator Runtime Caches"), "dev.xcode.simulator_caches"));
}

} // namespace kestrow
