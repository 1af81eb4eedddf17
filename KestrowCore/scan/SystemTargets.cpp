#include "scan/SystemTargets.h"

#include "scan/ScanTargetTable.h"
#include "system/TCCIsolationHelper.h"

namespace kestrow {

SystemTargets::SystemTargets(Options options)
    : m_context{.homeURL = options.homeURL,
                .fileManager = options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>(),
                .xdg = XdgBaseFolders::forHome(options.homeURL)}
    , m_ruleRegistry(std::move(options.ruleRegistry))
    , m_riskClassifier(options.riskClassifier
                           ? std::move(*options.riskClassifier)
                           : RiskClassifier(m_context.homeURL, m_ruleRegistry, m_context.fileManager))
    , m_measurer(
          *m_context.fileManager, [](int errorCode) { return TCCIsolationHelper::isPermissionOrTCCError(errorCode); },
          std::move(options.thermalGovernor))
{
}

SystemTargetsOutcome SystemTargets::scan(const CategorySet& categories, const ScanProgressCallback& progress,
                                         std::stop_token stop) const
{
    TargetScan scan(m_measurer, m_riskClassifier, progress, std::move(stop));
    ScanTargetTable::scan(ScanTargetTable::Stage::system, categories, scan, m_context);
    return {.items = scan.takeItems(), .warnings = scan.takeWarnings()};
}

} // namespace kestrow
