#include "presentation/CompanionScreen.h"

#include "presentation/PlatformWords.h"
#include "presentation/PulseScreen.h"

#include <algorithm>
#include <cmath>

namespace kestrow {

void CompanionScreen::open(AppState& state)
{
    state.refreshVitals();
}

QString CompanionScreen::title()
{
    return QStringLiteral("Kestrow");
}

QString CompanionScreen::refreshAccessibilityText()
{
    return QStringLiteral("Refresh vitals");
}

QString CompanionScreen::settingsAccessibilityText()
{
    return QStringLiteral("Settings");
}

QString CompanionScreen::liveReadTitle()
{
    return QStringLiteral("Live read");
}

QString CompanionScreen::vitalsUnavailableText()
{
    return QStringLiteral("Vitals unavailable.");
}

std::vector<CompanionScreen::MeterRow> CompanionScreen::meterRows(const AppState& state)
{
    if (!state.vitals())
        return {};
    const DiskMetrics& disk = state.vitals()->disk;
    const double freeShare = disk.totalBytes > 0 ? static_cast<double>(disk.freeBytes) / disk.totalBytes : 0;
    return {{QStringLiteral("CPU"), *PulseScreen::cpuMeter(state, meterCells)},
            {QStringLiteral("MEMORY"), *PulseScreen::memoryMeter(state, meterCells)},
            {QStringLiteral("Free space"), VUMeter{.percent = std::clamp(freeShare, 0.0, 1.0), .cells = meterCells}}};
}

std::optional<CompanionScreen::BatteryRow> CompanionScreen::batteryRow(const AppState& state)
{
    const std::optional<VUMeter> meter = PulseScreen::batteryMeter(state, meterCells);
    if (!meter)
        return std::nullopt;
    const bool charging = state.vitals()->battery->isCharging;
    return BatteryRow{
        .symbol = charging ? QStringLiteral("battery.100.bolt") : QStringLiteral("battery.100"),
        .label = QStringLiteral("Battery"),
        .percentText = meter->percentText(),
        .accessibilityText = QStringLiteral("Battery ") + QString::number(std::lround(meter->percent * 100)) +
                             QStringLiteral(" percent") + (charging ? QStringLiteral(", charging") : QString()),
    };
}

CompanionScreen::Action CompanionScreen::action(const AppState& state)
{
    if (state.isCleaning())
        return Action::sweeping;
    return PulseScreen::mainButtonSweeps(state) ? Action::runSweep : Action::scan;
}

QString CompanionScreen::actionTitle(const AppState& state)
{
    switch (action(state)) {
    case Action::sweeping:
        return QStringLiteral("Sweeping");
    case Action::runSweep:
        return QStringLiteral("Run sweep");
    case Action::scan:
        break;
    }
    return PlatformWords::current().scanComputer;
}

bool CompanionScreen::actionEnabled(const AppState& state)
{
    return action(state) != Action::sweeping && !state.isBusy();
}

void CompanionScreen::pressAction(AppState& state)
{
    if (!actionEnabled(state))
        return;
    if (action(state) == Action::runSweep)
        state.cleanSafeItems();
    else
        state.runSmartScan();
}

QString CompanionScreen::quitTitle()
{
    return QStringLiteral("Quit Kestrow");
}

} // namespace kestrow
