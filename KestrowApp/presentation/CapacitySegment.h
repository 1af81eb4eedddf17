#pragma once

#include "presentation/ThemeColor.h"
#include "system/DiskCapacityBreakdown.h"

#include <QString>

#include <vector>

namespace kestrow {

// One slice of the capacity track and its legend entry.
struct CapacitySegment {
    enum class Fill { solid, striped, hatched };

    QString id;
    QString label;
    double bytes = 0;
    double fraction = 0; // of the total
    QString valueGB;     // legend value
    Fill fill = Fill::solid;
    ThemeColor color = ThemeColor::trackSystem; // of the fill and of the legend key
    bool striped = false;                       // the legend key is striped

    // "System: 75 GB"; a value that is a percentage takes no unit.
    [[nodiscard]] QString tooltipText() const;

    // System, Apps, Sweepable, Other and Free, each where it holds bytes; none without a total.
    [[nodiscard]] static std::vector<CapacitySegment> segments(const DiskCapacityBreakdown& breakdown);
};

} // namespace kestrow
