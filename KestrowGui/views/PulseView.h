#pragma once

#include "models/SweepGroupsModel.h"
#include "views/StateView.h"

#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace kestrow {

// What the sidebar and the Pulse screen show, and the calls their buttons make.
class PulseView : public StateView {
    Q_OBJECT
    Q_PROPERTY(QString selectedTab READ selectedTab WRITE setSelectedTab NOTIFY changed)
    Q_PROPERTY(QVariantList tabs READ tabs NOTIFY changed)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY changed)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY changed)
    Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY changed)
    Q_PROPERTY(bool hasVitals READ hasVitals NOTIFY changed)
    Q_PROPERTY(bool hasScan READ hasScan NOTIFY changed)
    Q_PROPERTY(QString mainButtonTitle READ mainButtonTitle NOTIFY changed)
    Q_PROPERTY(QString mainButtonIcon READ mainButtonIcon NOTIFY changed)
    Q_PROPERTY(QString freeSpaceText READ freeSpaceText NOTIFY changed)
    Q_PROPERTY(QString freeSpaceAccessibleText READ freeSpaceAccessibleText NOTIFY changed)
    Q_PROPERTY(QString lastSweepLine READ lastSweepLine NOTIFY changed)
    Q_PROPERTY(QString capacityFreeText READ capacityFreeText NOTIFY changed)
    Q_PROPERTY(QString capacityTotalText READ capacityTotalText NOTIFY changed)
    Q_PROPERTY(QString liveVolumeMark READ liveVolumeMark CONSTANT)
    Q_PROPERTY(QVariantList segments READ segments NOTIFY changed)
    Q_PROPERTY(QString thermalText READ thermalText NOTIFY changed)
    Q_PROPERTY(QString thermalColor READ thermalColor NOTIFY changed)
    Q_PROPERTY(QString memoryBadgeText READ memoryBadgeText NOTIFY changed)
    Q_PROPERTY(QString memoryBadgeColor READ memoryBadgeColor NOTIFY changed)
    Q_PROPERTY(QString cpuText READ cpuText NOTIFY changed)
    Q_PROPERTY(QString memoryText READ memoryText NOTIFY changed)
    Q_PROPERTY(QVariantMap cpuMeter READ cpuMeter NOTIFY changed)
    Q_PROPERTY(QVariantMap memoryMeter READ memoryMeter NOTIFY changed)
    Q_PROPERTY(QVariantMap batteryMeter READ batteryMeter NOTIFY changed)
    Q_PROPERTY(QString footprintTitle READ footprintTitle CONSTANT)
    Q_PROPERTY(bool footprintPending READ footprintPending NOTIFY changed)
    Q_PROPERTY(QString footprintPendingTitle READ footprintPendingTitle CONSTANT)
    Q_PROPERTY(QString footprintPendingDetail READ footprintPendingDetail CONSTANT)
    Q_PROPERTY(QVariantList footprintRows READ footprintRows NOTIFY changed)
    Q_PROPERTY(QString fullDiskAccessTitle READ fullDiskAccessTitle NOTIFY changed)
    Q_PROPERTY(bool canRunSweep READ canRunSweep NOTIFY changed)
    Q_PROPERTY(QString scanAgainTitle READ scanAgainTitle NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    Q_PROPERTY(QString statusDotColor READ statusDotColor NOTIFY changed)
    Q_PROPERTY(QString putBack READ putBack CONSTANT)
    Q_PROPERTY(QString fullDiskAccessBanner READ fullDiskAccessBanner CONSTANT)
    Q_PROPERTY(QObject* sweepGroups READ sweepGroups CONSTANT)

public:
    explicit PulseView(AppState& state, QObject* parent = nullptr);

    [[nodiscard]] QString selectedTab() const { return m_state.selectedTabRaw(); }
    void setSelectedTab(const QString& raw) { m_state.setSelectedTabRaw(raw); }
    // Each tab's id, title, icon and badge: badgeText (empty for none or for the dot), badgeColor,
    // hasBadge.
    [[nodiscard]] QVariantList tabs() const;
    [[nodiscard]] bool isScanning() const { return m_state.isScanning(); }
    [[nodiscard]] bool isCleaning() const { return m_state.isCleaning(); }
    [[nodiscard]] bool hasFullDiskAccess() const { return m_state.hasFullDiskAccess(); }
    [[nodiscard]] bool hasVitals() const { return m_state.vitals().has_value(); }
    [[nodiscard]] bool hasScan() const { return m_state.scanResult().has_value(); }
    [[nodiscard]] QString mainButtonTitle() const;
    [[nodiscard]] QString mainButtonIcon() const;
    [[nodiscard]] QString freeSpaceText() const;
    [[nodiscard]] QString freeSpaceAccessibleText() const;
    [[nodiscard]] QString lastSweepLine() const;
    [[nodiscard]] QString capacityFreeText() const;
    [[nodiscard]] QString capacityTotalText() const;
    [[nodiscard]] static QString liveVolumeMark();
    // label, valueGB, colorName, fill ("solid", "striped", "hatched"), striped, tooltip; the
    // widths come from `trackWidths`.
    [[nodiscard]] QVariantList segments() const;
    [[nodiscard]] QString thermalText() const;
    [[nodiscard]] QString thermalColor() const;
    [[nodiscard]] QString memoryBadgeText() const;
    [[nodiscard]] QString memoryBadgeColor() const;
    [[nodiscard]] QString cpuText() const;
    [[nodiscard]] QString memoryText() const;
    // present, lit (of 20 cells), miniLit (of 8), text, charging; present is false without the figure.
    [[nodiscard]] QVariantMap cpuMeter() const;
    [[nodiscard]] QVariantMap memoryMeter() const;
    [[nodiscard]] QVariantMap batteryMeter() const;
    [[nodiscard]] static QString footprintTitle();
    [[nodiscard]] bool footprintPending() const;
    [[nodiscard]] static QString footprintPendingTitle();
    [[nodiscard]] static QString footprintPendingDetail();
    // symbol, label, value and colorName of each row.
    [[nodiscard]] QVariantList footprintRows() const;
    [[nodiscard]] QString fullDiskAccessTitle() const;
    [[nodiscard]] bool canRunSweep() const;
    [[nodiscard]] QString scanAgainTitle() const;
    [[nodiscard]] QString statusText() const;
    [[nodiscard]] QString statusDotColor() const;
    [[nodiscard]] static QString putBack();
    [[nodiscard]] static QString fullDiskAccessBanner();
    [[nodiscard]] QObject* sweepGroups() { return &m_sweepGroups; }

    // The widths of the capacity track's slices in `width` points.
    Q_INVOKABLE [[nodiscard]] QVariantList trackWidths(double width) const;
    Q_INVOKABLE void pressMainButton();
    Q_INVOKABLE void runSmartScan();
    Q_INVOKABLE void cleanSafeItems();
    Q_INVOKABLE void openFullDiskAccessSettings();
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void refreshVitals();

private:
    SweepGroupsModel m_sweepGroups;
};

} // namespace kestrow
