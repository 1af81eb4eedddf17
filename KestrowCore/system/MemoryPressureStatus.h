#pragma once

#include "support/EnumValue.h"

#include <QString>

namespace kestrow {

// How full memory is, judged from the share in use.
enum class MemoryPressureStatusValue { normal, warning, critical };

class MemoryPressureStatus : public EnumValue<MemoryPressureStatus, MemoryPressureStatusValue, 3> {
public:
    using EnumValue::EnumValue;
    using enum MemoryPressureStatusValue;

    // Above 85 percent critical, above 70 warning; each boundary belongs to the lower status.
    [[nodiscard]] static MemoryPressureStatus forUsedPercentage(double percentage);
    [[nodiscard]] QString rawValue() const;
};

} // namespace kestrow
