#pragma once

#include "support/EnumValue.h"

#include <QString>

namespace kestrow {

// The thermal state as the vitals report it.
enum class SystemThermalStateValue { nominal, fair, serious, critical };

class SystemThermalState : public EnumValue<SystemThermalState, SystemThermalStateValue, 4> {
public:
    using EnumValue::EnumValue;
    using enum SystemThermalStateValue;

    // The platform's value: 0 to 3 in order; anything else is nominal.
    [[nodiscard]] static SystemThermalState fromPlatformValue(int value);
    [[nodiscard]] QString rawValue() const;
};

} // namespace kestrow
