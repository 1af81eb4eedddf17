#pragma once

#include "analysis/SpaceNode.h"
#include "apps/AppLeftover.h"
#include "apps/InstalledApp.h"
#include "city/DiskCityModel.h"
#include "cleanup/TrashSummary.h"
#include "state/AppEnvironment.h"
#include "state/AppTab.h"
#include "state/FlowRunner.h"
#include "storage/ScanResult.h"
#include "system/DiskCapacityBreakdown.h"
#include "system/StartupItem.h"
#include "system/SystemVitals.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace kestrow {

class AppSettings;
class ScanTargetFilter;
struct CapacitySegment;

// The one observable object behind all screens. It holds what they show and runs every flow
// of the application: each flow builds its services for one run, lets them work on a worker
// thread, and publishes what they give back on the main thread. No service outlives its run.
// Lives on the main thread; every field is read and written there.
class AppState : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString selectedTab READ selectedTabRaw WRITE setSelectedTabRaw NOTIFY selectedTabChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY isCleaningChanged)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged)
    Q_PROPERTY(bool isLoadingApps READ isLoadingApps NOTIFY isLoadingAppsChanged)
    Q_PROPERTY(bool isAnalyzingSpace READ isAnalyzingSpace NOTIFY isAnalyzingSpaceChanged)
    Q_PROPERTY(bool isLoadingStartup READ isLoadingStartup NOTIFY isLoadingStartupChanged)
    Q_PROPERTY(bool isDioramaBusy READ isDioramaBusy WRITE setIsDioramaBusy NOTIFY isDioramaBusyChanged)
    Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY hasFullDiskAccessChanged)
    Q_PROPERTY(bool showingSettingsSheet READ showingSettingsSheet WRITE setShowingSettingsSheet NOTIFY
                   showingSettingsSheetChanged)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY isBusyChanged)

public:
    // Samples the vitals and the Full Disk Access probe, then, a turn of the event loop later,
    // starts a scan when `autoScan` and the setting both want one, and fills the application
    // inventory in any case.
    explicit AppState(bool autoScan, AppEnvironment environment = {}, QObject* parent = nullptr);
    ~AppState() override;

    [[nodiscard]] AppSettings& settings() const { return *m_settings; }
    [[nodiscard]] const QString& homeURL() const { return m_home; }
    // Where launch items are looked for and toggled.
    [[nodiscard]] StartupLocations startupLocations() const;

    [[nodiscard]] AppTab selectedTab() const { return m_selectedTab; }
    void setSelectedTab(AppTab tab);
    [[nodiscard]] QString selectedTabRaw() const { return m_selectedTab.rawValue(); }
    void setSelectedTabRaw(const QString& raw);
    [[nodiscard]] const std::optional<ScanResult>& scanResult() const { return m_scanResult; }
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    [[nodiscard]] bool isCleaning() const { return m_isCleaning; }
    [[nodiscard]] const std::optional<TrashSummary>& lastCleanupSummary() const { return m_lastCleanupSummary; }
    [[nodiscard]] const QString& statusMessage() const { return m_statusMessage; }
    [[nodiscard]] const std::vector<InstalledApp>& installedApps() const { return m_installedApps; }
    [[nodiscard]] const std::vector<AppLeftover>& leftovers() const { return m_leftovers; }
    [[nodiscard]] bool isLoadingApps() const { return m_isLoadingApps; }
    [[nodiscard]] const std::optional<SpaceNode>& spaceRootNode() const { return m_spaceRootNode; }
    [[nodiscard]] bool isAnalyzingSpace() const { return m_isAnalyzingSpace; }
    // From the survey's root down to the folder on screen; each element is a scan of its own.
    [[nodiscard]] const std::vector<SpaceNode>& atlasStack() const { return m_atlasStack; }
    [[nodiscard]] const std::vector<StartupItem>& startupItems() const { return m_startupItems; }
    [[nodiscard]] bool isLoadingStartup() const { return m_isLoadingStartup; }
    [[nodiscard]] bool isDioramaBusy() const { return m_isDioramaBusy; }
    // Set by the diorama while it still acts out a run; a change only is published.
    void setIsDioramaBusy(bool busy);
    [[nodiscard]] const std::optional<SystemVitals>& vitals() const { return m_vitals; }
    [[nodiscard]] bool hasFullDiskAccess() const { return m_hasFullDiskAccess; }
    [[nodiscard]] bool showingSettingsSheet() const { return m_showingSettingsSheet; }
    void setShowingSettingsSheet(bool showing);

    // Any flow or the diorama at work; the screens disable their run buttons with it.
    [[nodiscard]] bool isBusy() const;
    // No flow has work under way on a worker or waiting to be published.
    [[nodiscard]] bool isIdle() const { return m_runner.isIdle(); }

    [[nodiscard]] DiskCapacityBreakdown capacityBreakdown() const;
    [[nodiscard]] std::vector<CapacitySegment> capacitySegments() const;
    // What the city stage shows of the state now.
    [[nodiscard]] DiskCityModel cityModel() const;

    // The scan; its result is narrowed by the current target switches and exclusions.
    Q_INVOKABLE void runSmartScan();
    // Moves every safe item of the last scan that the settings still allow to the Trash,
    // then scans again.
    Q_INVOKABLE void cleanSafeItems();
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void checkFDA();
    Q_INVOKABLE void openFDASettings() const;
    // Fills the inventory once, quietly, with no busy state.
    Q_INVOKABLE void loadInstalledAppsOnly();
    // The inventory, then the orphans of applications that are gone.
    Q_INVOKABLE void loadApps();
    void uninstall(const InstalledApp& app);
    void cleanLeftovers(const std::vector<AppLeftover>& items);
    // A new survey of the home, two levels deep; the Atlas starts again at its root.
    Q_INVOKABLE void loadSpaceLens();
    void drillInAtlas(const SpaceNode& node);
    Q_INVOKABLE void drillOutAtlas();
    Q_INVOKABLE void drillToAtlas(int index);
    Q_INVOKABLE void loadStartupItems(bool showLoading);
    Q_INVOKABLE void refreshVitals();

Q_SIGNALS:
    void selectedTabChanged();
    void scanResultChanged();
    void isScanningChanged();
    void isCleaningChanged();
    void lastCleanupSummaryChanged();
    void statusMessageChanged();
    void installedAppsChanged();
    void leftoversChanged();
    void isLoadingAppsChanged();
    void spaceRootNodeChanged();
    void isAnalyzingSpaceChanged();
    void atlasStackChanged();
    void startupItemsChanged();
    void isLoadingStartupChanged();
    void isDioramaBusyChanged();
    void vitalsChanged();
    void hasFullDiskAccessChanged();
    void showingSettingsSheetChanged();
    void isBusyChanged();

private:
    using Continuation = std::function<void()>;

    void scanThen(Continuation then);
    void loadAppsThen(Continuation then);
    void setStatusMessage(const QString& message);
    // Sets one of the flags that make up isBusy, and tells of both changes.
    void setBusyFlag(bool& flag, bool value, void (AppState::*changed)());
    [[nodiscard]] ScanTargetFilter currentFilter() const;

    AppEnvironment m_environment;
    QString m_home;
    AppSettings* m_settings;
    AppTab m_selectedTab = AppTab::pulse;
    std::optional<ScanResult> m_scanResult;
    bool m_isScanning = false;
    bool m_isCleaning = false;
    std::optional<TrashSummary> m_lastCleanupSummary;
    QString m_statusMessage;
    std::vector<InstalledApp> m_installedApps;
    std::vector<AppLeftover> m_leftovers;
    bool m_isLoadingApps = false;
    std::optional<SpaceNode> m_spaceRootNode;
    bool m_isAnalyzingSpace = false;
    std::vector<SpaceNode> m_atlasStack;
    std::vector<StartupItem> m_startupItems;
    bool m_isLoadingStartup = false;
    bool m_isDioramaBusy = false;
    std::optional<SystemVitals> m_vitals;
    bool m_hasFullDiskAccess = false;
    bool m_showingSettingsSheet = false;
    // Last, so that it goes first: it stops and waits for the work that refers to the fields.
    FlowRunner m_runner;
};

} // namespace kestrow
