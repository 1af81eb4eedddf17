#include "scan/SystemTargets.h"

#include "scan/CategoryDefaultClassifier.h"

#include <cerrno>

namespace kestrow {

SystemTargets::SystemTargets(Options options)
    : m_homeURL(std::move(options.homeURL))
    , m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
    , m_ruleRegistry(std::move(options.ruleRegistry))
    , m_riskClassifier(options.riskClassifier ? std::move(options.riskClassifier) : categoryDefaultClassifier())
    , m_measurer(*m_fileManager, [](int errorCode) { return errorCode == EACCES || errorCode == EPERM; })
{
}

SystemTargetsOutcome SystemTargets::scan(const CategorySet& categories, const ScanProgressCallback& progress,
                                         std::stop_token stop) const
{
    TargetScan scan(m_measurer, m_riskClassifier, progress, std::move(stop));
    SystemTargetsOutcome outcome;
    for (const StorageCategory category : categories) {
        if (category.group() != CategoryGroup::system)
            continue;
        scan.checkCancellation();
    }
    outcome.items = scan.takeItems();
    return outcome;
}

} // namespace kestrow
