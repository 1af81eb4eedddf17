#pragma once

#include "presentation/VUMeter.h"
#include "state/AppState.h"

#include <QString>

#include <optional>
#include <vector>

namespace kestrow {

// What the menu bar or tray companion shows and does: a live read of the machine, one run
// button, and a way out of the application.
class CompanionScreen {
public:
    // What stands in the action row.
    enum class Action { sweeping, runSweep, scan };

    struct MeterRow {
        QString label;
        VUMeter meter;
    };
    struct BatteryRow {
        QString symbol;
        QString label;
        QString percentText;
        QString accessibilityText;
    };

    static constexpr int meterCells = 20;

    // Opening the companion is the one moment, besides the end of a flow, that the vitals are
    // read again; its refresh button does the same through the state.
    static void open(AppState& state);

    [[nodiscard]] static QString title();
    [[nodiscard]] static QString refreshAccessibilityText();
    [[nodiscard]] static QString settingsAccessibilityText();
    [[nodiscard]] static QString liveReadTitle();
    // Shown instead of the rows without vitals.
    [[nodiscard]] static QString vitalsUnavailableText();
    // CPU, memory and free space; empty without vitals.
    [[nodiscard]] static std::vector<MeterRow> meterRows(const AppState& state);
    // Absent on a machine without a battery.
    [[nodiscard]] static std::optional<BatteryRow> batteryRow(const AppState& state);

    [[nodiscard]] static Action action(const AppState& state);
    [[nodiscard]] static QString actionTitle(const AppState& state);
    // The activity mark of a Sweep under way has no button to press.
    [[nodiscard]] static bool actionEnabled(const AppState& state);
    // Sweeps or scans as the row says; ignored while it is disabled.
    static void pressAction(AppState& state);
    [[nodiscard]] static QString quitTitle();
};

} // namespace kestrow
