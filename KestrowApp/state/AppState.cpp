#include "state/AppState.h"

#include "analysis/SpaceLensEngine.h"
#include "apps/AppScanner.h"
#include "apps/AppUninstaller.h"
#include "apps/LeftoversHunter.h"
#include "cleanup/AuditLogger.h"
#include "cleanup/TrashPipeline.h"
#include "platform/ProcessFolders.h"
#include "presentation/CapacitySegment.h"
#include "presentation/Theme.h"
#include "scan/DeepScanEngine.h"
#include "scan/ScanTargetFilter.h"
#include "settings/AppSettings.h"
#include "state/SweepConfirmation.h"
#include "system/FDAChecker.h"
#include "system/StartupManager.h"
#include "system/VitalsMonitor.h"

#include <QTimer>

namespace kestrow {

namespace {

const QString auditClientGui = QStringLiteral("gui");

QString countedOrphans(qsizetype count)
{
    return QString::number(count) + (count == 1 ? QStringLiteral(" orphan") : QStringLiteral(" orphans"));
}

// Both moves to the Trash of the application go through here: a pipeline recording in the
// home's audit log, built for the one run.
TrashSummary moveToTrash(const AppEnvironment& environment, const QString& home, const QStringList& paths,
                         const QString& client)
{
    const auto logger =
        std::make_shared<AuditLogger>(AuditLogger::Options{.homeURL = home, .fileManager = environment.fileManager});
    const TrashPipeline pipeline({.fileManager = environment.fileManager, .auditLogger = logger, .homeURL = home});
    return pipeline.trash(paths, false, client);
}

AppScanner makeAppScanner(const AppEnvironment& environment, const QString& home)
{
    return AppScanner({.applicationsURLs = environment.applicationsURLs,
                       .fileManager = environment.fileManager,
                       .homeURL = home,
                       .softwareRoot = environment.softwareRoot});
}

} // namespace

AppState::AppState(bool autoScan, AppEnvironment environment, QObject* parent)
    : QObject(parent)
    , m_environment(std::move(environment))
    , m_home(m_environment.homeURL.isEmpty() ? ProcessFolders::home() : m_environment.homeURL)
    , m_settings(m_environment.settings ? m_environment.settings : &AppSettings::shared())
    , m_statusMessage(QStringLiteral("Ready to scan"))
    , m_runner(*this, m_environment.workerThreads)
{
    if (!m_environment.fileManager)
        m_environment.fileManager = std::make_shared<FileManager>();
    if (!m_environment.systemSource)
        m_environment.systemSource = SystemSource::current();
    m_vitals = VitalsMonitor(m_environment.systemSource).getSystemVitals();
    m_hasFullDiskAccess = FDAChecker(m_home, currentHostSystem(), m_environment.fileManager).hasFullDiskAccess();

    if (autoScan && m_settings->autoScanOnLaunch())
        QTimer::singleShot(0, this, &AppState::runSmartScan);
    QTimer::singleShot(0, this, &AppState::loadInstalledAppsOnly);
}

AppState::~AppState() = default;

void AppState::setSelectedTab(AppTab tab)
{
    if (tab == m_selectedTab)
        return;
    m_selectedTab = tab;
    Q_EMIT selectedTabChanged();
}

void AppState::setSelectedTabRaw(const QString& raw)
{
    if (const std::optional<AppTab> tab = AppTab::fromRawValue(raw))
        setSelectedTab(*tab);
}

void AppState::setIsDioramaBusy(bool busy)
{
    setBusyFlag(m_isDioramaBusy, busy, &AppState::isDioramaBusyChanged);
}

void AppState::setShowingSettingsSheet(bool showing)
{
    if (showing == m_showingSettingsSheet)
        return;
    m_showingSettingsSheet = showing;
    Q_EMIT showingSettingsSheetChanged();
}

bool AppState::isBusy() const
{
    return m_isScanning || m_isCleaning || m_isLoadingApps || m_isAnalyzingSpace || m_isLoadingStartup ||
           m_isDioramaBusy;
}

void AppState::setBusyFlag(bool& flag, bool value, void (AppState::*changed)())
{
    if (flag == value)
        return;
    const bool wasBusy = isBusy();
    flag = value;
    Q_EMIT(this->*changed)();
    if (isBusy() != wasBusy)
        Q_EMIT isBusyChanged();
}

void AppState::setStatusMessage(const QString& message)
{
    m_statusMessage = message;
    Q_EMIT statusMessageChanged();
}

ScanTargetFilter AppState::currentFilter() const
{
    return m_settings->scanTargetFilter(m_home);
}

DiskCapacityBreakdown AppState::capacityBreakdown() const
{
    std::int64_t appsBytes = 0;
    for (const InstalledApp& app : m_installedApps)
        appsBytes += app.bundleSizeBytes;
    const std::optional<DiskMetrics> disk = m_vitals ? std::optional(m_vitals->disk) : std::nullopt;
    return DiskCapacityBreakdown(disk ? disk->totalBytes : 0, disk ? disk->freeBytes : 0,
                                 disk ? disk->purgeableBytes : 0, disk ? disk->systemBytes : 0, appsBytes,
                                 !m_installedApps.empty(),
                                 m_scanResult ? std::optional(m_scanResult->summary.safeFreeableBytes) : std::nullopt);
}

DiskCityModel AppState::cityModel() const
{
    return DiskCityModel::from({.isScanning = m_isScanning,
                                .isCleaning = m_isCleaning,
                                .isLoadingApps = m_isLoadingApps,
                                .isAnalyzingSpace = m_isAnalyzingSpace,
                                .isLoadingStartup = m_isLoadingStartup,
                                .lastCleanupSummary = m_lastCleanupSummary ? &*m_lastCleanupSummary : nullptr,
                                .scanResult = m_scanResult ? &*m_scanResult : nullptr,
                                .vitals = m_vitals ? &*m_vitals : nullptr,
                                .installedApps = m_installedApps});
}

std::vector<CapacitySegment> AppState::capacitySegments() const
{
    return CapacitySegment::segments(capacityBreakdown());
}

void AppState::runSmartScan()
{
    scanThen({});
}

void AppState::scanThen(Continuation then)
{
    setBusyFlag(m_isScanning, true, &AppState::isScanningChanged);
    setStatusMessage(QStringLiteral("Scanning your disk: read-only, nothing is touched."));
    const ScanTargetFilter filter = currentFilter();
    std::shared_ptr<ThermalGovernor> governor = m_settings->makeThermalGovernor();
    m_runner.run<ScanResult>(
        [filter, governor, home = m_home, fileManager = m_environment.fileManager,
         scan = m_environment.scan](std::stop_token stop) {
            DeepScanEngine engine({.homeURL = home, .fileManager = fileManager, .thermalGovernor = governor});
            const std::optional<CategorySet> categories = filter.categoriesToScan();
            return filter.apply(scan ? scan(engine, categories, stop) : engine.scan(categories, {}, stop));
        },
        [this, then = std::move(then)](FlowOutcome<ScanResult> outcome) {
            if (outcome.value) {
                m_scanResult = std::move(*outcome.value);
                Q_EMIT scanResultChanged();
                setStatusMessage(QStringLiteral("Scan complete: ") +
                                 Theme::byteText(m_scanResult->summary.totalAllocatedBytes) +
                                 QStringLiteral(" you can take back."));
            } else if (!outcome.cancelled) {
                setStatusMessage(QStringLiteral("Scan failed: ") + outcome.error);
            }
            setBusyFlag(m_isScanning, false, &AppState::isScanningChanged);
            refreshVitals();
            if (then)
                then();
        });
}

void AppState::cleanSafeItems()
{
    if (!m_scanResult)
        return;
    const ScanTargetFilter filter = currentFilter();
    std::vector<DiscoveredItem> selection;
    for (const DiscoveredItem& item : m_scanResult->items)
        if (item.riskTier == RiskTier::safeToDelete && !filter.disabledTarget(item) && !filter.isExcluded(item.path))
            selection.push_back(item);
    if (selection.empty()) {
        setStatusMessage(
            QStringLiteral("Nothing to sweep: every safe item is excluded or in a target you turned off."));
        return;
    }
    if (m_settings->confirmBeforeClean()) {
        const SweepConfirmationRequest request = SweepConfirmationRequest::forSelection(selection);
        if (!m_environment.confirmation || !m_environment.confirmation->confirm(request)) {
            setStatusMessage(QStringLiteral("Sweep cancelled. Nothing was moved."));
            return;
        }
    }
    setBusyFlag(m_isCleaning, true, &AppState::isCleaningChanged);
    setStatusMessage(QStringLiteral("Moving safe items to the Trash: nothing is deleted."));
    QStringList paths;
    for (const DiscoveredItem& item : selection)
        paths.append(item.path);
    m_runner.run<TrashSummary>([environment = m_environment, home = m_home, paths](
                                   std::stop_token) { return moveToTrash(environment, home, paths, auditClientGui); },
                               [this](FlowOutcome<TrashSummary> outcome) {
                                   const auto finish = [this] {
                                       setBusyFlag(m_isCleaning, false, &AppState::isCleaningChanged);
                                       refreshVitals();
                                   };
                                   if (!outcome.value) {
                                       if (!outcome.cancelled)
                                           setStatusMessage(QStringLiteral("Sweep failed: ") + outcome.error);
                                       finish();
                                       return;
                                   }
                                   m_lastCleanupSummary = std::move(*outcome.value);
                                   Q_EMIT lastCleanupSummaryChanged();
                                   setStatusMessage(QStringLiteral("Swept ") +
                                                    QString::number(m_lastCleanupSummary->successCount()) +
                                                    QStringLiteral(" items: ") +
                                                    Theme::byteText(m_lastCleanupSummary->totalAllocatedBytesFreed()) +
                                                    QStringLiteral(" back in your hands."));
                                   scanThen(finish);
                               });
}

void AppState::openSettings()
{
    setShowingSettingsSheet(true);
}

void AppState::checkFDA()
{
    const bool granted = FDAChecker(m_home, currentHostSystem(), m_environment.fileManager).hasFullDiskAccess();
    if (granted == m_hasFullDiskAccess)
        return;
    m_hasFullDiskAccess = granted;
    Q_EMIT hasFullDiskAccessChanged();
}

void AppState::openFDASettings() const
{
    FDAChecker(m_home, currentHostSystem(), m_environment.fileManager).openSystemSettings();
}

void AppState::loadInstalledAppsOnly()
{
    if (!m_installedApps.empty())
        return;
    m_runner.run<std::vector<InstalledApp>>(
        [environment = m_environment, home = m_home](std::stop_token stop) {
            return makeAppScanner(environment, home).scanInstalledApps(false, stop);
        },
        [this](FlowOutcome<std::vector<InstalledApp>> outcome) {
            if (!outcome.value)
                return;
            m_installedApps = std::move(*outcome.value);
            Q_EMIT installedAppsChanged();
        });
}

void AppState::loadApps()
{
    loadAppsThen({});
}

void AppState::loadAppsThen(Continuation then)
{
    setBusyFlag(m_isLoadingApps, true, &AppState::isLoadingAppsChanged);
    const auto finish = [this, then](const FlowOutcome<std::vector<AppLeftover>>& failure) {
        if (!failure.cancelled && !failure.error.isEmpty())
            setStatusMessage(QStringLiteral("Could not load apps: ") + failure.error);
        setBusyFlag(m_isLoadingApps, false, &AppState::isLoadingAppsChanged);
        if (then)
            then();
    };
    m_runner.run<std::vector<InstalledApp>>(
        [environment = m_environment, home = m_home](std::stop_token stop) {
            return makeAppScanner(environment, home).scanInstalledApps(false, stop);
        },
        [this, finish](FlowOutcome<std::vector<InstalledApp>> apps) {
            if (!apps.value) {
                finish({.error = apps.error, .cancelled = apps.cancelled});
                return;
            }
            m_installedApps = std::move(*apps.value);
            Q_EMIT installedAppsChanged();
            m_runner.run<std::vector<AppLeftover>>(
                [environment = m_environment, home = m_home, installed = m_installedApps,
                 filter = currentFilter()](std::stop_token stop) {
                    const LeftoversHunter hunter({.homeURL = home,
                                                  .fileManager = environment.fileManager,
                                                  .softwareRoot = environment.softwareRoot});
                    std::vector<AppLeftover> kept;
                    for (AppLeftover& leftover : hunter.scanForLeftovers(installed, {}, stop))
                        if (!filter.isExcluded(leftover.path))
                            kept.push_back(std::move(leftover));
                    return kept;
                },
                [this, finish](FlowOutcome<std::vector<AppLeftover>> leftovers) {
                    if (leftovers.value) {
                        m_leftovers = std::move(*leftovers.value);
                        Q_EMIT leftoversChanged();
                    }
                    finish(leftovers);
                });
        });
}

void AppState::uninstall(const InstalledApp& app)
{
    if (m_isLoadingApps)
        return;
    setBusyFlag(m_isLoadingApps, true, &AppState::isLoadingAppsChanged);
    setStatusMessage(QStringLiteral("Removing ") + app.displayName + QStringLiteral("…"));
    m_runner.run<UninstallSummary>(
        [environment = m_environment, home = m_home, app](std::stop_token) {
            const auto logger = std::make_shared<AuditLogger>(
                AuditLogger::Options{.homeURL = home, .fileManager = environment.fileManager});
            const AppUninstaller uninstaller(
                {.fileManager = environment.fileManager, .auditLogger = logger, .homeURL = home});
            return uninstaller.uninstall(app, false, UninstallOptions{});
        },
        [this, name = app.displayName](FlowOutcome<UninstallSummary> outcome) {
            if (outcome.value) {
                setStatusMessage(QStringLiteral("Removed ") + name + QStringLiteral(". ") +
                                 Theme::byteText(outcome.value->freedAllocatedBytes) +
                                 QStringLiteral(" back in your hands."));
                loadAppsThen([this] { refreshVitals(); });
                return;
            }
            setStatusMessage(QStringLiteral("Could not remove ") + name + QStringLiteral(": ") + outcome.error);
            setBusyFlag(m_isLoadingApps, false, &AppState::isLoadingAppsChanged);
            refreshVitals();
        });
}

void AppState::cleanLeftovers(const std::vector<AppLeftover>& items)
{
    const ScanTargetFilter filter = currentFilter();
    QStringList paths;
    for (const AppLeftover& item : items)
        if (!filter.isExcluded(item.path))
            paths.append(item.path);
    if (paths.isEmpty() || m_isLoadingApps)
        return;
    setBusyFlag(m_isLoadingApps, true, &AppState::isLoadingAppsChanged);
    setStatusMessage(QStringLiteral("Sweeping ") + countedOrphans(paths.size()) + QStringLiteral("…"));
    m_runner.run<TrashSummary>(
        [environment = m_environment, home = m_home, paths](std::stop_token) {
            return moveToTrash(environment, home, paths, AppUninstaller::client);
        },
        [this](FlowOutcome<TrashSummary> outcome) {
            if (outcome.value) {
                setStatusMessage(QStringLiteral("Swept ") + countedOrphans(outcome.value->successCount()) +
                                 QStringLiteral(": ") + Theme::byteText(outcome.value->totalAllocatedBytesFreed()) +
                                 QStringLiteral(" back in your hands."));
                loadAppsThen([this] { refreshVitals(); });
                return;
            }
            setStatusMessage(QStringLiteral("Could not sweep orphans: ") + outcome.error);
            setBusyFlag(m_isLoadingApps, false, &AppState::isLoadingAppsChanged);
            refreshVitals();
        });
}

void AppState::loadSpaceLens()
{
    setBusyFlag(m_isAnalyzingSpace, true, &AppState::isAnalyzingSpaceChanged);
    m_runner.run<SpaceNode>(
        [fileManager = m_environment.fileManager, home = m_home](std::stop_token stop) {
            return SpaceLensEngine(fileManager).scanDirectory(home, 2, stop);
        },
        [this](FlowOutcome<SpaceNode> outcome) {
            if (outcome.value) {
                m_spaceRootNode = *outcome.value;
                m_atlasStack = {std::move(*outcome.value)};
                Q_EMIT spaceRootNodeChanged();
                Q_EMIT atlasStackChanged();
            } else if (!outcome.cancelled) {
                setStatusMessage(QStringLiteral("Survey failed: ") + outcome.error);
            }
            setBusyFlag(m_isAnalyzingSpace, false, &AppState::isAnalyzingSpaceChanged);
        });
}

void AppState::drillInAtlas(const SpaceNode& node)
{
    if (!node.isDirectory || m_isAnalyzingSpace)
        return;
    setBusyFlag(m_isAnalyzingSpace, true, &AppState::isAnalyzingSpaceChanged);
    m_runner.run<SpaceNode>(
        [fileManager = m_environment.fileManager, path = node.path](std::stop_token stop) {
            return SpaceLensEngine(fileManager).scanDirectory(path, 2, stop);
        },
        [this, name = node.name](FlowOutcome<SpaceNode> outcome) {
            if (outcome.value) {
                m_atlasStack.push_back(std::move(*outcome.value));
                Q_EMIT atlasStackChanged();
            } else if (!outcome.cancelled) {
                setStatusMessage(QStringLiteral("Could not open ") + name + QStringLiteral(": ") + outcome.error);
            }
            setBusyFlag(m_isAnalyzingSpace, false, &AppState::isAnalyzingSpaceChanged);
        });
}

void AppState::drillOutAtlas()
{
    if (m_atlasStack.size() < 2)
        return;
    m_atlasStack.pop_back();
    Q_EMIT atlasStackChanged();
}

void AppState::drillToAtlas(int index)
{
    const auto count = static_cast<int>(m_atlasStack.size());
    if (index < 0 || index >= count - 1)
        return;
    m_atlasStack.resize(static_cast<std::size_t>(index) + 1);
    Q_EMIT atlasStackChanged();
}

void AppState::loadStartupItems(bool showLoading)
{
    if (showLoading)
        setBusyFlag(m_isLoadingStartup, true, &AppState::isLoadingStartupChanged);
    const StartupLocations locations = startupLocations();
    m_runner.run<std::vector<StartupItem>>(
        [locations, fileManager = m_environment.fileManager](std::stop_token) {
            return StartupManager(locations, fileManager).listItems();
        },
        [this](FlowOutcome<std::vector<StartupItem>> outcome) {
            if (outcome.value) {
                m_startupItems = std::move(*outcome.value);
                Q_EMIT startupItemsChanged();
            } else if (!outcome.cancelled) {
                setStatusMessage(QStringLiteral("Could not load startup items: ") + outcome.error);
            }
            setBusyFlag(m_isLoadingStartup, false, &AppState::isLoadingStartupChanged);
        });
}

StartupLocations AppState::startupLocations() const
{
    return m_environment.startupLocations.value_or(StartupLocations::standard(m_home));
}

void AppState::refreshVitals()
{
    m_vitals = VitalsMonitor(m_environment.systemSource).getSystemVitals();
    Q_EMIT vitalsChanged();
}

} // namespace kestrow
