#include "presentation/PulseScreen.h"

#include "presentation/PlatformWords.h"
#include "presentation/Theme.h"

#include <algorithm>
#include <cmath>

namespace kestrow {

namespace {

std::int64_t safeTotal(const AppState& state)
{
    return state.scanResult() ? state.scanResult()->summary.safeFreeableBytes : 0;
}

bool hasDisk(const AppState& state)
{
    return state.vitals() && state.vitals()->disk.totalBytes > 0;
}

} // namespace

std::optional<PulseScreen::Badge> PulseScreen::badge(const AppState& state, AppTab tab)
{
    switch (tab) {
    case AppTab::pulse:
        return Badge{.color =
                         state.isScanning() || state.isCleaning() ? ThemeColor::accentOrange : ThemeColor::safeTeal};
    case AppTab::sweep:
        if (safeTotal(state) >= 1)
            return Badge{.text = Theme::byteText(safeTotal(state)), .color = ThemeColor::safeTeal};
        return std::nullopt;
    case AppTab::atlas:
        return Badge{.text = QStringLiteral("MAP"), .color = ThemeColor::inkTertiary};
    case AppTab::uninstall:
        if (state.leftovers().empty())
            return std::nullopt;
        return Badge{.text = QString::number(state.leftovers().size()) + QStringLiteral(" ORPHANS"),
                     .color = ThemeColor::askAmber};
    case AppTab::tuneUp:
        break;
    }
    return std::nullopt;
}

bool PulseScreen::mainButtonSweeps(const AppState& state)
{
    return safeTotal(state) > 0;
}

QString PulseScreen::mainButtonTitle(const AppState& state)
{
    if (state.isCleaning())
        return QStringLiteral("Sweeping…");
    if (state.isScanning())
        return QStringLiteral("Scanning…");
    return mainButtonSweeps(state) ? QStringLiteral("Run Sweep") : PlatformWords::current().scanComputer;
}

QString PulseScreen::mainButtonSymbol(const AppState& state)
{
    return mainButtonSweeps(state) ? QStringLiteral("paintbrush.pointed.fill") : QStringLiteral("magnifyingglass");
}

void PulseScreen::pressMainButton(AppState& state)
{
    if (mainButtonSweeps(state))
        state.cleanSafeItems();
    else
        state.runSmartScan();
}

std::optional<QString> PulseScreen::freeSpaceAccessibilityText(const AppState& state)
{
    if (!state.vitals())
        return std::nullopt;
    const DiskMetrics& disk = state.vitals()->disk;
    return QStringLiteral("Free space ") + QString::number(Theme::wholeGB(disk.freeBytes)) + QStringLiteral(" GB of ") +
           QString::number(Theme::wholeGB(disk.totalBytes)) + QStringLiteral(" GB");
}

std::optional<QString> PulseScreen::lastSweepLine(const AppState& state)
{
    if (!state.lastCleanupSummary())
        return std::nullopt;
    const TrashSummary& summary = *state.lastCleanupSummary();
    return QStringLiteral("Last sweep: ") + QString::number(summary.successCount()) + QStringLiteral(" items, ") +
           Theme::byteText(summary.totalAllocatedBytesFreed()) + QStringLiteral(" to the Trash");
}

QString PulseScreen::capacityFreeText(const AppState& state)
{
    return hasDisk(state) ? QString::number(Theme::wholeGB(state.vitals()->disk.freeBytes)) : QStringLiteral("--");
}

QString PulseScreen::capacityTotalText(const AppState& state)
{
    return hasDisk(state) ? QString::number(Theme::wholeGB(state.vitals()->disk.totalBytes)) : QStringLiteral("--");
}

PulseScreen::Label PulseScreen::thermalLabel(const AppState& state)
{
    if (!state.vitals())
        return {QStringLiteral("ACTIVE"), ThemeColor::safeTeal};
    switch (state.vitals()->thermalState) {
    case SystemThermalState::nominal:
        return {QStringLiteral("NOMINAL"), ThemeColor::safeTeal};
    case SystemThermalState::fair:
        return {QStringLiteral("FAIR"), ThemeColor::safeTeal};
    case SystemThermalState::serious:
        return {QStringLiteral("WARM"), ThemeColor::askAmber};
    case SystemThermalState::critical:
        break;
    }
    return {QStringLiteral("THROTTLED"), ThemeColor::dangerRed};
}

std::optional<PulseScreen::Label> PulseScreen::memoryBadge(const AppState& state)
{
    if (!state.vitals())
        return std::nullopt;
    switch (state.vitals()->memory.pressureStatus) {
    case MemoryPressureStatus::normal:
        return Label{QStringLiteral("NORMAL"), ThemeColor::safeTeal};
    case MemoryPressureStatus::warning:
        return Label{QStringLiteral("WARN"), ThemeColor::askAmber};
    case MemoryPressureStatus::critical:
        break;
    }
    return Label{QStringLiteral("CRIT"), ThemeColor::dangerRed};
}

QString PulseScreen::cpuText(const AppState& state)
{
    if (!state.vitals())
        return QStringLiteral("--");
    return QString::number(std::lround(state.vitals()->cpu.totalUsagePercentage)) + QLatin1Char('%');
}

QString PulseScreen::memoryText(const AppState& state)
{
    if (!state.vitals())
        return QStringLiteral("--");
    const MemoryMetrics& memory = state.vitals()->memory;
    return QString::number(Theme::wholeGB(memory.usedBytes)) + QStringLiteral(" / ") +
           QString::number(Theme::wholeGB(memory.totalBytes)) + QStringLiteral(" GB");
}

std::optional<VUMeter> PulseScreen::cpuMeter(const AppState& state, int cells)
{
    if (!state.vitals())
        return std::nullopt;
    return VUMeter{.percent = std::clamp(state.vitals()->cpu.totalUsagePercentage / 100, 0.0, 1.0), .cells = cells};
}

std::optional<VUMeter> PulseScreen::memoryMeter(const AppState& state, int cells)
{
    if (!state.vitals())
        return std::nullopt;
    return VUMeter{.percent = std::clamp(state.vitals()->memory.usedPercentage / 100, 0.0, 1.0), .cells = cells};
}

std::optional<VUMeter> PulseScreen::batteryMeter(const AppState& state, int cells)
{
    if (!state.vitals() || !state.vitals()->battery)
        return std::nullopt;
    return VUMeter{.percent = std::clamp(state.vitals()->battery->percentage / 100, 0.0, 1.0), .cells = cells};
}

QString PulseScreen::fullDiskAccessTitle(const AppState& state)
{
    return state.hasFullDiskAccess() ? QStringLiteral("FDA Granted") : QStringLiteral("FDA Optional");
}

bool PulseScreen::canRunSweep(const AppState& state)
{
    return safeTotal(state) > 0 && !state.isBusy();
}

QString PulseScreen::scanAgainTitle(const AppState& state)
{
    return state.isScanning() ? QStringLiteral("Scanning…") : QStringLiteral("Scan again");
}

QString PulseScreen::statusLine(const AppState& state)
{
    return QStringLiteral("Status: ") + state.statusMessage();
}

ThemeColor PulseScreen::statusDotColor(const AppState& state)
{
    if (state.isScanning() || state.isCleaning())
        return ThemeColor::accentOrange;
    const QString message = state.statusMessage().toLower();
    for (const QLatin1String word : {QLatin1String("failed"), QLatin1String("error"), QLatin1String("could not")})
        if (message.contains(word))
            return ThemeColor::dangerRed;
    return ThemeColor::safeTeal;
}

} // namespace kestrow
