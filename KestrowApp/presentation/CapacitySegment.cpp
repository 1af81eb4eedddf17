#include "presentation/CapacitySegment.h"

#include "presentation/Theme.h"

namespace kestrow {

QString CapacitySegment::tooltipText() const
{
    QString text = label + QStringLiteral(": ") + valueGB;
    if (!valueGB.endsWith(QLatin1Char('%')))
        text += QStringLiteral(" GB");
    return text;
}

std::vector<CapacitySegment> CapacitySegment::segments(const DiskCapacityBreakdown& breakdown)
{
    std::vector<CapacitySegment> segments;
    if (!(breakdown.totalBytes > 0))
        return segments;
    const auto add = [&](const char* key, const char* name, double size, Fill look, ThemeColor tint) {
        if (size > 0)
            segments.push_back({.id = QLatin1String(key),
                                .label = QLatin1String(name),
                                .bytes = size,
                                .fraction = size / breakdown.totalBytes,
                                .valueGB = Theme::legendGB(size),
                                .fill = look,
                                .color = tint,
                                .striped = look == Fill::striped});
    };
    add("system", "System", breakdown.systemBytes, Fill::solid, ThemeColor::trackSystem);
    add("apps", "Apps", breakdown.appsBytes, Fill::solid, ThemeColor::trackApps);
    add("sweepable", "Sweepable", breakdown.sweepableBytes, Fill::solid, ThemeColor::safeTeal);
    add("other", "Other", breakdown.otherBytes, Fill::striped, ThemeColor::trackOther);
    add("free", "Free", breakdown.freeBytes, Fill::hatched, ThemeColor::puttyWell);
    return segments;
}

} // namespace kestrow
