#pragma once

#include "presentation/ThemeColor.h"
#include "presentation/VUMeter.h"
#include "state/AppState.h"

#include <QString>

#include <optional>

namespace kestrow {

// What the main window's sidebar and the Pulse screen say, computed from the state.
class PulseScreen {
public:
    struct Badge {
        QString text; // empty for the dot of `pulse`
        ThemeColor color = ThemeColor::safeTeal;
    };
    struct Label {
        QString text;
        ThemeColor color;
    };

    // The sidebar badge of a tab; absent where the tab shows none.
    [[nodiscard]] static std::optional<Badge> badge(const AppState& state, AppTab tab);

    // The main button sweeps once a scan found something safe, and scans otherwise.
    [[nodiscard]] static bool mainButtonSweeps(const AppState& state);
    [[nodiscard]] static QString mainButtonTitle(const AppState& state);
    [[nodiscard]] static QString mainButtonSymbol(const AppState& state);
    // Sweeps or scans as the title says.
    static void pressMainButton(AppState& state);
    // "Free space 120 GB of 500 GB"; absent without vitals.
    [[nodiscard]] static std::optional<QString> freeSpaceAccessibilityText(const AppState& state);
    // Absent without a Sweep.
    [[nodiscard]] static std::optional<QString> lastSweepLine(const AppState& state);

    [[nodiscard]] static QString capacityFreeText(const AppState& state);
    [[nodiscard]] static QString capacityTotalText(const AppState& state);

    [[nodiscard]] static Label thermalLabel(const AppState& state);
    // Absent without vitals.
    [[nodiscard]] static std::optional<Label> memoryBadge(const AppState& state);
    [[nodiscard]] static QString cpuText(const AppState& state);
    [[nodiscard]] static QString memoryText(const AppState& state);
    // The meters of the live read; absent where the figure is (battery: on a machine without).
    [[nodiscard]] static std::optional<VUMeter> cpuMeter(const AppState& state, int cells);
    [[nodiscard]] static std::optional<VUMeter> memoryMeter(const AppState& state, int cells);
    [[nodiscard]] static std::optional<VUMeter> batteryMeter(const AppState& state, int cells);

    [[nodiscard]] static QString fullDiskAccessTitle(const AppState& state);

    [[nodiscard]] static bool canRunSweep(const AppState& state);
    [[nodiscard]] static QString scanAgainTitle(const AppState& state);
    [[nodiscard]] static QString statusLine(const AppState& state);
    [[nodiscard]] static ThemeColor statusDotColor(const AppState& state);
};

} // namespace kestrow
