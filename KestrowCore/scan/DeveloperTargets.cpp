#include "scan/DeveloperTargets.h"

#include "platform/PathText.h"
#include "scan/DefaultProcessChecker.h"
#include "scan/ScanTargetTable.h"

namespace kestrow {

namespace {

TargetContext makeContext(DeveloperTargets::Options& options)
{
    TargetContext context{
        .homeURL = std::move(options.homeURL),
        .fileManager = options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>(),
        .isProcessRunning = options.isProcessRunning ? std::move(options.isProcessRunning) : defaultProcessChecker,
    };
    context.xdg = XdgBaseFolders::forHome(context.homeURL);
    context.applicationsURLs =
        options.applicationsURLs.value_or(DeveloperTargets::defaultApplicationsURLs(context.homeURL));
    if (options.projectRoots) {
        context.projectRoots = std::move(*options.projectRoots);
    } else {
        for (const char* folder : {"Developer", "Projects", "Workspace", "src", "Code", "Development", "repos", "git"})
            context.projectRoots.append(context.home(QLatin1String(folder)));
    }
    return context;
}

} // namespace

DeveloperTargets::DeveloperTargets(Options options)
    : m_context(makeContext(options))
    , m_ruleRegistry(std::move(options.ruleRegistry))
    , m_riskClassifier(options.riskClassifier
                           ? std::move(*options.riskClassifier)
                           : RiskClassifier(m_context.homeURL, m_ruleRegistry, m_context.fileManager))
    , m_measurer(*m_context.fileManager, {}, std::move(options.thermalGovernor))
{
}

QStringList DeveloperTargets::defaultApplicationsURLs(const QString& home)
{
    QStringList folders{QStringLiteral("/Applications"), PathText::appending(home, QStringLiteral("Applications"))};
    // Where Linux packages of desktop applications such as Docker Desktop install themselves.
    if (currentHostSystem() == HostSystem::gnuLinux)
        folders.append(QStringLiteral("/opt"));
    return folders;
}

std::vector<DiscoveredItem> DeveloperTargets::scan(const CategorySet& categories, const ScanProgressCallback& progress,
                                                   std::stop_token stop) const
{
    TargetScan scan(m_measurer, m_riskClassifier, progress, std::move(stop));
    ScanTargetTable::scan(ScanTargetTable::Stage::developer, categories, scan, m_context);
    return scan.takeItems();
}

} // namespace kestrow
