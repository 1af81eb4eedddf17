#pragma once

#include "support/JsonValue.h"

#include <vector>

namespace kestrow {

// Processor load, as percentages from 0 to 100, averaged since boot.
struct CPUMetrics {
    double totalUsagePercentage = 0;
    double userPercentage = 0;
    double systemPercentage = 0;
    double idlePercentage = 100;
    int coreCount = 1;
    std::vector<double> perCoreUsage; // left empty by the monitor

    [[nodiscard]] JsonValue toJson() const;
    friend bool operator==(const CPUMetrics&, const CPUMetrics&) = default;
};

} // namespace kestrow
